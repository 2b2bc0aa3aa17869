#include "core/change.h"

#include <algorithm>
#include <vector>

#include "core/archive.h"
#include "core/change_messages.h"
#include "core/ports.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace {

constexpr unsigned kNoGame = kSwap & ~kAll;

struct ChangeState {
    double Patience = 0; // seconds
    bool Refused = false;
    bool LockedOut = false;
    std::vector<std::string> SwapFolders; // TRLE folders of the open swaps
    FolderLock Unsaved;                   // of the Archive's folder, while memory holds what its file doesn't
};
constinit ChangeState& state = State<ChangeState>::Get();

std::string ArchiveFolder() {
    return std::string(Trim(archive.Header.SecondaryFolder));
}

// The Archive may lie in another folder than at the door.
void KeepUnsaved() {
    LockHolder holder;
    const std::string doing = LoadMessage(msg::kDoingUnsaved);
    if (state.Unsaved.Take(ArchiveFolder(), LockKind::Change, doing, holder) == LockResult::Taken)
        state.Unsaved.Tell(doing);
}

} // namespace

bool Change::Refuse(MessageText why) {
    why_ = std::move(why);
    if (!silent_) TellCritical(why_);
    return false;
}

// The door of an outer swap has looked already, unless another TRLE folder has been chosen since.
bool Change::GameIsOut() {
    const auto& looked_at = state.SwapFolders;
    const bool is_known = std::find(looked_at.begin(), looked_at.end(), TrleFolder()) != looked_at.end();
    return is_known || FindGame() == 0 || Refuse(LoadMessage(msg::kGameIsRunning));
}

// Level 0000 and the choice of none are for the operation to judge.
bool Change::LevelStands() {
    return level_.Code <= 0 || level_.IsListed() || Refuse(LoadMessage(msg::kLevelIsGone));
}

Change::Change(MessageId doing, unsigned what, std::int32_t level)
    : untold_((what & kUntold) != 0), silent_((what & kSilent) != 0) {
    SettleUnsaved();
    granted_ = TakeLocks(LoadMessage(doing), what);
    if (granted_ && level != kNoLevel) level_ = PlaceOf(level);
    granted_ = granted_ && LevelStands();
    if (granted_ && (what & kNoGame) != 0) state.SwapFolders.push_back(swap_folder_.emplace(TrleFolder()));
    if (granted_) return;
    state.Refused = state.Refused || !is_passed_over_;
    End();
}

bool Change::Take(FolderLock& lock, const std::string& folder, const std::string& doing,
                  const Refusal& refusal) {
    if (folder.empty()) return true;
    LockHolder holder;
    const LockResult result = lock.Await(folder, LockKind::Change, doing, state.Patience, holder);
    is_locked_out_ = result == LockResult::Held;
    is_passed_over_ = untold_ && is_locked_out_;
    if (is_passed_over_) return false;
    if (result == LockResult::Failed) return Refuse(LoadMessage(msg::kCannotLock));
    if (!is_locked_out_) return true;
    state.LockedOut = true;
    if (holder.Process == 0) return Refuse(LoadMessage(refusal.Unnamed));
    return Refuse(
        LoadMessageOfOthers(refusal.Named, {holder.Program, std::to_string(holder.Process), holder.Doing}));
}

bool Change::TakeLocks(const std::string& doing, unsigned what) {
    if ((what & kHomeFolder) != 0 &&
        !Take(home_, AppFolder(), doing, {msg::kHomeInUse, msg::kHomeInUseUnnamed}))
        return false;
    if ((what & kTrleFolder) != 0 &&
        !Take(trle_, TrleFolder(), doing, {msg::kTrleInUse, msg::kTrleInUseUnnamed}))
        return false;
    if ((what & kNoGame) != 0 && !GameIsOut()) return false;
    return (what & kArchiveFolder) == 0 || TakeArchive(doing);
}

// Its file may say by now that the levels lie in another folder: then that one's lock is wanted.
bool Change::TakeArchive(const std::string& doing) {
    for (;;) {
        const std::string folder = ArchiveFolder();
        if (!Take(archive_, folder, doing, {msg::kArchiveInUse, msg::kArchiveInUseUnnamed})) return false;
        if (archive_.IsTaken() && !archive_.IsOnly()) return true; // an outer Change is at work
        if (!RefreshArchive() || EqualNoCase(ArchiveFolder(), folder)) return true;
    }
}

void Change::CloseSwap() {
    if (!swap_folder_) return;
    const auto own = std::find(state.SwapFolders.begin(), state.SwapFolders.end(), *swap_folder_);
    if (own != state.SwapFolders.end()) state.SwapFolders.erase(own);
    swap_folder_.reset();
}

void Change::End() {
    CloseSwap();
    if (archive_.IsTaken() && archive.ArchiveChanged) KeepUnsaved();
    SettleUnsaved();
    archive_.Release();
    trle_.Release();
    home_.Release();
}

void SetLockPatience(double seconds) {
    state.Patience = seconds;
}

bool WasRefused() {
    return state.Refused;
}

bool WasLockedOut() {
    return state.LockedOut;
}

void SettleUnsaved() {
    if (!archive.ArchiveChanged) state.Unsaved.Release();
}

} // namespace kelvash::core
