#include "program/start_up.h"

#include <algorithm>

#include "companion/settings.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "core/session.h"
#include "core/sizes.h"
#include "foundation/desktop.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/registration.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "program/first_steps.h"
#include "program/fragments.h"
#include "program/messages.h"
#include "program/registering.h"
#include "swap/backup.h"
#include "swap/kept_files.h"
#include "swap/moved_saves.h"
#include "swap/remove.h"
#include "swap/rescued_saves.h"
#include "swap/restore.h"
#include "trle/find_trle.h"
#include "trle/trle_folder.h"

namespace kelvash::program {

namespace {

constexpr int kMostTimerTenths = 10;

// Brings a file of the application's folder to where it is wanted, if it is there and not yet in place.
void ProvideFile(const std::string& source, const std::string& target) {
    if (FileExists(source) && !FileExists(target)) CopyFile(source, target);
}

void PrepareFiles() {
    const std::string spare = AppFolder() + LoadFragment(fragment::kGoPifSpare);
    const std::string pif = AppFolder() + LoadFragment(fragment::kGoPif);
    if (!FileExists(pif) && FileExists(spare)) RenameFile(spare, pif);
    core::session.IsNtFamily = WindowsVersion() != 1;
    const std::string library = LoadFragment(fragment::kLibWave);
    if (core::session.IsNtFamily && MayRegister())
        ProvideFile(AppFolder() + library, SpecialFolder(SpecialFolderId::System) + library);
}

void StopWindowAnimation() {
    core::session.WindowAnimation = TheDesktop().WindowAnimation();
    TheDesktop().SetWindowAnimation(false);
}

// Switched off where it is missing; where it stands now is its rest.
void TakeJoystick() {
    if (!core::profile.EnableJoystick) return;
    JoystickState joystick;
    core::profile.EnableJoystick = TheDesktop().ReadJoystick(core::profile.JoystickId, joystick);
    if (core::profile.EnableJoystick) companion::joystick_rest = {joystick.x, joystick.y};
}

// False after a message for settings that can't be read.
bool TakeProfile() {
    core::ProfileState state{};
    if (!core::OpenProfile(state)) return false;
    core::session.UpgradeWarning = state == core::ProfileState::Upgraded;
    core::session.RunTestMovie = state != core::ProfileState::Current;
    if (state == core::ProfileState::FirstRun) RegisterArchiveType();
    if (state != core::ProfileState::Current) CreateProgramShortcut();
    core::profile.TimerTenths = std::clamp(core::profile.TimerTenths, 1, kMostTimerTenths);
    core::session.TimerInterval = core::profile.TimerTenths * 100;
    TakeJoystick();
    return true;
}

// The desktop hands over native paths, which may be relative; one that no drive reaches stays as it is spelt.
std::string PathOfToken(const std::string& token) {
    const std::string path = PathFromUser(token);
    return path.empty() ? token : path;
}

// The last name of a path of either kind.
std::string LastNameOf(const std::string& token) {
    const std::string path = PathOfToken(token);
    return FileNameOf(path.substr(path.rfind('/') + 1));
}

// Opens the Archive of the last run. False ends the start-up; profile.LastArchive is blank if none is open
// yet.
bool OpenLastArchive() {
    const std::string path(Trim(core::profile.LastArchive));
    if (path.empty()) return true;
    if (LoadLastArchive(path)) return true;
    // An Archive whose folders the user couldn't give is tried again at the next start.
    if (!core::archive.ArchiveLoadRefused) core::profile.LastArchive.clear();
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kLoadDifferentArchive)) ||
        !core::LoadArchiveDialog())
        return false;
    core::archive.ArchiveLoadRefused = false;
    return true;
}

void OpenFirstArchive() {
    FirstArchiveChoice choice{LoadMessage(msg::kNewArcCaption)};
    if (!ShowForm(choice) || !choice.MakeNew)
        static_cast<void>(core::LoadArchiveDialog()); // its failure has been told
}

// The original configuration: its backup and level 0000.
bool SecureOriginal() {
    if (!swap::CreateBackup(false)) {
        core::archive.ArchiveChanged = false;
        return false;
    }
    if (!CreateLevelZero()) {
        TellCritical(LoadMessage(msg::kErrorCreatingLevelZero));
        return false;
    }
    return true;
}

