// Any bytes as a media configuration: the names in it are plain ones, and no more than its events can hold.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "media/media_config.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t kEventSize = 1356;
    constexpr std::size_t kNamesOfAnEvent = 5;
    const auto names = kelvash::media::MediaFileNames({reinterpret_cast<const char*>(data), size});
    if (names.size() > size / kEventSize * kNamesOfAnEvent) std::abort();
    for (const std::string& name : names)
        if (name.empty() || name == ".." || name.find_first_of(std::string("\\/:\0", 4)) != std::string::npos)
            std::abort();
    return 0;
}
