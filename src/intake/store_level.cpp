// Pul_Ok of the dialog: the checks that a level must pass, and its storing.
#include <algorithm>
#include <optional>

#include "core/archive.h"
#include "core/level_draft.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "intake/new_level.h"
#include "intake/work_folder.h"
#include "swap/compression.h"
#include "swap/level_audio.h"

namespace kelvash::intake {

namespace {

std::string Quoted(std::string_view name) {
    return '"' + std::string(name) + '"';
}

core::LevelEdit EditRecord(const NewLevel& level) {
    return core::archive.Table.Edit(level.Level.Index);
}

bool Has(const NewLevel& level, const Fragment& mask) {
    return AnyFile(level.WorkFolder, LoadFragment(mask));
}

// What the record can't hold as it is must not be stored as something else.
bool TakeName(NewLevel& level) {
    level.Name = Trim(level.Name);
    if (level.Name.empty()) {
        TellCritical(LoadMessage(msg::kNameMissing));
        return false;
    }
    if (!core::CheckText(level.Name, core::kLineWidth) ||
        !core::CheckText(Trim(level.Note), core::kLineWidth))
        return false;
    EditRecord(level)->Name = level.Name;
    return true;
}

// A name that the record holds as it is, and that no file of the folder has.
std::string StorableName(const std::string& folder, const std::string& name) {
    std::string known = Utf8FromAnsi(AnsiFromUtf8(name));
    std::replace(known.begin(), known.end(), '?', '_');
    known = Trim(known);
    const std::string base = BaseNameOf(known), end = known.substr(base.size());
    for (int n = 2; FileExists(folder + "\\" + known); ++n)
        known = base + '_' + std::to_string(n) + end;
    return known;
}

// A document that the record couldn't name would never be found again: the file gets a name that it can hold.
bool TakeDocument(NewLevel& level) {
    std::string name = MoreInfoName(level);
    if (!core::CanKeepPath(name)) {
        const std::string storable = StorableName(level.WorkFolder, name);
        if (level.OnCd || !RenameFile(level.WorkFolder + "\\" + name, level.WorkFolder + "\\" + storable))
            return core::CheckText(name, core::kPathWidth);
        ShowMessage(MessageStyle::Exclamation, LoadMessageOfOthers(msg::kDocumentRenamed, {name, storable}));
        level.MoreInfoChoices[static_cast<std::size_t>(level.MoreInfo)] = name = storable;
    }
    EditRecord(level)->MoreInfoFile = name;
    return true;
}

// An Archive that keeps no mp3 files gets the waves of the game. False after a message.
bool AudioIsReady(const NewLevel& level) {
    if (level.OnCd || core::archive.Header.EncodeWavInMp3 || !Has(level, fragment::kIntakeMp3Mask))
        return true;
    const swap::TracksOutcome outcome =
        swap::ChangeTracks(level.WorkFolder, level.WorkFolder, audio::AudioKind::TrleAudio);
    if (outcome.Result == swap::Tracks::Failed)
        TellCritical(LoadMessage(msg::kMp3NotDecoded) + outcome.Error);
    return outcome.Result == swap::Tracks::Ready;
}

bool SourcesAreConverted(const NewLevel& level) {
    if (level.OnCd || !Has(level, fragment::kIntakeTomMask)) return true;
    const MessageText question = LoadMessage(msg::kTomQuestion, {kLineBreak});
    if (TheUser().Ask(Buttons::OkCancel, MessageStyle::Question, question) == Answer::Ok)
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kTomNotConverted, {kLineBreak}));
    return false;
}

bool HasLevelFile(const NewLevel& level) {
    if (level.OnCd || level.Level.Index == 0 || Has(level, fragment::kIntakeTr4Mask) ||
        Has(level, fragment::kIntakeTr4ZlMask))
        return true;
    TellCritical(LoadMessage(msg::kMissingTr4File, {kLineBreak, kLineBreak}));
    return false;
}

bool FindStart(NewLevel& level) {
    std::string name;
    if (!level.OnCd && !ResolveStartLevel(level.WorkFolder, name)) {
        TellCritical(LoadMessage(msg::kMissingDatFile, {kLineBreak, kLineBreak}));
        return false;
    }
    if (!name.empty() &&
        AskYesNo(MessageStyle::Question, LoadMessage(msg::kStandardNoteQuestion, {name + kLineBreak})))
        level.Note = LoadMessage(msg::kStandardNote) + name;
    return true;
}

bool HasNewTr4(const NewLevel& level) {
    std::vector<FileStamp> before = level.Snapshot;
    std::vector<FileStamp> now = StampFiles(level.WorkFolder);
    const auto is_other = [](const FileStamp& stamp) {
        return !MatchesMask(stamp.Name, LoadFragment(fragment::kIntakeTr4Mask));
    };
    std::erase_if(before, is_other);
    std::erase_if(now, is_other);
    return !SameStamps(now, before);
}

