#include "swap/backup.h"

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::swap {

namespace {

using core::BackupFolder;

enum class Kind { Full, Compact };

// Nothing if nobody says.
std::optional<Kind> AskKind() {
    const Answer answer =
        TheUser().Ask(Buttons::YesNo, MessageStyle::Question,
                      LoadMessage(MessageId::kFullBackupQuestion, {kLineBreak, kLineBreak}));
    if (answer == Answer::None) return std::nullopt;
    return answer == Answer::Yes ? Kind::Full : Kind::Compact;
}

bool EnoughRoom(std::int64_t needed) {
    const std::string drive = AppFolder().substr(0, 2);
    if (needed == 0 || FreeSpace(AppFolder()) >= needed) return true;
    return AskYesNo(MessageStyle::Exclamation, LoadMessage(MessageId::kBackupNoRoom, {drive}) +
                                                   FormatSize(needed) + ")" + kLineBreak + kLineBreak +
                                                   LoadMessage(MessageId::kBackupTryAnyway, {}));
}

// With the main window's bar when its command asked for it; at the start that window isn't there yet.
bool CopyFull(const std::string& trle, bool at_start) {
    std::optional<ProgressDialog> progress;
    Bar bar{BarPlace::MainWindow, -1};
    if (at_start) {
        progress.emplace(BarPlace::ProgressDialog, LoadMessage(MessageId::kFullCaption, {}));
        progress->Label(LoadMessage(MessageId::kFullCopying, {trle}));
        bar.place = BarPlace::ProgressDialog;
    }
    if (!CopyTreeShown(trle, BackupFolder(), bar, Existing::Replace, FilesFolders::Copy)) return false;
    // An incomplete TRLE folder gives a backup that can't bring everything back.
    core::profile.FullBackup = AnyFile(trle + LoadMessage(MessageId::kAudioFolder, {}),
                                       LoadMessage(MessageId::kBackupWaveMask, {})) &&
                               AnyFile(trle + LoadMessage(MessageId::kScriptFolder, {}), "*.*");
    return true;
}

bool CopyCompact(const std::string& trle) {
    const std::string backup = BackupFolder();
    // The message names the Archive's folder, not the backup's. That is meant.
    if (!CreateFolder(backup)) {
        TellCritical(LoadMessage(MessageId::kCannotWriteFolder, {}) + core::archive.Header.SecondaryFolder);
        return false;
    }
    ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(MessageId::kCompactCaption, {}));
    progress.Label(LoadMessage(MessageId::kCompactFolders, {}));
    for (const std::string& folder : Split(LoadMessage(MessageId::kCompactFolderNames, {}), '|'))
        CreateFolder(backup + folder);
    progress.Label(LoadMessage(MessageId::kCompactRoot, {}));
    for (const std::string& mask : Split(LoadMessage(MessageId::kCompactRootMasks, {}), '|'))
        if (!CopyFiles(trle, backup, Existing::Replace, mask)) return false;
    const std::string data = LoadMessage(MessageId::kDataFolder, {});
    progress.Label(LoadMessage(MessageId::kCompactData, {}));
    if (!CopyTreeShown(trle + data, backup + data, progress.bar, Existing::Replace, FilesFolders::Copy))
        return false;
    const std::string graphics = LoadMessage(MessageId::kGraphicsFolder, {});
    progress.Label(LoadMessage(MessageId::kCompactGraphics, {}));
    if (!CopyTreeShown(trle + graphics, backup + graphics, progress.bar, Existing::Replace,
                       FilesFolders::Copy))
        return false;
    core::profile.FullBackup = false;
    return true;
}

// True if the old files are to go before a new backup is made; nothing if there is to be none.
std::optional<bool> AskRemoval() {
    if (!core::profile.FullBackup)
        return AskYesNo(MessageStyle::Question, LoadMessage(MessageId::kRemoveOldBackup, {}));
    if (AskYesNo(MessageStyle::Question,
                 LoadMessage(MessageId::kAlreadyFull, {kLineBreak, core::TrleFolder()})))
        return true;
    return std::nullopt;
}

} // namespace

bool BackupIsValid() {
    return AnyFile(BackupFolder(), LoadMessage(MessageId::kBackupDatMask, {})) &&
           AnyFile(BackupFolder(), LoadMessage(MessageId::kBackupBmpMask, {})) &&
           AnyFile(BackupFolder() + LoadMessage(MessageId::kDataFolder, {}),
                   LoadMessage(MessageId::kBackupTr4Mask, {}));
}

std::string AskOriginalConfiguration() {
    const std::string trle = core::TrleFolder();
    const Answer answer = TheUser().Ask(Buttons::YesNo, MessageStyle::Question,
                                        LoadMessage(MessageId::kOriginalNeeded, {}) + kLineBreak +
                                            LoadMessage(MessageId::kOriginalQuestion, {trle}) + kLineBreak +
                                            LoadMessage(MessageId::kOriginalNote, {}));
    if (answer == Answer::Yes) return trle;
    if (answer == Answer::None) return {};
    TellCritical(LoadMessage(MessageId::kOriginalTips, {kLineBreak}));
    TellCritical(LoadMessage(MessageId::kOriginalSetupAgain, {kLineBreak, kLineBreak}));
    return {};
}

bool CreateBackup(bool force_full) {
    if (!force_full && BackupIsValid()) return true;
    const std::string trle = AskOriginalConfiguration();
    if (trle.empty()) return false;
    const std::optional<Kind> kind = force_full ? Kind::Full : AskKind();
    if (!kind) return false;
    const std::int64_t needed = force_full ? 0 : *kind == Kind::Full ? kFullBackupRoom : kCompactBackupRoom;
    if (!EnoughRoom(needed)) return false;
    return *kind == Kind::Full ? CopyFull(trle, !force_full) : CopyCompact(trle);
}

void RefreshFullBackup() {
    const std::optional<bool> remove_old = AskRemoval();
    if (!remove_old) return;
    if (*remove_old) {
        TheUser().SetLabel(BarPlace::MainWindow, LoadMessage(MessageId::kRemovingOldBackup, {}));
        Bar bar{BarPlace::MainWindow, -1};
        if (!RemoveFolderTree(BackupFolder(), bar))
            TellCritical(LoadMessage(MessageId::kErrorRemovingBackup, {}) + BackupFolder());
    }
    TheUser().SetLabel(BarPlace::MainWindow, LoadMessage(MessageId::kCopyingBackup, {}));
    if (!CreateBackup(true)) {
        core::RefreshLevelList();
        TellCritical(LoadMessage(MessageId::kErrorFullBackup, {}) + BackupFolder());
    }
    core::ClearProgress();
}

} // namespace kelvash::swap
