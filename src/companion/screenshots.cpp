#include "companion/screenshots.h"

#include "companion/fragments.h"
#include "companion/shot_files.h"
#include "foundation/drives.h"
#include "foundation/file_times.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"

namespace kelvash::companion {

std::vector<std::string> Screenshots(const core::LevelPlace& level) {
    std::vector<std::string> files = ListFiles(core::ScreenshotsFolder(level.Folder), "*");
    std::erase_if(files, [](const std::string& file) { return !IsShotName(file); });
    return files;
}

std::string NewestOf(const std::vector<std::string>& files) {
    if (files.size() == 1) return files.front();
    std::string newest;
    std::int64_t newest_time = 0;
    const std::vector<std::optional<std::int64_t>> times = FileTimes(files);
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::int64_t time = times[i].value_or(0);
        if (!newest.empty() && time < newest_time) continue;
        newest = files[i];
        newest_time = time;
    }
    return newest;
}

std::string NewestScreenshot(const core::LevelPlace& level) {
    return NewestOf(Screenshots(level));
}

std::string DefaultScreenshot() {
    return AppFolder() + LoadFragment(fragment::kDefaultShot);
}

} // namespace kelvash::companion
