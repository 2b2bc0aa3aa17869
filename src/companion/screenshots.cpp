#include "companion/screenshots.h"

#include "companion/fragments.h"
#include "companion/shot_files.h"
#include "foundation/drives.h"
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
    for (const std::string& file : files) {
        const std::int64_t time = FileTime(file).value_or(0);
        if (!newest.empty() && time < newest_time) continue;
        newest = file;
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
