#include "trle_state/level_owner.h"

#include <algorithm>
#include <vector>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "trle_state/fragments.h"
#include "trle_state/surroundings.h"

namespace kelvash::trle_state {

namespace {

std::string Tr4InfHash(std::string_view folder) {
    return HashOfFile(std::string(folder) + LoadFragment(fragment::kRecordTr4Info));
}

// A path from a folder on, with ".." where it climbs; empty if they share no drive.
std::string PathFrom(std::string_view base, std::string_view path) {
    const std::vector<std::string> from = Split(base, '\\');
    const std::vector<std::string> to = Split(path, '\\');
    if (from.empty() || to.empty() || !EqualNoCase(from.front(), to.front())) return {};
    std::size_t shared = 0;
    while (shared < std::min(from.size(), to.size()) && EqualNoCase(from[shared], to[shared]))
        ++shared;
    std::vector<std::string> steps(from.size() - shared, "..");
    steps.insert(steps.end(), to.begin() + static_cast<std::ptrdiff_t>(shared), to.end());
    return Join(steps, "\\");
}

std::string FollowFrom(std::string_view base, std::string_view relative) {
    std::vector<std::string> steps = Split(base, '\\');
    for (const std::string& step : Split(relative, '\\')) {
        if (step != "..")
            steps.push_back(step);
        else if (steps.size() > 1)
            steps.pop_back();
    }
    return Join(steps, "\\");
}

// The place must be that of the level that went in. Where it has always been, a tr4.inf that either side
// lacks is no proof to the contrary; anywhere else only the same file is a proof.
bool IsItsPlace(const std::string& folder, const LevelOwner& owner) {
    if (folder.empty() || !FolderExists(folder)) return false;
    const std::string hash = Tr4InfHash(folder);
    if (!hash.empty() && hash == owner.Tr4InfHash) return true;
    return (EqualNoCase(folder, owner.Folder) || EqualNoCase(folder, owner.Former)) &&
           (hash.empty() || owner.Tr4InfHash.empty());
}

} // namespace

LevelOwner OwnerIn(std::string_view folder) {
    LevelOwner owner;
    owner.Folder = folder;
    owner.FromHome = PathFrom(AppFolder(), folder);
    owner.Tr4InfHash = Tr4InfHash(folder);
    return owner;
}

LevelOwner OwnerOf(const LevelPlace& level) {
    LevelOwner owner = OwnerIn(level.Folder);
    owner.Name = level.Name;
    owner.Code = level.Code;
    return owner;
}

std::string FindOwnerFolder(const LevelOwner& owner) {
    if (owner.Folder.empty()) return {};
    if (IsItsPlace(owner.Folder, owner)) return owner.Folder;
    if (const std::string moved = FollowFrom(AppFolder(), owner.FromHome);
        !owner.FromHome.empty() && IsItsPlace(moved, owner))
        return moved;
    if (IsItsPlace(owner.Former, owner)) return owner.Former;
    if (owner.Tr4InfHash.empty()) return {};
    const std::vector<std::string> folders = ListedFolders();
    const auto found = std::find_if(folders.begin(), folders.end(),
                                    [&](const std::string& folder) { return IsItsPlace(folder, owner); });
    return found == folders.end() ? std::string() : *found;
}

std::int32_t CodeOfFolder(std::string_view folder) {
    const std::string name = FileNameOf(folder);
    const std::optional<std::int32_t> code = WholeNumber(name.substr(name.rfind('_') + 1));
    if (!code) return kNoLevel;
    const LevelPlace level = PlaceOfLevel(*code);
    return level.IsListed() && IsSamePlace(level.Folder, folder) ? *code : kNoLevel;
}

} // namespace kelvash::trle_state
