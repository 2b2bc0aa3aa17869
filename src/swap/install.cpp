#include "swap/install.h"

#include <algorithm>
#include <set>

#include "companion/game.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/desktop.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/waiting.h"
#include "media/media_config.h"
#include "swap/compression.h"
#include "swap/journal.h"
#include "swap/marker.h"
#include "swap/remove.h"
#include "swap/saves.h"

namespace kelvash::swap {

namespace {

void AddMatches(const std::string& files, MessageId mask, const std::string& target_folder,
                std::vector<WorkItem>& items) {
    for (const std::string& file : ListFiles(files, LoadMessage(mask, {}))) {
        const std::string name = FileNameOf(file);
        items.push_back({name, target_folder + name});
    }
}

bool IsScript(const std::string& name) {
    return EqualNoCase(name, LoadMessage(MessageId::kScriptDat, {}));
}

// TRLE's language file, where the level brings one of another name.
std::string DisplacedLanguageFile(const std::vector<WorkItem>& items, const std::string& trle) {
    std::string language;
    for (const std::string& file : ListFiles(trle, LoadMessage(MessageId::kDatMask, {})))
        if (language.empty() && !IsScript(FileNameOf(file))) language = FileNameOf(file);
    if (language.empty()) return {};
    bool brings_language = false;
    for (const WorkItem& item : items) {
        if (EqualNoCase(item.Name, language)) return {};
        brings_language =
            brings_language ||
            (EndsWithNoCase(item.Name, LoadMessage(MessageId::kDatExtension, {})) && !IsScript(item.Name));
    }
    return brings_language ? language : std::string();
}

// The folder to take a level's files from; `temp` is the decompressed copy, if one had to be made.
struct LevelFiles {
    std::string folder;
    std::string temp;
};

// False after a message.
bool PrepareFiles(std::int32_t code, LevelFiles& files) {
    files.folder = core::FilesFolder(core::LevelFolder(code, true));
    if (core::archive.CdMissing) {
        TellCritical(LoadMessage(MessageId::kCdNotAvailable, {}));
        return false;
    }
    if (!DecompressLevelFiles(files.folder, files.temp, true)) {
        TellCritical(LoadMessage(MessageId::kErrorDecompressing, {}));
        DeleteFile(MarkerPath());
        return false;
    }
    if (!files.temp.empty()) files.folder = files.temp;
    if (code == 0 || AnyFile(files.folder, LoadMessage(MessageId::kTr4Mask, {}))) return true;
    DeleteFile(MarkerPath());
    if (!files.temp.empty()) RemoveFolder(files.temp);
    if (AskYesNo(MessageStyle::Exclamation, LoadMessage(MessageId::kNoTr4Question, {kLineBreak, kLineBreak})))
        TellCritical(LoadMessage(MessageId::kCdCorrectionMissing, {}));
    return false;
}

void CopyItems(const InstallPlan& plan, const std::string& files) {
    if (!plan.Items.empty()) {
        ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(MessageId::kCopyingLevel, {}));
        double done = 0;
        for (const WorkItem& item : plan.Items) {
            ProgressPercent(progress.bar, ++done, static_cast<double>(plan.Items.size()));
            // A failed copy isn't looked at: the file counts as copied, and a removal takes it out.
            CopyFile(files + "\\" + item.Name, core::TrleFolder() + item.Target);
        }
    }
    if (!plan.LanguageFile.empty()) DeleteFile(core::TrleFolder() + "\\" + plan.LanguageFile);
}

Marker MarkerOf(std::int32_t code, const InstallPlan& plan) {
    Marker marker{code, core::LevelByCode(code).Name, plan.Overwritten, {}};
    for (const WorkItem& item : plan.Items)
        marker.Copied.push_back(item.Target);
    return marker;
}

// Brings the saves of level 0000 back. The journal stays if one of them couldn't come, or if a marker stays
// that names another level as their owner. False after a message.
bool GiveBackOriginal() {
    const std::optional<SwapJournal> journal = ReadJournal();
    if ((!journal || journal->SavesOwner != 0) && !WriteJournal({0})) return false;
    const bool all_back = BringBackLevelFiles(0);
    if (all_back && !FileExists(MarkerPath())) DeleteJournal();
    return true;
}

bool CopyLevel(std::int32_t code, const LevelFiles& files) {
    const InstallPlan plan = PlanInstall(files.folder, core::TrleFolder());
    const Marker marker = MarkerOf(code, plan);
    if (!WriteJournal({code, marker.Overwritten, marker.Copied})) return false;
    const bool all_back = BringBackLevelFiles(code);
    if (!WriteMarker(marker, false)) {
        TellCritical(LoadMessage(MessageId::kCannotWriteMarker, {}) + MarkerPath());
        return false;
    }
    CopyItems(plan, files.folder);
    const bool marked = WriteMarker(marker, true);
    // The journal has the lists if the marker lacks them, and guards a stash whose files couldn't all come
    // back.
    if (marked && all_back) DeleteJournal();
    return true;
}

} // namespace

