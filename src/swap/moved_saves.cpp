#include "swap/moved_saves.h"

#include <algorithm>

#include "core/archive.h"
#include "core/change.h"
#include "core/ports.h"
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
using trle_state::TrleState;

namespace {

struct MovingState {
    int Scopes = 0;
    int Renumberings = 0; // under way
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
        !EqualNoCase(target, SavegamePath(slots, own)) && save.Note.empty() && !AnythingStands(target))
        return PlaceFileNew(save.Path, target) && FlushFolder(slots) && LeavePair(save);
    const std::int32_t number = FreeNumber(slots, own) == own ? own : FreeNumber(slots, 0);
    return PlacePair(save, slots, number, level_folder, Placing::Move) && FlushFolder(slots) &&
           LeavePair(save);
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
    return moved ? LoadMessageOfOthers(msg::kMovingOwner,
                                       {moved->Owner.Name, moved->Archive, moved->Owner.Folder})
                 : LoadMessage(msg::kMovingUnknown, {MovingFolder()});
}

} // namespace

std::string EncodeMovedSaves(const MovedSaves& moved) {
    std::string bytes(kFirstLine);
    trle_state::AppendLine("archive", {moved.Archive}, bytes);
    trle_state::AppendOwner(moved.Owner, bytes);
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
    const bool is_zero = IsSamePlace(core::LevelFolder(0, false), level_folder);
    if (state.Content == Holds::Unknown) return is_zero ? std::string() : core::StashFolder(level_folder);
    const bool is_in = state.OwnerFolder.empty() ? is_zero && state.Content == Holds::Original
                                                 : IsSamePlace(state.OwnerFolder, level_folder);
    if (!is_in) return core::StashFolder(level_folder);
    return FolderExists(core::TrleFolder()) ? core::TrleFolder() : std::string();
}

bool BeginMoving(const LevelOwner& owner, MessageText& why) {
    if (IsLink(MovingFolder()) || FileExists(MovingFolder())) {
        why = LoadMessage(msg::kMovingFolderInTheWay) + MovingFolder();
        return false;
    }
    const std::string record = EncodeMovedSaves({core::profile.LastArchive, owner});
    if (!ReplaceFileBytes(MovingRecord(), record, Flush::Yes)) {
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
    if (moving.Renumberings > 0) {
        why = LoadMessage(msg::kMovingUnderWay);
        return false;
    }
    // It may be a second name of a savegame, whose attributes are to stay.
    if (IsOwnFolder()) static_cast<void>(LeavePlace(MovingFolder() + "\\" + std::string(kPartialFile)));
    const std::optional<MovedSaves> moved = ReadRecord();
    bool may_rescue = rescue == Rescue::Yes;
    if (!WaitingFiles().empty() && moved) {
        const std::string level_folder = trle_state::FindOwnerFolder(moved->Owner);
        const std::string slots = level_folder.empty() ? std::string() : SlotsOfFolder(level_folder);
        if (!slots.empty() && CreateFolder(slots)) BringAllHome(slots, level_folder);
        may_rescue = may_rescue && (level_folder.empty() || FolderExists(core::TrleFolder()));
    }
    const std::vector<std::string> left = WaitingFiles();
    if (left.empty() || (may_rescue && RescueFiles(left, FromWhere(moved)))) {
        static_cast<void>(EndMoving()); // a folder that holds folders is for the next BeginMoving to judge
        return true;
    }
    why = LoadMessage(msg::kMovingNotEmpty) + MovingFolder();
    return false;
}

void LookForMovedSaves() {
    if (moving.Scopes > 0 || (WaitingFiles().empty() && !FileExists(MovingRecord()))) return;
    // Without an Archive the owner may not be known yet, and a box would lie below a running game.
    const bool told = core::ArchiveIsOpen() && core::FindGame() == 0;
    const core::Change change(msg::kDoingHomecoming,
                              core::kAll | core::kUntold | (told ? 0U : core::kSilent));
    MessageText why;
    const bool home = change && BringMovedSavesHome(told ? Rescue::Yes : Rescue::No, why);
    if (change && !home && told) TellCritical(why);
}

RenumberScope::RenumberScope() {
    ++moving.Renumberings;
}

void RenumberScope::End() {
    if (stands_) --moving.Renumberings;
    stands_ = false;
}

MovingScope::MovingScope() : is_outermost_(moving.Scopes == 0) {
    ++moving.Scopes;
}

MovingScope::~MovingScope() {
    --moving.Scopes;
}

} // namespace kelvash::swap
