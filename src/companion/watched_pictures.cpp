#include "companion/watched_pictures.h"

#include <algorithm>
#include <cstdint>
#include <deque>
#include <limits>
#include <optional>
#include <string>
#include <utility>

#include "companion/held_back_user.h"
#include "companion/messages.h"
#include "companion/watch_calls.h"
#include "companion/watched_level.h"
#include "companion/watcher.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/messages.h"
#include "foundation/state.h"
#include "foundation/user.h"
#include "trle_state/level_place.h"

namespace kelvash::companion {

namespace {

// A desktop's own tool puts its picture on the clipboard that much later than the key at most: of one press
// there is to be one picture.
constexpr double kSamePressSeconds = 2;
// Presses that wait for a job to end; each holds a whole picture.
constexpr std::size_t kMostWaiting = 4;

// Behind the game's end: until a picture that was pressed for, or that its owner has promised, is there.
constexpr int kLastLooks = 5;
constexpr double kLastLookSeconds = 0.2;

// One that isn't stored yet.
struct Waiting {
    std::string Bytes;
    std::string Shows{};      // see WatchCalls::WhatItShows; empty before it is put on the clipboard
    std::uint64_t Change = 0; // the clipboard's number while it is there
    bool IsOwn = false;       // of the game's window, not yet on the clipboard
    bool HasBeeped = false;
};

struct PictureNotes {
    std::uint64_t Seen = 0;    // the clipboard's number at the last look
    bool IsAwaited = false;    // its owner hasn't handed over what it has
    std::string BeforeTheGame; // what was on the clipboard then shows
    std::deque<Waiting> Taken;
    bool WasPressed = false;                                 // since the last picture
    double OwnAt = -std::numeric_limits<double>::infinity(); // when the last one of the window was pressed
    std::string LastShows;                                   // of the last one that was stored
    int Lost = 0;
    bool IsTheEnd = false; // nothing is asked over the game, nor typed into it, any more
};
constinit PictureNotes& notes = State<PictureNotes>::Get();

// What has come to the clipboard since isn't to go.
void ClearAt(std::uint64_t change) {
    if (watch_calls.ClipboardChange() == change) watch_calls.EmptyClipboard();
}

WorkOutcome Store(const core::LevelPlace& level, const std::string& picture) {
    const JobScope job;
    HeldBackUser user;
    WorkOutcome outcome = watch_calls.SavePicture(level, picture);
    if (outcome.End == Work::Refused) return outcome; // it comes to pass
    user.TellAfterGame();
    if (outcome.End != Work::Done && !outcome.Why.text.empty()) TellAfterGame(outcome.Why);
    return outcome;
}

// The text of the number, as somebody would type it into the game.
void TypeThirteen() {
    SendKey('1', 0);
    SendKey('3', 0);
}

WorkOutcome AskOrStore(const core::LevelPlace& level, const std::string& picture) {
    const bool asks = core::profile.PromptCapture && watch_calls.AskPictureName && !notes.IsTheEnd &&
                      level.Code != trle_state::kNoLevel; // not for that of another Archive
    if (!asks) return Store(level, picture);
    TypeThirteen();
    return {Work::Done, {}, watch_calls.AskPictureName(level, picture)};
}

// False if it is to be tried again.
bool Capture(Waiting& taken) {
    if (core::profile.VerifyImage && watch_calls.IsBlack(taken.Bytes)) return ClearAt(taken.Change), true;
    if (!std::exchange(taken.HasBeeped, true)) TheDesktop().Beep(100, 150);
    const std::optional<core::LevelPlace> level = LevelInTrle();
    const WorkOutcome stored = level ? AskOrStore(*level, taken.Bytes) : WorkOutcome{Work::Failed, {}};
    if (stored.End == Work::Refused) return false;
    if (stored.End == Work::Done) {
        notes.LastShows = taken.Shows;
        const bool is_listed = level->Code != trle_state::kNoLevel;
        if (is_listed && watch_calls.ShowPictures) watch_calls.ShowPictures(*level, stored.Path);
    } else {
        ++notes.Lost;
    }
    ClearAt(taken.Change);
    return true;
}

void Take(Waiting taken) {
    if (notes.Taken.size() < kMostWaiting)
        notes.Taken.push_back(std::move(taken));
    else
        ++notes.Lost;
}

// Takes the place of the last picture of the window that was pressed for, which shows the same.
void TakeOfPress(Waiting taken) {
    for (auto own = notes.Taken.rbegin(); own != notes.Taken.rend(); ++own) {
        if (!own->IsOwn) continue;
        *own = std::move(taken);
        return;
    }
    Take(std::move(taken));
}

// The same picture may be offered again, by a tool that keeps the clipboard's content for instance.
bool IsKnown(const std::string& shows) {
    return shows == notes.LastShows ||
           std::any_of(notes.Taken.begin(), notes.Taken.end(),
                       [&](const Waiting& taken) { return taken.Shows == shows; });
}

void TakePicture(Waiting taken, bool was_pressed) {
    taken.Shows = watch_calls.WhatItShows(taken.Bytes);
    if (was_pressed) return TakeOfPress(std::move(taken));
    if (taken.Shows == notes.BeforeTheGame) return; // the user's own, which stays
    if (IsKnown(taken.Shows) || watch_calls.Now() - notes.OwnAt < kSamePressSeconds)
        return ClearAt(taken.Change);
    Take(std::move(taken));
}

void LookAtClipboard() {
    const std::uint64_t change = watch_calls.ClipboardChange();
    if (change == std::exchange(notes.Seen, change)) return;
    std::string picture;
    const Offered offered = watch_calls.ReadClipboard(picture);
    notes.IsAwaited = offered == Offered::Slow;
    if (notes.IsAwaited) notes.Seen = 0; // no clipboard's number: the next look reads again
    if (offered == Offered::None || notes.IsAwaited) return;
    const bool was_pressed = std::exchange(notes.WasPressed, false);
    if (offered == Offered::Picture) return TakePicture({std::move(picture), {}, change}, was_pressed);
    if (!was_pressed || notes.Taken.empty()) ++notes.Lost;
    ClearAt(change);
}

void LookForTheLast() {
    for (int look = 0; (notes.WasPressed || notes.IsAwaited) && look < kLastLooks; ++look) {
        if (look != 0) watch_calls.Wait(kLastLookSeconds);
        LookAtClipboard();
        if (!notes.IsAwaited) return;
    }
    if (std::exchange(notes.IsAwaited, false) && notes.Taken.empty()) ++notes.Lost;
}

void StoreTaken() {
    while (!notes.Taken.empty()) {
        Waiting taken = std::move(notes.Taken.front());
        notes.Taken.pop_front();
        if (std::exchange(taken.IsOwn, false)) {
            notes.OwnAt = watch_calls.Now();
            notes.WasPressed = false;
            notes.IsAwaited = false; // what was on its way there is no more
            taken.Shows = watch_calls.WhatItShows(taken.Bytes);
            watch_calls.PutClipboard(taken.Bytes);
            taken.Change = notes.Seen = watch_calls.ClipboardChange();
        }
        if (Capture(taken)) continue;
        notes.Taken.push_front(std::move(taken));
        return;
    }
}

void TakePresses(WatchedKeys keys) {
    notes.Lost += keys.MissedPrints;
    for (std::string& print : keys.Prints) {
        notes.WasPressed = true;
        if (!print.empty())
            Take({.Bytes = std::move(print), .IsOwn = true});
        else if (!TheDesktop().PrintScreenCopies())
            ++notes.Lost;
    }
}

} // namespace

void ForgetPictures() {
    notes = PictureNotes();
    notes.Seen = watch_calls.ClipboardChange();
    std::string picture;
    if (notes.Seen != 0 && watch_calls.ReadClipboard(picture) == Offered::Picture)
        notes.BeforeTheGame = watch_calls.WhatItShows(picture);
}

void HeedPictures(WatchedKeys keys) {
    TakePresses(std::move(keys));
    LookAtClipboard();
    if (!watch_calls.MayChangeFiles || watch_calls.MayChangeFiles()) StoreTaken();
}

void EndPictures(WatchedKeys keys) {
    notes.IsTheEnd = true;
    TakePresses(std::move(keys));
    LookForTheLast();
    StoreTaken();
    notes.Lost += static_cast<int>(notes.Taken.size());
    notes.Taken.clear();
    notes.IsTheEnd = false;
}

void TellLostPictures() {
    if (const int lost = std::exchange(notes.Lost, 0); lost != 0)
        TellAfterGame(LoadMessage(msg::kWatchPicturesLost, {std::to_string(lost)}));
}

} // namespace kelvash::companion
