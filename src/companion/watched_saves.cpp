#include "companion/watched_saves.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <system_error>
#include <utility>

#include "companion/fragments.h"
#include "companion/game.h"
#include "companion/held_back_user.h"
#include "companion/messages.h"
#include "companion/watch_calls.h"
#include "companion/watched_level.h"
#include "companion/watcher.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/drives.h"
#include "foundation/messages.h"
#include "foundation/native_text.h"
#include "foundation/state.h"
#include "foundation/text.h"

namespace kelvash::companion {

namespace fs = std::filesystem;

namespace {

constexpr int kAllSlots = 15;
constexpr double kStillSeconds = 1;

struct Save {
    std::string Name;
    std::uintmax_t Size = 0;
    fs::file_time_type Time;
    bool operator==(const Save&) const = default;
};
using Saves = std::vector<Save>;

struct SaveNotes {
    Saves Seen;
    bool HasSeen = false;
    double ChangedAt = 0; // by the watcher's clock: when a change was seen
    bool ArchiveWanted = false;
    bool RestoreWanted = false;
    bool CompactOwed = false; // a savegame was being written while the slots were put in order
    Saves NotMoved; // full slots that the automatic archive couldn't empty: it doesn't try the same again
};
constinit SaveNotes& notes = State<SaveNotes>::Get();

Saves SavesInTrle() {
    const std::string start = LoadFragment(fragment::kSaveNamePart);
    Saves saves;
    std::error_code error;
    for (fs::directory_iterator at(NativePath(core::TrleFolder()), error), end; !error && at != end;
         at.increment(error)) {
        const std::string name = TextOfNative(at->path().filename());
        std::error_code gone;
        if (!StartsWithNoCase(name, start) || !at->is_regular_file(gone)) continue;
        saves.push_back({name, at->file_size(gone), at->last_write_time(gone)});
    }
    std::sort(saves.begin(), saves.end(), [](const Save& a, const Save& b) { return a.Name < b.Name; });
    return saves;
}

// A save that is being written grows, or is just new.
void LookAtSaves() {
    Saves now = SavesInTrle();
    if (!notes.HasSeen || now != notes.Seen) notes.ChangedAt = watch_calls.Now();
    notes.HasSeen = true;
    notes.Seen = std::move(now);
}

// The watcher's own work isn't the game's.
void LookAgain() {
    notes.Seen = SavesInTrle();
}

bool SavesAreStill() {
    if (watch_calls.Now() - notes.ChangedAt < kStillSeconds) return false;
    std::vector<std::string> files;
    for (const Save& save : notes.Seen)
        files.push_back(core::TrleFolder() + '\\' + save.Name);
    return !HoldsOpen(game.GameProcess.id, files);
}

// savegame.0 to savegame.14, each once: what the game itself calls a slot.
bool IsSlot(const std::string& name) {
    const std::string_view number =
        std::string_view(name).substr(LoadFragment(fragment::kSaveNamePart).size());
    const std::optional<std::int32_t> slot = WholeNumber(number);
    return slot && *slot >= 0 && *slot < kAllSlots && number == std::to_string(*slot);
}

// Fifteen files of a savegame's name, whatever they are; and fifteen slots, whatever lies beside them.
bool SlotsAreFull() {
    return notes.Seen.size() == std::size_t{kAllSlots} ||
           std::count_if(notes.Seen.begin(), notes.Seen.end(),
                         [](const Save& save) { return IsSlot(save.Name); }) == kAllSlots;
}

using SavesWork = std::function<WorkOutcome(const core::LevelPlace&)>;

// Refused where it has to be tried again.
Work Do(const SavesWork& work) {
    const std::optional<core::LevelPlace> level = LevelInTrle();
    if (!level) {
        TellAfterGame(LoadMessage(msg::kWatchUnknownLevel));
        return Work::Failed;
    }
    const JobScope job;
    HeldBackUser user;
    const WorkOutcome outcome = work(*level);
    LookAgain();
    if (outcome.End == Work::Done || outcome.CompactOwed) notes.CompactOwed = outcome.CompactOwed;
    if (outcome.CompactOwed) notes.ChangedAt = watch_calls.Now();
    const bool is_bad = outcome.End == Work::Partly || outcome.End == Work::Failed;
    if (outcome.End == Work::Refused) return Work::Refused; // not worth a word: it comes to pass
    user.TellAfterGame();
    if (is_bad && !outcome.Why.text.empty())
        TellAfterGame(outcome.Why);
    else if (is_bad && !user.HasTold())
        TellAfterGame(LoadMessage(msg::kWatchSavesFailed));
    return outcome.End;
}

WorkOutcome ArchiveAll(const core::LevelPlace& level) {
    return watch_calls.ArchiveSlots(level, kAllSlots);
}

WorkOutcome RestoreLast(const core::LevelPlace& level) {
    return watch_calls.RestoreLastSlot(level);
}

WorkOutcome CompactAll(const core::LevelPlace& level) {
    return watch_calls.CompactSlots(level);
}

bool MayTouchSaves() {
    return (!watch_calls.MayChangeFiles || watch_calls.MayChangeFiles()) && SavesAreStill();
}

void DoWanted(bool& wanted, const SavesWork& work) {
    if (wanted && MayTouchSaves()) wanted = Do(work) == Work::Refused;
}

void ArchiveFullSlots() {
    const int count = core::profile.SavegamesToKeep;
    if (count < 1 || notes.Seen == notes.NotMoved || !MayTouchSaves()) return;
    const Work done = Do([count](const auto& level) { return watch_calls.ArchiveSlots(level, count); });
    if (done == Work::Refused) return;
    if (SlotsAreFull()) notes.NotMoved = notes.Seen;
    if (done != Work::Done) return;
    TheDesktop().Beep(300, 100);
    TheDesktop().Beep(100, 150);
}

void TakeWish(bool pressed, bool& wanted) {
    if (!pressed) return;
    TheDesktop().Beep(200, 150);
    wanted = true;
}

void TakeWishes(const WatchedKeys& keys) {
    TakeWish(keys.Archive, notes.ArchiveWanted);
    TakeWish(keys.Restore, notes.RestoreWanted);
}

// Waits till the game has written what it is writing, but not for long.
bool SavesComeToRest() {
    constexpr double kPatience = 2;
    constexpr double kLookSeconds = 0.1;
    const double end = watch_calls.Now() + kPatience;
    for (;;) {
        LookAtSaves();
        if (SavesAreStill()) return true;
        if (watch_calls.Now() >= end) return false;
        watch_calls.Wait(kLookSeconds);
    }
}

// Does what is wanted now or never.
void Finish(bool may, const MessageText& late) {
    const auto finish = [&](bool& wanted, const SavesWork& work) {
        if (std::exchange(wanted, false) && (!may || Do(work) == Work::Refused)) TellAfterGame(late);
    };
    finish(notes.ArchiveWanted, &ArchiveAll);
    finish(notes.RestoreWanted, &RestoreLast);
    if (may && std::exchange(notes.CompactOwed, false)) Do(&CompactAll); // gaps alone are no harm
}

} // namespace

void ForgetSaves() {
    notes = SaveNotes();
}

void HeedSaves(const WatchedKeys& keys) {
    LookAtSaves();
    TakeWish(keys.Archive, notes.ArchiveWanted);
    DoWanted(notes.ArchiveWanted, &ArchiveAll);
    TakeWish(keys.Restore, notes.RestoreWanted);
    DoWanted(notes.RestoreWanted, &RestoreLast);
    if (core::profile.ArchiveSavegames && SlotsAreFull()) ArchiveFullSlots();
    DoWanted(notes.CompactOwed, &CompactAll);
}

void EndSaves(const WatchedKeys& keys) {
    TakeWishes(keys);
    Finish(true, LoadMessage(msg::kWatchSavesLate));
}

void LeaveSaves(const WatchedKeys& keys) {
    TakeWishes(keys);
    const bool is_wanted = notes.ArchiveWanted || notes.RestoreWanted;
    if (is_wanted) Finish(SavesComeToRest(), LoadMessage(msg::kWatchSavesLeft, {kLineBreak}));
}

} // namespace kelvash::companion
