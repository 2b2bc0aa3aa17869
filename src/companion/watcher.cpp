#include "companion/watcher.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "companion/game.h"
#include "companion/messages.h"
#include "companion/watch_calls.h"
#include "companion/watched_keys.h"
#include "companion/watched_pictures.h"
#include "companion/watched_saves.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/lock.h"
#include "foundation/messages.h"
#include "foundation/state.h"
#include "foundation/user.h"

namespace kelvash::companion {

namespace {

struct WatchNotes {
    bool InTick = false;
    bool EndPending = false; // the game has ended; what follows from it is still to come
    bool Acts = false;       // at the last look
    double BeganAt = 0;      // by the watcher's clock
    FolderLock Lock;
    std::vector<MessageText> Later;
};
constinit WatchNotes& notes = State<WatchNotes>::Get();

// While it lives no other tick begins.
class TickScope {
  public:
    TickScope() {
        notes.InTick = true;
        game.WatcherActive = false;
    }
    ~TickScope() {
        notes.InTick = false;
        game.WatcherActive = game.GameProcess.id != 0;
    }
    TickScope(const TickScope&) = delete;
    TickScope& operator=(const TickScope&) = delete;
};

void Call(const std::function<void()>& call) {
    if (call) call();
}

// Of two programs beside one game the first acts. Where there are no locks there is no other either.
bool TakeWatch(FolderLock& lock) {
    LockHolder holder;
    return lock.Take(core::TrleFolder(), LockKind::Watch, LoadMessage(msg::kDoingWatch), holder) !=
           LockResult::Held;
}

bool IsTheWatcher() {
    return notes.Lock.IsTaken() || TakeWatch(notes.Lock);
}

void NoteEnd() {
    const bool died_young = game.IsOurs && game.GameWindow == 0 &&
                            TheDesktop().Reach() == DesktopReach::Full &&
                            watch_calls.Now() - notes.BeganAt < kWindowSeconds;
    if (died_young) TellAfterGame(LoadMessage(msg::kWatchDiedYoung, {kLineBreak}));
    ForgetGame();
    notes.EndPending = true;
    Call(watch_calls.CloseCover);
}

// The game's last savegames are on the disk a moment after its end. What was pressed before it and not heeded
// yet, because the tick of it came later or another was at work, is done now.
void FinishEnd() {
    {
        const JobScope job;
        watch_calls.Wait(1);
        notes.EndPending = false;
        const WatchedKeys keys = TakeNotedKeys();
        if (notes.Acts) {
            EndSaves(keys);
            EndPictures(keys);
        }
        notes.Lock.Release();
        Call(watch_calls.ShowAfterGame);
    }
    Call(watch_calls.TakeFocus);
    TellRemembered();
}

bool GameHasEnded() {
    return WaitForProcess(game.GameProcess, 0);
}

void WatchGame() {
    notes.Acts = IsTheWatcher();
    if (notes.Acts) {
        Call(watch_calls.RunMediaEvents);
        HeedJoystick();
    }
    if (GameHasEnded()) return NoteEnd();
    WatchedKeys keys = TakeKeys();
    if (!notes.Acts) return;
    LookForGameWindow();
    HeedSaves(keys);
    HeedPictures(std::move(keys));
}

bool MayChangeFiles() {
    return !watch_calls.MayChangeFiles || watch_calls.MayChangeFiles();
}

} // namespace

void BeginWatch() {
    ForgetKeys();
    ForgetSaves();
    ForgetPictures();
    notes.EndPending = false;
    notes.Acts = IsTheWatcher();
    notes.BeganAt = watch_calls.Now();
}

bool NobodyWatches() {
    FolderLock lock;
    return !notes.InTick && !notes.EndPending && !core::TrleFolder().empty() && TakeWatch(lock);
}

bool IsWatching() {
    return game.WatcherActive || notes.InTick;
}

void PollKeys() {
    if (IsWatching() && game.GameProcess.id != 0) NoteKeys();
}

bool Tick() {
    if (notes.InTick) {
        if (game.GameProcess.id != 0 && GameHasEnded()) NoteEnd();
        return true;
    }
    if (game.WatcherActive && game.GameProcess.id == 0) {
        Call(watch_calls.CloseCover);
        game.WatcherActive = false;
    }
    if (!game.WatcherActive && !notes.EndPending) return false;
    {
        const TickScope scope;
        if (game.GameProcess.id != 0) WatchGame();
        if (notes.EndPending && MayChangeFiles()) FinishEnd();
    }
    return game.WatcherActive || notes.EndPending;
}

void TellAfterGame(const MessageText& text) {
    const auto same = [&](const MessageText& known) { return known.text == text.text; };
    if (std::none_of(notes.Later.begin(), notes.Later.end(), same)) notes.Later.push_back(text);
}

void TellRemembered() {
    TellLostPictures();
    for (const MessageText& text : std::exchange(notes.Later, {}))
        ShowMessage(MessageStyle::Exclamation, text);
}

void FinishWatch() {
    const bool has_ended = game.GameProcess.id != 0 && GameHasEnded();
    if (notes.InTick || !(has_ended || notes.EndPending)) return;
    const TickScope scope;
    if (has_ended) NoteEnd();
    FinishEnd();
}

void LeaveWatch() {
    FinishWatch();
    if (notes.InTick || game.GameProcess.id == 0 || !notes.Acts) return;
    {
        const TickScope scope;
        const JobScope job;
        const WatchedKeys keys = TakeNotedKeys();
        LeaveSaves(keys);
        EndPictures(keys);
    }
    FinishWatch(); // it may have ended meanwhile
}

void WatchUntilEnd(int interval, bool (*given_up)()) {
    const int polls = std::max(1, interval / kPollMillis);
    for (int poll = 1; !given_up(); ++poll) {
        watch_calls.Wait(kPollMillis / 1000.0);
        PollKeys();
        if (poll % polls == 0 && !Tick()) return;
    }
    LeaveWatch();
    TellRemembered();
}

} // namespace kelvash::companion
