#include "program/create_tr4_infos.h"

#include <string>

#include "core/archive.h"
#include "core/change.h"
#include "core/tr4_info.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "program/messages.h"
#include "swap/compression.h"

namespace kelvash::program {

namespace {

const core::LevelRecord& LevelAt(std::int32_t index) {
    return core::archive.Levels[static_cast<std::size_t>(index)];
}

void WriteAndTell(std::int32_t index) {
    if (!core::WriteTr4Info(index))
        TellCritical(LoadMessage(msg::kCannotWriteTr4Info) + core::Tr4InfoPath(LevelAt(index).Code));
}

// Makes the tr4.inf of one level. False if its CD isn't there.
bool CreateInfo(std::int32_t index) {
    const std::string files = core::FilesFolder(core::LevelFolder(LevelAt(index).Code, true));
    if (core::archive.CdMissing) return false;
    core::ListTr4(files);
    if (!core::Tr4List.empty()) {
        WriteAndTell(index);
        return true;
    }
    std::string temp;
    if (!swap::DecompressLevelFiles(files, temp, false)) {
        TellCritical(LoadMessage(msg::kCreatingDecompressError) + std::string(Trim(LevelAt(index).Name)));
    } else if (!temp.empty()) {
        core::ListTr4(temp);
        if (!core::Tr4List.empty()) WriteAndTell(index);
    }
    if (!temp.empty()) RemoveFolder(temp);
    return true;
}

} // namespace

void CreaInfoTr4() {
    const core::Change change(msg::kDoingTr4Infos, core::kHomeFolder | core::kArchiveFolder);
    if (!change) return;
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kCreatingInfos));
    for (std::int32_t i = 0; i < core::archive.Header.LevelCount; ++i) {
        TheUser().PumpEvents();
        if (TheUser().StopRequested()) return;
        if (!FileExists(core::Tr4InfoPath(LevelAt(i).Code)) && !CreateInfo(i)) {
            ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kCreatingCdMissing));
            return;
        }
        ProgressPercent(progress.bar, i + 1, core::archive.Header.LevelCount);
    }
}

} // namespace kelvash::program
