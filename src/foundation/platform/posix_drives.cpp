#include <pwd.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <map>
#include <sstream>
#include <unordered_map>

#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/platform/posix_common.h"
#include "foundation/text.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

// Mount points of discs.
std::vector<fs::path> DiscMounts() {
    std::vector<fs::path> mounts;
    std::ifstream table("/proc/self/mounts");
    for (std::string line; std::getline(table, line);) {
        std::istringstream fields(line);
        std::string device, mount, type;
        fields >> device >> mount >> type;
        if (type == "iso9660" || type == "udf") mounts.emplace_back(mount);
    }
    return mounts;
}

DriveType TypeOf(const fs::path& root, const std::vector<fs::path>& discs) {
    if (root == "/") return DriveType::Network;
    for (const fs::path& disc : discs)
        if (root == disc) return DriveType::CdRom;
    return DriveType::Fixed;
}

// Letters of a Wine prefix: the links "c:", "d:", ... (the links "d::" name devices).
std::vector<MappedDrive> PrefixDrives(const std::vector<fs::path>& discs) {
    std::vector<MappedDrive> drives;
    std::error_code error;
    const fs::path devices = WinePrefix() / "dosdevices";
    for (fs::directory_iterator at(devices, error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename().string();
        std::error_code broken;
        if (name.size() != 2 || name[1] != ':' || !fs::is_directory(at->path(), broken)) continue;
        const fs::path root = fs::canonical(at->path(), broken);
        if (!broken) drives.push_back({FoldCase(name)[0], root, TypeOf(root, discs)});
    }
    return drives;
}

bool IsMapped(const std::vector<MappedDrive>& drives, const fs::path& root) {
    for (const MappedDrive& drive : drives)
        if (drive.root == root) return true;
    return false;
}

char FreeLetter(const std::vector<MappedDrive>& drives) {
    for (char letter = 'D'; letter <= 'Y'; ++letter) {
        bool used = false;
        for (const MappedDrive& drive : drives)
            used = used || drive.letter == letter;
        if (!used) return letter;
    }
    return 0;
}

bool SameFile(const fs::path& path) {
    std::error_code error;
    return fs::exists(fs::symlink_status(path, error));
}

// Spellings that a folder had, or that were asked for and may stand there by now, by their folded form.
struct KnownFolder {
    int users = 0;
    std::unordered_map<std::string, std::vector<std::string>> spellings;
};
using KnownFolders = std::map<fs::path, KnownFolder>;

KnownFolders& FoldersOfThread() {
    thread_local KnownFolders folders;
    return folders;
}

std::string KnownEntry(KnownFolder& known, const fs::path& folder, const std::string& name) {
    std::vector<std::string>& spellings = known.spellings[kelvash::FoldCase(name)];
    for (const std::string& spelling : spellings)
        if (SameFile(folder / spelling)) return spelling;
    if (std::find(spellings.begin(), spellings.end(), name) == spellings.end()) spellings.push_back(name);
    return {};
}

// The entry of a folder that has the name in another case; empty if there is none.
std::string EntryNoCase(const fs::path& folder, const std::string& name) {
    const auto known = FoldersOfThread().find(folder);
    if (known != FoldersOfThread().end()) return KnownEntry(known->second, folder, name);
    const std::string folded = kelvash::FoldCase(name);
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const std::string found = at->path().filename().string();
        if (kelvash::FoldCase(found) == folded) return found;
    }
    return {};
}

} // namespace

NativeFile EnvironmentPath(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? fs::path() : fs::path(value);
}

NativeFile HomeFolder() {
    const fs::path home = EnvironmentPath("HOME");
    if (!home.empty()) return home;
    const passwd* entry = ::getpwuid(::getuid());
    return entry == nullptr ? fs::path("/tmp") : fs::path(entry->pw_dir);
}

NativeFile WinePrefix() {
    const fs::path prefix = EnvironmentPath("WINEPREFIX");
    return prefix.empty() ? HomeFolder() / ".wine" : prefix;
}

std::vector<MappedDrive> SystemDrives(const NativeFile& home) {
    const std::vector<fs::path> discs = DiscMounts();
    std::vector<MappedDrive> drives = PrefixDrives(discs);
    if (drives.empty()) {
        std::error_code error;
        fs::create_directories(home / "drive_c", error);
        drives = {{'C', home / "drive_c", DriveType::Fixed}, {'Z', "/", DriveType::Network}};
    }
    for (const fs::path& disc : discs) {
        const char letter = IsMapped(drives, disc) ? '\0' : FreeLetter(drives);
        if (letter != 0) drives.push_back({letter, disc, DriveType::CdRom});
    }
    return drives;
}

bool VolumeInfo(const NativeFile& folder, DriveRecord& record) {
    struct statvfs status {};
    if (::statvfs(folder.c_str(), &status) != 0) return false;
    record.serial_number = static_cast<std::uint32_t>(status.f_fsid);
    record.free_bytes = static_cast<std::int64_t>(status.f_bavail * status.f_frsize);
    record.total_bytes = static_cast<std::int64_t>(status.f_blocks * status.f_frsize);
    return true;
}

NativeFile FindExact(const NativeFile& root, std::string_view rest) {
    const std::vector<std::string> names = Split(rest, '\\');
    NativeFile exact = root;
    for (const std::string& name : names)
        if (!name.empty()) exact /= name;
    if (SameFile(exact)) return exact;

    NativeFile found = root;
    bool exists = true;
    for (const std::string& name : names) {
        if (name.empty()) continue;
        if (exists && !SameFile(found / name)) {
            const std::string other = EntryNoCase(found, name);
            exists = !other.empty();
            found /= exists ? other : name;
        } else {
            found /= name;
        }
    }
    return found;
}

void KnowFolder(const NativeFile& folder) {
    KnownFolder& known = FoldersOfThread()[folder];
    if (++known.users > 1) return;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        const std::string name = at->path().filename().string();
        known.spellings[kelvash::FoldCase(name)].push_back(name);
    }
}

void ForgetFolder(const NativeFile& folder) {
    const auto known = FoldersOfThread().find(folder);
    if (known != FoldersOfThread().end() && --known->second.users == 0) FoldersOfThread().erase(known);
}

NativeFile ExecutablePath() {
    std::error_code error;
    return fs::read_symlink("/proc/self/exe", error);
}

NativeFile UserDataFolder() {
    const fs::path data = EnvironmentPath("XDG_DATA_HOME");
    return (data.empty() ? HomeFolder() / ".local" / "share" : data) / "kelvash";
}

NativeFile UserCacheFolder() {
    const fs::path cache = EnvironmentPath("XDG_CACHE_HOME");
    return (cache.empty() ? HomeFolder() / ".cache" : cache) / "kelvash";
}

NativeFile SpecialFolder(SpecialFolderId id) {
    const fs::path data = UserDataFolder().parent_path();
    switch (id) {
        case SpecialFolderId::Temporary: {
            std::error_code error;
            return fs::temp_directory_path(error);
        }
        case SpecialFolderId::Programs:
            return data / "applications";
        case SpecialFolderId::Desktop:
            return HomeFolder() / "Desktop";
        case SpecialFolderId::ProgramFiles:
            return NativePath("C:\\Program Files");
        case SpecialFolderId::Documents:
            return HomeFolder() / "Documents";
        case SpecialFolderId::System:
            return NativePath("C:\\windows\\system32");
    }
    return {};
}

} // namespace kelvash::platform
