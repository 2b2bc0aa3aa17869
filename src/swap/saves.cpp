#include "swap/saves.h"

#include <algorithm>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "swap/journal.h"

namespace kelvash::swap {

namespace {

bool CopyInto(const std::vector<std::string>& files, const std::string& folder) {
    return std::all_of(files.begin(), files.end(), [&](const std::string& file) {
        return CopyFileWhole(file, folder + "\\" + FileNameOf(file));
    });
}

// The saves whose twins in a protected stash are newer: a full restore brings old ones back from the backup.
bool IsOutdated(const std::string& save, const std::string& stash) {
    const std::optional<std::int64_t> stashed = FileTime(stash + "\\" + FileNameOf(save));
    return stashed && *stashed > FileTime(save).value_or(*stashed);
}

// Deletes the files of the stash that have no twin among the saves.
bool DropStale(const std::string& stash, const std::vector<std::string>& saves) {
    for (const std::string& old : ListFiles(stash, "*")) {
        const std::string name = FileNameOf(old);
        const bool current = std::any_of(saves.begin(), saves.end(), [&](const std::string& save) {
            return EqualNoCase(FileNameOf(save), name);
        });
        if (!current && !DeleteFile(old)) return false;
    }
    return true;
}

} // namespace

std::vector<std::string> ListSaves() {
    std::vector<std::string> saves;
    for (const MessageId mask : {MessageId::kSavegameMask, MessageId::kShotMask, MessageId::kNoteMask}) {
        const std::vector<std::string> found = ListFiles(core::TrleFolder(), LoadMessage(mask, {}));
        saves.insert(saves.end(), found.begin(), found.end());
    }
    return saves;
}

StashResult StashLevelFiles(std::int32_t code) {
    const std::string stash = core::StashFolder(core::LevelFolder(code, false));
    const std::optional<SwapJournal> journal = ReadJournal();
    const bool merge = journal && journal->SavesOwner == code;
    DeleteFile(core::TrleFolder() + "\\" + std::string(kPartialFile));
    const std::vector<std::string> saves = ListSaves();
    CreateFolder(stash);
    std::vector<std::string> incoming = saves;
    if (merge) std::erase_if(incoming, [&](const std::string& save) { return IsOutdated(save, stash); });
    bool copied = CopyInto(incoming, stash);
    if (!copied && !merge) {
        // A full disk may have room once the old stash is gone; the root still holds everything.
        if (!DeleteFiles(stash, "*")) return StashResult::CannotEmpty;
        copied = CopyInto(saves, stash);
    }
    if (!copied) return StashResult::CannotCopy;
    if (!merge && !DropStale(stash, saves)) return StashResult::CannotEmpty;
    // From here on the root may lack what the stash holds, also where there was nothing to put away. The
    // lists of an install cut short are still needed.
    if (!WriteJournal(merge ? *journal : SwapJournal{code})) return StashResult::CannotNote;
    const bool deleted = std::all_of(saves.begin(), saves.end(), DeleteFile);
    return deleted ? StashResult::Done : StashResult::CannotDelete;
}

bool RescueSaves() {
    const std::vector<std::string> saves = ListSaves();
    if (saves.empty()) return true;
    const std::string base = AppFolder() + LoadMessage(MessageId::kRescueFolder, {});
    int number = 1;
    while (FolderExists(base + std::to_string(number)))
        ++number;
    const std::string folder = base + std::to_string(number);
    if (!CreateFolder(folder) || !CopyInto(saves, folder)) return false;
    if (!std::all_of(saves.begin(), saves.end(), DeleteFile)) return false;
    ShowMessage(MessageStyle::Exclamation, LoadMessage(MessageId::kSavesRescued, {}) + folder);
    return true;
}

bool BringBackLevelFiles(std::int32_t code) {
    const std::string stash = core::StashFolder(core::LevelFolder(code, false));
    DeleteFile(stash + "\\" + std::string(kPartialFile));
    return CopyInto(ListFiles(stash, "*"), core::TrleFolder());
}

} // namespace kelvash::swap
