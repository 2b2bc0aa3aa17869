#include "companion/savegame_notes.h"

#include "companion/slots_messages.h"
#include "core/change.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/savegame_files.h"

namespace kelvash::companion {

namespace {

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::size_t kLongestNote = std::size_t{1} << 24; // bytes; no person writes as many

// The bytes of a note file.
std::string EncodeNote(std::string_view text) {
    std::string bytes = AnsiFromUtf8(text);
    if (Utf8FromAnsi(bytes) != text || bytes.starts_with(kUtf8Mark))
        bytes = std::string(kUtf8Mark) + std::string(text);
    return bytes + kLineBreak;
}

std::string DecodeNote(std::string_view bytes) {
    std::string text =
        bytes.starts_with(kUtf8Mark) ? std::string(bytes.substr(kUtf8Mark.size())) : Utf8FromAnsi(bytes);
    if (text.ends_with('\n')) text.pop_back();
    if (text.ends_with('\r')) text.pop_back();
    return text;
}

} // namespace

std::string NotePathOf(std::string_view savegame) {
    return swap::NotePath(FolderOf(savegame), swap::SlotNumber(savegame));
}

std::string OwnNoteOf(std::string_view savegame) {
    const std::string note = NotePathOf(savegame);
    if (!FileExists(note)) return {};
    bool is_anothers = false;
    for (const swap::SavegameFile& save : swap::ListSavegameFiles(FolderOf(savegame))) {
        if (EqualNoCase(save.Path, savegame)) return save.Note;
        is_anothers = is_anothers || EqualNoCase(save.Note, note);
    }
    return is_anothers ? std::string() : note; // an archived one may have more in front of its name
}

bool IsNoteName(std::string_view name) {
    return swap::IsNoteName(name);
}

std::string ReadNote(std::string_view savegame) {
    const std::string note = OwnNoteOf(savegame);
    return note.empty() ? std::string() : ReadNoteFile(note);
}

std::string ReadNoteFile(std::string_view note) {
    return DecodeNote(ReadFileStart(note, kLongestNote).value_or(std::string()));
}

bool WriteNote(const std::string& savegame, std::string_view text) {
    const core::Change change(msg::kDoingNote, core::kAll);
    if (!change) return false;
    const std::string note = NotePathOf(savegame);
    const bool is_anothers = FileExists(note) && OwnNoteOf(savegame).empty();
    if (!FileExists(savegame) || is_anothers) {
        TellCritical(LoadMessage(msg::kNoteNoSavegame) + savegame);
        return false;
    }
    const bool stands =
        Trim(text).empty() ? DeleteFile(note) : ReplaceFileBytes(note, EncodeNote(text), Flush::Yes);
    if (!stands) TellCritical(LoadMessage(msg::kNoteNotWritten) + note);
    return stands;
}

} // namespace kelvash::companion