enum class Trle { Good, Wanting, LockedOut };

// A TRLE folder that lacks files of its own is brought in order before another one is asked for. One at which
// another program is at work isn't judged a second time: what it lacks meanwhile tells nothing.
Trle MendTrle() {
    swap::LookForMovedSaves();
    static_cast<void>(swap::EndCutShort(true)); // what can't be ended is told, and waits
    const std::string trle = core::TrleFolder();
    if (trle.empty() || !FolderExists(trle)) return Trle::Wanting;
    if (trle::CheckTrleFolder(trle, false)) return Trle::Good;
    core::Change change(msg::kDoingMendTrle, core::kHomeFolder | core::kTrleFolder);
    if (!change) return Trle::LockedOut;
    static_cast<void>(swap::EndCutShort()); // the other one may have been killed
    if (trle::CheckTrleFolder(trle, false)) return Trle::Good;
    if (swap::OfferKeptWaves() && trle::CheckTrleFolder(trle, false)) return Trle::Good;
    if (!swap::BackupIsValid() ||
        !AskYesNo(MessageStyle::Question, LoadMessage(msg::kRestoreFirst, {kLineBreak})))
        return Trle::Wanting;
    change.End(); // it has a door of its own, at which another TRLE folder may be chosen
    ProgressDialog progress(BarPlace::ProgressDialog, {});
    swap::FullRestore(progress.bar, false);
    return Trle::Wanting;
}

// False after a message if the program can't run.
bool SecureTrle() {
    const Trle found = MendTrle();
    return found == Trle::Good || (found == Trle::Wanting && trle::ChooseTrleFolder());
}

// False ends the start-up. An Archive that the user didn't want to make or to find leaves none open.
bool OpenArchive() {
    if (!OpenLastArchive()) return false;
    if (core::profile.LastArchive.empty()) OpenFirstArchive();
    if (core::profile.LastArchive.empty()) {
        if (core::NewArchive()) return true;
        core::profile.LastArchive.clear();
        core::CloseArchive();
    } else if (core::archive.ArchiveLoadRefused) {
        core::CloseArchive(); // it is tried again at the next start
    } else if (core::session.LevelZeroCreated && core::PlaceOf(0).IsListed()) {
        core::CountLevelSize(core::PlaceOf(0));
    }
    return true;
}

// TRLE can't be installed from a folder; who asks for it is told as for a failed set-up.
bool RefuseSetup() {
    TellCritical(LoadMessage(msg::kTrleSetupFailed));
    core::archive.ArchiveLoadRefused = true;
    return false;
}

// What a first start that was broken off had chosen, which a kill has kept out of the profile.
void TakeChosenFolder(const std::optional<FirstSteps>& broken_off) {
    if (broken_off && core::TrleFolder().empty()) core::profile.TrleFolder = broken_off->TrleFolder;
}

// What can't be kept is asked again.
void Begin(FirstStep step, const FirstStepWatcher& watcher) {
    if (step != FirstStep::Over) KeepFirstSteps({static_cast<std::int32_t>(step) + 1, core::TrleFolder()});
    watcher(step);
}

void OfferFullRestore() {
    if (!core::session.UpgradeWarning) return;
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kUpgradeRestoreQuestion, {kLineBreak}))) return;
    ProgressDialog progress(BarPlace::ProgressDialog, {});
    swap::FullRestore(progress.bar, false);
}

} // namespace

void KeepArchiveInUse() {
    if (core::ArchiveIsOpen() && core::WriteProfile()) EndFirstSteps();
}

void TellArchiveNotLoaded(const std::string& path) {
    TellCritical(LoadMessage(msg::kErrorLoadingLastArchive) + path);
}

bool LoadLastArchive(const std::string& path) {
    if (!FileExists(path)) {
        TellCritical(LoadMessage(msg::kLastArchiveNotFound) + path);
        return false;
    }
    if (!core::CheckPath(path)) return false; // one of the command line may not fit the profile
    if (core::LoadArchive(path)) return true;
    if (!core::archive.ArchiveLoadRefused) TellArchiveNotLoaded(path);
    return false;
}

