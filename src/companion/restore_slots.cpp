#include "companion/restore_slots.h"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "companion/archive_slots.h"
#include "companion/savegame_notes.h"
#include "companion/savegames.h"
#include "companion/saves_counter.h"
#include "companion/slot_folders.h"
#include "companion/slots_messages.h"
#include "companion/slots_work.h"
#include "companion/watcher.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place_file.h"
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
    bool Stays = false; // it can't be read, and keeps its name
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

// The name of the first place of the game that nothing has. Odd names take places too, by their count.
std::optional<std::string> FreeName(const SlotsWork& work, const std::vector<Place>& places) {
    std::optional<std::string> free;
    std::size_t usable = 0;
    for (std::int32_t i = 0; i < kGameSlots; ++i) {
        if (swap::IsBlocked(work.Slots(), i)) continue;
        ++usable;
        std::string name = FoldCase(FileNameOf(swap::SavegamePath({}, i)));
        const bool is_free = std::none_of(places.begin(), places.end(),
                                          [&](const Place& place) { return place.Name == name; });
        if (is_free && !free) free = std::move(name);
    }
    return places.size() < usable ? free : std::nullopt;
}

// The newest of the folder come first. How many is said by the free names alone: the count of free places
// only rises from one savegame to the next, and that is meant.
RestorePlan PlanRestore(const SlotsWork& work, std::vector<NumberedSave> slots,
                        std::vector<NumberedSave> folder) {
    RestorePlan plan;
    const auto take = [&plan](std::vector<NumberedSave>& saves, bool stays) {
        for (NumberedSave& save : saves) {
            std::string name = FoldCase(FileNameOf(save.File.Path));
            plan.Places.push_back({std::move(save.File), save.Number, std::move(name), false, stays});
        }
    };
    std::vector<NumberedSave> unreadable = TakeUnreadable(slots);
    take(slots, false);
    take(unreadable, true);
    std::stable_sort(folder.begin(), folder.end(),
                     [](const NumberedSave& a, const NumberedSave& b) { return a.Number > b.Number; });
    for (NumberedSave& save : folder) {
        if (HasNumber(plan.Places, save.Number)) {
            plan.Duplicates.push_back(std::move(save));
            continue;
        }
        std::optional<std::string> name = FreeName(work, plan.Places);
        if (!name) break;
        plan.Places.push_back({std::move(save.File), save.Number, std::move(*name), true});
    }
    std::sort(plan.Places.begin(), plan.Places.end(), [](const Place& a, const Place& b) {
        return a.Number != b.Number ? a.Number < b.Number : a.Name < b.Name;
    });
    std::int32_t slot = 0;
    for (Place& place : plan.Places) {
        if (place.Stays) continue;
        place.Slot = UsableSlot(work, slot);
        slot = place.Slot + 1;
    }
    return plan;
}

// Makes room among those that are in the slots.
SlotsOutcome MakeRoom(const SlotsWork& work, std::vector<Place>& places) {
    std::vector<Renumbering> list;
    for (const Place& place : places)
        if (!place.Comes && !place.Stays) list.push_back({place.File, place.Slot});
    SlotsOutcome outcome = Renumber(work, list);
    std::size_t next = 0;
    for (Place& place : places)
        if (!place.Comes && !place.Stays) place.File = list[next++].File;
    return outcome;
}

// A copy with bytes of its own: the game may write it in place while the archived one is still there.
bool Bring(const SlotsWork& work, Place& place) {
    const std::int32_t slot = swap::FreeNumber(work.Slots(), place.Slot);
    if (!swap::PlacePair(place.File, work.Slots(), slot, work.Level().Folder, swap::Placing::Copy))
        return false;
    place.File = swap::PairAt(work.Slots(), slot, !place.File.Note.empty());
    return true;
}

// The archived ones go once all copies are on the disk, each only if its copy is still the same. Counts them,
// and gives those that stay, a line each.
std::string BringAll(const SlotsWork& work, std::vector<Place>& places, std::int32_t& count) {
    std::vector<std::pair<SavegameFile, Place*>> brought;
    std::string left;
    for (Place& place : places) {
        if (!place.Comes) continue;
        const SavegameFile from = place.File;
        if (Bring(work, place))
            brought.emplace_back(from, &place);
        else
            left += kLineBreak + from.Path;
    }
    const bool on_disk = brought.empty() || FlushFolder(work.Slots());
    for (const auto& [from, place] : brought) {
        place->Comes = false;
        const bool is_copy = swap::IsHeldBy(from, place->File);
        if (on_disk && is_copy && swap::LeavePair(from))
            ++count;
        else
            left += kLineBreak + from.Path;
    }
    return left;
}