// False if the user doesn't want a level that the Archive has already: a level that was being added is
// cancelled then, one that only got another level file stays open.
bool AcceptEqual(NewLevel& level) {
    if (!core::profile.CheckEqualLevels || !level.IsNewLevel || level.OnCd) return true;
    if (!level.Adding && !HasNewTr4(level)) return true;
    ShowInfo(LoadMessage(msg::kVerifyEqual));
    std::string tr4;
    const std::int32_t equal = FindSameTr4(level.WorkFolder, level.Level, tr4);
    ShowInfo({});
    if (equal < 0) return true;
    const std::string other(Trim(core::archive.Table[equal].Name));
    if (AskYesNo(MessageStyle::Question,
                 LoadMessageOfOthers(msg::kEqualQuestion, {Quoted(tr4), Quoted(other) + kLineBreak})))
        return true;
    if (level.Adding) CancelLevel(level);
    return false;
}

// True if the dialog works on the level's own files, as with one that is being added.
bool WorksInPlace(const NewLevel& level) {
    return EqualNoCase(level.WorkFolder, level.LevelFilesFolder);
}

bool CopyPlain(const NewLevel& level) {
    ShowInfo(LoadMessage(msg::kPlainCopy));
    const bool copied = core::StoreLevelFiles(level.WorkFolder, FolderOf(level.LevelFilesFolder));
    ShowInfo({});
    if (!copied) TellCritical(LoadMessage(msg::kCannotStoreFiles) + level.LevelFilesFolder);
    return copied;
}

// Stores the files as they are; `tr4` is what was listed of them before anything was packed.
bool StorePlain(const NewLevel& level, const std::vector<core::Tr4Info>& tr4) {
    if (!WorksInPlace(level) && !CopyPlain(level)) return false;
    core::Tr4List = tr4;
    // Without it the level only isn't compared with others.
    if (!tr4.empty()) static_cast<void>(core::WriteTr4Info(level.Level));
    return true;
}

bool StoreCompressed(const NewLevel& level, const std::vector<core::Tr4Info>& tr4) {
    ShowInfo(LoadMessage(msg::kCopyCompress));
    if (swap::CompressLevelFiles(level.WorkFolder, level.Level)) return true;
    TellCritical(LoadMessage(msg::kCopyCompressError));
    return StorePlain(level, tr4);
}

// The Archive is saved once, by who has opened the dialog: each saving waits for the disk.
void UpdateSize(const NewLevel& level, std::int64_t counted, std::int32_t core::LevelRecord::*field,
                double core::ArchiveHeader::*sum) {
    const std::int32_t bytes = core::FieldSize(static_cast<double>(counted));
    const core::LevelEdit record = EditRecord(level);
    if (level.Level.Index > 0) core::archive.Header.*sum += static_cast<double>(bytes) - (*record).*field;
    (*record).*field = bytes;
}

void UpdateFilesSize(const NewLevel& level) {
    UpdateSize(level, core::FilesBytes(level.Level.Folder), &core::LevelRecord::FilesSize,
               &core::ArchiveHeader::MainFolderSize);
}

// Savegames and pictures may have moved out of files that are otherwise as they were.
void UpdateSavesSize(const NewLevel& level) {
    UpdateSize(level, core::SavesBytes(level.Level.Folder), &core::LevelRecord::SavesSize,
               &core::ArchiveHeader::SecondaryFolderSize);
}

bool StoreFiles(const NewLevel& level) {
    if (!level.FilesChanged || level.OnCd) return true;
    core::ListTr4(level.WorkFolder);
    const std::vector<core::Tr4Info> tr4 = core::Tr4List;
    const core::ArchiveHeader& header = core::archive.Header;
    const bool packs = header.CompressFiles || header.EncodeWavInMp3;
    if (!(packs ? StoreCompressed(level, tr4) : StorePlain(level, tr4))) return false;
    UpdateFilesSize(level);
    return true;
}

} // namespace

void StoreLevel(NewLevel& level) {
    if (!TakeOutsideFiles(level)) return;
    if (!TakeName(level) || !AudioIsReady(level) || !SourcesAreConverted(level) || !HasLevelFile(level) ||
        !FindStart(level))
        return;
    // Level 0000 is the original configuration: nothing in it is a level's choice.
    if (level.IsNewLevel && !level.OnCd && level.Level.Index != 0 && !ChooseLanguageFile(level.WorkFolder))
        return;
    EditRecord(level)->Note = Trim(level.Note);
    if (!AcceptEqual(level)) return;
    if (!TakeDocument(level)) return;
    if (!level.OnCd) {
        DropOlderForms(level);
        if (!SortOutFiles(level)) return;
    }
    level.FilesChanged = level.FilesChanged || DiffersFromSnapshot(level);
    if (!StoreFiles(level)) return;
    if (!level.OnCd) UpdateSavesSize(level);
    CloseWorkFolder(level);
    level.State = FormState::Saved;
}

std::int32_t FindSameTr4(const std::string& folder, const core::LevelPlace& own, std::string& tr4_name) {
    core::ListTr4(folder);
    if (core::Tr4List.empty() && !core::ReadTr4Info(own)) return -1;
    const std::vector<core::Tr4Info> files = core::Tr4List;
    Bar bar{BarPlace::CallerForm, -1};
    core::EqualLevel equal;
    const bool found = core::CheckEqualLevels(files, own.Code, equal, &bar);
    TheUser().SetBar(BarPlace::CallerForm, 0);
    if (!found) return -1;
    tr4_name = Trim(equal.FileName);
    return equal.Level.Index;
}

} // namespace kelvash::intake
