#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include <algorithm>

#include "foundation/drives.h"
#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace {

constexpr std::size_t kWriteBlock = std::size_t{1} << 30; // the call counts in 32 bits
// A scanner may hold a file that was just written for an instant.
constexpr int kRenameTries = 10;
constexpr DWORD kRenamePause = 20; // milliseconds
// Between 1601, from which the system counts, and 1970, in seconds; it counts in units of 100 nanoseconds.
constexpr std::int64_t kEpochDifference = 11644473600;
constexpr std::int64_t kUnitsPerSecond = 10000000;

bool IsFolder(DWORD attributes) {
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

bool MayPass(DWORD error) {
    return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
}

DWORD CALLBACK OnCopied(LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, LARGE_INTEGER, DWORD, DWORD, HANDLE,
                        HANDLE, LPVOID go_on) {
    return (*static_cast<const GoOn*>(go_on))() ? PROGRESS_CONTINUE : PROGRESS_CANCEL;
}

} // namespace

bool CopyContent(const NativeFile& from, const NativeFile& to, const GoOn& go_on) {
    if (CopyFileExW(from.c_str(), to.c_str(), OnCopied, const_cast<GoOn*>(&go_on), nullptr,
                    COPY_FILE_FAIL_IF_EXISTS) != 0)
        return true;
    if (const DWORD error = GetLastError(); error != ERROR_FILE_EXISTS && error != ERROR_ALREADY_EXISTS &&
                                            !IsFolder(GetFileAttributesW(to.c_str())))
        DeleteFileW(to.c_str());
    return false;
}

int OpenForWriting(const NativeFile& file) {
    return _wopen(file.c_str(), _O_WRONLY | _O_CREAT | _O_TRUNC | _O_BINARY | _O_NOINHERIT,
                  _S_IREAD | _S_IWRITE);
}

bool WriteBytes(int descriptor, std::string_view bytes) {
    while (!bytes.empty()) {
        const auto size = static_cast<unsigned>(std::min(bytes.size(), kWriteBlock));
        const int written = _write(descriptor, bytes.data(), size);
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

bool CloseWritten(int descriptor, bool flush) {
    const bool flushed = !flush || _commit(descriptor) == 0;
    return _close(descriptor) == 0 && flushed;
}

bool RenameOver(const NativeFile& from, const NativeFile& to, bool flush) {
    // A folder takes nothing's place; Wine would let it replace a file.
    const DWORD replace = IsFolder(GetFileAttributesW(from.c_str())) ? 0 : MOVEFILE_REPLACE_EXISTING;
    const DWORD flags = replace | (flush ? DWORD{MOVEFILE_WRITE_THROUGH} : 0);
    const bool folder = IsFolder(GetFileAttributesW(to.c_str()));
    if (!folder) ClearReadOnly(to); // elsewhere the folder decides what may be replaced, not the file
    for (int tries = 1;; ++tries) {
        if (MoveFileExW(from.c_str(), to.c_str(), flags) != 0) return true;
        if (folder || tries == kRenameTries || !MayPass(GetLastError())) return false;
        ::Sleep(kRenamePause);
    }
}

bool LinkFile(const NativeFile& file, const NativeFile& name) {
    return CreateHardLinkW(name.c_str(), file.c_str(), nullptr) != 0;
}

bool Exchange(const NativeFile&, const NativeFile&) {
    return false;
}

// Flushing a volume takes an administrator's rights.
bool FlushDrive(const NativeFile&) {
    return true;
}

bool FlushFolder(const NativeFile&) {
    return true; // NTFS keeps a journal of its names
}

// Only a file that may be written can be flushed: of a read-only one the attribute goes for that long.
bool FlushFile(const NativeFile& file) {
    const DWORD attributes = GetFileAttributesW(file.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES || !ClearReadOnly(file)) return false;
    const OwnHandle handle(CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                       nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    const bool flushed = handle.handle != nullptr && FlushFileBuffers(handle.handle) != 0;
    if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) SetFileAttributesW(file.c_str(), attributes);
    return flushed;
}

std::int64_t TreeBytes(const NativeFile& folder, const NameCounts& counts) {
    namespace fs = std::filesystem;
    std::int64_t bytes = 0;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        const std::string name = Utf8FromWide(at->path().filename().native());
        if (name.empty()) continue;
        if (at->is_directory(ignored)) {
            if (!at->is_symlink(ignored)) bytes += TreeBytes(at->path(), counts);
        } else if (at->is_regular_file(ignored) && counts(name)) {
            const std::uintmax_t size = at->file_size(ignored);
            if (!ignored) bytes += static_cast<std::int64_t>(size);
        }
    }
    return bytes;
}

bool ClearReadOnly(const NativeFile& file) {
    const DWORD attributes = GetFileAttributesW(file.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) return false;
    return (attributes & FILE_ATTRIBUTE_READONLY) == 0 ||
           SetFileAttributesW(file.c_str(), attributes & ~DWORD{FILE_ATTRIBUTE_READONLY}) != 0;
}

bool Unlink(const NativeFile& file) {
    if (IsFolder(GetFileAttributesW(file.c_str()))) return false;
    ClearReadOnly(file);
    return DeleteFileW(file.c_str()) != 0;
}

bool RemoveEmptyFolder(const NativeFile& folder) {
    if (!IsFolder(GetFileAttributesW(folder.c_str()))) return false;
    ClearReadOnly(folder);
    return RemoveDirectoryW(folder.c_str()) != 0;
}

bool SetFileTime(const NativeFile& file, std::int64_t seconds) {
    const OwnHandle handle(CreateFileW(file.c_str(), FILE_WRITE_ATTRIBUTES,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                       OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (handle.handle == nullptr) return false;
    const auto units = static_cast<std::uint64_t>((seconds + kEpochDifference) * kUnitsPerSecond);
    const FILETIME time{static_cast<DWORD>(units & 0xFFFFFFFF), static_cast<DWORD>(units >> 32)};
    return ::SetFileTime(handle.handle, &time, &time, &time) != 0;
}

std::string ShortPath(std::string_view path) {
    const std::wstring wide = WideFromUtf8(path);
    if (NativePath(path).native() != wide) return {}; // a drive set by hand: the system doesn't know it
    const DWORD size = GetShortPathNameW(wide.c_str(), nullptr, 0);
    std::wstring text(size, L'\0');
    text.resize(size == 0 ? 0 : GetShortPathNameW(wide.c_str(), text.data(), size));
    return Utf8FromWide(text);
}

} // namespace kelvash::platform
