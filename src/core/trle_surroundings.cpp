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

std::string FolderOfLevel(std::int32_t code) {
    return core::LevelFolder(code, false);
}

std::string FilesOfLevel(std::string_view folder) {
    return core::FilesFolder(folder);
}

std::string NameOfLevel(std::int32_t code) {
    return std::string(Trim(core::LevelByCode(code).Name));
}

std::vector<std::int32_t> ListedCodes() {
    std::vector<std::int32_t> codes;
    codes.reserve(static_cast<std::size_t>(core::archive.Header.LevelCount));
    for (std::int32_t i = 0; i < core::archive.Header.LevelCount; ++i)
        codes.push_back(core::archive.Levels[static_cast<std::size_t>(i)].Code);
    return codes;
}

bool IsListed(std::int32_t code) {
    return core::LevelIndex(code) >= 0;
}

std::vector<ListedTr4> ListedTr4s(std::int32_t code) {
    std::vector<ListedTr4> list;
    const std::string bytes =
        ReadWholeFile(core::LevelFolder(code, false) + LoadFragment(fragment::kTr4InfoName));
    for (const core::Tr4Info& info : core::DecodeTr4Info(bytes))
        list.push_back({std::string(Trim(info.FileName)), info.FileSize});
    return list;
}

} // namespace kelvash::trle_state
