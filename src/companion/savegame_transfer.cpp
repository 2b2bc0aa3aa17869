#include "companion/savegame_transfer.h"

#include <algorithm>
#include <set>

#include "companion/archive_slots.h"
#include "companion/fragments.h"
#include "companion/savegame_messages.h"
#include "companion/savegame_notes.h"
#include "companion/savegames.h"
#include "companion/slots_work.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/place_file.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/file_stamp.h"

namespace kelvash::companion {

using trle_state::HoldSameBytes;

namespace {

// True if there is room for so many; `outcome` says why not. `archived`: the slots have been for that.
bool MakeRoom(const SlotsWork& work, std::size_t coming, SlotsOutcome& outcome, bool& archived) {
    const auto fits = [&] { return coming + SlotSavegames(work.Level()).size() <= kGameSlots; };
    if (fits()) return true;
    outcome = ArchiveWithin(work, kGameSlots);
    if (outcome.Result != SlotsResult::Done && outcome.Result != SlotsResult::Nothing) return false;
    archived = outcome.Result == SlotsResult::Done;
    outcome = {};
    if (fits()) return true;
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kImportTooMany) + std::to_string(kMostToImport));
    if (archived) outcome = {SlotsResult::Partly, 0, LoadMessage(msg::kImportOnlyArchived)};
    return false;
}

SlotsOutcome NotImported(const std::string& files, std::int32_t count, bool archived) {
    MessageText why = LoadMessage(msg::kImportCannotCopy) + files;
    if (archived && count == 0) why = LoadMessage(msg::kImportOnlyArchived) + kLineBreak + why;
    return {archived || count > 0 ? SlotsResult::Partly : SlotsResult::Refused, count, why};
}

// Where files of one name go: the folder, then its sub-folders slot1, slot2, ...
class ExportPlaces {
  public:
    explicit ExportPlaces(std::string folder) : folder_(std::move(folder)) {}

    // Empty if a sub-folder can't be made.
    std::string For(const std::string& file) {
        std::string folder = folder_;
        for (int number = 1; !taken_.insert(FoldCase(folder + "\\" + FileNameOf(file))).second; ++number)
            folder = folder_ + LoadFragment(fragment::kExportSubFolder) + std::to_string(number);
        return CreateFolder(folder) ? folder + "\\" + FileNameOf(file) : std::string();
    }

  private:
    std::string folder_;
    std::set<std::string> taken_;
};

enum class Exported { Done, NotWanted, IsThere, NotCopied, NotDeleted };

// The note goes beside the copy, without replacing another one.
bool TakeOutOfLevel(const std::string& file, const std::string& target) {
    const std::string note = OwnNoteOf(file);
    if (!FlushFile(target)) return false;
    const std::string target_note = NotePathOf(target);
    const bool note_goes = note.empty() || HoldSameBytes(note, target_note) || CopyFileNew(note, target_note);
    return note_goes && FlushFolder(FolderOf(target)) && HoldSameBytes(file, target) &&
           swap::LeavePair({file, note});
}

Exported Export(const SlotsWork& work, const std::string& file, const std::string& target, Sources sources) {
    MessageText why; // its place among those that weren't exported tells enough
    if (target.empty() || !work.Has(file, {}, why)) return Exported::NotCopied;
    if (IsSamePlace(file, target)) return Exported::IsThere;
    if (FileExists(target) && !HoldSameBytes(file, target) && !AskReplaceFile(file, target))
        return Exported::NotWanted;
    if (!CopyFileWhole(file, target)) return Exported::NotCopied;
    if (sources == Sources::Delete && !TakeOutOfLevel(file, target)) return Exported::NotDeleted;
    return Exported::Done;
}

// What didn't go as it should, and the lines of the files.
struct ExportTroubles {
    std::string NotCopied;
    std::string IsThere;
    std::string NotDeleted;

