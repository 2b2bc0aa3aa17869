#include "intake/new_level.h"

#include <algorithm>
#include <functional>

#include "core/archive.h"
#include "core/change.h"
#include "core/kept_folders.h"
#include "core/level_list.h"
#include "core/path_field.h"
#include "foundation/bytes.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/apply_config.h"
#include "intake/messages.h"
#include "intake/work_folder.h"
#include "zip/zip_module.h"

namespace kelvash::intake {

namespace {

bool RemoveTree(const std::string& folder) {
    if (!FolderExists(folder)) return true;
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kNewLevelRemoving));
    return RemoveFolderTree(folder, progress.bar);
}

core::LevelPlace AppendRecord(std::int32_t code) {
    core::LevelRecord level;
    level.Code = code;
    return core::PlaceAt(core::archive.Table.Append(std::move(level)));
}

// The folder of the new level, empty: an older one of its number belongs to no level of this Archive.
bool MakeLevelFolder(const std::string& folder) {
    if (!core::MakeWay(folder)) return false;
    if (core::CreateLevelFolders(folder)) return true;
    TellCritical(LoadMessage(msg::kNewLevelCannotCreate) + folder);
    return false;
}

bool CanAdd() {
    if (core::ArchiveIsOpen()) return true;
    TellCritical(LoadMessage(msg::kNewLevelNoArchive));
    return false;
}

// The level's files on disk or on their CD.
std::string FilesOf(const core::LevelPlace& level) {
    const std::string folder = core::ReachFolder(level);
    if (!core::archive.CdMissing) return core::FilesFolder(folder);
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kNewLevelCdMissing));
    return core::FilesFolder(level.Folder);
}

std::string SizeOfRecord(const core::LevelRecord& record) {
    const auto total = static_cast<std::int64_t>(record.FilesSize) + record.SavesSize;
    return LoadMessage(msg::kNewLevelSize) + FormatSize(record.FilesSize) +
           LoadMessage(msg::kNewLevelSizePlus) + FormatSize(record.SavesSize) +
           LoadMessage(msg::kNewLevelSizeEquals) + FormatSize(total);
}

void TakeFirstZip(NewLevel& level, const std::string& zip) {
    const Arrived arrived = AddFileOrZip(level, zip, level.WorkFolder, Through::Direct);
    if (arrived.How != Arrival::Whole) {
        if (arrived.How == Arrival::Failed)
            TellCritical(LoadMessage(msg::kNewLevelUnzipError) + zip + ReasonLine(arrived.Reason));
        TellStop(arrived);
        RefreshFileList(level);
        return;
    }
    level.LastZip = zip;
    level.Name = FitText(BaseNameOf(zip), core::kLineWidth); // the form shows what became of it
    TakeWhatArrived(level);
    PickMoreInfoFile(level);
}

void Begin(NewLevel& level, const core::LevelPlace& place, bool adding) {
    ConfigApplied = false;
    level = {};
    level.Level = place;
    level.Adding = adding;
    const core::LevelRecord& record = core::archive.Table[place.Index];
    level.SavedRecord = record;
    level.IsNewLevel = place.Index == core::archive.Table.Size() - 1;
    level.OnCd = record.CdNumber != 0;
    level.LevelFilesFolder = FilesOf(place);
    if (!OpenWorkFolder(level)) {
        level.State = FormState::Cancelled;
        return;
    }
    level.Snapshot = StampFiles(level.WorkFolder);
    level.FilesChanged = level.IsNewLevel;
    RefreshFileList(level);
    level.Name = Trim(record.Name);
    level.Note = Trim(record.Note);
    SelectMoreInfo(level, Trim(record.MoreInfoFile));
    level.FirstMoreInfo = MoreInfoName(level);
    level.SizeText = SizeOfRecord(record);
}

// True if closing the dialog now would lose something.
bool HasSomething(const NewLevel& level) {
    if (level.Adding)
        return !level.FileList.empty() || !Trim(level.Name).empty() || !Trim(level.Note).empty();
    const core::LevelRecord& old = level.SavedRecord;
    return Trim(level.Name) != Trim(old.Name) || Trim(level.Note) != Trim(old.Note) ||
           !EqualNoCase(MoreInfoName(level), level.FirstMoreInfo) ||
           (!level.OnCd && DiffersFromSnapshot(level));
}

// A form that nobody shows gives the level up.
void OpenForm(NewLevel& level) {
    if (level.State == FormState::Open && !ShowForm(level) && level.State == FormState::Open)
        CancelLevel(level);
}

