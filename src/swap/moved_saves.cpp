#include "swap/moved_saves.h"

#include <algorithm>

#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/place_file.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/fragments.h"
#include "swap/moved_saves_messages.h"
#include "swap/rescued_saves.h"
#include "swap/savegame_files.h"
#include "trle_state/level_owner.h"
#include "trle_state/record_lines.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::Holds;
using trle_state::HoldSameBytes;
using trle_state::LevelOwner;
using trle_state::LookAtTrle;
using trle_state::RecordValues;
using trle_state::StampOf;
using trle_state::TrleState;

namespace {

struct MovingState {
    int Scopes = 0;
};
constinit MovingState& moving = State<MovingState>::Get();

constexpr std::string_view kFirstLine = "Kelvash moved saves 1\n";
constexpr std::size_t kLongestRecord = std::size_t{1} << 20;

bool IsOwnFolder() {
    return FolderExists(MovingFolder()) && !IsLink(MovingFolder());
}

std::vector<std::string> WaitingFiles() {
    return IsOwnFolder() ? ListFiles(MovingFolder(), "*") : std::vector<std::string>();
}

std::optional<MovedSaves> ReadRecord() {
    const std::optional<std::string> bytes = ReadFileStart(MovingRecord(), kLongestRecord);
    return bytes ? DecodeMovedSaves(*bytes) : std::nullopt;
}

// The savegame of a list that has the same bytes, if there is one; of several the one with the same note.
const SavegameFile* FindTwin(const SavegameFile& save, const std::vector<SavegameFile>& among) {
    const SavegameFile* found = nullptr;
    for (const SavegameFile& other : among) {
        if (!HoldSameBytes(save.Path, other.Path)) continue;
        if (save.Note.empty() ? other.Note.empty() : HoldSameBytes(save.Note, other.Note)) return &other;
        if (found == nullptr) found = &other;
    }
    return found;
}

// Under its own name, odd as it may be, if nothing of that number is there.
bool BringHome(const SavegameFile& save, const std::string& slots, const std::string& level_folder) {
    const std::int32_t own = SlotNumber(save.Path);
    if (const std::string target = slots + "\\" + FileNameOf(save.Path);
        !EqualNoCase(target, SavegamePath(slots, own)) && save.Note.empty() && !FileExists(target))
        return PlaceFileNew(save.Path, target) && LeavePair(save);
    const std::int32_t number = FreeNumber(slots, own) == own ? own : FreeNumber(slots, 0);
    return PlacePair(save, slots, number, level_folder, Placing::Move) && LeavePair(save);
}

// What is there already has come home before the end of the run.
void BringAllHome(const std::string& slots, const std::string& level_folder) {
    std::vector<SavegameFile> there = ListSavegameFiles(slots);
    for (const SavegameFile& save : ListSavegameFiles(MovingFolder())) {
        const SavegameFile* twin = FindTwin(save, there);
        if (twin == nullptr) {
            static_cast<void>(BringHome(save, slots, level_folder)); // what stays is told by its place
            continue;
        }
        if (PassNote(save.Note, *twin, level_folder)) static_cast<void>(LeavePlace(save.Path));
        there.erase(there.begin() + (twin - there.data())); // it stands for one only
    }
    for (const std::string& note : ListLoneNotes(MovingFolder()))
        static_cast<void>(MoveNoteToRepeated(note, level_folder));
}

std::string FromWhere(const std::optional<MovedSaves>& moved) {
    return moved ? LoadMessage(msg::kMovingOwner, {moved->Owner.Name, moved->Archive, moved->Owner.Folder})
                 : LoadMessage(msg::kMovingUnknown, {MovingFolder()});
}

} // namespace

std::string EncodeMovedSaves(const MovedSaves& moved) {
    std::string bytes(kFirstLine);
    trle_state::AppendLine("archive", {moved.Archive}, bytes);
    trle_state::AppendOwner(moved.Owner, bytes);
    trle_state::AppendFiles("save", moved.Files, bytes);
    trle_state::AppendEnd(bytes);
    return bytes;
}

