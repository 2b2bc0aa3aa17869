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

using core::LevelPlace;

void WriteAndTell(const LevelPlace& level) {
    if (!core::WriteTr4Info(level))
        TellCritical(LoadMessage(msg::kCannotWriteTr4Info) + core::Tr4InfoPath(level));
}

// Makes the tr4.inf of one level. False if its CD isn't there.
bool CreateInfo(const LevelPlace& level) {
    const std::string files = core::FilesFolder(core::ReachFolder(level));
    if (core::archive.CdMissing) return false;
    core::ListTr4(files);
    if (!core::Tr4List.empty()) {
        WriteAndTell(level);
        return true;
    }
    std::string temp;
    if (!swap::DecompressLevelFiles(files, temp, false)) {
        TellCritical(LoadMessage(msg::kCreatingDecompressError) + level.Name);
    } else if (!temp.empty()) {
        core::ListTr4(temp);
        if (!core::Tr4List.empty()) WriteAndTell(level);
    }
    if (!temp.empty()) RemoveFolder(temp);
    return true;
}

} // namespace

void CreaInfoTr4() {
    const core::Change change(msg::kDoingTr4Infos, core::kHomeFolder | core::kArchiveFolder);
    if (!change) return;
    ProgressDialog progress(BarPlace::StoppableDialog, LoadMessage(msg::kCreatingInfos));
    for (std::int32_t i = 0; i < core::archive.Table.Size(); ++i) {
        TheUser().PumpEvents();
        if (TheUser().StopRequested()) return;
        const LevelPlace level = core::PlaceAt(i);
        if (!FileExists(core::Tr4InfoPath(level)) && !CreateInfo(level)) {
            ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kCreatingCdMissing));
            return;
        }
        ProgressPercent(progress.bar, i + 1, core::archive.Table.Size());
    }
}

} // namespace kelvash::program
