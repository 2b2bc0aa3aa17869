#include "support/core_home.h"

#include <algorithm>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/native_text.h"

namespace kelvash::test {

namespace fs = std::filesystem;

CoreHome::CoreHome() : levels(drive / "Levels"), kva(home / "test.kva") {
    fs::create_directories(levels);
    core::profile.LastArchive = "C:\\Kelvash\\test.kva";
    core::archive.Header.MainFolder = "C:\\Levels";
    core::archive.Header.SecondaryFolder = "C:\\Levels";
    AddRecord(0, "- TRLE: Original configuration -");
}

void CoreHome::AddRecord(std::int32_t code, const std::string& name, std::int32_t cd_number) {
    core::LevelRecord level;
    level.Code = code;
    level.Name = name;
    level.CdNumber = cd_number;
    core::archive.Table.Append(level);
}

std::vector<std::string> CoreHome::Entries(const fs::path& folder) {
    std::vector<std::string> names;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        names.push_back(TextOfNative(entry.path().filename()) + (entry.is_directory() ? "\\" : ""));
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace kelvash::test