std::optional<MovedSaves> DecodeMovedSaves(std::string_view bytes) {
    MovedSaves moved;
    const bool sound = trle_state::TakeRecordLines(bytes, kFirstLine,
                                                   [&](const std::string& key, const RecordValues& values) {
                                                       if (key == "archive" && !values.empty())
                                                           moved.Archive = values[0];
                                                       if (key == "owner")
                                                           return TakeOwner(values, moved.Owner);
                                                       if (key == "save")
                                                           return TakeFile(values, moved.Files);
                                                       return true;
                                                   });
    return sound ? std::optional<MovedSaves>(std::move(moved)) : std::nullopt;
}

std::string MovingFolder() {
    return AppFolder() + LoadFragment(fragment::kMovingFolder);
}

std::string MovingRecord() {
    return AppFolder() + LoadFragment(fragment::kMovingRecord);
}

std::string SlotsOfFolder(std::string_view level_folder) {
    const TrleState state = LookAtTrle();
    const bool known = state.Content != Holds::Unknown && FolderExists(core::TrleFolder());
    const std::string owner = state.OwnerFolder.empty() && state.Content == Holds::Original
                                  ? core::LevelFolder(0, false)
                                  : state.OwnerFolder;
    if (known && !owner.empty() && IsSamePlace(owner, level_folder)) return core::TrleFolder();
    return core::StashFolder(level_folder);
}

bool BeginMoving(const LevelOwner& owner, const std::vector<std::string>& files, MessageText& why) {
    if (IsLink(MovingFolder()) || FileExists(MovingFolder())) {
        why = LoadMessage(msg::kMovingFolderInTheWay) + MovingFolder();
        return false;
    }
    MovedSaves moved{core::profile.LastArchive, owner};
    for (const std::string& file : files)
        moved.Files.push_back({FileNameOf(file), StampOf(file)});
    if (!ReplaceFileBytes(MovingRecord(), EncodeMovedSaves(moved), Flush::Yes)) {
        why = LoadMessage(msg::kMovingRecordFailed) + MovingRecord();
        return false;
    }
    if (CreateFolder(MovingFolder()) && WaitingFiles().empty() && ListFolders(MovingFolder()).empty())
        return true;
    why = LoadMessage(msg::kMovingFolderInTheWay) + MovingFolder();
    DeleteFile(MovingRecord());
    return false;
}

bool EndMoving() {
    return (!IsOwnFolder() || RemoveEmptyFolder(MovingFolder())) && DeleteFile(MovingRecord());
}

bool BringMovedSavesHome(Rescue rescue, MessageText& why) {
    if (!IsOwnFolder() && !FileExists(MovingRecord())) return true;
    if (IsOwnFolder()) DeleteFile(MovingFolder() + "\\" + std::string(kPartialFile));
    const std::optional<MovedSaves> moved = ReadRecord();
    if (!WaitingFiles().empty() && moved) {
        const std::string level_folder = trle_state::FindOwnerFolder(moved->Owner);
        const std::string slots = level_folder.empty() ? std::string() : SlotsOfFolder(level_folder);
        if (!slots.empty() && CreateFolder(slots)) BringAllHome(slots, level_folder);
    }
    const std::vector<std::string> left = WaitingFiles();
    if (left.empty() || (rescue == Rescue::Yes && RescueFiles(left, FromWhere(moved)))) {
        static_cast<void>(EndMoving()); // a folder that holds folders is for the next BeginMoving to judge
        return true;
    }
    why = LoadMessage(msg::kMovingNotEmpty) + MovingFolder();
    return false;
}

void LookForMovedSaves() {
    if (moving.Scopes > 0 || (WaitingFiles().empty() && !FileExists(MovingRecord()))) return;
    const core::Change change(msg::kDoingHomecoming, core::kAll | core::kUntold);
    MessageText why;
    if (change && !BringMovedSavesHome(Rescue::Yes, why)) TellCritical(why);
}

MovingScope::MovingScope() {
    ++moving.Scopes;
}

MovingScope::~MovingScope() {
    --moving.Scopes;
}

} // namespace kelvash::swap