    void Note(Exported exported, const std::string& file) {
        if (exported == Exported::NotCopied) NotCopied += kLineBreak + file;
        if (exported == Exported::IsThere) IsThere += kLineBreak + file;
        if (exported == Exported::NotDeleted) NotDeleted += kLineBreak + file;
    }
    MessageText Told(const std::string& folder) const {
        MessageText told;
        const auto add = [&told](const MessageText& more) {
            told = told.text.empty() ? more : told + kLineBreak + more.text;
        };
        if (!NotCopied.empty()) add(LoadMessageOfOthers(msg::kExportCannotCopy, {folder, NotCopied}));
        if (!IsThere.empty()) add(LoadMessageOfOthers(msg::kExportIsThere, {folder, IsThere}));
        if (!NotDeleted.empty()) add(LoadMessage(msg::kExportCannotDelete) + NotDeleted);
        return told;
    }
};

} // namespace

SlotsOutcome ImportSavegames(std::int32_t code, const std::vector<std::string>& files) {
    const SlotsWork work(msg::kDoingImport, code, Asker::User);
    if (!work) return work.Refusal();
    for (const std::string& file : files) // archiving would give it another name
        if (work.IsInSlots(file)) return {SlotsResult::Refused, 0, LoadMessage(msg::kImportFromSlots) + file};
    SlotsOutcome outcome;
    bool archived = false;
    if (!MakeRoom(work, files.size(), outcome, archived)) return outcome;
    if (!CreateFolder(work.Slots()))
        return {SlotsResult::Refused, 0, LoadMessage(msg::kImportNoSlots) + work.Slots()};
    std::string left;
    for (const std::string& file : files) {
        const std::int32_t slot = swap::FreeNumber(work.Slots(), 0);
        if (slot < kGameSlots &&
            swap::PlacePair({file}, work.Slots(), slot, work.Level().Folder, swap::Placing::Copy))
            ++outcome.Count;
        else
            left += kLineBreak + file;
    }
    if (!left.empty()) return NotImported(left, outcome.Count, archived);
    outcome.Result = SlotsResult::Done;
    return outcome;
}

SlotsOutcome ExportSavegames(std::int32_t code, const std::vector<std::string>& files,
                             const std::string& folder, Sources sources) {
    const SlotsWork work(msg::kDoingExportSaves, code, Asker::User);
    if (!work) return work.Refusal();
    SlotsOutcome outcome;
    ExportPlaces places(folder);
    ExportTroubles troubles;
    for (const std::string& file : files) {
        const Exported exported = Export(work, file, places.For(file), sources);
        troubles.Note(exported, file);
        if (exported == Exported::Done || exported == Exported::NotDeleted) ++outcome.Count;
    }
    outcome.Message = troubles.Told(folder);
    if (!outcome.Message.text.empty())
        outcome.Result = outcome.Count > 0 ? SlotsResult::Partly : SlotsResult::Refused;
    else if (outcome.Count > 0)
        outcome.Result = SlotsResult::Done;
    return outcome;
}

std::string ChooseSavegameToImport() {
    return TheUser()
        .OpenFile({LoadMessage(msg::kImportTitle), LoadMessage(msg::kImportFilter), {}, {}})
        .value_or(std::string());
}

std::string ChooseImportFolder() {
    return TheUser().ChooseFolder(LoadMessage(msg::kImportFolderTitle), {}).value_or(std::string());
}

std::string ChooseExportFolder() {
    return TheUser().ChooseFolder(LoadMessage(msg::kExportTitleFolder), {}).value_or(std::string());
}

std::vector<std::string> SavegamesToList(std::int32_t code, ListPurpose purpose, const std::string& folder) {
    const core::LevelPlace level = core::PlaceOf(code);
    if (!level.IsListed()) {
        TellCritical(LoadMessage(msg::kListNoLevel));
        return {};
    }
    if (purpose == ListPurpose::Import) {
        std::vector<std::string> found = ListFiles(folder, LoadFragment(fragment::kSaveSlotMask));
        if (found.empty()) ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kListNoFiles) + folder);
        return found;
    }
    std::vector<std::string> found = SlotSavegames(level);
    const std::vector<std::string> archived = ArchivedSavegames(level);
    found.insert(found.end(), archived.begin(), archived.end());
    if (found.empty()) ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kListNoneInLevel));
    return found;
}

void TellNothingChosen() {
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kListNothing));
}

} // namespace kelvash::companion
