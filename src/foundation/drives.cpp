#include "foundation/drives.h"

#include <algorithm>
#include <fstream>
#include <optional>

#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/state.h"
#include "foundation/text.h"

namespace kelvash {

namespace fs = std::filesystem;

namespace {

// A path that can't exist and below which nothing can be made, so that all work on an unknown drive fails.
constexpr const char* kNowhere = "/dev/null/no-such-drive";

// The drives in use. Those set by hand outlive a change of the application's folder.
struct DriveTable {
    fs::path home;
    std::vector<platform::MappedDrive> by_hand;
    std::vector<platform::MappedDrive> all;
};

DriveTable& Drives() {
    return State<DriveTable>::Get();
}

char LetterOf(std::string_view text) {
    const char letter = text.empty() ? '\0' : FoldCase(text.substr(0, 1))[0];
    return letter >= 'A' && letter <= 'Z' ? letter : '\0';
}

const platform::MappedDrive* FindDrive(char letter) {
    for (const platform::MappedDrive& drive : Drives().all)
        if (drive.letter == letter) return &drive;
    return nullptr;
}

void Map(std::vector<platform::MappedDrive>& drives, const platform::MappedDrive& drive) {
    std::erase_if(drives, [&](const platform::MappedDrive& old) { return old.letter == drive.letter; });
    drives.push_back(drive);
}

// A line "L=folder" or "L=folder,cdrom"; nothing for any other line.
std::optional<platform::MappedDrive> ParseDriveLine(std::string_view line) {
    line = Trim(line);
    const char letter = LetterOf(line);
    if (letter == 0 || line.size() < 3 || line[1] != '=') return std::nullopt;
    std::string folder(line.substr(2));
    const bool disc = EndsWithNoCase(folder, ",cdrom");
    if (disc) folder.resize(folder.size() - 6);
    return platform::MappedDrive{letter, NativeFromText(folder), disc ? DriveType::CdRom : DriveType::Fixed};
}

void ReadDrivesFile(const fs::path& file, std::vector<platform::MappedDrive>& drives) {
    std::ifstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (const auto drive = ParseDriveLine(line)) Map(drives, *drive);
    }
}

std::vector<std::string> LettersOfType(DriveType type) {
    std::vector<std::string> letters;
    for (char letter = 'C'; letter <= 'Z'; ++letter) {
        const platform::MappedDrive* drive = FindDrive(letter);
        if (drive != nullptr && drive->type == type) letters.push_back({letter, ':'});
    }
    return letters;
}

// The components of `path` below `root`; nothing if it isn't below.
std::optional<fs::path> Below(const fs::path& path, const fs::path& root) {
    const auto [in_root, in_path] = std::mismatch(root.begin(), root.end(), path.begin(), path.end());
    if (in_root != root.end()) return std::nullopt;
    fs::path rest;
    for (auto at = in_path; at != path.end(); ++at)
        rest /= *at;
    return rest;
}

fs::path WithoutEndSlash(const fs::path& path) {
    return !path.has_filename() && path.has_parent_path() && path != path.root_path() ? path.parent_path()
                                                                                      : path;
}

fs::path AbsoluteClean(const fs::path& path) {
    std::error_code error;
    const fs::path whole = WithoutEndSlash(fs::absolute(path, error).lexically_normal());
    // A drive letter (there is none on a Unix) may have been typed small.
    const std::string drive = TextOfNative(whole.root_name());
    return drive.empty() ? whole
                         : NativeFromText(FoldCase(drive)) / whole.root_directory() / whole.relative_path();
}

std::string BackSlashed(const fs::path& path) {
    std::string text = GenericTextOf(path);
    std::replace(text.begin(), text.end(), '/', '\\');
    return text;
}

} // namespace

bool SetAppFolder(const fs::path& home) {
    std::error_code error;
    fs::create_directories(home, error);
    if (!fs::is_directory(home, error)) return false;
    DriveTable& table = Drives();
    table.home = WithoutEndSlash(fs::canonical(home, error));
    table.all = platform::SystemDrives(table.home);
    ReadDrivesFile(table.home / "drives.txt", table.all);
    for (const platform::MappedDrive& drive : table.by_hand)
        Map(table.all, drive);
    return true;
}

std::string AppFolder() {
    return DosPath(Drives().home);
}

