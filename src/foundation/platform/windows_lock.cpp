#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>

#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

// The byte that is locked lies far behind the note: what is locked nobody else can read.
constexpr DWORD kLockedByte = 0x40000000;

HANDLE HandleOf(int descriptor) {
    return reinterpret_cast<HANDLE>(_get_osfhandle(descriptor)); // NOLINT: that is what a handle is
}

OVERLAPPED LockedPlace() {
    OVERLAPPED place{};
    place.Offset = kLockedByte;
    return place;
}

} // namespace

bool MakePrivateFolder(const NativeFile& folder) {
    std::error_code error;
    return fs::create_directory(folder, error) || fs::is_directory(folder, error);
}

// The user's local temporary folder, which the system gives to no other user.
NativeFile RuntimeFolder() {
    std::error_code error;
    const NativeFile temporary = fs::temp_directory_path(error);
    if (error || !MakePrivateFolder(temporary / "kelvash")) return {};
    return temporary / "kelvash";
}

std::string FolderIdentity(const NativeFile& folder) {
    const OwnHandle handle(CreateFileW(folder.c_str(), FILE_READ_ATTRIBUTES,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                       OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION information{};
    if (handle.handle == nullptr || GetFileInformationByHandle(handle.handle, &information) == 0) return {};
    return std::to_string(information.dwVolumeSerialNumber) + "-" +
           std::to_string(std::uint64_t{information.nFileIndexHigh} << 32 | information.nFileIndexLow);
}

int OpenLockFile(const NativeFile& file) {
    return _wopen(file.c_str(), _O_RDWR | _O_CREAT | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
}

LockResult TryLock(int descriptor) {
    OVERLAPPED place = LockedPlace();
    if (LockFileEx(HandleOf(descriptor), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0,
                   &place) != 0)
        return LockResult::Taken;
    const DWORD error = GetLastError();
    return error == ERROR_LOCK_VIOLATION || error == ERROR_IO_PENDING ? LockResult::Held : LockResult::Failed;
}

bool WriteNote(int descriptor, std::string_view note) {
    return _chsize(descriptor, 0) == 0 && _lseek(descriptor, 0, SEEK_SET) == 0 &&
           WriteBytes(descriptor, note);
}

void CloseLockFile(int descriptor) {
    OVERLAPPED place = LockedPlace();
    UnlockFileEx(HandleOf(descriptor), 0, 1, 0, &place);
    _close(descriptor);
}

std::int64_t OwnProcessId() {
    return GetCurrentProcessId();
}

} // namespace kelvash::platform
