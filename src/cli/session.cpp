#include "cli/session.h"

#include <algorithm>
#include <iostream>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::cli {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kDisc = ",cdrom";

bool NamesDrive(const Options& options, char letter) {
    return std::any_of(options.drives.begin(), options.drives.end(), [letter](const std::string& drive) {
        return EqualNoCase(drive.substr(0, 1), {&letter, 1});
    });
}

} // namespace

fs::path NativeFromUser(const Options& options, std::string_view typed) {
    const fs::path native(typed);
    const bool has_letter = typed.size() >= 2 && typed[1] == ':';
    if (native.is_absolute() || !has_letter) return native;
    if (NamesDrive(options, typed[0])) return NativePath(PathFromUser(typed));
    if (!EqualNoCase(typed.substr(0, 1), "Z")) return {};
    std::string rest(typed.substr(2));
    std::replace(rest.begin(), rest.end(), '\\', '/');
    return fs::path("/" + rest).lexically_normal();
}

std::string SetDrives(const Options& options) {
    for (const std::string& drive : options.drives) {
        const bool disc = EndsWithNoCase(drive, kDisc);
        const bool well_formed = drive.size() > 2 && drive[1] == '=';
        const std::string folder =
            well_formed ? drive.substr(2, drive.size() - 2 - (disc ? kDisc.size() : 0)) : std::string();
        if (!well_formed || !SetDrive(drive[0], folder, disc ? DriveType::CdRom : DriveType::Fixed))
            return "--drive " + drive + ": a letter, '=' and an existing folder are needed";
    }
    return {};
}

fs::path HomeOf(const Options& options) {
    return options.home.empty() ? DefaultAppFolder() : NativeFromUser(options, options.home);
}

bool TakeHome(Session& session, MissingHome missing) {
    if (session.home_taken) return true;
    std::error_code error;
    const bool stands = fs::is_directory(session.home, error);
    if ((!stands && missing == MissingHome::Refuse) || !SetAppFolder(session.home)) {
        TellCritical(LoadMessage(stands ? MessageId::kCliCannotWrite : MessageId::kCliNoHome, {}) +
                     session.home.string());
        return false;
    }
    session.home_taken = true;
    const std::string table = AppFolder() + "\\messages.txt";
    if (FileExists(table) && !LoadMessageTable(table))
        std::cerr << LoadMessage(MessageId::kCliTableRefused, {}) << NativePath(table).string() << '\n';
    return true;
}

} // namespace kelvash::cli
