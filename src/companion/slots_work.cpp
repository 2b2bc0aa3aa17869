#include "companion/slots_work.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "companion/savegames.h"
#include "companion/slots_messages.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
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

void TellOutcome(const SlotsOutcome& outcome) {
    if (!outcome.Message.text.empty()) TellCritical(outcome.Message);
    if (!outcome.Aside.text.empty()) ShowMessage(MessageStyle::Exclamation, outcome.Aside);
}

SlotsWork::SlotsWork(MessageId doing, std::int32_t code, Asker asker)
    : change_(doing, core::kAll | (asker == Asker::Watcher ? core::kUntold | core::kSilent : 0U), code) {
    is_open_ = Enter(code, asker);
}

bool SlotsWork::Refuse(MessageText why, SlotsResult result) {
    refusal_ = {result, 0, std::move(why)};
    return false;
}

bool SlotsWork::Enter(std::int32_t code, Asker asker) {
    const bool watches = asker == Asker::Watcher;
    if (!change_ && watches)
        return Refuse(change_.Why(), change_.IsLockedOut() ? SlotsResult::Busy : SlotsResult::Refused);
    if (!change_) return Refuse({}); // it has been told
    if (!moving_.IsOutermost())
        return Refuse(watches ? MessageText() : LoadMessage(msg::kSlotsUnderWay), SlotsResult::Busy);
    return TakeLevel(code, asker) && Prepare(asker);
}

bool SlotsWork::TakeLevel(std::int32_t code, Asker asker) {
    level_ = change_.Level();
    if (code != core::kNoLevel) return true;
    if (asker == Asker::User) return Refuse({}, SlotsResult::Nothing);
    const trle_state::TrleState state = trle_state::LookAtTrle();
    level_.Name = state.Record.Owner.Name;
    level_.Folder = state.OwnerFolder;
    return !level_.Folder.empty() || Refuse(LoadMessage(msg::kSlotsNobodys));
}

bool SlotsWork::Prepare(Asker asker) {
    if (trle_state::LookAtTrle().Content == trle_state::Holds::CutShort) {
        if (asker == Asker::Watcher) return Refuse(LoadMessage(msg::kSlotsCutShort));
        if (swap::EndCutShort() != swap::CutShort::Ended) return Refuse({});
    }
    if (!FolderExists(level_.Folder)) return Refuse(LoadMessage(msg::kSlotsNoLevelFolder) + level_.Folder);
    MessageText why;
    const swap::Rescue rescue = asker == Asker::User ? swap::Rescue::Yes : swap::Rescue::No;
    if (!swap::BringMovedSavesHome(rescue, why)) return Refuse(why);
    slots_ = SlotFolder(level_);
    return !slots_.empty() || Refuse(LoadMessage(msg::kSlotsNowhere) + core::TrleFolder());
}

bool SlotsWork::IsInSlots(std::string_view path) const {
    return IsSamePlace(FolderOf(path), slots_);
}

bool SlotsWork::Has(const std::string& savegame, const trle_state::FileStamp& seen, MessageText& why) const {
    const bool is_own = IsInSlots(savegame) || LiesIn(savegame, core::SavegamesFolder(level_.Folder)) ||
                        LiesIn(savegame, swap::RepeatedFolder(level_.Folder));
    if (!is_own || !FileExists(savegame)) {
        why = LoadMessage(msg::kSlotsNotHere) + savegame;
        return false;
    }
    const trle_state::FileStamp now = trle_state::StampOf(savegame);
    const bool is_same =
        seen.Size < 0 || (now.Size == seen.Size && now.Time == seen.Time &&
                          (seen.Hash.empty() || trle_state::HashOfFile(savegame) == seen.Hash));
    if (!is_same) why = LoadMessage(msg::kSlotsAnother) + savegame;
    return is_same;
}

trle_state::FileStamp StampWithHash(const std::string& savegame) {
    trle_state::FileStamp stamp = trle_state::StampOf(savegame);
    stamp.Hash = trle_state::HashOfFile(savegame);
    return stamp;
}

namespace {

bool CanBeRead(const std::string& file) {
    return ReadFileStart(file, 1).has_value();
}

} // namespace

