#include "companion/slot_folders.h"

#include <vector>

#include "companion/fragments.h"
#include "companion/savegames.h"
#include "companion/slots_messages.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/place_file.h"
#include "swap/savegame_files.h"

namespace kelvash::companion {

using swap::SavegameFile;

namespace {

std::string StagingFolder(const core::LevelPlace& level) {
    return core::SavegamesFolder(level.Folder) + LoadFragment(fragment::kSlotStaging);
}

bool IsTrulyEmpty(const std::string& folder) {
    const Tree tree = ScanTree(folder);
    return tree.files.empty() && tree.folders.empty();
}

} // namespace

std::string SlotFolderPath(const core::LevelPlace& level, std::int32_t number) {
    return core::SavegamesFolder(level.Folder) + LoadFragment(fragment::kSlotFolder) + std::to_string(number);
}

std::string FreeSlotFolder(const core::LevelPlace& level) {
    std::int32_t number = 1;
    while (FolderExists(SlotFolderPath(level, number)))
        ++number;
    return SlotFolderPath(level, number);
}

std::string NewSlotFolder(const core::LevelPlace& level, MessageText& why) {
    const std::string staging = StagingFolder(level);
    RemoveCopies(staging, SlotFolder(level));
    // Savegames that are nowhere else stay archived.
    const bool is_own = FolderExists(staging) && !IsLink(staging);
    const bool in_the_way = is_own ? !RenameFile(staging, FreeSlotFolder(level)) : AnythingStands(staging);
    if (in_the_way) {
        why = LoadMessage(msg::kArchiveInTheWay) + staging;
        return {};
    }
    if (CreateFolder(core::SavegamesFolder(level.Folder)) && CreateFolder(staging)) return staging;
    why = LoadMessage(msg::kArchiveNoFolder) + staging;
    return {};
}

void RemoveCopies(const std::string& staging, std::string_view slots) {
    if (!FolderExists(staging) || IsLink(staging)) return;
    static_cast<void>(LeavePlace(staging + "\\" + std::string(kPartialFile)));
    const std::vector<SavegameFile> there = swap::ListSavegameFiles(slots);
    for (const SavegameFile& copy : swap::ListSavegameFiles(staging))
        for (const SavegameFile& save : there) {
            if (!swap::IsHeldBy(copy, save)) continue;
            static_cast<void>(swap::LeavePair(copy)); // one that stays is an archived one
            break;
        }
    RemoveEmptyFolder(staging);
}

std::string LastSlotFolder(const core::LevelPlace& level) {
    std::int32_t number = 0;
    while (FolderExists(SlotFolderPath(level, number + 1)))
        ++number;
    for (; number > 0; --number) {
        std::string folder = SlotFolderPath(level, number);
        if (IsLink(folder)) continue; // it leads to files of somebody else
        if (AnyFile(folder, LoadFragment(fragment::kSaveSlotMask))) return folder;
        if (IsTrulyEmpty(folder)) RemoveEmptyFolder(folder);
    }
    return {};
}

} // namespace kelvash::companion
