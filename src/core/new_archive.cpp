// Starting an Archive: level 0000 and an empty folder.
#include "core/archive.h"
#include "core/archive_messages.h"
#include "core/change.h"
#include "core/change_messages.h"
#include "core/fragments.h"
#include "core/level_list.h"
#include "core/path_field.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace {

// The twins of a name are numbered "", "2", "3", ... up to this.
constexpr int kLastTwin = 100;

std::string Twin(int n) {
    return n == 1 ? std::string() : std::to_string(n);
}

bool IsTaken(const std::string& path) {
    return FolderExists(path) || FileExists(path);
}

// The manual that TRLE's maker ships, as level 0000's document.
std::string FirstDocument(const std::string& folder) {
    for (const Fragment& mask : {fragment::kPdfMask, fragment::kHtmMask, fragment::kHtmlMask}) {
        for (const std::string& file : ListFiles(folder, LoadFragment(mask)))
            if (const std::string name = FileNameOf(file); CanKeepPath(name)) return name;
    }
    return {};
}

} // namespace

LevelRecord LevelZero() {
    LevelRecord level;
    level.Name = LoadMessage(msg::kLevelZeroName);
    level.Note = LoadMessage(msg::kLevelZeroNote);
    level.Author = LoadMessage(msg::kLevelZeroAuthor);
    level.Sites = LoadFragment(fragment::kLevelZeroSite1) + '\0' + LoadFragment(fragment::kLevelZeroSite2);
    level.MoreInfoFile = FirstDocument(FilesFolder(LevelFolder(0, false)));
    return level;
}

namespace {

std::string DefaultLevelFolder(std::string_view drive) {
    std::string folder;
    for (int n = 1; n <= kLastTwin; ++n) {
        folder = std::string(drive.substr(0, 2)) + LoadFragment(fragment::kDefaultLevelFolder) + Twin(n);
        if (!IsTaken(folder)) break;
    }
    return folder;
}

bool IsEmptyFolder(const std::string& folder) {
    return !AnyFile(folder, "*.*") && ListFolders(folder).empty();
}

// A free sub-folder of a folder that isn't empty.
std::string FreeSubFolder(const std::string& folder) {
    const std::string base = folder + LoadFragment(fragment::kChangedLevelFolder);
    int n = 1;
    while (IsTaken(base + Twin(n)))
        ++n;
    return base + Twin(n);
}

} // namespace

std::string DefaultArchivePath() {
    std::string path;
    for (int n = 1; n <= kLastTwin; ++n) {
        path = AppFolder() + LoadFragment(fragment::kDefaultArchiveName) + Twin(n) +
               LoadFragment(fragment::kArchiveExtension);
        if (!IsTaken(path)) break;
    }
    return path;
}

std::string SelectNewArchiveFolder() {
    std::int64_t free_bytes = 0;
    const std::string start = DefaultLevelFolder(BestFixedDrive(free_bytes));
    const bool made = !FolderExists(start) && CreateFolder(start);
    const std::optional<std::string> chosen =
        TheUser().ChooseFolder(LoadMessage(msg::kSelectArchiveFolder), start);
    // The one that was only proposed goes again, unless something has been put into it meanwhile.
    if (made && (!chosen || !EqualNoCase(*chosen, start)) && IsEmptyFolder(start)) RemoveFolder(start);
    if (!chosen) return {};
    if (!CheckPath(*chosen)) return {};
    if (IsEmptyFolder(*chosen)) return *chosen;
    const std::string changed = FreeSubFolder(*chosen);
    if (!CheckPath(changed)) return {};
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kArchiveFolderNotEmpty) + changed);
    return changed;
}

bool NewArchive() {
    const Change change(msg::kDoingNew, kHomeFolder | kArchiveFolder);
    if (!change) return false;
    if (!CheckPath(DefaultArchivePath())) return false;
    if (!AskSaveArchive()) return false;
    // From here on the table is no longer that of the old file, which a later save must not reach.
    profile.LastArchive.clear();
    archive.Header = ArchiveHeader();
    archive.Table = {LevelZero()};
    const std::string folder = SelectNewArchiveFolder();
    if (folder.empty()) return false;
    archive.Header.MainFolder = folder;
    archive.Header.SecondaryFolder = folder;
    if (!CreateFolder(folder)) {
        TellCritical(LoadMessage(msg::kCannotWriteArchiveFolder) + folder);
        return false;
    }
    profile.LastArchive = DefaultArchivePath();
    ArchiveTouched(); // the file is made even if the counting is stopped
    ComputeArchiveSize(Report::Silent);
    RefreshLevelList();
    return true;
}

} // namespace kelvash::core
