#include <dirent.h>
#include <fcntl.h>
#include <linux/fs.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <memory>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

namespace {

constexpr std::size_t kCopyBlock = std::size_t{1} << 20;
constexpr off_t kKernelBlock = off_t{4} << 20; // some 20 ms of a busy machine

// Closes its descriptor at the end of a scope.
struct Descriptor {
    int fd;
    explicit Descriptor(int opened) : fd(opened) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (fd >= 0) ::close(fd);
    }
};

bool CopyByBlocks(int from, int to, const GoOn& go_on) {
    const auto block = std::make_unique_for_overwrite<char[]>(kCopyBlock);
    for (;;) {
        const ssize_t got = ::read(from, block.get(), kCopyBlock);
        if (got == 0) return true;
        if (got < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        if (!WriteBytes(to, {block.get(), static_cast<std::size_t>(got)}) || !go_on()) return false;
    }
}

// Shares the blocks where the file system can, else copies inside the kernel, else by hand.
bool CopyBytes(int from, int to, off_t size, const GoOn& go_on) {
    if (::ioctl(to, FICLONE, from) == 0) return true;
    off_t done = 0;
    while (done < size) {
        const auto piece = static_cast<std::size_t>(std::min(size - done, kKernelBlock));
        const ssize_t copied = ::copy_file_range(from, nullptr, to, nullptr, piece, 0);
        if (copied > 0) {
            done += copied;
            if (!go_on()) return false;
        } else if (copied == 0) {
            break;
        } else if (errno != EINTR) {
            // Nothing copied yet: the file systems may only not know the call.
            return done == 0 && errno != ENOSPC && errno != EIO && CopyByBlocks(from, to, go_on);
        }
    }
    // Some file systems tell a size of 0 for files that hold bytes; and a file may have grown.
    return CopyByBlocks(from, to, go_on);
}

// Each name is looked up from its folder's descriptor: whole paths would cost half of the time.
std::int64_t BytesBelow(int parent, const char* folder, int flags, const NameCounts& counts) {
    const int descriptor = ::openat(parent, folder, O_RDONLY | O_DIRECTORY | O_CLOEXEC | flags);
    if (descriptor < 0) return 0;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(::fdopendir(descriptor), ::closedir);
    if (entries == nullptr) {
        ::close(descriptor);
        return 0;
    }
    std::int64_t bytes = 0;
    while (const dirent* entry = ::readdir(entries.get())) {
        const char* const name = entry->d_name;
        const std::string_view text(name);
        if (text == "." || text == ".." || text.find('\\') != std::string_view::npos) continue;
        if (entry->d_type == DT_DIR) {
            bytes += BytesBelow(descriptor, name, O_NOFOLLOW, counts);
            continue;
        }
        struct stat status {};
        const bool may_count =
            entry->d_type == DT_REG || entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN;
        if (!may_count || ::fstatat(descriptor, name, &status, 0) != 0) continue;
        if (S_ISREG(status.st_mode) && counts(text)) bytes += status.st_size;
        // Where the file system doesn't tell the kinds of its entries.
        if (S_ISDIR(status.st_mode) && entry->d_type == DT_UNKNOWN)
            bytes += BytesBelow(descriptor, name, O_NOFOLLOW, counts);
    }
    return bytes;
}

} // namespace

bool CopyContent(const NativeFile& from, const NativeFile& to, const GoOn& go_on) {
    const Descriptor source(::open(from.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status {};
    if (source.fd < 0 || ::fstat(source.fd, &status) != 0 || !S_ISREG(status.st_mode)) return false;
    const Descriptor target(::open(to.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (target.fd < 0) return false;
    const struct timespec times[2] = {status.st_atim, status.st_mtim};
    bool copied = CopyBytes(source.fd, target.fd, status.st_size, go_on) && ::futimens(target.fd, times) == 0;
    if (copied && (status.st_mode & S_IWUSR) == 0) {
        struct stat made {};
        copied = ::fstat(target.fd, &made) == 0 && ::fchmod(target.fd, made.st_mode & 07555) == 0;
    }
    if (!copied) ::unlink(to.c_str());
    return copied;
}

int OpenForWriting(const NativeFile& file) {
    return ::open(file.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
}

bool WriteBytes(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(descriptor, bytes.data(), bytes.size());
        if (written < 0) {
            if (errno == EINTR) continue;
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool CloseWritten(int descriptor, bool flush) {
    const bool flushed = !flush || ::fdatasync(descriptor) == 0;
    return ::close(descriptor) == 0 && flushed;
}

bool RenameOver(const NativeFile& from, const NativeFile& to, bool flush) {
    if (::rename(from.c_str(), to.c_str()) != 0) return false;
    if (flush) {
        const Descriptor folder(::open(to.parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
        if (folder.fd >= 0)
            ::fsync(folder.fd); // where a folder can't be flushed the rename stands all the same
    }
    return true;
}

bool LinkFile(const NativeFile& file, const NativeFile& name) {
    return ::link(file.c_str(), name.c_str()) == 0;
}

bool Exchange(const NativeFile& a, const NativeFile& b) {
    return ::renameat2(AT_FDCWD, a.c_str(), AT_FDCWD, b.c_str(), RENAME_EXCHANGE) == 0;
}

bool FlushDrive(const NativeFile& folder) {
    const Descriptor open_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return open_folder.fd >= 0 && ::syncfs(open_folder.fd) == 0;
}

bool FlushFolder(const NativeFile& folder) {
    const Descriptor open_folder(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    return open_folder.fd >= 0 && (::fsync(open_folder.fd) == 0 || errno == EINVAL);
}

bool FlushFile(const NativeFile& file) {
    const Descriptor open_file(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    return open_file.fd >= 0 && ::fdatasync(open_file.fd) == 0;
}

std::int64_t TreeBytes(const NativeFile& folder, const NameCounts& counts) {
    return BytesBelow(AT_FDCWD, folder.c_str(), 0, counts);
}

bool ClearReadOnly(const NativeFile& file) {
    struct stat status {};
    if (::stat(file.c_str(), &status) != 0) return false;
    return (status.st_mode & S_IWUSR) != 0 || ::chmod(file.c_str(), (status.st_mode & 07777) | S_IWUSR) == 0;
}

bool Unlink(const NativeFile& file) {
    return ::unlink(file.c_str()) == 0;
}

// Elsewhere than on Windows the folder around decides what may be removed.
bool RemoveEmptyFolder(const NativeFile& folder) {
    std::error_code error;
    return std::filesystem::is_directory(folder, error) && std::filesystem::remove(folder, error);
}

bool SetFileTime(const NativeFile& file, std::int64_t seconds) {
    const struct timespec time { seconds, 0 };
    const struct timespec times[2] = {time, time};
    return ::utimensat(AT_FDCWD, file.c_str(), times, 0) == 0;
}

std::string ShortPath(std::string_view) {
    return {};
}

} // namespace kelvash::platform
