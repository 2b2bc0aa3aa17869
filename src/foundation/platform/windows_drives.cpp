#include <system_error>

#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"
#include "foundation/text.h"

// Behind windows.h.
#include <shlobj.h>
#include <winnetwk.h>

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

constexpr DWORD kLongestPath = 32768;

DriveType TypeOf(const fs::path& root) {
    switch (GetDriveTypeW(root.c_str())) {
        case DRIVE_REMOVABLE:
            return DriveType::Removable;
        case DRIVE_FIXED:
            return DriveType::Fixed;
        case DRIVE_REMOTE:
            return DriveType::Network;
        case DRIVE_CDROM:
            return DriveType::CdRom;
        case DRIVE_RAMDISK:
            return DriveType::RamDisk;
        default:
            return DriveType::Unknown;
    }
}

// The root of the volume that holds a folder, with its back-slash.
std::wstring VolumeRoot(const fs::path& folder) {
    std::wstring root(kLongestPath, L'\0');
    if (GetVolumePathNameW(folder.c_str(), root.data(), kLongestPath) == 0) return {};
    root.resize(root.find(L'\0'));
    return root;
}

std::string ShareName(const std::wstring& root) {
    wchar_t name[MAX_PATH];
    DWORD size = MAX_PATH;
    if (GetDriveTypeW(root.c_str()) != DRIVE_REMOTE) return {};
    return WNetGetConnectionW(root.substr(0, 2).c_str(), name, &size) == NO_ERROR ? Utf8FromWide(name)
                                                                                  : std::string();
}

fs::path ShellFolder(int id) {
    wchar_t folder[MAX_PATH];
    return SHGetFolderPathW(nullptr, id, nullptr, SHGFP_TYPE_CURRENT, folder) == S_OK ? fs::path(folder)
                                                                                      : fs::path();
}

} // namespace

std::vector<MappedDrive> SystemDrives(const NativeFile&) {
    std::vector<MappedDrive> drives;
    const DWORD present = GetLogicalDrives();
    for (unsigned i = 0; i < 26; ++i) {
        if ((present >> i & 1) == 0) continue;
        const char letter = static_cast<char>('A' + i);
        const fs::path root = std::string{letter, ':', '\\'};
        drives.push_back({letter, root, TypeOf(root)});
    }
    return drives;
}

bool VolumeInfo(const NativeFile& folder, DriveRecord& record) {
    const std::wstring root = VolumeRoot(folder);
    wchar_t name[MAX_PATH + 1] = {};
    DWORD serial = 0;
    ULARGE_INTEGER available{}, total{};
    if (root.empty() || GetDiskFreeSpaceExW(folder.c_str(), &available, &total, nullptr) == 0 ||
        GetVolumeInformationW(root.c_str(), name, MAX_PATH + 1, &serial, nullptr, nullptr, nullptr, 0) == 0)
        return false;
    record.volume_name = Utf8FromWide(name);
    record.share_name = ShareName(root);
    record.serial_number = serial;
    record.free_bytes = static_cast<std::int64_t>(available.QuadPart);
    record.total_bytes = static_cast<std::int64_t>(total.QuadPart);
    return true;
}

// The disk itself has no regard to case.
NativeFile FindExact(const NativeFile& root, std::string_view rest) {
    NativeFile path = root;
    for (const std::string& name : Split(rest, '\\'))
        if (!name.empty()) path /= WideFromUtf8(name);
    return path;
}

void KnowFolder(const NativeFile&) {}

void ForgetFolder(const NativeFile&) {}

NativeFile ExecutablePath() {
    std::wstring path(kLongestPath, L'\0');
    path.resize(GetModuleFileNameW(nullptr, path.data(), kLongestPath));
    return path;
}

NativeFile EnvironmentPath(const char* name) {
    const std::wstring wide = WideFromUtf8(name);
    std::wstring value(GetEnvironmentVariableW(wide.c_str(), nullptr, 0), L'\0');
    if (value.empty()) return {};
    value.resize(GetEnvironmentVariableW(wide.c_str(), value.data(), static_cast<DWORD>(value.size())));
    return value;
}

NativeFile HomeFolder() {
    const fs::path home = EnvironmentPath("USERPROFILE");
    return home.empty() ? ShellFolder(CSIDL_PROFILE) : home;
}

NativeFile UserDataFolder() {
    return ShellFolder(CSIDL_LOCAL_APPDATA) / "Kelvash";
}

NativeFile UserCacheFolder() {
    return UserDataFolder() / "cache";
}

NativeFile SpecialFolder(SpecialFolderId id) {
    switch (id) {
        case SpecialFolderId::Temporary: {
            std::error_code error;
            return fs::temp_directory_path(error);
        }
        case SpecialFolderId::Programs:
            return ShellFolder(CSIDL_PROGRAMS);
        case SpecialFolderId::Desktop:
            return ShellFolder(CSIDL_DESKTOPDIRECTORY);
        case SpecialFolderId::ProgramFiles:
            return ShellFolder(CSIDL_PROGRAM_FILES);
        case SpecialFolderId::Documents:
            return ShellFolder(CSIDL_PERSONAL);
        case SpecialFolderId::System:
            return ShellFolder(CSIDL_SYSTEM);
    }
    return {};
}

} // namespace kelvash::platform