std::string ProgramPath() {
    return DosPath(platform::ExecutablePath());
}

fs::path DefaultAppFolder() {
    if (const fs::path home = platform::EnvironmentPath("KELVASH_HOME"); !home.empty()) return home;
    const fs::path own = platform::ExecutablePath().parent_path();
    std::error_code error;
    if (fs::exists(own / "Kelvash.prf", error)) return own;
    return platform::UserDataFolder();
}

bool SetDrive(char letter, const fs::path& folder, DriveType type) {
    std::error_code error;
    const char upper = LetterOf({&letter, 1});
    if (upper == 0 || !fs::is_directory(folder, error)) return false;
    const platform::MappedDrive drive{upper, WithoutEndSlash(fs::canonical(folder, error)), type};
    Map(Drives().by_hand, drive);
    Map(Drives().all, drive);
    return true;
}

void ResetDrives() {
    Drives() = {};
}

fs::path NativePath(std::string_view path) {
    const platform::MappedDrive* drive =
        path.size() >= 2 && path[1] == ':' ? FindDrive(LetterOf(path)) : nullptr;
    // A "/" would be one more separator: a name of a stranger could lead anywhere by it.
    constexpr std::string_view kNotInPaths("/\0", 2);
    if (drive == nullptr || path.find_first_of(kNotInPaths) != std::string_view::npos) return kNowhere;
    return platform::FindExact(drive->root, path.substr(2));
}

std::string DosPath(const fs::path& native) {
    const fs::path path = AbsoluteClean(native);
    std::string shortest;
    for (const platform::MappedDrive& drive : Drives().all) {
        const std::optional<fs::path> rest = Below(path, drive.root);
        // A back-slash within a name would read as the border of two.
        if (!rest || GenericTextOf(*rest).find('\\') != std::string::npos) continue;
        const std::string text =
            std::string{drive.letter, ':'} + (rest->empty() ? "" : "\\" + BackSlashed(*rest));
        if (shortest.empty() || text.size() < shortest.size()) shortest = text;
    }
    return shortest;
}

std::string PathFromUser(std::string_view typed) {
    if (typed.size() >= 2 && typed[1] == ':' && LetterOf(typed) != 0) {
        std::string path(typed);
        std::replace(path.begin(), path.end(), '/', '\\');
        while (path.size() > 2 && path.back() == '\\')
            path.pop_back();
        return path;
    }
    // Through the folder's links, so that two spellings of one place give one text.
    std::error_code error;
    const fs::path whole = AbsoluteClean(NativeFromText(typed));
    const fs::path known = fs::weakly_canonical(whole, error);
    return DosPath(error ? whole : known);
}

std::vector<fs::path> DriveRoots() {
    std::vector<fs::path> roots;
    for (const platform::MappedDrive& drive : Drives().all)
        roots.push_back(drive.root);
    return roots;
}

bool DriveInfo(std::string_view letter, DriveRecord& record) {
    record = {};
    const platform::MappedDrive* drive = FindDrive(LetterOf(letter));
    if (drive == nullptr) return false;
    record.letter = drive->letter;
    record.type = drive->type;
    std::error_code error;
    record.ready = fs::is_directory(drive->root, error) && platform::VolumeInfo(drive->root, record);
    return true;
}

std::vector<std::string> CdDrives() {
    return LettersOfType(DriveType::CdRom);
}

std::vector<std::string> FixedDrives() {
    return LettersOfType(DriveType::Fixed);
}

std::string BestFixedDrive(std::int64_t& free_bytes) {
    std::string best;
    free_bytes = 0;
    for (const std::string& drive : FixedDrives()) {
        DriveRecord record;
        if (DriveInfo(drive, record) && record.ready && (best.empty() || record.free_bytes > free_bytes)) {
            best = drive;
            free_bytes = record.free_bytes;
        }
    }
    return best;
}

std::int64_t FreeSpace(std::string_view path) {
    DriveRecord record;
    return platform::VolumeInfo(NativePath(path), record) ? record.free_bytes : -1;
}

std::string SpecialFolder(SpecialFolderId id) {
    const fs::path folder = platform::SpecialFolder(id);
    return folder.empty() ? std::string() : DosPath(folder);
}

} // namespace kelvash
