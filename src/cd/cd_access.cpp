#include "cd/cd_access.h"

#include <vector>

#include "cd/fragments.h"
#include "cd/messages.h"
#include "core/archive.h"
#include "core/ports.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash {

namespace {

void TakeReader(const std::string& drive) {
    core::archive.Header.MainFolder.replace(0, 2, drive);
}

bool HoldsFiles(const std::string& drive, std::int32_t code) {
    const std::string folder = core::CdLevelFolder(drive, code);
    return !folder.empty() && AnyFile(core::FilesFolder(folder), LoadFragment(fragment::kCdTr4Mask));
}

// What is wrong with a chosen drive; empty if the level's folder is there.
MessageText FaultOf(const std::string& drive, std::int32_t code) {
    DriveRecord record;
    if (!DriveInfo(drive, record)) return LoadMessage(msg::kCdDriveNotPresent, {drive});
    if (!record.ready) return LoadMessage(msg::kCdDriveNotReady, {drive});
    if (core::CdLevelFolder(drive, code).empty())
        return LoadMessage(msg::kCdLevelMissing) + core::LevelFolderName(code);
    return {};
}

// Has a drive chosen until it holds the level; false if the user gives up.
bool AskForDrive(const std::string& start, const core::LevelPlace& level) {
    const std::string number = std::to_string(level.CdNumber);
    for (;;) {
        cd::CdDriveChoice choice{LoadMessage(msg::kCdFolderTitle), LoadMessage(msg::kInsertCd) + number,
                                 start};
        if (!ShowForm(choice)) return false;
        const std::string drive = choice.Drive.substr(0, 2);
        const MessageText fault =
            drive.empty() ? LoadMessage(msg::kNoDriveSelected) : FaultOf(drive, level.Code);
        if (fault.text.empty()) {
            TakeReader(drive);
            return true;
        }
        TellCritical(fault);
    }
}

} // namespace

bool core::RequestCd(const LevelPlace& level) {
    if (level.CdNumber == 0) return true;
    const std::vector<std::string> drives = CdDrives();
    if (drives.empty()) {
        TellCritical(LoadMessage(msg::kNoCdReader));
        return false;
    }
    for (const std::string& drive : drives)
        if (HoldsFiles(drive, level.Code)) {
            TakeReader(drive);
            return true;
        }
    return AskForDrive(drives.front(), level);
}

} // namespace kelvash
