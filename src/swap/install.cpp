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
#include "foundation/plain_name.h"
#include "foundation/text.h"
#include "foundation/waiting.h"
#include "media/media_config.h"
#include "swap/backup.h"
#include "swap/compression.h"
#include "swap/kept_files.h"
#include "swap/marker.h"
#include "swap/remove.h"
#include "swap/rescued_saves.h"
#include "swap/saves.h"
#include "swap/trle_state.h"

namespace kelvash::swap {

namespace {

void AddMatches(const std::string& files, MessageId mask, const std::string& target_folder,
                std::vector<WorkItem>& items) {
    for (const std::string& file : ListFiles(files, LoadMessage(mask, {}))) {
        // A name that no removal would take for one of the TRLE folder must not come there.
        const std::optional<PlainName> name = PlainName::From(FileNameOf(file));
        if (name) items.push_back({name->Text(), target_folder + name->Text()});
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

// Where the level's files come from and what they replace, before anything is done.
SwapRecord PlannedRecord(std::int32_t code, const InstallPlan& plan, const std::string& files) {
    SwapRecord record;
    record.Step = SwapStep::Entering;
    record.Owner = OwnerOf(code);
    std::set<std::string> seen;
    for (const WorkItem& item : plan.Items)
        record.Copied.push_back({item.Target, StampOf(files + "\\" + item.Name)});
    for (const std::string& target : plan.Overwritten)
        record.Overwritten.push_back({target, seen.insert(FoldCase(target)).second
                                                  ? StampOf(core::TrleFolder() + target)
                                                  : FileStamp()});
    return record;
}

// What an earlier level couldn't take along leaves with this one.
void AddLeftovers(SwapRecord& record) {
    const FoundRecord found = ReadSwapRecord();
    if (found.State != RecordState::Good) return;
    const auto add = [](const std::vector<RecordedFile>& files, std::vector<RecordedFile>& left) {
        left.insert(left.end(), files.begin(), files.end());
    };
    add(found.Record.Copied, record.LeftCopied);
    add(found.Record.LeftCopied, record.LeftCopied);
    add(found.Record.Overwritten, record.LeftOverwritten);
    add(found.Record.LeftOverwritten, record.LeftOverwritten);
    std::erase_if(record.LeftCopied, [](const RecordedFile& file) {
        return !StaysInside(file.Target) || !FileExists(core::TrleFolder() + file.Target);
    });
}

bool IsLeftover(const SwapRecord& record, const std::string& target) {
    return std::any_of(record.LeftCopied.begin(), record.LeftCopied.end(), [&](const RecordedFile& file) {
        return EqualNoCase(file.Target, target) && IsStill(core::TrleFolder() + target, file.Stamp);
    });
}

// Puts a file that is about to be overwritten aside, once for each target. False if it must stay.
bool MakeWay(const std::string& target, SwapRecord& record, KeptFiles& kept) {
    const auto original =
        std::find_if(record.Overwritten.begin(), record.Overwritten.end(),
                     [&](const RecordedFile& file) { return EqualNoCase(file.Target, target); });
    if (original == record.Overwritten.end() || !original->Kept.empty() || IsLeftover(record, target))
        return true;
    const bool is_original = IsStill(core::TrleFolder() + target, original->Stamp);
    return !is_original || KeepFile(target, kept, original->Kept);
}

// A file that can't be copied leaves what stands there. The marker lists it all the same; the record knows.
void CopyItems(const InstallPlan& plan, const std::string& files, SwapRecord& record, KeptFiles& kept) {
    std::string failed;
    if (!plan.Items.empty()) {
        ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(MessageId::kCopyingLevel, {}));
        for (std::size_t i = 0; i < plan.Items.size(); ++i) {
            const WorkItem& item = plan.Items[i];
            ProgressPercent(progress.bar, static_cast<double>(i + 1), static_cast<double>(plan.Items.size()));
            if (MakeWay(item.Target, record, kept) &&
                CopyFileWhole(files + "\\" + item.Name, core::TrleFolder() + item.Target))
                continue;
            record.Copied[i].Stamp = FileStamp();
            failed += kLineBreak + item.Target;
        }
    }
    if (const std::string language = "\\" + plan.LanguageFile;
        !plan.LanguageFile.empty() && MakeWay(language, record, kept))
        DeleteFile(core::TrleFolder() + language);
    if (!failed.empty()) TellCritical(LoadMessage(MessageId::kFilesNotCopied, {}) + failed);
}

bool BringSavesBack(SwapRecord& record) {
    const bool all_back = BringBackLevelFiles(record.Owner.Folder, record);
    if (!all_back)
        ShowMessage(MessageStyle::Exclamation,
                    LoadMessage(MessageId::kSavesNotBack, {core::StashFolder(record.Owner.Folder)}));
    return all_back;
}

// Brings the saves of level 0000 back. They count as in its stash only if one of them couldn't come, or if a
// marker stays that names another level as their owner. False after a message.
bool GiveBackOriginal() {
    SwapRecord record;
    record.Owner = OwnerOf(0);
    if (const FoundRecord found = ReadSwapRecord(); found.Record.Step == SwapStep::Original)
        record.LeftOverwritten = found.Record.LeftOverwritten;
    if (!WriteSwapRecord(record)) return false;
    const bool all_back = BringSavesBack(record);
    return !all_back || FileExists(MarkerPath()) || WriteSwapRecord(record);
}

bool CopyLevel(std::int32_t code, const LevelFiles& files) {
    const InstallPlan plan = PlanInstall(files.folder, core::TrleFolder());
    SwapRecord record = PlannedRecord(code, plan, files.folder);
    AddLeftovers(record);
    if (!WriteSwapRecord(record)) return false;
    BringSavesBack(record);
    if (!WriteMarker(MarkerOf(record), false, record.MarkerHash)) {
        TellCritical(LoadMessage(MessageId::kCannotWriteMarker, {}) + MarkerPath());
        return false;
    }
    KeptFiles kept;
    CopyItems(plan, files.folder, record, kept);
    // Where the whole marker can't be written the level's files are the proof that it is in.
    static_cast<void>(WriteMarker(MarkerOf(record), true, record.MarkerHash));
    record.Step = SwapStep::In;
    const bool noted = WriteSwapRecord(record);
    TellKept(kept);
    return noted;
}

} // namespace

std::vector<WorkItem> BuildWorkList(const std::string& files) {
    const std::string root = "\\";
    std::vector<WorkItem> items;
    AddMatches(files, MessageId::kDatMask, root, items);
    AddMatches(files, MessageId::kHeaderMask, root, items);
    for (const std::string& name : Split(LoadMessage(MessageId::kRootFileNames, {}), '|'))
        if (FileExists(files + "\\" + name)) items.push_back({name, root + name});
    for (const std::string& name : media::ListMediaFiles(files)) // a stranger's game is no medium
        if (!EqualNoCase(root + name, LoadMessage(MessageId::kGameProgram, {})))
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

namespace {

// What is still in the root when another level's saves come is nobody's.
bool ClearRoot() {
    return RescueFiles(ListSaves(), LoadMessage(MessageId::kRescueNobodys, {core::TrleFolder()}));
}

// A removal that failed after its message is taken for a finished one where a level is to follow. That is
// meant. But nobody is told that the original configuration is in while it isn't.
bool MayGoOn(std::int32_t code, std::int32_t previous) {
    if (previous == kRemovalRefused) return false;
    if (code != 0) return true;
    if (previous == 0) return !IsCutShort() && LookAtTrle().Content == Holds::Original;
    return !IsCutShort() || EndCutShort() == CutShort::Ended;
}

bool InstallFiles(std::int32_t code) {
    LevelFiles files;
    if (!PrepareFiles(code, files)) return false;
    if (code == 0) DeleteFile(MarkerPath());
    const bool installed = code == 0 ? GiveBackOriginal() : CopyLevel(code, files);
    if (!files.temp.empty()) RemoveFolder(files.temp);
    return installed;
}

} // namespace

bool InstallLevel(std::int32_t code) {
    const core::Change change(MessageId::kDoingInstall, core::kSwap, code);
    if (!change) return false;
    const std::int32_t previous = RemovePreviousLevel(code);
    if (!MayGoOn(code, previous)) return false;
    if (previous == code && code != 0) return true;
    if (!ClearRoot()) return false;
    if (code != 0 && !RequireBackup()) {
        static_cast<void>(GiveBackOriginal()); // what stays is in the stash of level 0000
        return false;
    }
    return previous == code ? GiveBackOriginal() : InstallFiles(code);
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
    CompleteHashes();
    for (int i = 0; i < kTenthsBeforeWatching; ++i) {
        WaitTenths(1, Wait::Sleep);
        TheUser().PumpEvents();
    }
    companion::game.WatcherActive = true;
    return true;
}

} // namespace kelvash::swap
