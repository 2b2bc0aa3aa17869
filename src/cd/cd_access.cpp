#include "cd/cd_access.h"

#include <string>

#include "core/archive.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::cd {

namespace {

void TakeReader(const std::string& drive) {
    core::archive.Header.MainFolder.replace(0, 2, drive);
}

bool HoldsFiles(const std::string& drive, std::int32_t code) {
    const std::string folder = core::CdLevelFolder(drive, code);
    return !folder.empty() && AnyFile(core::FilesFolder(folder), LoadMessage(MessageId::kCdTr4Mask, {}));
}

// Tells what is wrong with the chosen drive; true if the level's folder is there.
bool AcceptDrive(const std::string& drive, std::int32_t code) {
    DriveRecord record;
    std::string fault;
    if (!DriveInfo(drive, record))
        fault = LoadMessage(MessageId::kCdDriveNotPresent, {drive});
    else if (!record.ready)
        fault = LoadMessage(MessageId::kCdDriveNotReady, {drive});
    else if (core::CdLevelFolder(drive, code).empty())
        fault = LoadMessage(MessageId::kCdLevelMissing, {}) + core::LevelFolderName(code);
    if (fault.empty()) return true;
    ShowMessage(MessageStyle::Critical, fault);
    return false;
}

} // namespace

bool RequestCd(std::int32_t code) {
    const std::int32_t number = core::LevelByCode(code).CdNumber;
    if (number == 0) return true;
    const std::vector<std::string> drives = CdDrives();
    if (drives.empty()) {
        ShowMessage(MessageStyle::Critical, LoadMessage(MessageId::kNoCdReader, {}));
        return false;
    }
    for (const std::string& drive : drives)
        if (HoldsFiles(drive, code)) {
            TakeReader(drive);
            return true;
        }
    const std::string request = LoadMessage(MessageId::kInsertCd, {}) + std::to_string(number);
    for (;;) {
        const std::string chosen =
            TheUser().ShowForm({"Dialog_InsertCd",
                                LoadMessage(MessageId::kCdRequestCaption, {}) + ": " + request,
                                drives.front(),
                                {"Pul_Ok", "Pul_Cancel"}});
        if (chosen.empty()) return false;
        const std::string drive = chosen.substr(0, 2);
        if (!AcceptDrive(drive, code)) continue;
        TakeReader(drive);
        return true;
    }
}

} // namespace kelvash::cd
