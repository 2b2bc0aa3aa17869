#include "companion/watched_keys.h"

#include <utility>

#include "companion/game.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/state.h"

namespace kelvash::companion {

namespace {

// In the order in which they are asked about.
constexpr std::uint32_t kF9 = 1, kF11 = 2, kPrint = 4;

// More presses than that between two ticks are those of a player who leans on the key.
constexpr std::size_t kMostPrints = 4;

struct KeyNotes {
    std::uint32_t Tapped = 0;
    std::uint32_t Held = 0; // at the last look
    std::vector<std::string> Prints;
    int MissedPrints = 0;
};
constinit KeyNotes& notes = State<KeyNotes>::Get();

void NotePrint() {
    Desktop& desktop = TheDesktop();
    const bool copies = desktop.PrintScreenCopies(); // of many presses the last is there
    if (notes.Prints.size() >= kMostPrints) {
        if (!copies) ++notes.MissedPrints;
        return;
    }
    notes.Prints.push_back(copies ? std::string() : desktop.PictureOf(ShownGameWindow()));
}

// With the only-button flag off other buttons may be held as well. A mask of 0 disables the action.
bool Matches(std::uint32_t pressed, std::int32_t configured, bool only) {
    const auto mask = static_cast<std::uint32_t>(configured);
    return mask != 0 && (only ? pressed : pressed & mask) == mask;
}

void PressPrintScreen() {
    SendKey(kKeyPrintScreen, 0);
    NotePrint();
}

// The keys that are down, if the game has the focus.
std::uint32_t Look() {
    const std::uint32_t held = TheDesktop().KeysHeld({kKeyF9, kKeyF11, kKeyPrintScreen});
    const std::uint32_t pressed = held & ~std::exchange(notes.Held, held);
    if (held == 0) return 0;
    if (FocusOfGame() == 0) return 0;
    notes.Tapped |= pressed & (kF9 | kF11);
    if ((pressed & kPrint) != 0) NotePrint();
    return held;
}

} // namespace

void ForgetKeys() {
    notes = KeyNotes();
}

void NoteKeys() {
    Look();
}

// A key that is down at the tick acts, and so does one that was tapped since the last; one that is let go
// right behind a tick has acted.
WatchedKeys TakeKeys() {
    notes.Tapped |= Look();
    return TakeNotedKeys();
}

WatchedKeys TakeNotedKeys() {
    const std::uint32_t keys = std::exchange(notes.Tapped, 0);
    return {(keys & kF9) != 0, (keys & kF11) != 0, std::exchange(notes.Prints, {}),
            std::exchange(notes.MissedPrints, 0)};
}

void HeedJoystick() {
    const core::ProfileRecord& profile = core::profile;
    JoystickState joystick;
    if (!profile.EnableJoystick || !TheDesktop().ReadJoystick(profile.JoystickId, joystick)) return;
    if (Matches(joystick.buttons, profile.JoyButtonA, profile.JoyFlagA)) PressPrintScreen();
    if (Matches(joystick.buttons, profile.JoyButtonB, profile.JoyFlagB)) EndGameProcess();
}

} // namespace kelvash::companion
