#include "swap/saves.h"

#include <algorithm>

#include "core/archive.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/rescued_saves.h"

namespace kelvash::swap {

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
    std::vector<std::string> incoming; // of the root, to be copied
    std::vector<std::string> stale;    // of the stash, to be deleted
    std::vector<std::string> losers;   // of either, to be rescued
};

bool BackupHolds(const std::string& save) {
    return HoldSameBytes(core::BackupFolder() + "\\" + FileNameOf(save), save);
}

void PlanTwin(const std::string& old, const std::string& save, bool is_known, StashPlan& plan) {
    if (is_known || HoldSameBytes(old, save)) return;
    const bool old_is_newer = FileTime(old).value_or(0) > FileTime(save).value_or(0);
    const std::string& loser = old_is_newer ? save : old;
    if (old_is_newer) std::erase(plan.incoming, save);
    if (!BackupHolds(loser)) plan.losers.push_back(loser);
}

StashPlan PlanStash(const std::string& stash, const SwapRecord& record, bool knows_stash) {
    StashPlan plan;
    plan.incoming = ListSaves();
    const std::vector<std::string> saves = plan.incoming;
    for (const std::string& old : ListFiles(stash, "*")) {
        const std::string name = FileNameOf(old);
        const RecordedFile* brought_in = FindSave(record, name);
        const bool is_known = !knows_stash || (brought_in != nullptr && IsStill(old, brought_in->Stamp));
        const auto twin = std::find_if(saves.begin(), saves.end(), [&](const std::string& save) {
            return EqualNoCase(FileNameOf(save), name);
        });
        if (twin != saves.end())
            PlanTwin(old, *twin, is_known, plan);
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

} // namespace

std::vector<std::string> ListSaves() {
    std::vector<std::string> saves;
    for (const MessageId mask : {MessageId::kSavegameMask, MessageId::kShotMask, MessageId::kNoteMask}) {
        const std::vector<std::string> found = ListFiles(core::TrleFolder(), LoadMessage(mask, {}));
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
    return DeleteAll(ListSaves()) ? StashResult::Done : StashResult::CannotDelete;
}

bool CopySavesHome(const std::string& level_folder, SwapRecord& record) {
    const std::string stash = ReadyStash(level_folder);
    const StashPlan plan = PlanStash(stash, record, true);
    if (FillStash(stash, plan) != StashResult::Done) return false;
    record.Saves = StampsOf(plan.incoming);
    return WriteSwapRecord(record);
}

bool BringBackLevelFiles(const std::string& level_folder, SwapRecord& record) {
    const std::string stash = core::StashFolder(level_folder);
    DeleteFile(stash + "\\" + std::string(kPartialFile));
    const std::vector<std::string> files = ListFiles(stash, "*");
    const std::vector<std::string> standing = ListSaves();
    bool all_back = true;
    record.Saves.clear();
    for (const std::string& file : files) {
        const std::string target = core::TrleFolder() + "\\" + FileNameOf(file);
        const bool is_save = std::any_of(standing.begin(), standing.end(),
                                         [&](const std::string& save) { return EqualNoCase(save, target); });
        const bool came = (is_save || !FileExists(target)) && CopyFileWhole(file, target);
        if (came) record.Saves.push_back({FileNameOf(file), StampOf(file)});
        all_back = all_back && came;
    }
    return all_back;
}

} // namespace kelvash::swap
