#include "core/archive.h"

#include <algorithm>

#include "core/archive_messages.h"
#include "core/change.h"
#include "core/change_messages.h"
#include "core/cut_archive.h"
#include "core/fragments.h"
#include "core/level_list.h"
#include "core/path_field.h"
#include "core/ports.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/guarded_folders.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/trle_state.h"

namespace kelvash::core {

constinit ArchiveState& archive = State<ArchiveState>::Get();

namespace {

std::vector<GuardedFolder> GuardedArchive() {
    return {{archive.Header.MainFolder}, {archive.Header.SecondaryFolder}};
}
[[maybe_unused]] const bool archive_is_guarded = AddGuardedFolders(&GuardedArchive);

// What became of a save.
enum class Saving { Done, Declined, Failed };

Saving Save(std::string_view path) {
    const std::string target(path); // may be profile.LastArchive itself
    if (!MayOverwriteArchive(target)) return Saving::Declined;
    ArchiveStamp stamp;
    if (!WriteArchiveFile(target, archive, &stamp)) return Saving::Failed;
    NoteSeenArchive(target, stamp);
    archive.ArchiveChanged = false;
    profile.LastArchive = target;
    return Saving::Done;
}

std::string FolderOnDisk(std::int32_t code) {
    return (code == 0 ? AppFolder() : std::string(Trim(archive.Header.SecondaryFolder))) +
           LevelFolderName(code);
}

bool StartsLevelName(const std::string& folder) {
    return StartsWithNoCase(FileNameOf(folder), LoadFragment(fragment::kLevelNameStart));
}

void RecountSaves(std::int32_t index) {
    const std::string folder = LevelFolder(archive.Table[index].Code, false);
    const auto saves = static_cast<double>(SavesBytes(folder));
    archive.Table.Edit(index)->RecountSaves = false;
    AddLevelSize(index, saves - archive.Table[index].SavesSize, SizeKind::Saves);
}

// Saves in any case, whatever AutoSave says.
void TouchWithAutoSave() {
    const bool old = profile.AutoSave;
    profile.AutoSave = true;
    ArchiveTouched();
    profile.AutoSave = old;
}

} // namespace

std::int32_t LevelIndex(std::int32_t code) {
    return archive.Table.Find(code);
}

LevelPlace PlaceOf(std::int32_t code) {
    const std::int32_t index = archive.Table.Find(code);
    if (index >= 0) return PlaceAt(index);
    LevelPlace none;
    none.Code = code;
    none.Folder = FolderOnDisk(code);
    return none;
}

LevelPlace PlaceAt(std::int32_t index) {
    const LevelRecord& level = archive.Table[index];
    return {level.Code, index, level.CdNumber, std::string(Trim(level.Name)), FolderOnDisk(level.Code)};
}

std::string LevelFolderName(std::int32_t code) {
    constexpr int kCodeDigits = 4;
    return LoadFragment(fragment::kLevelFolderStart) + ZeroPadded(code, kCodeDigits);
}

std::string LevelFolder(std::int32_t code, bool on_cd) {
    if (on_cd) return ReachFolder(PlaceOf(code));
    archive.CdMissing = false;
    return FolderOnDisk(code);
}

std::string ReachFolder(const LevelPlace& level) {
    archive.CdMissing = false;
    if (level.Code == 0 || level.CdNumber == 0) return level.Folder;
    archive.CdMissing = !RequestCd(level);
    if (archive.CdMissing) return {};
    return CdLevelFolder(archive.Header.MainFolder.substr(0, 2), level.Code);
}

std::string FindArchiveFolderOnCd(std::string_view drive) {
    for (const std::string& folder : ListFolders(drive)) {
        const std::vector<std::string> inside = ListFolders(folder);
        if (std::any_of(inside.begin(), inside.end(), StartsLevelName)) return folder;
    }
    return {};
}

std::string CdLevelFolder(std::string_view drive, std::int32_t code) {
    constexpr std::size_t kCodeLength = 4;
    const std::string root = FindArchiveFolderOnCd(drive);
    if (root.empty()) return {};
    for (const std::string& folder : ListFolders(root)) {
        if (!StartsLevelName(folder)) continue;
        const std::string name = FileNameOf(folder);
        if (WholeNumber(name.substr(name.size() - std::min(name.size(), kCodeLength))) == code)
            return root + LevelFolderName(code);
    }
    return {};
}

std::string FilesFolder(std::string_view level_folder) {
    return std::string(level_folder) + LoadFragment(fragment::kFilesFolder);
}

std::string SavegamesFolder(std::string_view level_folder) {
    return std::string(level_folder) + LoadFragment(fragment::kSavegamesFolder);
}

std::string StashFolder(std::string_view level_folder) {
    return std::string(level_folder) + LoadFragment(fragment::kBackupSavegamesFolder);
}

std::string ScreenshotsFolder(std::string_view level_folder) {
    return std::string(level_folder) + LoadFragment(fragment::kScreenshotsFolder);
}

bool CreateLevelFolders(std::string_view path) {
    if (!CreateFolder(path)) return false;
    for (const Fragment& name : {fragment::kNewSavegamesFolder, fragment::kNewBackupSavegamesFolder,
                                 fragment::kNewFilesFolder, fragment::kNewScreenshotsFolder})
        if (!CreateFolder(std::string(path) + LoadFragment(name))) return false;
    return true;
}

void ArchiveTouched() {
    archive.ArchiveChanged = true; // before the door, where an unchanged Archive is brought up to date
    const Change change(msg::kDoingSave, kArchiveFolder);
    if (!change || !profile.AutoSave) return;
    if (Save(profile.LastArchive) == Saving::Failed)
        TellCritical(LoadMessage(msg::kErrorSavingArchive) + profile.LastArchive);
}

void DropChanges() {
    archive.ArchiveChanged = false;
    SettleUnsaved();
}

bool AskSaveArchive() {
    if (!archive.ArchiveChanged) return true;
    if (!profile.AutoSave) {
        const Answer answer = TheUser().Ask(
            Buttons::YesNo, MessageStyle::Question,
            LoadMessageOfOthers(msg::kArchiveChangedQuestion, {FileNameOf(profile.LastArchive), kLineBreak}));
        if (answer == Answer::None) return false;
        if (answer == Answer::No) {
            DropChanges();
            return true;
        }
    }
    TouchWithAutoSave();
    return !archive.ArchiveChanged;
}

void AddLevelSize(std::int32_t index, double bytes, SizeKind kind) {
    const bool files = kind == SizeKind::Files;
    {
        const LevelEdit level = archive.Table.Edit(index);
        std::int32_t& size = files ? level->FilesSize : level->SavesSize;
        size = FieldSize(size + bytes);
    }
    if (index > 0) (files ? archive.Header.MainFolderSize : archive.Header.SecondaryFolderSize) += bytes;
    ArchiveTouched();
}

bool WriteArchive(std::string_view path) {
    return Save(path) == Saving::Done;
}

bool LoadArchive(std::string_view path) {
    const std::string source(path);
    if (!AskSaveArchive()) return false;
    ArchiveContents contents;
    ArchiveStamp stamp;
    // Level 0000 is in every Archive: a file without it has lost its contents.
    if (!ReadArchiveFile(source, contents, &stamp) || contents.Table.IsEmpty()) return false;
    static_cast<ArchiveContents&>(archive) = std::move(contents);
    profile.LastArchive = source;
    NoteSeenArchive(source, stamp);
    DropChanges();
    if (archive.Whole < archive.Stated) KeepCutArchive(source, archive);
    if (!CheckArchiveFolders()) {
        archive.ArchiveLoadRefused = true;
        return false;
    }
    for (std::int32_t i = 0; i < archive.Table.Size(); ++i)
        if (archive.Table[i].RecountSaves) RecountSaves(i);
    RefreshLevelList();
    SelectLevel(trle_state::CurrentLevelCode());
    return true;
}

bool LoadArchiveDialog() {
    archive.ArchiveLoadRefused = false;
    if (!AskSaveArchive()) return false;
    const std::optional<std::string> path = TheUser().OpenFile(
        {LoadMessage(msg::kLoadArchiveTitle), LoadMessage(msg::kLoadArchiveFilter), AppFolder(), {}});
    if (!path || !CheckPath(*path)) return false;
    if (LoadArchive(*path)) return true;
    // Who gave a missing folder up knows why.
    if (!archive.ArchiveLoadRefused) TellCritical(LoadMessage(msg::kErrorLoadingArchive) + *path);
    return false;
}

SavedAs SaveArchiveAs() {
    const Change change(msg::kDoingSaveAs, kArchiveFolder);
    if (!change) return SavedAs::Failed;
    const std::optional<std::string> path =
        TheUser().SaveFile({LoadMessage(msg::kSaveArchiveTitle), LoadMessage(msg::kSaveArchiveFilter),
                            AppFolder(), FileNameOf(profile.LastArchive)});
    if (!path) return SavedAs::GivenUp;
    if (!CheckPath(*path)) return SavedAs::Failed;
    const Saving saving = Save(*path);
    if (saving == Saving::Failed) TellCritical(LoadMessage(msg::kErrorSavingArchiveAs) + *path);
    TheUser().LevelListChanged();
    return saving == Saving::Done ? SavedAs::Saved : SavedAs::Failed;
}

bool SaveArchive() {
    const Change change(msg::kDoingSaveMenu, kArchiveFolder);
    if (!change) return false;
    const Saving saving = Save(profile.LastArchive);
    if (saving == Saving::Failed)
        TellCritical(LoadMessage(msg::kErrorSavingArchiveMenu) + profile.LastArchive);
    return saving == Saving::Done;
}

std::string ArchiveTitle() {
    return LoadMessage(msg::kArchiveTitle,
                       {std::to_string(archive.Table.Size()) + " (" + FileNameOf(profile.LastArchive)});
}

bool ArchiveIsOpen() {
    return !Trim(profile.LastArchive).empty() && !archive.Table.IsEmpty();
}

void CloseArchive() {
    static_cast<ArchiveContents&>(archive) = ArchiveState();
    DropChanges();
    RefreshLevelList();
}

} // namespace kelvash::core