std::vector<NumberedSave> TakeUnreadable(std::vector<NumberedSave>& saves) {
    const auto first = std::stable_partition(
        saves.begin(), saves.end(), [](const NumberedSave& save) { return CanBeRead(save.File.Path); });
    std::vector<NumberedSave> unreadable(std::make_move_iterator(first),
                                         std::make_move_iterator(saves.end()));
    saves.erase(first, saves.end());
    return unreadable;
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

std::int32_t UsableSlot(const SlotsWork& work, std::int32_t from) {
    const auto is_blocked = [&work](std::int32_t slot) {
        const std::string path = swap::SavegamePath(work.Slots(), slot);
        return swap::IsBlocked(work.Slots(), slot) || (FileExists(path) && !CanBeRead(path));
    };
    while (is_blocked(from))
        ++from;
    return from;
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

// All of them are still in the slots.
SlotsOutcome GiveUp(const std::vector<Mover>& movers, SlotsResult result, MessageText why) {
    for (const Mover& mover : movers)
        static_cast<void>(swap::LeavePair(mover.In));
    static_cast<void>(swap::EndMoving()); // what is left is looked at by the next one
    return {result, 0, std::move(why)};
}

// Puts all into the working folder, where they are safe; the slots still have them.
SlotsOutcome TakeAllIn(const SlotsWork& work, const std::vector<Mover>& movers) {
    MessageText why;
    if (!swap::BeginMoving(trle_state::OwnerOf(work.Level()), why)) return {SlotsResult::Refused, 0, why};
    for (const Mover& mover : movers)
        if (!TakeIn(mover))
            return GiveUp(movers, SlotsResult::Refused,
                          LoadMessage(msg::kSlotsCannotMove) + mover.Entry->File.Path);
    // The names must be on the disk before others go.
    if (!FlushFolder(swap::MovingFolder()))
        return GiveUp(movers, SlotsResult::Refused,
                      LoadMessage(msg::kSlotsCannotMove) + swap::MovingFolder());
    return {SlotsResult::Done};
}

MessageText NotInOrder() {
    return LoadMessage(msg::kSlotsNotInOrder) + swap::MovingFolder();
}

SlotsOutcome ComeBack(SlotsResult result, MessageText told) {
    MessageText why;
    if (swap::BringMovedSavesHome(swap::Rescue::No, why)) return {result, 0, std::move(told)};
    return {SlotsResult::Partly, 0, NotInOrder()};
}

// Takes the movers out of the slots, each only while it is what was taken in: of one that has been written
// since, the working folder holds what the player has overwritten, and that goes.
SlotsOutcome LeaveAll(const std::vector<Mover>& movers) {
    for (const Mover& mover : movers) {
        const std::string& path = mover.Entry->File.Path;
        if (!swap::IsHeldBy(mover.Entry->File, mover.In)) { // the game has written it since
            if (FileExists(path)) static_cast<void>(swap::LeavePair(mover.In));
            return {SlotsResult::Busy, 0, LoadMessage(msg::kSlotsChanging) + path};
        }
        if (!swap::LeavePair(mover.Entry->File))
            return {SlotsResult::Refused, 0, LoadMessage(msg::kSlotsCannotLeave) + path};
    }
    return {SlotsResult::Done};
}

// The slots hold none of the movers any more. False if one could not be put into its new place.
bool PutBack(const SlotsWork& work, const std::vector<Mover>& movers) {
    std::vector<const Mover*> placed;
    for (const Mover& mover : movers) {
        const std::int32_t slot = swap::FreeNumber(work.Slots(), mover.Entry->Slot);
        if (!swap::PlacePair(mover.In, work.Slots(), slot, work.Level().Folder, swap::Placing::Move))
            continue;
        placed.push_back(&mover);
        mover.Entry->Slot = slot;
        mover.Entry->File = swap::PairAt(work.Slots(), slot, !mover.In.Note.empty());
    }
    const bool stand = FlushFolder(work.Slots());
    return std::all_of(placed.begin(), placed.end(),
                       [&](const Mover* mover) { return stand && swap::LeavePair(mover->In); }) &&
           placed.size() == movers.size();
}

} // namespace

SlotsOutcome Renumber(const SlotsWork& work, std::vector<Renumbering>& list) {
    const std::vector<Mover> movers = MoversOf(work, list);
    if (movers.empty()) return {SlotsResult::Done};
    swap::RenumberScope scope;
    if (SlotsOutcome in = TakeAllIn(work, movers); in.Result != SlotsResult::Done) return in;
    if (SlotsOutcome left = LeaveAll(movers); left.Result != SlotsResult::Done) {
        scope.End();
        return ComeBack(left.Result, left.Message);
    }
    const bool all = PutBack(work, movers);
    if (all && swap::EndMoving()) return {SlotsResult::Done};
    return {SlotsResult::Partly, 0, NotInOrder()};
}

SlotsOutcome Untouched(SlotsOutcome outcome) {
    const bool is_untouched = outcome.Result == SlotsResult::Busy || outcome.Result == SlotsResult::Refused;
    if (is_untouched && !outcome.Message.text.empty())
        outcome.Message = LoadMessage(msg::kSlotsStay) + outcome.Message.text;
    return outcome;
}

SlotsOutcome Compact(const SlotsWork& work) {
    std::vector<NumberedSave> saves = NumberedSaves(work.Slots());
    static_cast<void>(TakeUnreadable(saves)); // these stay
    SortAscending(saves);
    std::vector<Renumbering> list;
    std::int32_t slot = 0;
    for (NumberedSave& save : saves) {
        slot = UsableSlot(work, slot);
        list.push_back({std::move(save.File), slot++});
    }
    return Renumber(work, list);
}

} // namespace kelvash::companion
