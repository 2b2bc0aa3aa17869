#include "core/archive.h"
#include "core/fragments.h"
#include "core/profile.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "trle_state/surroundings.h"

namespace kelvash::trle_state {

std::string TrleFolder() {
    return core::TrleFolder();
}

LevelPlace PlaceOfLevel(std::int32_t code) {
    return core::PlaceOf(code);
}

std::vector<std::string> ListedFolders() {
    std::vector<std::string> folders;
    folders.reserve(static_cast<std::size_t>(core::archive.Table.Size()));
    for (const core::LevelRecord& level : core::archive.Table)
        folders.push_back(core::LevelFolder(level.Code, false));
    return folders;
}

std::string FilesOfLevel(std::string_view folder) {
    return core::FilesFolder(folder);
}

std::vector<ListedTr4> ListedTr4s(std::string_view folder) {
    std::vector<ListedTr4> list;
    const std::string bytes = ReadWholeFile(std::string(folder) + LoadFragment(fragment::kTr4InfoName));
    for (const core::Tr4Info& info : core::DecodeTr4Info(bytes))
        list.push_back({std::string(Trim(info.FileName)), info.FileSize});
    return list;
}

} // namespace kelvash::trle_state
