#include "swap/level_owner.h"

#include <algorithm>
#include <vector>

#include "core/archive.h"
#include "core/change.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "swap/fragments.h"
#include "swap/messages.h"

namespace kelvash::swap {

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
    return EqualNoCase(folder, owner.Folder) && (hash.empty() || owner.Tr4InfHash.empty());
}

} // namespace

LevelOwner OwnerOf(std::int32_t code) {
    LevelOwner owner;
    owner.Folder = core::LevelFolder(code, false);
    owner.FromHome = PathFrom(AppFolder(), owner.Folder);
    owner.Name = Trim(core::LevelByCode(code).Name);
    owner.Tr4InfHash = Tr4InfHash(owner.Folder);
    owner.Code = code;
    return owner;
}

std::string FindOwnerFolder(const LevelOwner& owner) {
    if (owner.Folder.empty()) return {};
    if (IsItsPlace(owner.Folder, owner)) return owner.Folder;
    if (const std::string moved = FollowFrom(AppFolder(), owner.FromHome);
        !owner.FromHome.empty() && IsItsPlace(moved, owner))
        return moved;
    if (owner.Tr4InfHash.empty()) return {};
    for (std::int32_t i = 0; i < core::archive.Header.LevelCount; ++i) {
        const std::string folder =
            core::LevelFolder(core::archive.Levels[static_cast<std::size_t>(i)].Code, false);
        if (IsItsPlace(folder, owner)) return folder;
    }
    return {};
}

std::int32_t CodeOfFolder(std::string_view folder) {
    const std::string name = FileNameOf(folder);
    const std::optional<std::int32_t> code = WholeNumber(name.substr(name.rfind('_') + 1));
    if (!code || core::LevelIndex(*code) < 0) return kNoLevel;
    return IsSamePlace(core::LevelFolder(*code, false), folder) ? *code : kNoLevel;
}

bool NoteLevelMoved(std::string_view old_folder, std::string_view new_folder) {
    const core::Change change(msg::kDoingOwner, core::kHomeFolder);
    if (!change) return false;
    FoundRecord found = ReadSwapRecord();
    LevelOwner& owner = found.Record.Owner;
    if (found.State != RecordState::Good || owner.Folder.empty() || !IsSamePlace(owner.Folder, old_folder) ||
        !FolderExists(new_folder))
        return true;
    owner.Folder = new_folder;
    owner.FromHome = PathFrom(AppFolder(), new_folder);
    return WriteSwapRecord(found.Record);
}

bool NoteLevelsMoved(std::string_view old_parent, std::string_view new_parent) {
    const std::string name = FileNameOf(ReadSwapRecord().Record.Owner.Folder);
    return name.empty() ||
           NoteLevelMoved(std::string(old_parent) + "\\" + name, std::string(new_parent) + "\\" + name);
}

void NoteLevelChanged(std::string_view folder) {
    const core::Change change(msg::kDoingTr4Info, core::kHomeFolder);
    if (!change) return;
    FoundRecord found = ReadSwapRecord();
    LevelOwner& owner = found.Record.Owner;
    if (found.State != RecordState::Good || !IsSamePlace(owner.Folder, folder)) return;
    owner.Tr4InfHash = Tr4InfHash(folder);
    static_cast<void>(WriteSwapRecord(found.Record)); // without it the folder's own place is the proof
}

} // namespace kelvash::swap
