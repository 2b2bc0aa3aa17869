#include "core/start_up.h"

#include <algorithm>

#include "core/archive.h"
#include "core/archive_messages.h"
#include "core/change.h"
#include "core/change_messages.h"
#include "core/fragments.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "core/start_up_messages.h"
#include "foundation/desktop.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/registration.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/backup.h"
#include "swap/kept_files.h"
#include "swap/remove.h"
#include "swap/rescued_saves.h"
#include "swap/restore.h"
#include "trle/find_trle.h"
#include "trle/trle_folder.h"

namespace kelvash::core {

constinit SessionState& session = State<SessionState>::Get();

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
    session.IsNtFamily = WindowsVersion() != 1;
    const std::string library = LoadFragment(fragment::kLibWave);
    if (session.IsNtFamily && MayRegister())
        ProvideFile(AppFolder() + library, SpecialFolder(SpecialFolderId::System) + library);
}

// False after a message for settings that can't be read.
bool TakeProfile() {
    ProfileState state{};
    if (!OpenProfile(state)) return false;
    session.UpgradeWarning = state == ProfileState::Upgraded;
    session.RunTestMovie = state != ProfileState::Current;
    if (state == ProfileState::FirstRun) RegisterArchiveType();
    if (state != ProfileState::Current) CreateProgramShortcut();
    profile.TimerTenths = std::clamp(profile.TimerTenths, 1, kMostTimerTenths);
    session.TimerInterval = profile.TimerTenths * 100;
    JoystickState joystick;
    if (profile.EnableJoystick && !TheDesktop().ReadJoystick(profile.JoystickId, joystick))
        profile.EnableJoystick = false;
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
    const std::string path(Trim(profile.LastArchive));
    if (path.empty()) return true;
    if (LoadLastArchive(path)) return true;
    // An Archive whose folders the user couldn't give is tried again at the next start.
    if (!archive.ArchiveLoadRefused) profile.LastArchive.clear();
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kLoadDifferentArchive)) || !LoadArchiveDialog())
        return false;
    archive.ArchiveLoadRefused = false;
    return true;
}

void OpenFirstArchive() {
    FirstArchiveChoice choice{LoadMessage(msg::kNewArcCaption)};
    if (!ShowForm(choice) || !choice.MakeNew)
        static_cast<void>(LoadArchiveDialog()); // its failure has been told
}

// The original configuration: its backup and level 0000.
bool SecureOriginal() {
    if (!swap::CreateBackup(false)) {
        archive.ArchiveChanged = false;
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
    static_cast<void>(swap::EndCutShort(true)); // what can't be ended is told, and waits
    const std::string trle = TrleFolder();
    if (trle.empty() || !FolderExists(trle)) return Trle::Wanting;
    if (trle::CheckTrleFolder(trle, false)) return Trle::Good;
    const Change change(msg::kDoingMendTrle, kHomeFolder | kTrleFolder);
    if (!change) return Trle::LockedOut;
    static_cast<void>(swap::EndCutShort()); // the other one may have been killed
    if (trle::CheckTrleFolder(trle, false)) return Trle::Good;
    if (swap::OfferKeptWaves() && trle::CheckTrleFolder(trle, false)) return Trle::Good;
    if (!swap::BackupIsValid() ||
        !AskYesNo(MessageStyle::Question, LoadMessage(msg::kRestoreFirst, {kLineBreak})))
        return Trle::Wanting;
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
    if (profile.LastArchive.empty()) OpenFirstArchive();
    if (profile.LastArchive.empty()) {
        if (NewArchive()) return true;
        profile.LastArchive.clear();
        CloseArchive();
    } else if (archive.ArchiveLoadRefused) {
        CloseArchive(); // it is tried again at the next start
    } else if (session.LevelZeroCreated && LevelIndex(0) >= 0) {
        CountLevelSize(LevelIndex(0));
    }
    return true;
}

void OfferFullRestore() {
    if (!session.UpgradeWarning) return;
    if (!AskYesNo(MessageStyle::Question, LoadMessage(msg::kUpgradeRestoreQuestion, {kLineBreak}))) return;
    ProgressDialog progress(BarPlace::ProgressDialog, {});
    swap::FullRestore(progress.bar, false);
}

} // namespace

