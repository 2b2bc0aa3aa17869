// Any bytes as a swap record: what is taken is a record that gives the same bytes again, but for lines that
// are passed over.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "trle_state/swap_record.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string bytes(reinterpret_cast<const char*>(data), size);
    // With a sound end, which no fuzzer guesses.
    const std::string end = kelvash::trle_state::HashOfBytes(bytes);
    for (const std::string& text : {bytes, bytes + "end 32:" + end + ",\n"})
        if (const auto record = kelvash::trle_state::DecodeSwapRecord(text)) {
            const std::string again = kelvash::trle_state::EncodeSwapRecord(*record, "C:\\trle");
            if (!kelvash::trle_state::DecodeSwapRecord(again)) std::abort();
        }
    return 0;
}
