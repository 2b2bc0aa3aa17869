#include "companion/watched_pictures.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
#include <optional>
#include <utility>

#include "companion/held_back_user.h"
#include "companion/messages.h"
#include "companion/shot_capture.h"
#include "companion/watch_calls.h"
#include "companion/watcher.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/messages.h"
#include "foundation/state.h"
#include "foundation/user.h"

namespace kelvash::companion {

namespace {

// A desktop's own tool puts its picture on the clipboard that much later than the key at most: of one press
// there is to be one picture.
constexpr double kSamePressSeconds = 2;
// Presses that wait for a job to end; each holds a whole picture.
constexpr std::size_t kMostWaiting = 4;

// One that isn't stored yet.
struct Waiting {
    std::string Bytes;
    bool IsOwn = false; // of the game's window, not yet on the clipboard
    bool HasBeeped = false;
};

struct PictureNotes {
    std::uint64_t Seen = 0; // the clipboard's number at the last look
    std::deque<Waiting> Taken;
    bool WasPressed = false;                                 // since the last picture
    double OwnAt = -std::numeric_limits<double>::infinity(); // when the last one of the window was pressed
    std::size_t LastPicture = 0;                             // its hash; 0 for none
    int Lost = 0;
    bool GameHasEnded = false; // nothing is asked over the game, nor typed into it, any more
};
constinit PictureNotes& notes = State<PictureNotes>::Get();

void Clear() {
    watch_calls.EmptyClipboard();
    notes.Seen = watch_calls.ClipboardChange();
}

Work Store(const core::LevelPlace& level, const std::string& picture) {
    const JobScope job;
    HeldBackUser user;
    const WorkOutcome outcome = watch_calls.SavePicture(level, picture);
    if (outcome.End == Work::Refused) return outcome.End; // it comes to pass
    user.TellAfterGame();
    if (outcome.End != Work::Done && !outcome.Why.text.empty()) TellAfterGame(outcome.Why);
    return outcome.End;
}

// The text of the number, as somebody would type it into the game.
void TypeThirteen() {
    SendKey('1', 0);
    SendKey('3', 0);
}

// False if it is to be tried again.
bool Capture(Waiting& taken) {
    if (core::profile.VerifyImage && watch_calls.IsBlack(taken.Bytes)) return Clear(), true;
    if (!std::exchange(taken.HasBeeped, true)) TheDesktop().Beep(100, 150);
    const std::optional<core::LevelPlace> level = LevelForShots();
    const bool is_shown = level && level->Code != trle_state::kNoLevel; // not that of another Archive
    const std::size_t before = level ? watch_calls.CountPictures(*level) : 0;
    Work stored = Work::Failed;
    if (is_shown && core::profile.PromptCapture && watch_calls.AskPictureName && !notes.GameHasEnded) {
        TypeThirteen();
        watch_calls.AskPictureName(*level, taken.Bytes);
        stored = Work::Done;
    } else if (level) {
        stored = Store(*level, taken.Bytes);
    }
    if (stored == Work::Refused) return false;
    if (stored == Work::Done) {
        notes.LastPicture = std::hash<std::string>()(taken.Bytes);
        if (is_shown && watch_calls.ShowPictures) watch_calls.ShowPictures(*level, before);
    } else {
        ++notes.Lost;
    }
    Clear();
    return true;
}

void Take(Waiting taken) {
    if (notes.Taken.size() < kMostWaiting)
        notes.Taken.push_back(std::move(taken));
    else
        ++notes.Lost;
}

// Takes the place of the last picture of the window that was pressed for, which shows the same.
void TakeOfPress(std::string picture) {
    for (auto own = notes.Taken.rbegin(); own != notes.Taken.rend(); ++own) {
        if (!own->IsOwn) continue;
        *own = {std::move(picture)};
        return;
    }
    Take({std::move(picture)});
}

// The same picture may be offered again, by a tool that keeps the clipboard's content for instance.
void TakeOffered() {
    std::string picture;
    const Offered offered = watch_calls.ReadClipboard(picture);
    if (offered == Offered::None) return;
    if (offered == Offered::Slow) {
        notes.Seen = 0; // no clipboard's number: the next tick looks again
        return;
    }
    const bool was_pressed = std::exchange(notes.WasPressed, false);
    if (offered == Offered::Failed) {
        if (!was_pressed || notes.Taken.empty()) ++notes.Lost;
        return Clear();
    }
    const bool is_own_press = !was_pressed && watch_calls.Now() - notes.OwnAt < kSamePressSeconds;
    const bool is_old = !was_pressed && std::hash<std::string>()(picture) == notes.LastPicture;
    if (is_own_press || is_old) return Clear();
    if (was_pressed)
        TakeOfPress(std::move(picture));
    else
        Take({std::move(picture)});
}

void StoreTaken() {
    while (!notes.Taken.empty()) {
        Waiting taken = std::move(notes.Taken.front());
        notes.Taken.pop_front();
        if (std::exchange(taken.IsOwn, false)) {
            notes.OwnAt = watch_calls.Now();
            notes.WasPressed = false;
            watch_calls.PutClipboard(taken.Bytes);
        }
        if (Capture(taken)) continue;
        notes.Taken.push_front(std::move(taken));
        return;
    }
}

} // namespace

void ForgetPictures() {
    notes = PictureNotes();
    notes.Seen = watch_calls.ClipboardChange();
}

void HeedPictures(std::vector<std::string> prints) {
    for (std::string& print : prints) {
        notes.WasPressed = true;
        if (!print.empty())
            Take({std::move(print), true});
        else if (!TheDesktop().PrintScreenCopies())
            ++notes.Lost;
    }
    if (watch_calls.MayChangeFiles && !watch_calls.MayChangeFiles()) return;
    const std::uint64_t change = watch_calls.ClipboardChange();
    if (change != std::exchange(notes.Seen, change)) TakeOffered();
    StoreTaken();
}

void EndPictures(std::vector<std::string> prints) {
    for (std::string& print : prints)
        if (!print.empty()) Take({std::move(print), true});
    notes.GameHasEnded = true;
    StoreTaken();
    notes.Lost += static_cast<int>(notes.Taken.size());
    notes.Taken.clear();
}

void TellLostPictures() {
    if (const int lost = std::exchange(notes.Lost, 0); lost != 0)
        TellAfterGame(LoadMessage(msg::kWatchPicturesLost, {std::to_string(lost)}));
}

} // namespace kelvash::companion
