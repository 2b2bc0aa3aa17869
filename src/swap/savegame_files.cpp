#include "swap/savegame_files.h"

#include <algorithm>
#include <limits>
#include <map>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place_file.h"
#include "foundation/text.h"
#include "swap/fragments.h"
#include "trle_state/file_stamp.h"

namespace kelvash::swap {

using trle_state::HoldSameBytes;

namespace {

bool IsPlain(std::string_view path) {
    return EqualNoCase(path, SavegamePath(FolderOf(path), SlotNumber(path)));
}

bool Place(const std::string& source, const std::string& target, Placing placing) {
    return placing == Placing::Move ? PlaceFileNew(source, target) : CopyFileNew(source, target);
}

// A number of REPEATED under which nothing stands at all.
std::int32_t NewNumber(const std::string& repeated) {
    std::int32_t number = 0;
    while (AnythingStands(SavegamePath(repeated, number)) || AnythingStands(NotePath(repeated, number)))
        ++number;
    return number;
}

// The savegames by their places in the list: of each number the one whose a note is.
std::map<std::int32_t, std::size_t> OwnersOfNotes(const std::vector<SavegameFile>& saves) {
    std::map<std::int32_t, std::size_t> owners;
    for (std::size_t i = 0; i < saves.size(); ++i) {
        const auto [owner, is_first] = owners.emplace(SlotNumber(saves[i].Path), i);
        if (!is_first && !IsPlain(saves[owner->second].Path) && IsPlain(saves[i].Path)) owner->second = i;
    }
    return owners;
}

std::vector<SavegameFile> SavegamesIn(std::string_view folder) {
    std::vector<SavegameFile> saves;
    for (const std::string& path : ListFiles(folder, LoadFragment(fragment::kSaveFileMask)))
        saves.push_back({path});
    return saves;
}

} // namespace

std::int32_t SlotNumber(std::string_view path) {
    const std::string extension = ExtensionOf(FileNameOf(path));
    return extension.empty() ? 0 : LeadingNumber(std::string_view(extension).substr(1));
}

std::string SavegamePath(std::string_view folder, std::int32_t number) {
    return std::string(folder) + LoadFragment(fragment::kSaveFileStart) + std::to_string(number);
}

std::string NotePath(std::string_view folder, std::int32_t number) {
    return std::string(folder) + LoadFragment(fragment::kSaveNoteName, {std::to_string(number)});
}

bool IsNoteName(std::string_view name) {
    std::size_t at = 0;
    const std::string number = NextNumberIn(name, at);
    const std::optional<std::int32_t> value = WholeNumber(number);
    return value && std::to_string(*value) == number &&
           EqualNoCase(name, LoadFragment(fragment::kSaveNoteName, {number}).substr(1));
}

std::vector<SavegameFile> ListSavegameFiles(std::string_view folder) {
    std::vector<SavegameFile> saves = SavegamesIn(folder);
    for (const auto& [number, owner] : OwnersOfNotes(saves))
        if (const std::string note = NotePath(folder, number); FileExists(note)) saves[owner].Note = note;
    return saves;
}

bool OwnsItsNote(std::string_view path) {
    const std::vector<SavegameFile> saves = SavegamesIn(FolderOf(path));
    const std::map<std::int32_t, std::size_t> owners = OwnersOfNotes(saves);
    const auto owner = owners.find(SlotNumber(path));
    return owner == owners.end() ? FileExists(path) : EqualNoCase(saves[owner->second].Path, path);
}

std::vector<std::string> ListLoneNotes(std::string_view folder) {
    const std::vector<SavegameFile> saves = ListSavegameFiles(folder);
    std::vector<std::string> notes = ListFiles(folder, LoadFragment(fragment::kSaveNoteMask));
    std::erase_if(notes, [&](const std::string& note) {
        return !IsNoteName(FileNameOf(note)) ||
               std::any_of(saves.begin(), saves.end(),
                           [&](const SavegameFile& save) { return EqualNoCase(save.Note, note); });
    });
    return notes;
}

SavegameFile PairAt(std::string_view folder, std::int32_t number, bool has_note) {
    return {SavegamePath(folder, number), has_note ? NotePath(folder, number) : std::string()};
}

bool IsHeldBy(const SavegameFile& save, const SavegameFile& other) {
    return HoldSameBytes(save.Path, other.Path) &&
           (save.Note.empty() || HoldSameBytes(save.Note, other.Note));
}

bool IsBlocked(std::string_view folder, std::int32_t number) {
    for (const std::string& path : {SavegamePath(folder, number), NotePath(folder, number)})
        if (AnythingStands(path) && !FileExists(path)) return true;
    return false;
}

std::int32_t FreeNumber(std::string_view folder, std::int32_t from) {
    const std::vector<SavegameFile> saves = ListSavegameFiles(folder);
    const auto is_taken = [&](std::int32_t number) {
        const std::string note = NotePath(folder, number);
        return AnythingStands(SavegamePath(folder, number)) || IsBlocked(folder, number) ||
               std::any_of(saves.begin(), saves.end(),
                           [&](const SavegameFile& save) { return EqualNoCase(save.Note, note); });
    };
    while (is_taken(from))
        from = from == std::numeric_limits<std::int32_t>::max() ? 0 : from + 1;
    return from;
}

bool PlacePair(const SavegameFile& save, std::string_view folder, std::int32_t number,
               std::string_view level_folder, Placing placing) {
    const std::string target = SavegamePath(folder, number);
    const std::string note = NotePath(folder, number);
    if (FileExists(note) && !MoveNoteToRepeated(note, level_folder)) return false;
    if (!Place(save.Path, target, placing)) return false;
    if (save.Note.empty() || Place(save.Note, note, placing)) return true;
    static_cast<void>(LeavePlace(target));
    return false;
}

bool LeavePair(const SavegameFile& save) {
    return (save.Note.empty() || LeavePlace(save.Note)) && LeavePlace(save.Path);
}

std::string RepeatedFolder(std::string_view level_folder) {
    return std::string(level_folder) + LoadFragment(fragment::kRepeatedFolder);
}

bool MoveToRepeated(const SavegameFile& save, std::string_view level_folder) {
    const std::string repeated = RepeatedFolder(level_folder);
    return CreateFolder(repeated) &&
           PlacePair(save, repeated, NewNumber(repeated), level_folder, Placing::Move) &&
           FlushFolder(repeated) && LeavePair(save);
}

bool MoveNoteToRepeated(const std::string& note, std::string_view level_folder) {
    const std::string repeated = RepeatedFolder(level_folder);
    return CreateFolder(repeated) && PlaceFileNew(note, NotePath(repeated, NewNumber(repeated))) &&
           FlushFolder(repeated) && LeavePlace(note);
}

bool PassNote(const std::string& note, const SavegameFile& stays, std::string_view level_folder) {
    if (note.empty()) return true;
    if (!stays.Note.empty() && HoldSameBytes(note, stays.Note)) return LeavePlace(note);
    const std::string target = NotePath(FolderOf(stays.Path), SlotNumber(stays.Path));
    if (stays.Note.empty() && !AnythingStands(target) && OwnsItsNote(stays.Path))
        return PlaceFileNew(note, target) && FlushFolder(FolderOf(target)) && LeavePlace(note);
    return MoveNoteToRepeated(note, level_folder);
}

} // namespace kelvash::swap