// Makes record and folders, lets `work` fill them, and takes both away again unless the level was saved.
bool AddBy(const std::string& zip, const std::function<void(NewLevel&)>& work) {
    if (!CanAdd()) return false;
    const core::Change change(msg::kDoingAdd, core::kAll);
    if (!change) return false;
    const std::int32_t code = core::archive.Table.NextCode();
    const std::string folder = core::LevelFolder(code, false);
    if (!MakeLevelFolder(folder)) return false;
    NewLevel level;
    const core::LevelPlace place = AppendRecord(code);
    BeginNewLevel(level, place, zip);
    if (level.State == FormState::Open) work(level);
    if (level.State == FormState::Saved) {
        core::ArchiveTouched();
        core::RefreshLevelList();
        core::SelectLevel(code);
        return true;
    }
    core::archive.Table.Remove(place.Index);
    if (!RemoveTree(folder)) TellCritical(LoadMessage(msg::kNewLevelCannotRemove) + folder);
    return false;
}

// The name of a file may have characters that no record holds.
void TakeNameOf(NewLevel& level, const std::string& source) {
    const std::string name(Trim(FolderExists(source) ? FileNameOf(source) : BaseNameOf(source)));
    level.Name = FitText(name, core::kLineWidth);
    if (level.Name != name)
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessageOfOthers(msg::kNewLevelNameFitted, {name, level.Name}));
}

MessageText SummaryOf(std::size_t added, std::size_t all, const std::vector<std::string>& left_out) {
    MessageText text = LoadMessage(msg::kAddedSummary, {std::to_string(added), std::to_string(all)});
    if (left_out.empty()) return text;
    text += kLineBreak + LoadMessage(msg::kAddedSummaryNot);
    for (const std::string& source : left_out)
        text += kLineBreak + source;
    return text;
}

} // namespace

void BeginLevel(NewLevel& level, const core::LevelPlace& place) {
    Begin(level, place, false);
}

void BeginNewLevel(NewLevel& level, const core::LevelPlace& place, const std::string& zip) {
    Begin(level, place, true);
    if (level.State == FormState::Open && !zip.empty()) TakeFirstZip(level, zip);
}

void CancelLevel(NewLevel& level) {
    CloseWorkFolder(level);
    core::archive.Table.Replace(level.Level.Index, level.SavedRecord);
    level.State = FormState::Cancelled;
}

void GiveUpLevel(NewLevel& level) {
    const MessageId question = level.Adding ? msg::kGiveUpNewLevel : msg::kGiveUpChanges;
    if (!HasSomething(level) || AskYesNo(MessageStyle::Question, LoadMessage(question))) CancelLevel(level);
}

bool AddLevel(const std::string& source) {
    // A zip gives the new level its name too.
    const bool zip = EndsWithNoCase(source, ".zip") && FileExists(source);
    return AddBy(zip ? source : std::string(), [&](NewLevel& level) {
        if (!zip && !source.empty()) AddSource(level, source);
        OpenForm(level);
    });
}

bool ShowProperty() {
    const core::Change change(msg::kDoingProperties, core::kAll, core::SelectedLevel());
    if (!change) return false;
    if (!change.Level().IsListed()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kPropertyNoLevel));
        return false;
    }
    NewLevel level;
    BeginLevel(level, change.Level());
    OpenForm(level);
    core::ArchiveTouched();
    core::RefreshLevelList();
    return level.State == FormState::Saved;
}

bool AddLevelOf(const std::vector<std::string>& sources, const std::string& name) {
    if (!core::CheckText(Trim(name), core::kLineWidth)) return false;
    return AddBy({}, [&](NewLevel& level) { TakeSourcesAndStore(level, sources, name); });
}

void TakeSourcesAndStore(NewLevel& level, const std::vector<std::string>& sources, const std::string& name) {
    const bool added = std::all_of(sources.begin(), sources.end(), [&](const std::string& source) {
        return level.State == FormState::Open && AddSource(level, source);
    });
    if (level.State != FormState::Open) return;
    if (!name.empty()) level.Name = name;
    if (Trim(level.Name).empty() && !sources.empty()) TakeNameOf(level, sources.front());
    if (added) StoreLevel(level);
    if (level.State == FormState::Open) CancelLevel(level);
}

void AddLevels(const std::vector<std::string>& sources) {
    if (!CanAdd()) return;
    const core::Change change(msg::kDoingAddMany, core::kAll);
    if (!change) return;
    std::size_t added = 0;
    bool stopped = false; // a stop is meant for all that is left
    std::vector<std::string> left_out;
    for (const std::string& source : sources) {
        const bool taken = !stopped && AddBy({}, [&](NewLevel& level) {
            TakeSourcesAndStore(level, {source});
            stopped = level.Stopped;
        });
        if (taken)
            ++added;
        else
            left_out.push_back(source);
    }
    ShowMessage(MessageStyle::Plain, SummaryOf(added, sources.size(), left_out));
}

} // namespace kelvash::intake