CommandLine ParseCommandLine(std::string_view text) {
    CommandLine found;
    text = Trim(text);
    for (std::size_t open; (open = text.find('"')) != std::string_view::npos;) {
        const std::size_t close = text.find('"', open + 1);
        const std::string token(text.substr(open + 1, close - open - 1));
        if (token.empty()) break;
        if (EndsWithNoCase(token, LoadFragment(fragment::kArchiveTokenExtension))) found.Archive = token;
        if (EqualNoCase(LastNameOf(token), LoadFragment(fragment::kTrleTokenName)))
            found.TrleSource = PathOfToken(token);
        if (close == std::string_view::npos) break;
        text.remove_prefix(close + 1);
    }
    return found;
}

bool StartUp(std::string_view command_line, const FirstStepWatcher& at_first_start) {
    if (core::session.Started) return true;
    core::session.Started = true;
    PrepareFiles();
    core::archive.ArchiveLoadRefused = false;
    const CommandLine wanted = ParseCommandLine(command_line);
    StopWindowAnimation();
    if (!TakeProfile()) return false;
    const std::optional<FirstSteps> broken_off = ReadFirstSteps();
    TakeChosenFolder(broken_off);
    const bool is_first = broken_off.has_value() || Trim(core::profile.LastArchive).empty();
    const auto begin = [&](FirstStep step) {
        if (at_first_start && is_first) Begin(step, at_first_start);
    };
    if (!wanted.Archive.empty()) core::profile.LastArchive = PathOfToken(wanted.Archive);
    core::archive = core::ArchiveState();
    if (!wanted.TrleSource.empty()) return RefuseSetup();
    begin(FirstStep::TrleFolder);
    if (!SecureTrle()) return false;
    begin(FirstStep::Backup);
    if (!SecureOriginal()) return true;
    begin(FirstStep::Archive);
    if (!OpenArchive()) {
        core::CloseArchive();
        return true;
    }
    if (core::ArchiveIsOpen()) {
        // With the file of an older version the question behind its upgrade would go.
        if (!core::session.UpgradeWarning) KeepArchiveInUse();
        begin(FirstStep::Over);
    }
    swap::LookForMovedSaves(); // now that the level is known that they may be of
    RegisterAppPaths();
    swap::TellRescuedSaves();
    core::TellCutShortMove();
    OfferFullRestore();
    KeepArchiveInUse();
    return true;
}

void ReturnToArchive(const std::string& former) {
    core::archive.ArchiveLoadRefused = false;
    if (former.empty() || core::LoadArchive(former)) {
        if (former.empty()) core::CloseArchive();
        return;
    }
    if (!core::archive.ArchiveLoadRefused) TellCritical(LoadMessage(msg::kErrorLoadingFormer) + former);
    core::CloseArchive();
}

void OpenWishedArchive(const std::string& native) {
    const std::string path = PathFromUser(native);
    if (path.empty()) {
        TellCritical(LoadMessage(msg::kWishNotOnDrive) + native);
        return;
    }
    if (core::ArchiveIsOpen() && EqualNoCase(path, core::profile.LastArchive)) {
        core::RefreshArchive();
        return;
    }
    core::archive.ArchiveLoadRefused = false;
    if (!core::AskSaveArchive()) return; // the open one stays; why has been told
    const std::string former = core::profile.LastArchive;
    if (core::LoadArchive(path)) {
        KeepArchiveInUse();
        return;
    }
    if (core::archive.ArchiveLoadRefused)
        ReturnToArchive(former);
    else
        TellCritical(LoadMessage(msg::kWishNotLoaded) + path);
}

bool CreateLevelZero() {
    const std::string folder = core::LevelFolder(0, false);
    if (FolderExists(folder)) return true;
    const core::Change change(msg::kDoingLevelZero, core::kHomeFolder | core::kTrleFolder);
    if (!change) return false;
    if (!core::CreateLevelFolders(folder)) return false;
    const std::string trle = core::TrleFolder();
    CopyFile(trle + LoadFragment(fragment::kLevelZeroLoadBmp),
             folder + LoadFragment(fragment::kLevelZeroScreenshot));
    CopyFiles(swap::BackupFolder(), core::StashFolder(folder), Existing::Replace,
              LoadFragment(fragment::kSavegameMaskZero));
    CopyFiles(trle + LoadFragment(fragment::kManualFolder), core::FilesFolder(folder), Existing::Replace,
              "*.*");
    core::session.LevelZeroCreated = true;
    return true;
}

} // namespace kelvash::program
