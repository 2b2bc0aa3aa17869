#include "swap/install.h"

#include <algorithm>
#include <set>

#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"
#include "media/fragments.h"
#include "media/media_config.h"
#include "swap/backup.h"
#include "swap/compression.h"
#include "swap/fragments.h"
#include "swap/kept_files.h"
#include "swap/messages.h"
#include "swap/remove.h"
#include "swap/saves.h"
#include "swap/take_out.h"
#include "trle/trle_folder.h"
#include "trle_state/marker.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::FileStamp;
using trle_state::FoundRecord;
using trle_state::Holds;
using trle_state::HoldSameBytes;
using trle_state::IsGameProgram;
using trle_state::IsStill;
using trle_state::LevelOwner;
using trle_state::LevelPlace;
using trle_state::LookAtTrle;
using trle_state::MarkerOf;
using trle_state::MarkerPath;
using trle_state::OwnerOf;
using trle_state::ReadSwapRecord;
using trle_state::RecordedFile;
using trle_state::RecordState;
using trle_state::StampOf;
using trle_state::SwapRecord;
using trle_state::SwapStep;
using trle_state::TrleState;
using trle_state::WriteMarker;
using trle_state::WriteSwapRecord;

namespace {

// A name that no removal would take for one of the TRLE folder must not come there.
void AddFile(const std::string& file, const std::string& target_folder, std::vector<WorkItem>& items) {
    const std::optional<PlainName> name = PlainName::From(FileNameOf(file));
    if (name) items.push_back({name->Text(), target_folder + name->Text()});
}

void AddMatches(const std::string& files, const Fragment& mask, const std::string& target_folder,
                std::vector<WorkItem>& items) {
    for (const std::string& file : ListFiles(files, LoadFragment(mask)))
        AddFile(file, target_folder, items);
}

// A stranger's game is no medium.
void TellForeignGame(const std::string& files) {
    const std::vector<std::string> media = media::ListMediaFiles(files);
    if (std::any_of(media.begin(), media.end(),
                    [](const std::string& name) { return IsGameProgram("\\" + name); }))
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kForeignGameLeftOut));
}

bool IsScript(const std::string& name) {
    return EqualNoCase(name, LoadFragment(fragment::kScriptDat));
}

// TRLE's language file, where the level brings one of another name.
std::string DisplacedLanguageFile(const std::vector<WorkItem>& items, const std::string& trle) {
    std::string language;
    for (const std::string& file : ListFiles(trle, LoadFragment(fragment::kDatMask)))
        if (language.empty() && !IsScript(FileNameOf(file))) language = FileNameOf(file);
    if (language.empty()) return {};
    bool brings_language = false;
    for (const WorkItem& item : items) {
        if (EqualNoCase(item.Name, language)) return {};
        brings_language =
            brings_language ||
            (EndsWithNoCase(item.Name, LoadFragment(fragment::kDatExtension)) && !IsScript(item.Name));
    }
    return brings_language ? language : std::string();
}

// The folder to take a level's files from; `temp` is the decompressed copy, if one had to be made.
struct LevelFiles {
    std::string folder;
    std::string temp;
};

// False after a message.
bool PrepareFiles(const LevelPlace& level, LevelFiles& files) {
    files.folder = core::FilesFolder(core::ReachFolder(level));
    if (core::archive.CdMissing) {
        TellCritical(LoadMessage(msg::kCdNotAvailable));
        return false;
    }
    if (!DecompressLevelFiles(files.folder, files.temp, true)) {
        TellCritical(LoadMessage(msg::kErrorDecompressing));
        DeleteFile(MarkerPath());
        return false;
    }
    if (!files.temp.empty()) files.folder = files.temp;
    if (level.Code == 0 || AnyFile(files.folder, LoadFragment(fragment::kTr4Mask))) return true;
    DeleteFile(MarkerPath());
    if (!files.temp.empty()) RemoveFolder(files.temp);
    if (AskYesNo(MessageStyle::Exclamation, LoadMessage(msg::kNoTr4Question, {kLineBreak, kLineBreak})))
        TellCritical(LoadMessage(msg::kCdCorrectionMissing));
    return false;
}

