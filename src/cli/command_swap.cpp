// Commands that put a level into TRLE or take it out.
#include <memory>

#include "cli/command.h"
#include "cli/messages.h"
#include "cli/steps.h"
#include "cli/terminal.h"
#include "companion/game.h"
#include "companion/watcher.h"
#include "core/level_list.h"
#include "core/session.h"
#include "foundation/messages.h"
#include "program/play.h"
#include "program/start_up.h"
#include "swap/backup.h"
#include "swap/backup_messages.h"
#include "swap/install.h"
#include "swap/restore.h"
#include "trle_state/trle_state.h"

namespace kelvash::cli {

namespace {

// No lock may be held around it: another TRLE folder may be chosen at the door of the backup.
bool InstallAndTell(const CliUser& user, std::int32_t code) {
    bool was_begun = false;
    const bool installed = DoneWithoutFailure(user, [&] {
        return swap::OnChosenFolder(msg::kDoingInstallCommand, code,
                                    [&](const trle_state::LevelPlace& level) {
                                        was_begun = true;
                                        return swap::InstallHere(level);
                                    });
    });
    if (!was_begun) return false; // another program is at work
    if (!installed) swap::TellNotInstalled();
    core::RefreshLevelList();
    return installed;
}

// Neither way back needs an Archive.
bool StartUpForRestore(Session& session) {
    if (!TakeHome(session, MissingHome::Refuse)) return false;
    return program::StartUp({}) && !Interrupted();
}

// A level that couldn't be taken out is no failure: its files are gone all the same.
bool RestoreAll(const CliUser& user) {
    Bar bar{BarPlace::CallerForm, -1};
    return swap::FullRestore(bar, false) && user.HasTold(msg::kRestoreDone) &&
           !user.HasTold(msg::kErrorRestoringFolder);
}

bool Install(Session& session, const std::string& typed) {
    std::int32_t code = -1;
    const bool installed =
        StartUpWithArchive(session, {}) && TakeCode(typed, code) && InstallAndTell(session.user, code);
    return EndSession(session) && installed;
}

bool Play(Session& session, const std::string& typed) {
    std::int32_t code = -1;
    const bool played = StartUpWithArchive(session, {}) && TakeCode(typed, code) &&
                        DoneWithoutFailure(session.user, [&] { return program::PlayLevel(code); });
    if (companion::game.WatcherActive)
        companion::WatchUntilEnd(core::session.TimerInterval, &Interrupted); // a signal leaves it to itself
    return EndSession(session) && played;
}

// A marker of level 0000, which no install writes, is as good as none.
bool HoldsOriginal() {
    const trle_state::TrleState state = trle_state::LookAtTrle();
    return state.Content == trle_state::Holds::Original ||
           (state.Content == trle_state::Holds::Level && state.Code == 0);
}

bool Restore(Session& session, const std::string& kind) {
    bool restored = StartUpForRestore(session);
    if (restored)
        restored =
            kind == "fast" ? DoneWithoutFailure(session.user, &swap::FastRestore) : RestoreAll(session.user);
    restored = restored && HoldsOriginal();
    return EndSession(session) && restored;
}

} // namespace

Command InstallCommand() {
    const auto code = std::make_shared<std::string>();
    return {.name = "install",
            .about = "Puts a level into the TRLE folder; 0 takes the level out",
            .arguments = {CodeArgument(*code)},
            .run = [code](Session& session) { return Install(session, *code); },
            .fields = {InstalledField()}};
}

Command PlayCommand() {
    const auto code = std::make_shared<std::string>();
    return {.name = "play",
            .about = "Installs a level, starts the game and waits for its end",
            .arguments = {CodeArgument(*code)},
            .run = [code](Session& session) { return Play(session, *code); },
            .fields = {InstalledField()}};
}

Command RestoreCommand() {
    const auto kind = std::make_shared<std::string>();
    return {.name = "restore",
            .about = "Gives the TRLE folder its original configuration back",
            .arguments = {{.name = "KIND",
                           .value = kind.get(),
                           .about = "fast: takes the level out. full: copies all original files back as well",
                           .required = true,
                           .choices = {"fast", "full"}}},
            .run = [kind](Session& session) { return Restore(session, *kind); },
            .fields = {InstalledField()}};
}

} // namespace kelvash::cli
