#include "foundation/drive_options.h"

#include <algorithm>

#include "foundation/drives.h"
#include "foundation/native_text.h"
#include "foundation/text.h"

namespace kelvash {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kDisc = ",cdrom";

bool NamesDrive(const std::vector<std::string>& drives, char letter) {
    return std::any_of(drives.begin(), drives.end(), [letter](const std::string& drive) {
        return EqualNoCase(drive.substr(0, 1), {&letter, 1});
    });
}

} // namespace

fs::path NativeFromUser(const std::vector<std::string>& drives, std::string_view typed) {
    const fs::path native = NativeFromText(typed);
    const bool has_letter = typed.size() >= 2 && typed[1] == ':';
    if (native.is_absolute() || !has_letter) return native;
    if (NamesDrive(drives, typed[0])) return NativePath(PathFromUser(typed));
    if (!EqualNoCase(typed.substr(0, 1), "Z")) return {};
    std::string rest(typed.substr(2));
    std::replace(rest.begin(), rest.end(), '\\', '/');
    return NativeFromText("/" + rest).lexically_normal();
}

std::string PathWithoutHome(const std::vector<std::string>& drives, std::string_view typed) {
    const fs::path native = NativeFromUser(drives, typed);
    if (native.empty()) return {};
    if (std::string path = PathFromUser(TextOfNative(native)); !path.empty()) return path;
    const fs::path root = fs::absolute(native).root_path();
    const char letter = root.has_root_name() ? TextOfNative(root).front() : 'Z';
    if (NamesDrive(drives, letter) || !SetDrive(letter, root, DriveType::Fixed)) return {};
    return PathFromUser(TextOfNative(native));
}

std::string SetDrives(const std::vector<std::string>& drives) {
    for (const std::string& drive : drives) {
        const bool disc = EndsWithNoCase(drive, kDisc);
        const bool well_formed = drive.size() > 2 && drive[1] == '=';
        const std::string folder =
            well_formed ? drive.substr(2, drive.size() - 2 - (disc ? kDisc.size() : 0)) : std::string();
        if (!well_formed ||
            !SetDrive(drive[0], NativeFromText(folder), disc ? DriveType::CdRom : DriveType::Fixed))
            return "--drive " + drive + ": a letter, '=' and an existing folder are needed";
    }
    return {};
}

} // namespace kelvash
