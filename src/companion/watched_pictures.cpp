#include "companion/watched_pictures.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <limits>
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

namespace kelvash::companion {

namespace {

// A desktop's own tool puts its picture on the clipboard that much later than the key at most: of one press
// there is to be one picture.
constexpr double kSamePressSeconds = 2;
// Presses that wait for a job to end; each holds a whole picture.
constexpr std::size_t kMostWaiting = 4;

struct PictureNotes {
    std::uint64_t Seen = 0;                                  // the clipboard's number at the last look
    std::deque<std::string> Taken;                           // of the game's window, not stored yet
    bool WasPressed = false;                                 // since the last picture
    double OwnAt = -std::numeric_limits<double>::infinity(); // when a picture of the window was stored last
    std::size_t LastPicture = 0;                             // its hash; 0 for none
    int Lost = 0;
};
constinit PictureNotes& notes = State<PictureNotes>::Get();

void Clear() {
    watch_calls.EmptyClipboard();
    notes.Seen = watch_calls.ClipboardChange();
}

bool Store(const core::LevelPlace& level, const std::string& picture) {
    const JobScope job;
    HeldBackUser user;
    const bool stored = watch_calls.SavePicture(level, picture);
    user.TellAfterGame();
    return stored;
}

// The text of the number, as somebody would type it into the game.
void TypeThirteen() {
    SendKey('1', 0);
    SendKey('3', 0);
}

void Capture(const std::string& picture) {
    const std::size_t hash = std::hash<std::string>()(picture);
    if (core::profile.VerifyImage && watch_calls.IsBlack(picture)) return Clear();
    TheDesktop().Beep(100, 150);
    const std::optional<core::LevelPlace> level = LevelInTrle();
    const std::size_t before = level ? watch_calls.CountPictures(*level) : 0;
    if (level && core::profile.PromptCapture && watch_calls.AskPictureName) {
        TypeThirteen();
        notes.LastPicture = hash;
        watch_calls.AskPictureName(*level, picture);
    } else if (!level || !Store(*level, picture)) {
        ++notes.Lost;
        return Clear();
    }
    notes.LastPicture = hash;
    if (watch_calls.ShowPictures) watch_calls.ShowPictures(*level, before);
    Clear();
}

// The same picture may be offered again, by a tool that keeps the clipboard's content for instance.
void TakeOffered() {
    std::string picture;
    const Offered offered = watch_calls.ReadClipboard(picture);
    if (offered == Offered::None) return;
    const bool was_pressed = std::exchange(notes.WasPressed, false);
    if (offered == Offered::Failed) {
        if (notes.Taken.empty()) ++notes.Lost;
        return Clear();
    }
    const bool is_own_press = !was_pressed && watch_calls.Now() - notes.OwnAt < kSamePressSeconds;
    const bool is_old = !was_pressed && std::hash<std::string>()(picture) == notes.LastPicture;
    if (is_own_press || is_old) return Clear();
    if (!notes.Taken.empty()) notes.Taken.pop_front(); // of the same press
    Capture(picture);
}

void TakeOwn() {
    const std::string picture = std::move(notes.Taken.front());
    notes.Taken.pop_front();
    notes.WasPressed = false;
    notes.OwnAt = watch_calls.Now();
    watch_calls.PutClipboard(picture);
    Capture(picture);
}

} // namespace

void ForgetPictures() {
    notes = PictureNotes();
    notes.Seen = watch_calls.ClipboardChange();
}

void HeedPictures(std::vector<std::string> prints) {
    for (std::string& print : prints) {
        notes.WasPressed = true;
        if (print.empty()) continue;
        if (notes.Taken.size() < kMostWaiting)
            notes.Taken.push_back(std::move(print));
        else
            ++notes.Lost;
    }
    if (watch_calls.MayChangeFiles && !watch_calls.MayChangeFiles()) return;
    const std::uint64_t change = watch_calls.ClipboardChange();
    if (change != std::exchange(notes.Seen, change)) TakeOffered();
    while (!notes.Taken.empty())
        TakeOwn();
}

void TellLostPictures() {
    if (const int lost = std::exchange(notes.Lost, 0); lost != 0)
        TellAfterGame(LoadMessage(msg::kWatchPicturesLost, {std::to_string(lost)}));
}

} // namespace kelvash::companion
