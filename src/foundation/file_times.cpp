#include "foundation/file_times.h"

#include <chrono>
#include <filesystem>
#include <system_error>

#include "foundation/drives.h"
#include "foundation/native_text.h"
#include "foundation/path.h"

namespace kelvash {

namespace fs = std::filesystem;

std::vector<std::optional<std::int64_t>> FileTimes(const std::vector<std::string>& paths) {
    std::vector<std::optional<std::int64_t>> times;
    times.reserve(paths.size());
    std::string folder;
    fs::path native;
    for (const std::string& path : paths) {
        if (std::string of = FolderOf(path); times.empty() || of != folder) {
            native = NativePath(of);
            folder = std::move(of);
        }
        std::error_code error;
        const fs::file_time_type time = fs::last_write_time(native / NativeFromText(FileNameOf(path)), error);
        const auto system_time = std::chrono::file_clock::to_sys(time).time_since_epoch();
        times.push_back(error ? std::nullopt
                              : std::optional<std::int64_t>(
                                    std::chrono::floor<std::chrono::seconds>(system_time).count()));
    }
    return times;
}

} // namespace kelvash
