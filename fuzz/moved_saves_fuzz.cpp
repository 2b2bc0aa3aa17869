// Any bytes as the record of moved saves: what is taken can be written and read again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "swap/moved_saves.h"
#include "trle_state/file_stamp.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    // With a sound end, which no fuzzer guesses.
    const std::string end = kelvash::trle_state::HashOfBytes(bytes);
    for (const std::string& text : {bytes, bytes + "end 32:" + end + ",\n"})
        if (const auto moved = kelvash::swap::DecodeMovedSaves(text)) {
            const std::string again = kelvash::swap::EncodeMovedSaves(*moved);
            const auto twin = kelvash::swap::DecodeMovedSaves(again);
            if (!twin || kelvash::swap::EncodeMovedSaves(*twin) != again) std::abort();
        }
    return 0;
}
