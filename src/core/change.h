// The door of every operation that changes something: no two programs change the same folder at once, and
// none works on what another has changed behind its back.
//
// An operation opens a Change before it looks at what it works on, and goes on only if that is granted:
//
//     const core::Change change(msg::kDoingWhat, core::kAll);
//     if (!change) return false;
//
// The locks are taken in one order: the application's folder, TRLE, the Archive's folder. At the outermost
// door the open Archive is brought up to date with its file. Changes nest; what the outer one holds the inner
// one has. Reading takes none.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "foundation/lock.h"
#include "foundation/messages.h"
#include "trle_state/level_place.h"

namespace kelvash::core {

// What an operation changes; sums of these.
inline constexpr unsigned kHomeFolder = 1;
inline constexpr unsigned kTrleFolder = 2;
inline constexpr unsigned kArchiveFolder = 4;
inline constexpr unsigned kAll = kHomeFolder | kTrleFolder | kArchiveFolder;
// All, and no game of this TRLE may run.
inline constexpr unsigned kSwap = kAll | 8;
// Added to these: who is locked out by another program's work isn't told of it, and nothing counts as
// refused.
inline constexpr unsigned kUntold = 16;
// Added to kUntold: no other reason is told either. A running game lies over every box.
inline constexpr unsigned kSilent = 32;

using trle_state::kNoLevel;
using trle_state::LevelPlace;

class Change {
  public:
    // `doing` is what others are told ("adding a level"). `level` is the code of the level that the operation
    // is about; another program may have removed it. What stands in the way is told.
    Change(MessageId doing, unsigned what, std::int32_t level = kNoLevel);
    ~Change() { End(); }
    Change(const Change&) = delete;
    Change& operator=(const Change&) = delete;

    explicit operator bool() const { return granted_; }
    // Why it isn't granted: because another program holds a lock, or what Why() says.
    bool IsLockedOut() const { return is_locked_out_; }
    const MessageText& Why() const { return why_; }
    // The level that it is about, as it was found here; that of kNoLevel if it isn't about one.
    const LevelPlace& Level() const { return level_; }
    // Ends it before its scope does. An Archive with unsaved changes stays locked until they are saved or
    // dropped: its folders hold what its file doesn't tell of.
    void End();

  private:
    bool TakeLocks(const std::string& doing, unsigned what);
    bool TakeArchive(const std::string& doing);
    void CloseSwap();
    struct Refusal {
        MessageId Named;
        MessageId Unnamed; // where who holds the lock can't be told
    };
    bool Take(FolderLock& lock, const std::string& folder, const std::string& doing, const Refusal& refusal);
    bool Refuse(MessageText why);
    bool GameIsOut();
    bool LevelStands();

    FolderLock home_, trle_, archive_;
    bool untold_;
    bool silent_;
    bool is_locked_out_ = false;
    bool is_passed_over_ = false;
    MessageText why_;
    bool granted_ = false;
    LevelPlace level_;
    std::optional<std::string> swap_folder_; // of an open swap
};

// How long a Change waits for locks that others hold, in seconds; 0 at the start.
void SetLockPatience(double seconds);
// True if a Change of this run has been refused; the second, because another program held a lock.
bool WasRefused();
bool WasLockedOut();
// Gives the lock of unsaved changes back once there are none. To be called where they are dropped.
void SettleUnsaved();

} // namespace kelvash::core
