#include "companion/restore_slots.h"

#include <algorithm>
#include <optional>

#include "companion/archive_slots.h"
#include "companion/savegame_notes.h"
#include "companion/savegames.h"
#include "companion/saves_counter.h"
#include "companion/slot_folders.h"
#include "companion/slots_messages.h"
#include "companion/slots_work.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/file_stamp.h"

namespace kelvash::companion {

using swap::SavegameFile;
using trle_state::HoldSameBytes;

namespace {

// A savegame of the slots, or one on its way there, under the name that it has meanwhile.
struct Place {
    SavegameFile File;
    std::int32_t Number = 0;
    std::string Name; // folded, for the order of equal numbers
    bool Comes = false;
    std::int32_t Slot = 0;
};

struct RestorePlan {
    std::vector<Place> Places;            // ascending in Slot
    std::vector<NumberedSave> Duplicates; // of the folder
};

bool HasNumber(const std::vector<Place>& places, std::int32_t number) {
    return std::any_of(places.begin(), places.end(),
                       [=](const Place& place) { return place.Number == number; });
}

// The name of the first place of the game that nothing has.
std::optional<std::string> FreeName(const std::vector<Place>& places) {
    for (std::int32_t i = 0; i < kGameSlots; ++i) {
        std::string name = FoldCase(FileNameOf(swap::SavegamePath({}, i)));
        if (std::none_of(places.begin(), places.end(),
                         [&](const Place& place) { return place.Name == name; }))
            return name;
    }
    return std::nullopt;
}

// The newest of the folder come first. How many is said by the free names alone: the count of free places
// only rises from one savegame to the next, and that is meant.
RestorePlan PlanRestore(std::vector<NumberedSave> slots, std::vector<NumberedSave> folder) {
    RestorePlan plan;
    for (NumberedSave& save : slots) {
        std::string name = FoldCase(FileNameOf(save.File.Path));
        plan.Places.push_back({std::move(save.File), save.Number, std::move(name)});
    }
    std::stable_sort(folder.begin(), folder.end(),
                     [](const NumberedSave& a, const NumberedSave& b) { return a.Number > b.Number; });
    for (NumberedSave& save : folder) {
        if (HasNumber(plan.Places, save.Number)) {
            plan.Duplicates.push_back(std::move(save));
            continue;
        }
        std::optional<std::string> name = FreeName(plan.Places);
        if (!name) break;
        plan.Places.push_back({std::move(save.File), save.Number, std::move(*name), true});
    }
    std::sort(plan.Places.begin(), plan.Places.end(), [](const Place& a, const Place& b) {
        return a.Number != b.Number ? a.Number < b.Number : a.Name < b.Name;
    });
    for (std::size_t i = 0; i < plan.Places.size(); ++i)
        plan.Places[i].Slot = static_cast<std::int32_t>(i);
    return plan;
}

// Makes room among those that are in the slots.
SlotsOutcome MakeRoom(const SlotsWork& work, std::vector<Place>& places) {
    std::vector<Renumbering> list;
    for (const Place& place : places)
        if (!place.Comes) list.push_back({place.File, place.Slot});
    SlotsOutcome outcome = Renumber(work, list);
    std::size_t next = 0;
    for (Place& place : places)
        if (!place.Comes) place.File = list[next++].File;
    return outcome;
}

bool Bring(const SlotsWork& work, Place& place) {
    const std::int32_t slot = swap::FreeNumber(work.Slots(), place.Slot);
    if (!swap::PlacePair(place.File, work.Slots(), slot, work.Level().Folder, swap::Placing::Move))
        return false;
    const bool left = swap::LeavePair(place.File);
    place.File = {swap::SavegamePath(work.Slots(), slot),
                  place.File.Note.empty() ? std::string() : swap::NotePath(work.Slots(), slot)};
    return left;
}

// Out of the folder: deleted where the slots have the same bytes.
bool TakeOut(const SlotsWork& work, const SavegameFile& save, std::vector<Place>& places) {
    const auto twin = std::find_if(places.begin(), places.end(), [&](const Place& place) {
        return HoldSameBytes(place.File.Path, save.Path);
    });
    if (twin == places.end()) return swap::MoveToRepeated(save, work.Level().Folder);
    if (!swap::PassNote(save.Note, twin->File, work.Level().Folder)) return false;
    if (const std::string note = swap::NotePath(work.Slots(), swap::SlotNumber(twin->File.Path));
        FileExists(note))
        twin->File.Note = note;
    return DeleteFile(save.Path);
}

SlotsOutcome Partly(std::int32_t count, const std::string& file) {
    return {SlotsResult::Partly, count, LoadMessage(msg::kRestorePartly) + file};
}

SlotsOutcome Carry(const SlotsWork& work, RestorePlan& plan) {
    SlotsOutcome outcome = MakeRoom(work, plan.Places);
    if (outcome.Result != SlotsResult::Done) return outcome;
    for (Place& place : plan.Places) {
        if (!place.Comes) continue;
        const std::string from = place.File.Path;
        if (!Bring(work, place)) return Partly(outcome.Count, from);
        ++outcome.Count;
    }
    for (const NumberedSave& save : plan.Duplicates) {
        if (!TakeOut(work, save.File, plan.Places)) return Partly(outcome.Count, save.File.Path);
        ++outcome.Count;
    }
    return outcome;
}

// False if the user doesn't want the slots freed, or it can't be done: then `outcome` says why.
bool FreeSlots(std::int32_t code, std::size_t in_slots, SlotsOutcome& outcome) {
    if (in_slots < kGameSlots) return true;
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kRestoreSlotsFull, {kLineBreak}))) return false;
    outcome = ArchiveSlots(code, kGameSlots, Asker::User);
    return outcome.Result == SlotsResult::Done;
}

} // namespace