std::vector<WorkItem> BuildWorkList(const std::string& files) {
    const std::string root = "\\";
    std::vector<WorkItem> items;
    AddMatches(files, MessageId::kDatMask, root, items);
    AddMatches(files, MessageId::kHeaderMask, root, items);
    for (const std::string& name : Split(LoadMessage(MessageId::kRootFileNames, {}), '|'))
        if (FileExists(files + "\\" + name)) items.push_back({name, root + name});
    for (const std::string& name : media::ListMediaFiles(files))
        items.push_back({name, root + name});
    const std::vector<std::string> configs = ListFiles(files, LoadMessage(MessageId::kMediaConfigMask, {}));
    if (!configs.empty()) items.push_back({FileNameOf(configs.front()), root + FileNameOf(configs.front())});
    AddMatches(files, MessageId::kTr4Mask, LoadMessage(MessageId::kDataPrefix, {}), items);
    AddMatches(files, MessageId::kPakMask, LoadMessage(MessageId::kDataPrefix, {}), items);
    AddMatches(files, MessageId::kWavMask, LoadMessage(MessageId::kAudioTarget, {}), items);
    return items;
}

InstallPlan PlanInstall(const std::string& files, const std::string& trle) {
    InstallPlan plan;
    plan.Items = BuildWorkList(files);
    std::set<std::string> copied; // a second copy of a name overwrites the first
    for (const WorkItem& item : plan.Items)
        if (!copied.insert(FoldCase(item.Target)).second || FileExists(trle + item.Target))
            plan.Overwritten.push_back(item.Target);
    plan.LanguageFile = DisplacedLanguageFile(plan.Items, trle);
    if (!plan.LanguageFile.empty()) plan.Overwritten.push_back("\\" + plan.LanguageFile);
    return plan;
}

bool InstallLevel(std::int32_t code) {
    const core::Change change(MessageId::kDoingInstall, core::kSwap, code);
    if (!change) return false;
    const std::int32_t previous = RemovePreviousLevel(code);
    if (previous == kRemovalRefused) return false;
    if (previous == code && code != 0) return true;
    // A removal that failed after its message is taken for a finished one. That is meant; but saves that it
    // left are nowhere else, and those of the next level would overwrite them.
    if (previous == 0 && !RescueSaves()) return false;
    if (previous == code) return GiveBackOriginal();
    LevelFiles files;
    if (!PrepareFiles(code, files)) return false;
    if (code == 0) DeleteFile(MarkerPath());
    const bool installed = code == 0 ? GiveBackOriginal() : CopyLevel(code, files);
    if (!files.temp.empty()) RemoveFolder(files.temp);
    return installed;
}

bool PlayLevel(std::int32_t code) {
    constexpr int kTenthsBeforeWatching = 20;
    core::Change change(MessageId::kDoingPlay, core::kSwap, code);
    if (!change) return false;
    if (!InstallLevel(code)) {
        TellCritical(LoadMessage(MessageId::kErrorInstalling, {}));
        return false;
    }
    if (!companion::StartGame({}, false)) {
        TellCritical(LoadMessage(MessageId::kErrorLaunching, {}));
        return false;
    }
    change.End(); // the game keeps swaps out by itself
    TheDesktop().ClearClipboard();
    for (int i = 0; i < kTenthsBeforeWatching; ++i) {
        WaitTenths(1, Wait::Sleep);
        TheUser().PumpEvents();
    }
    companion::game.WatcherActive = true;
    return true;
}

} // namespace kelvash::swap
