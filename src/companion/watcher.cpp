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
    double BeganAt = 0;      // by the watcher's clock
    FolderLock Lock;
    std::vector<std::string> LastPrints; // of a press right before the game's end
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
bool IsTheWatcher() {
    if (notes.Lock.IsTaken()) return true;
    LockHolder holder;
    return notes.Lock.Take(core::TrleFolder(), LockKind::Watch, LoadMessage(msg::kDoingWatch), holder) !=
           LockResult::Held;
}

void NoteEnd() {
    const bool died_young = game.IsOurs && game.GameWindow == 0 &&
                            TheDesktop().Reach() == DesktopReach::Full &&
                            watch_calls.Now() - notes.BeganAt < kWindowSeconds;
    if (died_young) TellAfterGame(LoadMessage(msg::kWatchDiedYoung, {kLineBreak}));
    game = GameState();
    notes.EndPending = true;
    Call(watch_calls.CloseCover);
}

// The game's last savegames are on the disk a moment after its end.
void FinishEnd() {
    if (watch_calls.MayChangeFiles && !watch_calls.MayChangeFiles()) return;
    {
        const JobScope job;
        watch_calls.Wait(1);
        notes.EndPending = false;
        EndSaves();
        EndPictures(std::exchange(notes.LastPrints, {}));
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
    const bool acts = IsTheWatcher();
    if (acts) {
        Call(watch_calls.RunMediaEvents);
        HeedJoystick();
    }
    WatchedKeys keys = TakeKeys();
    if (GameHasEnded()) {
        if (acts) notes.LastPrints = std::move(keys.Prints);
        return NoteEnd();
    }
    if (!acts) return;
    HeedSaves(keys);
    HeedPictures(std::move(keys.Prints));
}

} // namespace

void BeginWatch() {
    ForgetKeys();
    ForgetSaves();
    ForgetPictures();
    notes.EndPending = false;
    notes.BeganAt = watch_calls.Now();
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
        if (notes.EndPending) FinishEnd();
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

void WatchUntilEnd(int interval, bool (*given_up)()) {
    const int polls = std::max(1, interval / kPollMillis);
    for (int poll = 1; !given_up(); ++poll) {
        watch_calls.Wait(kPollMillis / 1000.0);
        PollKeys();
        if (poll % polls == 0 && !Tick()) return;
    }
    TellRemembered();
}

} // namespace kelvash::companion
