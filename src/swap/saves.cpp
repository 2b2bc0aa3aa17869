#include "swap/saves.h"

#include <algorithm>
#include <array>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/backup.h"
#include "swap/fragments.h"
#include "swap/messages.h"
#include "swap/rescued_saves.h"
#include "trle/trle_folder.h"
#include "trle_state/fragments.h"
#include "trle_state/marker.h"

namespace kelvash::swap {

using trle_state::HoldSameBytes;
using trle_state::IsGameProgram;
using trle_state::IsStill;
using trle_state::LevelOwner;
using trle_state::RecordedFile;
using trle_state::StampOf;
using trle_state::SwapRecord;
using trle_state::SwapStep;
using trle_state::WriteSwapRecord;

namespace {

bool CopyInto(const std::vector<std::string>& files, const std::string& folder) {
    return std::all_of(files.begin(), files.end(), [&](const std::string& file) {
        return CopyFileWhole(file, folder + "\\" + FileNameOf(file));
    });
}

const RecordedFile* FindSave(const SwapRecord& record, const std::string& name) {
    const auto found = std::find_if(record.Saves.begin(), record.Saves.end(),
                                    [&](const RecordedFile& save) { return EqualNoCase(save.Target, name); });
    return found == record.Saves.end() ? nullptr : &*found;
}

// How the files of a stash and those that come in make way for one another.
struct StashPlan {
    std::vector<std::string> saves;    // of the root
    std::vector<std::string> incoming; // those to be copied
    std::vector<std::string> stale;    // of the stash, to be deleted
    std::vector<std::string> losers;   // of either, to be rescued
};

bool BackupHolds(const std::string& save) {
    return HoldSameBytes(BackupFolder() + "\\" + FileNameOf(save), save);
}

bool IsNewer(const std::string& file, const std::string& other) {
    return FileTime(file).value_or(0) > FileTime(other).value_or(0);
}

void PlanTwin(const std::string& old, const std::string& save, bool is_known, StashPlan& plan) {
    if (is_known || HoldSameBytes(old, save)) return;
    const bool old_is_newer = IsNewer(old, save);
    const std::string& loser = old_is_newer ? save : old;
    if (old_is_newer) std::erase(plan.incoming, save);
    if (!BackupHolds(loser)) plan.losers.push_back(loser);
}

StashPlan PlanStash(const std::string& stash, const SwapRecord& record, bool knows_stash) {
    StashPlan plan;
    plan.saves = ListSaves();
    plan.incoming = plan.saves;
    for (const std::string& old : ListFiles(stash, "*")) {
        const std::string name = FileNameOf(old);
        const RecordedFile* brought_in = FindSave(record, name);
        const bool is_known = knows_stash && brought_in != nullptr && IsStill(old, brought_in->Stamp);
        const auto twin = std::find_if(plan.saves.begin(), plan.saves.end(), [&](const std::string& save) {
            return EqualNoCase(FileNameOf(save), name);
        });
        if (twin != plan.saves.end())
            // What isn't newer than its twin came in with the level, as far as anybody can say.
            PlanTwin(old, *twin, is_known || (!knows_stash && !IsNewer(old, *twin)), plan);
        else if (!knows_stash)
            plan.losers.push_back(old);
        else if (is_known)
            plan.stale.push_back(old);
    }
    return plan;
}

bool DeleteAll(const std::vector<std::string>& files) {
    return std::all_of(files.begin(), files.end(), DeleteFile);
}

// The copies of files in a folder reach the disk.
bool IsOnDisk(const std::vector<std::string>& files, const std::string& folder) {
    return std::all_of(files.begin(), files.end(),
                       [&](const std::string& file) { return FlushFile(folder + "\\" + FileNameOf(file)); });
}

// Puts the saves into the stash, and there on the disk.
StashResult FillStash(const std::string& stash, const StashPlan& plan) {
    if (!RescueFiles(plan.losers, stash)) return StashResult::CannotEmpty;
    bool copied = CopyInto(plan.incoming, stash);
    if (!copied) {
        // A full disk may have room once the files that the player has deleted are gone here too.
        if (!DeleteAll(plan.stale)) return StashResult::CannotEmpty;
        copied = CopyInto(plan.incoming, stash);
    }
    if (!copied || !IsOnDisk(plan.incoming, stash)) return StashResult::CannotCopy;
    return DeleteAll(plan.stale) ? StashResult::Done : StashResult::CannotEmpty;
}

std::vector<RecordedFile> StampsOf(const std::vector<std::string>& files) {
    std::vector<RecordedFile> stamped;
    stamped.reserve(files.size());
    for (const std::string& file : files)
        stamped.push_back({FileNameOf(file), StampOf(file)});
    return stamped;
}

std::string ReadyStash(const std::string& level_folder) {
    const std::string stash = core::StashFolder(level_folder);
    DeleteFile(core::TrleFolder() + "\\" + std::string(kPartialFile));
    DeleteFile(stash + "\\" + std::string(kPartialFile));
    CreateFolder(stash);
    return stash;
}

bool IsSave(const std::string& name) {
    constexpr std::array kMasks = {fragment::kSavegameMask, fragment::kShotMask, fragment::kNoteMask};
    return std::any_of(kMasks.begin(), kMasks.end(),
                       [&](const Fragment& mask) { return MatchesMask(name, LoadFragment(mask)); });
}

// The originals over which files of a stash are about to come. Those of level 0000 come to stay.
bool NoteInTheWay(const std::vector<std::string>& files, SwapRecord& record) {
    if (record.Step != SwapStep::Entering) return true;
    for (const std::string& file : files) {
        const std::string target = "\\" + FileNameOf(file);
        if (!IsSave(FileNameOf(file)) && FileExists(core::TrleFolder() + target))
            record.OverwrittenBySaves.push_back({target, StampOf(core::TrleFolder() + target)});
    }
    return record.OverwrittenBySaves.empty() || WriteSwapRecord(record);
}

bool BringBack(const std::string& file, SwapRecord& record, KeptFiles& kept) {
    const std::string target = "\\" + FileNameOf(file);
    const std::string place = core::TrleFolder() + target;
    if (IsGameProgram(target) || EqualNoCase(target, LoadFragment(fragment::kMarkerName))) return false;
    if (HoldSameBytes(file, place)) return true;
    std::string kept_at;
    if (!KeepFile(target, kept, kept_at)) return false;
    const bool came = CopyFileWhole(file, place);
    if (!came) PutBack(target, kept, kept_at);
    for (RecordedFile& original : record.OverwrittenBySaves)
        if (EqualNoCase(original.Target, target)) original.Kept = kept_at;
    return came;
}

} // namespace

std::vector<std::string> ListSaves() {
    std::vector<std::string> saves;
    for (const Fragment& mask : {fragment::kSavegameMask, fragment::kShotMask, fragment::kNoteMask}) {
        const std::vector<std::string> found = ListFiles(core::TrleFolder(), LoadFragment(mask));
        saves.insert(saves.end(), found.begin(), found.end());
    }
    return saves;
}

StashResult StashLevelFiles(const std::string& level_folder, SwapRecord& record, bool knows_stash) {
    const std::string stash = ReadyStash(level_folder);
    const StashPlan plan = PlanStash(stash, record, knows_stash);
    if (const StashResult result = FillStash(stash, plan); result != StashResult::Done) return result;
    record.Step = SwapStep::Leaving;
    record.Saves.clear();
    if (!WriteSwapRecord(record)) return StashResult::CannotNote;
    return DeleteAll(plan.saves) ? StashResult::Done : StashResult::CannotDelete;
}

bool CopySavesHome(const std::string& level_folder, SwapRecord& record) {
    const std::string stash = ReadyStash(level_folder);
    const StashPlan plan = PlanStash(stash, record, true);
    if (FillStash(stash, plan) != StashResult::Done) return false;
    record.Saves = StampsOf(plan.incoming);
    return WriteSwapRecord(record);
}

bool BringBackLevelFiles(const std::string& level_folder, SwapRecord& record, KeptFiles& kept) {
    const std::string stash = core::StashFolder(level_folder);
    DeleteFile(stash + "\\" + std::string(kPartialFile));
    const std::vector<std::string> files = ListFiles(stash, "*");
    record.Saves.clear();
    if (!NoteInTheWay(files, record)) return false;
    bool all_back = true;
    for (const std::string& file : files) {
        const bool came = BringBack(file, record, kept);
        if (came) record.Saves.push_back({FileNameOf(file), StampOf(file)});
        all_back = all_back && came;
    }
    return all_back;
}

bool RescueSavesOf(const LevelOwner& owner) {
    const std::string from = owner.Folder.empty()
                                 ? LoadMessage(msg::kRescueNobodys, {core::TrleFolder()})
                                 : LoadMessageOfOthers(msg::kRescueOwner, {owner.Name, owner.Folder});
    if (RescueFiles(ListSaves(), from)) return true;
    TellCritical(LoadMessage(msg::kCannotRescue) + AppFolder());
    return false;
}

} // namespace kelvash::swap
