// Any bytes as a package file: what is read can be written, and read again as the same.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "intake/level_config.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvash::intake;
    constexpr std::size_t kSmallestEntry = 6;
    LevelConfigRecord config;
    const ConfigFault fault = DecodeLevelConfig({reinterpret_cast<const char*>(data), size}, config);
    if (config.FileNames.size() > size / kSmallestEntry) std::abort();
    if (config.FileNames.size() != config.FileSizes.size()) std::abort();
    if (fault != ConfigFault::None) return 0;
    const std::string bytes = EncodeLevelConfig(config);
    LevelConfigRecord again;
    if (DecodeLevelConfig(bytes, again) != ConfigFault::None) std::abort();
    if (again.FileSizes != config.FileSizes || again.UseWads != config.UseWads) std::abort();
    if (EncodeLevelConfig(again) != bytes) std::abort();
    return 0;
}
