#include "program/play.h"

#include <optional>

#include "companion/game.h"
#include "companion/watcher.h"
#include "core/archive.h"
#include "foundation/clipboard_picture.h"
#include "foundation/messages.h"
#include "foundation/pumping.h"
#include "foundation/user.h"
#include "program/messages.h"
#include "swap/backup.h"
#include "swap/install.h"
#include "swap/record_additions.h"

namespace kelvash::program {

using swap::Swapped;

bool PlayLevel(std::int32_t code) {
    constexpr double kSecondsBeforeWatching = 2;
    companion::FinishWatch();
    std::optional<Swapped> installed;
    const bool started = swap::OnChosenFolder(msg::kDoingPlay, code, [&](const core::LevelPlace& level) {
        installed = swap::InstallHere(level);
        if (*installed != Swapped::Done || !companion::StartGame({}, false))
            return *installed == Swapped::Done ? Swapped::Failed : *installed;
        EmptyClipboard();
        swap::CompleteHashes();
        return Swapped::Done;
    });
    if (!installed) return false; // another program is at work
    if (!started) {
        if (*installed == Swapped::Done)
            TellCritical(LoadMessage(msg::kErrorLaunching));
        else
            swap::TellNotInstalled();
        return false;
    }
    // From here on the game keeps swaps out by itself.
    WaitPumping(kSecondsBeforeWatching);
    companion::game.WatcherActive = true;
    return true;
}

} // namespace kelvash::program
