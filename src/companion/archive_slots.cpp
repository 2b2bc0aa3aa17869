#include "companion/archive_slots.h"

#include <algorithm>

#include "companion/fragments.h"
#include "companion/slot_folders.h"
#include "companion/slots_messages.h"
#include "companion/slots_work.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place_file.h"
#include "foundation/text.h"

namespace kelvash::companion {

using swap::SavegameFile;

namespace {

// Each place in turn is given the lowest of those behind it. Equal numbers change their order by that, which
// is meant.
void ExchangeSort(std::vector<NumberedSave>& saves) {
    for (std::size_t i = 0; i < saves.size(); ++i)
        for (std::size_t j = i + 1; j < saves.size(); ++j)
            if (saves[i].Number > saves[j].Number) std::swap(saves[i], saves[j]);
}

// Copies the savegames, whole and on the disk, into a new folder slotN. False, with nothing left of it and
// why.
bool FillSlotFolder(const SlotsWork& work, const std::vector<NumberedSave>& saves, std::size_t count,
                    std::string& folder, MessageText& why) {
    const std::string staging = NewSlotFolder(work.Level(), why);
    if (staging.empty()) return false;
    folder = FreeSlotFolder(work.Level());
    for (std::size_t i = 0; i < count; ++i) {
        if (swap::PlacePair(saves[i].File, staging, static_cast<std::int32_t>(i), work.Level().Folder,
                            swap::Placing::Copy))
            continue;
        why = LoadMessage(msg::kArchiveCannotCopy) + saves[i].File.Path;
        RemoveCopies(staging, work.Slots());
        return false;
    }
    const bool is_there = !AnythingStands(folder) && RenameFile(staging, folder);
    // Its names must be on the disk before those of the slots go.
    if (is_there && FlushFolder(folder) && FlushFolder(FolderOf(folder))) return true;
    why = LoadMessage(msg::kArchiveCannotCreate) + folder;
    RemoveCopies(is_there ? folder : staging, work.Slots());
    return false;
}

SlotsOutcome WithoutThese(SlotsOutcome outcome, const std::vector<NumberedSave>& unreadable) {
    if (unreadable.empty()) return outcome;
    outcome.Result = SlotsResult::Partly;
    outcome.Message = LoadMessage(msg::kArchiveUnreadable);
    for (const NumberedSave& save : unreadable)
        outcome.Message = outcome.Message + kLineBreak + save.File.Path;
    return outcome;
}

} // namespace

SlotsOutcome ArchiveSlots(std::int32_t code, std::int32_t count, Asker asker) {
    const SlotsWork work(msg::kDoingArchive, code, asker);
    return work ? ArchiveWithin(work, count) : work.Refusal();
}

SlotsOutcome ArchiveWithin(const SlotsWork& work, std::int32_t count) {
    std::vector<NumberedSave> saves = NumberedSaves(work.Slots());
    if (saves.size() < 2 || count < 1) return {};
    const std::vector<NumberedSave> unreadable = TakeUnreadable(saves);
    if (saves.size() < 2)
        return {SlotsResult::Refused, 0, LoadMessage(msg::kArchiveCannotCopy) + unreadable.front().File.Path};
    ExchangeSort(saves);
    const std::size_t archived = std::min(saves.size(), static_cast<std::size_t>(count));
    const std::size_t first_kept = std::min(archived, saves.size() - 1);
    std::string folder;
    MessageText why;
    if (!FillSlotFolder(work, saves, archived, folder, why)) return {SlotsResult::Refused, 0, why};
    std::vector<Renumbering> staying;
    bool all_left = true;
    std::int32_t slot = 0;
    for (std::size_t i = 0; i < saves.size(); ++i) {
        SavegameFile& save = saves[i].File;
        // One that the game has written meanwhile is another savegame.
        const SavegameFile copy = swap::PairAt(folder, static_cast<std::int32_t>(i), !save.Note.empty());
        const bool leaves = i < first_kept && swap::IsHeldBy(save, copy);
        if (leaves && swap::LeavePair(save)) continue;
        if (!FileExists(save.Note)) save.Note.clear(); // it has left alone
        all_left = all_left && !leaves;
        slot = UsableSlot(work, slot);
        staying.push_back({save, slot++});
    }
    SlotsOutcome outcome = Renumber(work, staying);
    outcome.CompactOwed = outcome.Result == SlotsResult::Busy;
    outcome.Count = static_cast<std::int32_t>(archived);
    if (outcome.Result == SlotsResult::Done && all_left) return WithoutThese(std::move(outcome), unreadable);
    outcome.Message = LoadMessageOfOthers(msg::kArchivePartly, {folder, kLineBreak}) +
                      (outcome.Message.text.empty() ? LoadMessage(msg::kArchiveCannotLeave) + work.Slots()
                                                    : outcome.Message);
    outcome.Result = SlotsResult::Partly;
    return outcome;
}

} // namespace kelvash::companion