SlotsOutcome RestoreLastSlot(std::int32_t code, Asker asker) {
    const SlotsWork work(msg::kDoingRestoreLast, code, asker);
    if (!work) return work.Refusal();
    std::vector<NumberedSave> slots = NumberedSaves(work.Slots());
    if (slots.size() >= kGameSlots) return {};
    const std::string folder = LastSlotFolder(work.Level());
    if (folder.empty()) return {};
    if (!CreateFolder(work.Slots()))
        return {SlotsResult::Refused, 0, LoadMessage(msg::kRestoreNoSlots) + work.Slots()};
    RestorePlan plan = PlanRestore(std::move(slots), NumberedSaves(folder));
    const SlotsOutcome outcome = Carry(work, plan);
    if (outcome.Count > 0 || outcome.Result == SlotsResult::Done)
        LowerSavesCounter(work.Level(), outcome.Count);
    return outcome;
}

SlotsOutcome RestoreToSlots(std::int32_t code, const std::string& path) {
    const SlotsWork work(msg::kDoingToSlots, code, Asker::User);
    if (!work) return work.Refusal();
    SlotsOutcome outcome;
    if (!FreeSlots(code, SlotSavegames(work.Level()).size(), outcome)) return outcome;
    const std::int32_t slot = swap::FreeNumber(work.Slots(), 0);
    if (slot >= kGameSlots) return {};
    const SavegameFile save{path, OwnNoteOf(path)};
    if (!CreateFolder(work.Slots()) ||
        !swap::PlacePair(save, work.Slots(), slot, work.Level().Folder, swap::Placing::Copy))
        return {SlotsResult::Refused, 0, LoadMessage(msg::kToSlotsCannotCopy) + path};
    outcome = Compact(work);
    outcome.Count = 1;
    if (outcome.Result == SlotsResult::Done) return outcome;
    outcome.Result = SlotsResult::Partly;
    outcome.Message = LoadMessage(msg::kToSlotsPartly, {kLineBreak}) + outcome.Message;
    return outcome;
}

} // namespace kelvash::companion