void TellArchiveNotLoaded(const std::string& path) {
    TellCritical(LoadMessage(msg::kErrorLoadingLastArchive) + path);
}

bool LoadLastArchive(const std::string& path) {
    if (!FileExists(path)) {
        TellCritical(LoadMessage(msg::kLastArchiveNotFound) + path);
        return false;
    }
    if (!CheckPath(path)) return false; // one of the command line may not fit the profile
    if (LoadArchive(path)) return true;
    if (!archive.ArchiveLoadRefused) TellArchiveNotLoaded(path);
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

void StartUp(std::string_view command_line) {
    if (session.Started) return;
    session.Started = true;
    PrepareFiles();
    archive.ArchiveLoadRefused = false;
    const CommandLine wanted = ParseCommandLine(command_line);
    session.WindowAnimation = TheDesktop().WindowAnimation();
    TheDesktop().SetWindowAnimation(false);
    session.EndWanted = !TakeProfile();
    if (session.EndWanted) return;
    if (!wanted.Archive.empty()) profile.LastArchive = PathOfToken(wanted.Archive);
    archive = ArchiveState();
    if (!wanted.TrleSource.empty()) {
        // TRLE can't be installed from a folder; who asks for it is told as for a failed set-up.
        TellCritical(LoadMessage(msg::kTrleSetupFailed));
        archive.ArchiveLoadRefused = true;
        session.EndWanted = true;
        return;
    }
    session.EndWanted = !SecureTrle();
    if (session.EndWanted || !SecureOriginal()) return;
    if (!OpenArchive()) {
        CloseArchive();
        return;
    }
    RegisterAppPaths();
    swap::TellRescuedSaves();
    TellCutShortMove();
    OfferFullRestore();
}

void CloseArchive() {
    static_cast<ArchiveContents&>(archive) = ArchiveState();
    DropChanges();
    RefreshLevelList();
}

void ReturnToArchive(const std::string& former) {
    archive.ArchiveLoadRefused = false;
    if (former.empty() || LoadArchive(former)) {
        if (former.empty()) CloseArchive();
        return;
    }
    if (!archive.ArchiveLoadRefused) TellCritical(LoadMessage(msg::kErrorLoadingFormer) + former);
    CloseArchive();
}

void OpenWishedArchive(const std::string& native) {
    const std::string path = PathFromUser(native);
    if (path.empty()) {
        TellCritical(LoadMessage(msg::kWishNotOnDrive) + native);
        return;
    }
    if (ArchiveIsOpen() && EqualNoCase(path, profile.LastArchive)) {
        RefreshArchive();
        return;
    }
    archive.ArchiveLoadRefused = false;
    if (!AskSaveArchive()) return; // the open one stays; why has been told
    const std::string former = profile.LastArchive;
    if (LoadArchive(path)) return;
    if (archive.ArchiveLoadRefused)
        ReturnToArchive(former);
    else
        TellCritical(LoadMessage(msg::kWishNotLoaded) + path);
}

bool ArchiveIsOpen() {
    return !Trim(profile.LastArchive).empty() && archive.Header.LevelCount > 0;
}

std::string BackupFolder() {
    return AppFolder() + LoadFragment(fragment::kBackupFolder);
}

bool CreateLevelZero() {
    const std::string folder = LevelFolder(0, false);
    if (FolderExists(folder)) return true;
    const Change change(msg::kDoingLevelZero, kHomeFolder | kTrleFolder);
    if (!change) return false;
    if (!CreateLevelFolders(folder)) return false;
    const std::string trle = TrleFolder();
    CopyFile(trle + LoadFragment(fragment::kLevelZeroLoadBmp),
             folder + LoadFragment(fragment::kLevelZeroScreenshot));
    CopyFiles(BackupFolder(), StashFolder(folder), Existing::Replace,
              LoadFragment(fragment::kSavegameMaskZero));
    CopyFiles(trle + LoadFragment(fragment::kManualFolder), FilesFolder(folder), Existing::Replace, "*.*");
    session.LevelZeroCreated = true;
    return true;
}

} // namespace kelvash::core