// Where the level's files come from and what they replace, the saves among it, before any is copied.
void NotePlan(const InstallPlan& plan, const std::string& files, SwapRecord& record) {
    std::set<std::string> seen;
    for (const WorkItem& item : plan.Items)
        record.Copied.push_back({item.Target, StampOf(files + "\\" + item.Name)});
    for (const std::string& target : plan.Overwritten)
        record.Overwritten.push_back({target, seen.insert(FoldCase(target)).second
                                                  ? StampOf(core::TrleFolder() + target)
                                                  : FileStamp()});
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
    add(found.Record.OverwrittenBySaves, record.LeftOverwritten);
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

RecordedFile* FindOriginal(SwapRecord& record, const std::string& target) {
    const auto found =
        std::find_if(record.Overwritten.begin(), record.Overwritten.end(),
                     [&](const RecordedFile& file) { return EqualNoCase(file.Target, target); });
    return found == record.Overwritten.end() ? nullptr : &*found;
}

// A file of the level that a removal took for a save: it has come with the saves already.
bool CameWithSaves(const SwapRecord& record, const std::string& source, const std::string& target) {
    return std::any_of(record.Saves.begin(), record.Saves.end(),
                       [&](const RecordedFile& save) { return EqualNoCase("\\" + save.Target, target); }) &&
           HoldSameBytes(source, core::TrleFolder() + target);
}

// Puts a file that is about to be overwritten aside, once for each target. False if it must stay.
bool MakeWay(const std::string& target, SwapRecord& record, KeptFiles& kept) {
    RecordedFile* const original = FindOriginal(record, target);
    if (original == nullptr || !original->Kept.empty() || IsLeftover(record, target)) return true;
    const bool is_original = IsStill(core::TrleFolder() + target, original->Stamp);
    return !is_original || KeepFile(target, kept, original->Kept);
}

// Without the new file the old one is back in its place.
bool CopyItem(const WorkItem& item, const std::string& files, SwapRecord& record, KeptFiles& kept) {
    const std::string source = files + "\\" + item.Name;
    const std::string target = core::TrleFolder() + item.Target;
    if (!CameWithSaves(record, source, item.Target) && !MakeWay(item.Target, record, kept)) return false;
    if (CopyFileWhole(source, target)) return true;
    if (RecordedFile* const original = FindOriginal(record, item.Target))
        PutBack(item.Target, kept, original->Kept);
    return false;
}

// A file that can't be copied leaves what stands there. The marker lists it all the same; the record knows.
void CopyItems(const InstallPlan& plan, const std::string& files, SwapRecord& record, KeptFiles& kept) {
    std::string failed;
    if (!plan.Items.empty()) {
        ProgressDialog progress(BarPlace::ProgressDialog, LoadMessage(msg::kCopyingLevel));
        for (std::size_t i = 0; i < plan.Items.size(); ++i) {
            const WorkItem& item = plan.Items[i];
            ProgressPercent(progress.bar, static_cast<double>(i + 1), static_cast<double>(plan.Items.size()));
            const bool copied = CopyItem(item, files, record, kept);
            // A file system may round the date of a copy.
            record.Copied[i].Stamp = copied ? StampOf(core::TrleFolder() + item.Target) : FileStamp();
            if (!copied) failed += kLineBreak + item.Target;
        }
    }
    if (const std::string language = "\\" + plan.LanguageFile;
        !plan.LanguageFile.empty() &&
        !(MakeWay(language, record, kept) && DeleteFile(core::TrleFolder() + language)))
        TellCannotDelete(core::TrleFolder() + language);
    if (!failed.empty()) TellCritical(LoadMessage(msg::kFilesNotCopied) + failed);
}

bool BringSavesBack(SwapRecord& record, KeptFiles& kept) {
    const bool all_back = BringBackLevelFiles(record.Owner.Folder, record, kept);
    if (!all_back) TellCritical(LoadMessage(msg::kSavesNotBack, {core::StashFolder(record.Owner.Folder)}));
    return all_back;
}

// Brings the saves of level 0000 back. They count as in its stash only if one of them couldn't come, or if a
// marker stays that names another level as their owner. False after a message.
bool GiveBackOriginal(const LevelPlace& original) {
    SwapRecord record;
    record.Owner = OwnerOf(original);
    if (FoundRecord found = ReadSwapRecord(); found.Record.Step == SwapStep::Original) {
        record.LeftOverwritten = std::move(found.Record.LeftOverwritten);
        record.LeftCopied = std::move(found.Record.LeftCopied);
    }
    if (!WriteSwapRecord(record)) return false;
    KeptFiles kept;
    const bool all_back = BringSavesBack(record, kept);
    TellKept(kept);
    return !all_back || FileExists(MarkerPath()) || WriteSwapRecord(record);
}

// The record says all that may come before it comes: first that saves do, which the plan has to know of.
bool BringLevel(const std::string& files, SwapRecord& record, KeptFiles& kept) {
    if (!WriteSwapRecord(record)) return false;
    BringSavesBack(record, kept);
    const InstallPlan plan = PlanInstall(files, core::TrleFolder());
    NotePlan(plan, files, record);
    if (!WriteSwapRecord(record)) return false;
    if (!WriteMarker(MarkerOf(record), false, record.MarkerHash)) {
        TellCritical(LoadMessage(msg::kCannotWriteMarker) + MarkerPath());
        return false;
    }
    CopyItems(plan, files, record, kept);
    // Where the whole marker can't be written the level's files are the proof that it is in.
    static_cast<void>(WriteMarker(MarkerOf(record), true, record.MarkerHash));
    record.Step = SwapStep::In;
    return WriteSwapRecord(record);
}

bool CopyLevel(const LevelPlace& level, const std::string& files) {
    SwapRecord record;
    record.Step = SwapStep::Entering;
    record.Owner = OwnerOf(level);
    AddLeftovers(record);
    TellForeignGame(files);
    KeptFiles kept;
    const bool is_in = BringLevel(files, record, kept);
    TellKept(kept);
    return is_in;
}

} // namespace

