// The folder that the open dialog works in: FILES of a level that is being added, a draft beside FILES, or a
// temporary folder where stored forms are undone.
#include "intake/work_folder.h"

#include <algorithm>

#include "core/archive.h"
#include "core/level_draft.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "swap/compression.h"

namespace kelvash::intake {

namespace {

bool SameStamp(const FileStamp& a, const FileStamp& b) {
    return EqualNoCase(a.Name, b.Name) && a.Size == b.Size && a.Time == b.Time;
}

const FileStamp* FindStamp(const std::vector<FileStamp>& stamps, std::string_view name) {
    const auto found = std::find_if(stamps.begin(), stamps.end(),
                                    [&](const FileStamp& stamp) { return EqualNoCase(stamp.Name, name); });
    return found == stamps.end() ? nullptr : &*found;
}

std::map<std::string, FileStamp> ByName(const std::vector<FileStamp>& stamps) {
    std::map<std::string, FileStamp> map;
    for (const FileStamp& stamp : stamps)
        map.emplace(FoldCase(stamp.Name), stamp);
    return map;
}

// False after a message.
bool UndoStoredForms(NewLevel& level) {
    std::string temp;
    level.UsesTempFolder = swap::DecompressLevelFiles(level.LevelFilesFolder, temp, false) &&
                           (!temp.empty() || swap::CopyToTempDec(level.LevelFilesFolder, temp));
    level.WorkFolder = temp;
    if (!level.UsesTempFolder) TellCritical(LoadMessage(msg::kNewLevelDecompressing));
    return level.UsesTempFolder;
}

// False after a message.
bool OpenDraft(NewLevel& level) {
    const std::string folder = FolderOf(level.LevelFilesFolder);
    level.WorkFolder = core::DraftFolder(folder);
    level.UsesDraft = core::MakeDraft(folder);
    if (!level.UsesDraft) TellCritical(LoadMessage(msg::kPropertyNoDraft) + folder);
    return level.UsesDraft;
}

bool IsNewIn(const std::map<std::string, FileStamp>& before, const std::string& path) {
    const auto old = before.find(FoldCase(FileNameOf(path)));
    return old == before.end() ||
           !SameStamp(old->second, {FileNameOf(path), FileTime(path).value_or(0), FileSize(path)});
}

} // namespace

std::vector<FileStamp> StampFiles(const std::string& folder) {
    std::vector<FileStamp> stamps;
    for (const std::string& file : ListFiles(folder, "*"))
        stamps.push_back({FileNameOf(file), FileTime(file).value_or(0), FileSize(file)});
    return stamps;
}

// Both are in the order of ListFiles.
bool SameStamps(const std::vector<FileStamp>& a, const std::vector<FileStamp>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameStamp);
}

bool OpenWorkFolder(NewLevel& level) {
    level.WorkFolder = level.LevelFilesFolder;
    if (level.OnCd) return true;
    level.Outside = ByName(StampFiles(level.LevelFilesFolder));
    const bool shown_as_stored = core::profile.NoDecompress && AnyFile(level.LevelFilesFolder, "*");
    if (core::archive.Header.CompressFiles && !shown_as_stored) return UndoStoredForms(level);
    return level.Adding || OpenDraft(level);
}

void CloseWorkFolder(NewLevel& level) {
    if (level.UsesTempFolder) {
        ShowInfo(LoadMessage(msg::kRemovingTemp));
        RemoveFolder(level.WorkFolder);
        ShowInfo({});
    }
    if (level.UsesDraft) core::DropDraft(FolderOf(level.LevelFilesFolder));
    swap::RemoveTempFolder();
}

bool TakeOutsideFiles(NewLevel& level) {
    if (level.OnCd || EqualNoCase(level.WorkFolder, level.LevelFilesFolder)) return true;
    const std::vector<FileStamp> now = StampFiles(level.LevelFilesFolder);
    for (const FileStamp& stamp : now) {
        const auto seen = level.Outside.find(FoldCase(stamp.Name));
        if (seen != level.Outside.end() && SameStamp(seen->second, stamp)) continue;
        const std::string target = level.WorkFolder + "\\" + stamp.Name;
        if (IsTheDialogs(level, target)) continue;
        // A second name of it would let whoever writes one of the two in place reach the other.
        if (!CopyFile(level.LevelFilesFolder + "\\" + stamp.Name, target)) {
            TellCritical(LoadMessage(msg::kCannotTakeOutsideFile) + stamp.Name);
            return false;
        }
    }
    level.Outside = ByName(now);
    return true;
}

bool PartFromLevel(const NewLevel& level, const std::string& file) {
    return !level.UsesDraft || CopyFileWhole(file, file);
}

bool IsTheDialogs(const NewLevel& level, const std::string& file) {
    const FileStamp* const before = FindStamp(level.Snapshot, FileNameOf(file));
    if (!FileExists(file)) return false;
    return before == nullptr ||
           !SameStamp(*before, {FileNameOf(file), FileTime(file).value_or(0), FileSize(file)});
}

bool DiffersFromSnapshot(const NewLevel& level) {
    return !SameStamps(StampFiles(level.WorkFolder), level.Snapshot);
}

void DropOlderForms(const NewLevel& level) {
    const std::map<std::string, FileStamp> before = ByName(level.Snapshot);
    for (const std::string& stored :
         ListFiles(level.WorkFolder, "*" + LoadFragment(fragment::kIntakeZlExtension))) {
        const std::string plain = StripExtension(stored);
        if (!FileExists(plain)) continue;
        const bool stored_is_new = IsNewIn(before, stored);
        if (stored_is_new != IsNewIn(before, plain)) DeleteFile(stored_is_new ? plain : stored);
    }
}

} // namespace kelvash::intake
