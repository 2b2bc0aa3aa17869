#include "core/kept_folders.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <optional>

#include "core/archive.h"
#include "core/archive_messages.h"
#include "core/change.h"
#include "core/fragments.h"
#include "core/level_list.h"
#include "core/moving_messages.h"
#include "core/owner_moves.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "core/tr4_info.h"
#include "foundation/bytes.h"
#include "foundation/date_text.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::core {

namespace fs = std::filesystem;

namespace {

// An old folder's tr4.inf holds a few records of 92 bytes.
constexpr std::size_t kMostInfoBytes = 65536;

std::string FirstLevelFile(const std::string& folder) {
    const std::string info = folder + LoadFragment(fragment::kTr4InfoName);
    if (const std::optional<std::string> bytes = ReadFileStart(info, kMostInfoBytes))
        if (const std::vector<Tr4Info> list = DecodeTr4Info(*bytes); !list.empty())
            return std::string(Trim(list.front().FileName));
    for (const Fragment& mask : {fragment::kTr4InfoMask, fragment::kTr4InfoZlMask}) {
        const std::vector<std::string> files = ListFiles(FilesFolder(folder), LoadFragment(mask));
        if (!files.empty()) return FileNameOf(files.front());
    }
    return {};
}

// The name of its level file up to the first dot; that of the folder if it has none.
std::string NameFor(const std::string& folder) {
    constexpr std::size_t kNameWidth = 256;
    const std::string file = FirstLevelFile(folder);
    const std::string name = FitText(file.substr(0, file.find('.')), kNameWidth);
    return name.empty() ? FitText(FileNameOf(folder), kNameWidth) : name;
}

std::string FreeName(const std::string& base) {
    std::string name = base;
    for (int n = 2; FolderExists(name) || FileExists(name); ++n)
        name = base + "_" + std::to_string(n);
    return name;
}

// Gives a folder that became no level its place in KEPT again, and tells where it lies.
std::int32_t GiveBack(const std::string& folder, const std::string& kept) {
    const bool back = FolderExists(kept) || RenameFile(folder, kept);
    TellCritical(LoadMessage(msg::kKeptCannotTake) + (back ? kept : folder));
    return -1;
}

// The level in the Archive and in its file. False, after a message and with the Archive as it was, if the
// file can't be written.
bool SaveLevel(std::int32_t code, const std::string& name) {
    const ArchiveContents old = archive;
    const bool was_changed = archive.ArchiveChanged;
    LevelRecord level;
    level.Code = code;
    level.Name = name;
    CountLevelSize(PlaceAt(archive.Table.Append(std::move(level)))); // and saves
    if (!profile.AutoSave || !archive.ArchiveChanged) return true;
    static_cast<ArchiveContents&>(archive) = old;
    archive.ArchiveChanged = was_changed;
    return false;
}

// A name of one folder, not a way out of KEPT.
bool IsKept(const std::string& name) {
    const std::vector<KeptLevel> kept = ListKept();
    return std::any_of(kept.begin(), kept.end(),
                       [&](const KeptLevel& level) { return EqualNoCase(level.Folder, name); });
}

} // namespace

std::string KeptFolder() {
    return std::string(Trim(archive.Header.SecondaryFolder)) + "\\KEPT";
}

std::vector<KeptLevel> ListKept() {
    std::vector<KeptLevel> kept;
    for (const std::string& folder : ListFolders(KeptFolder()))
        kept.push_back({FileNameOf(folder), NameFor(folder), TreeSize(folder, "*")});
    return kept;
}

bool HoldsNoFile(std::string_view folder) {
    std::error_code error;
    for (fs::recursive_directory_iterator at(NativePath(folder), error), end; !error && at != end;
         at.increment(error))
        if (at->is_symlink(error) || !at->is_directory(error)) return false;
    return !error || !FolderExists(folder); // one that can't be read may hold anything
}

std::string KeepFolder(const std::string& folder, const std::string& kept_folder) {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    const std::int64_t seconds = std::chrono::floor<std::chrono::seconds>(now).count();
    const std::string kept =
        FreeName(kept_folder + "\\" + FileNameOf(folder) + FormatDate("_yyyy-mm-dd_hhnnss", seconds));
    return CreateFolder(kept_folder) && RenameFile(folder, kept) ? kept : std::string();
}

bool MakeWay(const std::string& folder) {
    if (!FolderExists(folder)) return true;
    Bar bar{BarPlace::CallerForm, -1};
    if (HoldsNoFile(folder) && RemoveFolderTree(folder, bar)) return true;
    const std::string kept = KeepFolder(folder, KeptFolder());
    if (kept.empty()) {
        TellCritical(LoadMessage(msg::kKeptCannotMove) + folder);
        return false;
    }
    ShowMessage(MessageStyle::Exclamation, LoadMessageOfOthers(msg::kKeptMoved, {folder, kept, kLineBreak}));
    if (!NoteLevelMoved(folder, kept)) return false;
    NoteMoveEnded();
    return true;
}

std::int32_t TakeKept(const std::string& folder_name) {
    const Change change(msg::kDoingKept, kAll);
    if (!change) return -1;
    if (!IsKept(folder_name)) {
        TellCritical(LoadMessage(msg::kKeptUnknown) + folder_name);
        return -1;
    }
    const std::string kept = KeptFolder() + "\\" + folder_name;
    const std::string name = NameFor(kept);
    const std::int32_t code = std::max(archive.Table.NextCode(), 1);
    const std::string folder = LevelFolder(code, false);
    if (!MakeWay(folder)) return -1;
    if (!RenameFile(kept, folder) || !CreateLevelFolders(folder) || !NoteLevelMoved(kept, folder))
        return GiveBack(folder, kept);
    if (!SaveLevel(code, name)) {
        static_cast<void>(NoteLevelMoved(folder, kept)); // else the former place counts
        return GiveBack(folder, kept);
    }
    NoteMoveEnded();
    RefreshLevelList();
    SelectLevel(code);
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kKeptTaken) + name);
    return code;
}

bool TakeKeptLevel() {
    const Change change(msg::kDoingKept, kAll);
    if (!change) return false;
    if (ListKept().empty()) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kKeptNone) + KeptFolder());
        return false;
    }
    const std::optional<std::string> chosen =
        TheUser().ChooseFolder(LoadMessage(msg::kKeptChoose), KeptFolder());
    if (!chosen) return false;
    if (!IsSamePlace(FolderOf(*chosen), KeptFolder())) {
        TellCritical(LoadMessage(msg::kKeptUnknown) + *chosen);
        return false;
    }
    return TakeKept(FileNameOf(*chosen)) >= 0;
}

} // namespace kelvash::core
