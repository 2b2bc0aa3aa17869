#include "companion/slots_work.h"

#include <algorithm>
#include <set>

#include "companion/savegames.h"
#include "companion/slots_messages.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place_file.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/moved_saves.h"
#include "swap/remove.h"
#include "trle_state/file_stamp.h"
#include "trle_state/level_owner.h"
#include "trle_state/trle_state.h"

namespace kelvash::companion {

using swap::SavegameFile;
using trle_state::HoldSameBytes;

void TellOutcome(const SlotsOutcome& outcome) {
    if (!outcome.Message.text.empty()) TellCritical(outcome.Message);
}

namespace {

// A Change tells of a level that the Archive doesn't have, which the watcher must not.
std::int32_t CodeFor(std::int32_t code, Asker asker) {
    return asker == Asker::User || core::PlaceOf(code).IsListed() ? code : core::kNoLevel;
}

} // namespace

SlotsWork::SlotsWork(MessageId doing, std::int32_t code, Asker asker)
    : change_(doing, core::kAll | (asker == Asker::Watcher ? core::kUntold : 0U), CodeFor(code, asker)) {
    if (!change_) // it has been told, or is to be tried again
        Refuse(asker == Asker::Watcher ? SlotsResult::Busy : SlotsResult::Refused, {});
    else if (asker == Asker::Watcher && !Level().IsListed())
        Refuse(SlotsResult::Refused, LoadMessage(msg::kSlotsUnknownLevel));
    else if (code == core::kNoLevel)
        Refuse(SlotsResult::Nothing, {});
    else
        is_open_ = Prepare(asker);
}

bool SlotsWork::Prepare(Asker asker) {
    if (trle_state::LookAtTrle().Content == trle_state::Holds::CutShort) {
        const bool ended = asker == Asker::User && swap::EndCutShort() == swap::CutShort::Ended;
        if (!ended) {
            Refuse(asker == Asker::Watcher ? SlotsResult::Busy : SlotsResult::Refused, {});
            return false;
        }
    }
    if (!FolderExists(Level().Folder)) {
        Refuse(SlotsResult::Refused, LoadMessage(msg::kSlotsNoLevelFolder) + Level().Folder);
        return false;
    }
    MessageText why;
    const swap::Rescue rescue = asker == Asker::User ? swap::Rescue::Yes : swap::Rescue::No;
    if (!swap::BringMovedSavesHome(rescue, why)) {
        Refuse(SlotsResult::Refused, why);
        return false;
    }
    slots_ = SlotFolder(Level());
    return true;
}

std::vector<NumberedSave> NumberedSaves(std::string_view folder) {
    std::vector<NumberedSave> saves;
    for (SavegameFile& file : swap::ListSavegameFiles(folder)) {
        std::string title;
        const std::int32_t number = ReadSavegameInfo(file.Path, title);
        saves.push_back({std::move(file), number});
    }
    return saves;
}

void SortAscending(std::vector<NumberedSave>& saves) {
    std::stable_sort(saves.begin(), saves.end(),
                     [](const NumberedSave& a, const NumberedSave& b) { return a.Number < b.Number; });
}

namespace {

struct Mover {
    Renumbering* Entry;
    SavegameFile In; // in the working folder
};

// They keep their names there; two that differ by case alone get different ones.
std::vector<Mover> MoversOf(const SlotsWork& work, std::vector<Renumbering>& list) {
    std::vector<Mover> movers;
    std::set<std::string> names;
    for (Renumbering& entry : list) {
        const SavegameFile& save = entry.File;
        if (EqualNoCase(save.Path, swap::SavegamePath(work.Slots(), entry.Slot))) continue;
        std::string name = FileNameOf(save.Path);
        while (!names.insert(FoldCase(name)).second)
            name += ExtensionOf(name);
        SavegameFile in{swap::MovingFolder() + "\\" + name};
        if (!save.Note.empty()) in.Note = swap::MovingFolder() + "\\" + FileNameOf(save.Note);
        movers.push_back({&entry, std::move(in)});
    }
    return movers;
}

bool TakeIn(const Mover& mover) {
    const SavegameFile& save = mover.Entry->File;
    return PlaceFileNew(save.Path, mover.In.Path) &&
           (save.Note.empty() || PlaceFileNew(save.Note, mover.In.Note));
}

// The game may have written it since it was taken in.
bool IsAsTakenIn(const Mover& mover) {
    const SavegameFile& save = mover.Entry->File;
    return HoldSameBytes(save.Path, mover.In.Path) &&
           (save.Note.empty() || HoldSameBytes(save.Note, mover.In.Note));
}

// All of them are still in the slots.
SlotsOutcome GiveUp(const std::vector<Mover>& movers, SlotsResult result, MessageText why) {
    for (const Mover& mover : movers)
        static_cast<void>(swap::LeavePair(mover.In));
    static_cast<void>(swap::EndMoving()); // what is left is looked at by the next one
    return {result, 0, std::move(why)};
}

// Puts all into the working folder, where they are safe; the slots still have them.
SlotsOutcome TakeAllIn(const SlotsWork& work, const std::vector<Mover>& movers) {
    std::vector<std::string> files;
    for (const Mover& mover : movers) {
        files.push_back(mover.Entry->File.Path);
        if (!mover.Entry->File.Note.empty()) files.push_back(mover.Entry->File.Note);
    }
    MessageText why;
    if (!swap::BeginMoving(trle_state::OwnerOf(work.Level()), files, why))
        return {SlotsResult::Refused, 0, why};
    for (const Mover& mover : movers)
        if (!TakeIn(mover))
            return GiveUp(movers, SlotsResult::Refused,
                          LoadMessage(msg::kSlotsCannotMove) + mover.Entry->File.Path);
    for (const Mover& mover : movers)
        if (!IsAsTakenIn(mover))
            return GiveUp(movers, SlotsResult::Busy,
                          LoadMessage(msg::kSlotsChanging) + mover.Entry->File.Path);
    return {SlotsResult::Done};
}

MessageText NotInOrder() {
    return LoadMessage(msg::kSlotsNotInOrder) + swap::MovingFolder();
}

SlotsOutcome ComeBack(const std::string& stays) {
    MessageText why;
    if (swap::BringMovedSavesHome(swap::Rescue::No, why))
        return {SlotsResult::Refused, 0, LoadMessage(msg::kSlotsCannotLeave) + stays};
    return {SlotsResult::Partly, 0, NotInOrder()};
}

// The slots hold none of the movers any more. False if one could not be put into its new place.
bool PutBack(const SlotsWork& work, const std::vector<Mover>& movers) {
    bool all = true;
    for (const Mover& mover : movers) {
        const std::int32_t slot = swap::FreeNumber(work.Slots(), mover.Entry->Slot);
        const bool is_back =
            swap::PlacePair(mover.In, work.Slots(), slot, work.Level().Folder, swap::Placing::Move) &&
            swap::LeavePair(mover.In);
        all = all && is_back;
        if (!is_back) continue;
        mover.Entry->Slot = slot;
        mover.Entry->File.Path = swap::SavegamePath(work.Slots(), slot);
        if (!mover.In.Note.empty()) mover.Entry->File.Note = swap::NotePath(work.Slots(), slot);
    }
    return all;
}

} // namespace

SlotsOutcome Renumber(const SlotsWork& work, std::vector<Renumbering>& list) {
    const std::vector<Mover> movers = MoversOf(work, list);
    if (movers.empty()) return {SlotsResult::Done};
    if (SlotsOutcome in = TakeAllIn(work, movers); in.Result != SlotsResult::Done) return in;
    for (const Mover& mover : movers)
        if (!swap::LeavePair(mover.Entry->File)) return ComeBack(mover.Entry->File.Path);
    const bool all = PutBack(work, movers);
    if (all && swap::EndMoving()) return {SlotsResult::Done};
    return {SlotsResult::Partly, 0, NotInOrder()};
}

SlotsOutcome Compact(const SlotsWork& work) {
    std::vector<NumberedSave> saves = NumberedSaves(work.Slots());
    SortAscending(saves);
    std::vector<Renumbering> list;
    for (NumberedSave& save : saves)
        list.push_back({std::move(save.File), static_cast<std::int32_t>(list.size())});
    return Renumber(work, list);
}

} // namespace kelvash::companion