std::vector<WorkItem> BuildWorkList(const std::string& files) {
    const std::string root = "\\";
    std::vector<WorkItem> items;
    AddMatches(files, fragment::kDatMask, root, items);
    AddMatches(files, fragment::kHeaderMask, root, items);
    for (const std::string& name : Split(LoadFragment(fragment::kRootFileNames), '|'))
        if (FileExists(files + "\\" + name)) items.push_back({name, root + name});
    for (const std::string& name : media::ListMediaFiles(files))
        if (!IsGameProgram(root + name)) items.push_back({name, root + name});
    const std::vector<std::string> configs = ListFiles(files, LoadFragment(fragment::kMediaConfigMask));
    if (!configs.empty()) AddFile(configs.front(), root, items);
    AddMatches(files, fragment::kTr4Mask, LoadFragment(fragment::kDataPrefix), items);
    AddMatches(files, fragment::kPakMask, LoadFragment(fragment::kDataPrefix), items);
    AddMatches(files, fragment::kWavMask, LoadFragment(fragment::kAudioTarget), items);
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
    return RescueSavesOf(LevelOwner());
}

bool InstallFiles(const LevelPlace& level) {
    LevelFiles files;
    if (!PrepareFiles(level, files)) return false;
    if (level.Code == 0) DeleteFile(MarkerPath());
    const bool installed = level.Code == 0 ? GiveBackOriginal(level) : CopyLevel(level, files.folder);
    if (!files.temp.empty()) RemoveFolder(files.temp);
    return installed;
}

Swapped Ended(bool well) {
    return well ? Swapped::Done : Swapped::Failed;
}

// A removal that failed after its message is taken for a finished one where a level is to follow. That is
// meant. But nobody is told that the original configuration is in while it isn't.
Swapped InstallOriginal(const LevelPlace& original, std::int32_t previous) {
    if (IsCutShort()) return Swapped::Failed;
    const TrleState state = LookAtTrle();
    // A marker of level 0000, which no install writes, stays as it is, with the saves in the root.
    if (state.Content == Holds::Level && state.Code == 0) return Ended(GiveBackOriginal(original));
    if (previous == 0 && state.Content != Holds::Original) return Swapped::Failed;
    if (!ClearRoot()) return Swapped::Failed;
    return Ended(previous == 0 ? GiveBackOriginal(original) : InstallFiles(original));
}

} // namespace

Swapped InstallHere(const LevelPlace& level) {
    const std::int32_t previous = RemovePreviousLevel(level.Code);
    if (previous == kRemovalRefused) return Swapped::Failed;
    if (level.Code == 0) return InstallOriginal(level, previous);
    if (previous == level.Code) return Swapped::Done;
    if (!ClearRoot()) return Swapped::Failed;
    const Door door = RequireBackup();
    if (door == Door::Open) return Ended(InstallFiles(level));
    static_cast<void>(GiveBackOriginal(core::PlaceOf(0))); // what stays is in the stash of level 0000
    return door == Door::Elsewhere ? Swapped::Elsewhere : Swapped::Failed;
}

bool InstallLevel(std::int32_t code) {
    return OnChosenFolder(msg::kDoingInstall, code, &InstallHere);
}

void TellNotInstalled() {
    TellCritical(LoadMessage(msg::kErrorInstalling));
}

} // namespace kelvash::swap
