#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <charconv>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

constexpr mode_t kOwnerOnly = 0700;

bool IsOwn(const NativeFile& folder, mode_t forbidden) {
    struct stat status {};
    return ::lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == ::geteuid() &&
           (status.st_mode & forbidden) == 0;
}

std::string Hexadecimal(std::uint64_t number) {
    std::array<char, 16> digits{};
    const auto end = std::to_chars(digits.begin(), digits.end(), number, 16).ptr;
    return {digits.begin(), end};
}

} // namespace

bool MakePrivateFolder(const NativeFile& folder) {
    constexpr mode_t kOthers = 077;
    return (::mkdir(folder.c_str(), kOwnerOnly) == 0 || errno == EEXIST) && IsOwn(folder, kOthers);
}

// The session's folder is looked for in its usual place too: a program started without a session's variables
// must find the locks of one that has them.
NativeFile RuntimeFolder() {
    const std::string user = std::to_string(::geteuid());
    for (const NativeFile& session : {EnvironmentPath("XDG_RUNTIME_DIR"), NativeFile("/run/user") / user})
        if (session.is_absolute() && IsOwn(session, 0) && MakePrivateFolder(session / "kelvash"))
            return session / "kelvash";
    const NativeFile own = "/tmp/kelvash-" + user;
    return MakePrivateFolder(own) ? own : NativeFile();
}

std::string FolderIdentity(const NativeFile& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0) return {};
    return Hexadecimal(status.st_dev) + "-" + Hexadecimal(status.st_ino);
}

int OpenLockFile(const NativeFile& file) {
    return ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
}

LockResult TryLock(int descriptor) {
    while (::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) return LockResult::Held;
        if (errno != EINTR) return LockResult::Failed;
    }
    return LockResult::Taken;
}

bool WriteNote(int descriptor, std::string_view note) {
    return ::ftruncate(descriptor, 0) == 0 &&
           ::pwrite(descriptor, note.data(), note.size(), 0) == static_cast<ssize_t>(note.size());
}

// Unlocked by hand: a child between its fork and its program still has the descriptor.
void CloseLockFile(int descriptor) {
    ::flock(descriptor, LOCK_UN);
    ::close(descriptor);
}

std::int64_t OwnProcessId() {
    return ::getpid();
}

} // namespace kelvash::platform
