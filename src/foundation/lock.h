// Locks between programs: who changes a folder keeps all others out until it has finished.
//
// A lock is one of the system on an open file of the user's runtime folder, named after the folder's
// identity, so that every path to the folder leads to the same lock and the folder itself may be emptied. It
// ends with its process, however that ends, and a program that is started doesn't inherit it. The files stay.
// Users don't keep each other out: each has a runtime folder of its own.
#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace kelvash {

// What a lock is for; each kind is a lock of its own on the same folder.
enum class LockKind {
    Change,  // the files of the folder
    Profile, // the profile in it, for the instant of its writing
    Window,  // the one window of an application's folder
    Watch,   // the one watcher beside the game of a TRLE folder
};

// Who holds a lock, for a message; empty and 0 if that can't be told.
struct LockHolder {
    std::string Program;
    std::int64_t Process = 0;
    std::string Doing;
};

enum class LockResult {
    Taken,
    Held,  // by another process
    Failed // the runtime folder can't be used
};

// One lock, held for a scope. A process may hold the same lock several times over; it is free when the last
// of them ends.
class FolderLock {
  public:
    FolderLock() = default;

    // Takes the lock of a folder, which may be missing; `doing` tells others what for. What this object held
    // before is released first. `holder` is filled when somebody else has it.
    LockResult Take(std::string_view folder, LockKind kind, std::string_view doing, LockHolder& holder);
    // The same, tried again for that many seconds with the interface pumped; a stop by the user ends the
    // wait.
    LockResult Await(std::string_view folder, LockKind kind, std::string_view doing, double seconds,
                     LockHolder& holder);
    // Tells others something else of what is going on.
    void Tell(std::string_view doing) const;
    void Release() { file_.reset(); }
    bool IsTaken() const { return file_ != nullptr; }
    // True if nothing else in this process holds the lock.
    bool IsOnly() const { return file_.use_count() == 1; }

  private:
    std::shared_ptr<void> file_;
};

// The folder that holds locks and sockets, as a native path: nobody but the user can reach into it. Made if
// it is missing; empty if there is none.
std::filesystem::path RuntimeFolder();
// A name that tells a folder from every other one, whatever path leads to it. A missing one is known by its
// path.
std::string FolderIdentity(std::string_view folder);

} // namespace kelvash
