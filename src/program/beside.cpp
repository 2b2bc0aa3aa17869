#include "program/beside.h"

#include <algorithm>
#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "companion/savegames.h"
#include "companion/screenshots.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/state.h"
#include "trle_state/marker.h"
#include "trle_state/swap_record.h"
#include "trle_state/trle_state.h"

namespace kelvash::program {

namespace {

// A file or folder as the disk has it, to the finest step of its clock: two changes may lie in one second.
struct Look {
    std::int64_t Size = -1; // below 0: it isn't there
    std::int64_t Time = 0;
    bool operator==(const Look&) const = default;
};
using Looks = std::vector<Look>;

struct BesideState {
    std::string ArchivePath;
    Look Archive;
    Looks Trle;
    Looks Level; // the selected one
};
constinit BesideState& state = State<BesideState>::Get();

Look LookAt(const std::string& path) {
    std::error_code error;
    const std::filesystem::directory_entry entry(NativePath(path), error);
    if (error || !entry.exists(error)) return {};
    const auto time = entry.last_write_time(error).time_since_epoch();
    const bool is_file = entry.is_regular_file(error);
    const auto size = is_file ? static_cast<std::int64_t>(entry.file_size(error)) : 0;
    return error ? Look() : Look{size, std::chrono::duration_cast<std::chrono::nanoseconds>(time).count()};
}

Looks LookAtAll(const std::vector<std::string>& paths) {
    Looks looks;
    std::transform(paths.begin(), paths.end(), std::back_inserter(looks), &LookAt);
    return looks;
}

Looks LookAtTrleFolder() {
    const std::string trle = core::TrleFolder();
    return trle.empty() ? Looks() : LookAtAll({trle, trle_state::SwapRecordPath(), trle_state::MarkerPath()});
}

// The game writes its slots in place, and graphics programs their pictures, which a folder doesn't show.
Looks LookAtLevel() {
    const core::LevelPlace level = core::PlaceOf(core::SelectedLevel());
    if (!level.IsListed()) return {};
    std::vector<std::string> paths = companion::SlotSavegames(level);
    for (const std::string& picture : companion::Screenshots(level))
        paths.push_back(picture);
    for (const std::string& folder :
         {level.Folder, core::FilesFolder(level.Folder), core::SavegamesFolder(level.Folder),
          core::StashFolder(level.Folder), core::ScreenshotsFolder(level.Folder)})
        paths.push_back(folder);
    // In which archived savegames and their notes come and go.
    for (const std::string& folder : ScanTree(core::SavegamesFolder(level.Folder)).folders)
        paths.push_back(folder);
    return LookAtAll(paths);
}

// True if the Archive has been read again, and the list with it.
bool TakeArchive() {
    const std::string path = core::profile.LastArchive;
    if (!core::ArchiveIsOpen() || core::archive.ArchiveChanged) return false;
    const Look now = LookAt(path);
    if (path == state.ArchivePath && now == state.Archive) return false;
    state.ArchivePath = path;
    state.Archive = now;
    return core::RefreshArchive(); // the program's own writing changes nothing
}

// True if another level is in than the list says; the list is refreshed then.
bool TakeTrle() {
    Looks now = LookAtTrleFolder();
    if (now == state.Trle) return false;
    state.Trle = std::move(now);
    if (trle_state::CurrentLevelCode() == core::level_list.InTrle) return false;
    core::RefreshLevelList();
    return true;
}

} // namespace

Beside TakeWhatIsBeside() {
    const bool archive_read = TakeArchive();
    const bool other_level = TakeTrle();
    if (archive_read || other_level) return Beside::List;
    if (LookAtLevel() == state.Level) return Beside::Nothing;
    return Beside::Page;
}

void NoteShownLevel() {
    state.Level = LookAtLevel();
}

} // namespace kelvash::program
