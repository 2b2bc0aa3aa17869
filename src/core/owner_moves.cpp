#include "core/owner_moves.h"

#include <string>

#include "core/change.h"
#include "core/change_messages.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "trle_state/level_owner.h"
#include "trle_state/swap_record.h"

namespace kelvash::core {

using trle_state::FoundRecord;
using trle_state::LevelOwner;
using trle_state::OwnerIn;
using trle_state::ReadSwapRecord;
using trle_state::RecordState;
using trle_state::WriteSwapRecord;

bool NoteLevelMoved(std::string_view old_folder, std::string_view new_folder) {
    const Change change(msg::kDoingOwner, kHomeFolder);
    if (!change) return false;
    FoundRecord found = ReadSwapRecord();
    LevelOwner& owner = found.Record.Owner;
    if (found.State != RecordState::Good || owner.Folder.empty() || !IsSamePlace(owner.Folder, old_folder) ||
        !FolderExists(new_folder))
        return true;
    const LevelOwner moved = OwnerIn(new_folder);
    owner.Former = owner.Folder;
    owner.Folder = moved.Folder;
    owner.FromHome = moved.FromHome;
    return WriteSwapRecord(found.Record);
}

bool NoteLevelsMoved(std::string_view old_parent, std::string_view new_parent) {
    const std::string name = FileNameOf(ReadSwapRecord().Record.Owner.Folder);
    return name.empty() ||
           NoteLevelMoved(std::string(old_parent) + "\\" + name, std::string(new_parent) + "\\" + name);
}

void NoteMoveEnded() {
    const Change change(msg::kDoingOwner, kHomeFolder);
    if (!change) return;
    FoundRecord found = ReadSwapRecord();
    if (found.State != RecordState::Good || found.Record.Owner.Former.empty()) return;
    found.Record.Owner.Former.clear();
    static_cast<void>(WriteSwapRecord(found.Record)); // the new place stands, and comes first
}

void NoteLevelChanged(std::string_view folder) {
    const Change change(msg::kDoingTr4Info, kHomeFolder);
    if (!change) return;
    FoundRecord found = ReadSwapRecord();
    LevelOwner& owner = found.Record.Owner;
    if (found.State != RecordState::Good || !IsSamePlace(owner.Folder, folder)) return;
    owner.Tr4InfHash = OwnerIn(folder).Tr4InfHash;
    static_cast<void>(WriteSwapRecord(found.Record)); // without it the folder's own place is the proof
}

} // namespace kelvash::core
