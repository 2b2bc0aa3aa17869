#include "swap/savegame_files.h"

#include <algorithm>
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
    return EqualNoCase(ExtensionOf(FileNameOf(path)), "." + std::to_string(SlotNumber(path)));
}

bool Place(const std::string& source, const std::string& target, Placing placing) {
    return placing == Placing::Move ? PlaceFileNew(source, target) : CopyFileNew(source, target);
}

// A number of REPEATED under which nothing stands at all.
std::int32_t NewNumber(const std::string& repeated) {
    std::int32_t number = 0;
    while (FileExists(SavegamePath(repeated, number)) || FileExists(NotePath(repeated, number)))
        ++number;
    return number;
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
    std::vector<SavegameFile> saves;
    for (const std::string& path : ListFiles(folder, LoadFragment(fragment::kSaveFileMask)))
        saves.push_back({path});
    std::map<std::int32_t, std::size_t> owners; // of the notes
    for (std::size_t i = 0; i < saves.size(); ++i) {
        const auto [owner, is_first] = owners.emplace(SlotNumber(saves[i].Path), i);
        if (!is_first && IsPlain(saves[i].Path)) owner->second = i;
    }
    for (const auto& [number, owner] : owners)
        if (const std::string note = NotePath(folder, number); FileExists(note)) saves[owner].Note = note;
    return saves;
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

std::int32_t FreeNumber(std::string_view folder, std::int32_t from) {
    const std::vector<SavegameFile> saves = ListSavegameFiles(folder);
    const auto is_taken = [&](std::int32_t number) {
        const std::string path = SavegamePath(folder, number);
        const std::string note = NotePath(folder, number);
        return FileExists(path) || FolderExists(path) || IsLink(path) || FolderExists(note) ||
               std::any_of(saves.begin(), saves.end(),
                           [&](const SavegameFile& save) { return EqualNoCase(save.Note, note); });
    };
    while (is_taken(from))
        ++from;
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
           PlacePair(save, repeated, NewNumber(repeated), level_folder, Placing::Move) && LeavePair(save);
}

bool MoveNoteToRepeated(const std::string& note, std::string_view level_folder) {
    const std::string repeated = RepeatedFolder(level_folder);
    return CreateFolder(repeated) && PlaceFileNew(note, NotePath(repeated, NewNumber(repeated))) &&
           LeavePlace(note);
}

bool PassNote(const std::string& note, const SavegameFile& stays, std::string_view level_folder) {
    if (note.empty()) return true;
    if (!stays.Note.empty() && HoldSameBytes(note, stays.Note)) return LeavePlace(note);
    const std::string target = NotePath(FolderOf(stays.Path), SlotNumber(stays.Path));
    if (stays.Note.empty() && !FileExists(target)) return PlaceFileNew(note, target) && LeavePlace(note);
    return MoveNoteToRepeated(note, level_folder);
}

} // namespace kelvash::swap