// Out of the folder: deleted where the slots have the same bytes.
bool TakeOut(const SlotsWork& work, const SavegameFile& save, std::vector<Place>& places) {
    const auto twin = std::find_if(places.begin(), places.end(), [&](const Place& place) {
        return !place.Comes && HoldSameBytes(place.File.Path, save.Path);
    });
    if (twin == places.end()) return swap::MoveToRepeated(save, work.Level().Folder);
    if (!swap::PassNote(save.Note, twin->File, work.Level().Folder)) return false;
    if (const std::string note = swap::NotePath(work.Slots(), swap::SlotNumber(twin->File.Path));
        FileExists(note))
        twin->File.Note = note;
    return HoldSameBytes(twin->File.Path, save.Path) && LeavePlace(save.Path);
}

// A duplicate of one that hasn't come is the only one of its number as yet.
bool IsDuplicate(const RestorePlan& plan, const NumberedSave& save) {
    return std::any_of(plan.Places.begin(), plan.Places.end(),
                       [&](const Place& place) { return !place.Comes && place.Number == save.Number; });
}

SlotsOutcome Carry(const SlotsWork& work, RestorePlan& plan) {
    SlotsOutcome outcome = Untouched(MakeRoom(work, plan.Places));
    if (outcome.Result != SlotsResult::Done) return outcome;
    const std::string not_come = BringAll(work, plan.Places, outcome.Count);
    std::string left = not_come;
    for (const NumberedSave& save : plan.Duplicates) {
        if (IsDuplicate(plan, save) && TakeOut(work, save.File, plan.Places))
            ++outcome.Count;
        else
            left += kLineBreak + save.File.Path;
    }
    if (left.empty()) return outcome;
    // Room was made for all of them.
    const SlotsOutcome order = not_come.empty() ? SlotsOutcome{SlotsResult::Done} : Compact(work);
    outcome.Result = SlotsResult::Partly;
    outcome.Message = LoadMessage(msg::kRestorePartly) + left;
    if (!order.Message.text.empty()) outcome.Message = outcome.Message + kLineBreak + order.Message.text;
    return outcome;
}

// What has come to REPEATED since it held `before`; empty for nothing.
MessageText PutAside(const SlotsWork& work, const std::vector<std::string>& before) {
    std::string list;
    for (const std::string& file : KeptSavegames(work.Level()))
        if (std::find(before.begin(), before.end(), file) == before.end()) list += kLineBreak + file;
    if (list.empty()) return {};
    return LoadMessageOfOthers(msg::kRestoreRepeated, {list + kLineBreak});
}

// False if the user doesn't want the slots freed, or it can't be done: then `outcome` says why.
bool FreeSlots(const SlotsWork& work, SlotsOutcome& outcome) {
    if (SlotSavegames(work.Level()).size() < kGameSlots) return true;
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kRestoreSlotsFull, {kLineBreak}))) return false;
    outcome = ArchiveWithin(work, kGameSlots);
    return outcome.Result == SlotsResult::Done;
}

// Nothing has been copied; the slots may have been archived all the same.
SlotsOutcome NotCopied(const SlotsOutcome& archiving, const std::string& path) {
    if (archiving.Result == SlotsResult::Done)
        return {SlotsResult::Partly, 0, LoadMessage(msg::kToSlotsOnlyArchived) + path};
    return {SlotsResult::Refused, 0, LoadMessage(msg::kToSlotsCannotCopy) + path};
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
    RestorePlan plan = PlanRestore(work, std::move(slots), NumberedSaves(folder));
    const std::vector<std::string> kept = KeptSavegames(work.Level());
    SlotsOutcome outcome = Carry(work, plan);
    MessageText aside = PutAside(work, kept);
    if (asker == Asker::User)
        outcome.Aside = std::move(aside);
    else if (!aside.text.empty())
        TellAfterGame(aside);
    if (outcome.Count > 0 || outcome.Result == SlotsResult::Done)
        LowerSavesCounter(work.Level(), outcome.Count);
    if (outcome.Result == SlotsResult::Done && outcome.Count == 0) outcome.Result = SlotsResult::Nothing;
    return outcome;
}

SlotsOutcome RestoreToSlots(std::int32_t code, const std::string& path) {
    const SlotsWork work(msg::kDoingToSlots, code, Asker::User);
    if (!work) return work.Refusal();
    // Archiving would give it another name, and its own to another one.
    if (work.IsInSlots(path)) return {SlotsResult::Refused, 0, LoadMessage(msg::kToSlotsFromSlots) + path};
    SlotsOutcome outcome;
    if (!FreeSlots(work, outcome)) return outcome;
    const std::int32_t slot = swap::FreeNumber(work.Slots(), 0);
    const SavegameFile save{path, OwnNoteOf(path)};
    if (slot >= kGameSlots || !CreateFolder(work.Slots()) ||
        !swap::PlacePair(save, work.Slots(), slot, work.Level().Folder, swap::Placing::Copy))
        return NotCopied(outcome, path);
    outcome = Compact(work);
    outcome.Count = 1;
    if (outcome.Result == SlotsResult::Done) return outcome;
    outcome.Result = SlotsResult::Partly;
    outcome.Message = LoadMessage(msg::kToSlotsPartly, {kLineBreak}) + outcome.Message;
    return outcome;
}

} // namespace kelvash::companion
