#include "companion/savegame_notes.h"

#include <map>

#include "companion/slots_messages.h"
#include "companion/slots_work.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "swap/savegame_files.h"
#include "trle_state/level_owner.h"
#include "trle_state/trle_state.h"

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

// By the folder that it lies in: TRLE, or one below a level's.
std::int32_t LevelOfSavegame(const std::string& savegame) {
    std::string folder = FolderOf(savegame);
    if (IsSamePlace(folder, core::TrleFolder())) return trle_state::CurrentLevelCode();
    std::int32_t code = core::kNoLevel;
    for (; code == core::kNoLevel && folder.find('\\') != std::string::npos; folder = FolderOf(folder))
        code = trle_state::CodeOfFolder(folder);
    return code;
}

bool RefuseNote(MessageId why, const std::string& path) {
    TellCritical(LoadMessage(why) + path);
    return false;
}

// Nobody loses anything by a note that is gone, or says already what it is to say.
bool MayReplace(const std::string& savegame, std::string_view text, const SeenNote& seen) {
    const std::string now = ReadNote(savegame);
    if (!seen.Text || now == *seen.Text || now.empty() || now == text) return true;
    const std::string shown = kLineBreak + now + kLineBreak;
    return AskYesNo(MessageStyle::Question, LoadMessageOfOthers(msg::kNoteChanged, {shown}));
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

std::vector<std::string> OwnNotesOf(const std::vector<std::string>& savegames) {
    std::map<std::string, std::map<std::string, std::string>> folders; // notes by savegames, in capitals
    std::vector<std::string> notes;
    for (const std::string& savegame : savegames) {
        const std::string folder = FolderOf(savegame);
        const auto [found, is_new] = folders.try_emplace(folder);
        if (is_new)
            for (const swap::SavegameFile& save : swap::ListSavegameFiles(folder))
                found->second[FoldCase(save.Path)] = save.Note;
        const auto note = found->second.find(FoldCase(savegame));
        notes.push_back(note == found->second.end() ? OwnNoteOf(savegame) : note->second);
    }
    return notes;
}

std::string ReadNote(std::string_view savegame) {
    const std::string note = OwnNoteOf(savegame);
    return note.empty() ? std::string() : ReadNoteFile(note);
}

std::string ReadNoteFile(std::string_view note) {
    return DecodeNote(ReadFileStart(note, kLongestNote).value_or(std::string()));
}

SeenNote LookAtNote(const std::string& savegame) {
    return {StampWithHash(savegame), ReadNote(savegame)};
}

bool WriteNote(const std::string& savegame, std::string_view text, const SeenNote& seen) {
    const std::int32_t code = LevelOfSavegame(savegame);
    if (code == core::kNoLevel || !FileExists(savegame)) return RefuseNote(msg::kNoteNoSavegame, savegame);
    const SlotsWork work(msg::kDoingNote, code, Asker::User);
    MessageText why;
    if (!work || !work.Has(savegame, seen.Savegame, why)) {
        TellOutcome(work ? SlotsOutcome{SlotsResult::Refused, 0, why} : work.Refusal());
        return false;
    }
    if (!swap::OwnsItsNote(savegame)) return RefuseNote(msg::kNoteNoSavegame, savegame);
    if (!MayReplace(savegame, text, seen)) return false;
    const std::string note = NotePathOf(savegame);
    const bool stands =
        Trim(text).empty() ? DeleteFile(note) : ReplaceFileBytes(note, EncodeNote(text), Flush::Yes);
    return stands || RefuseNote(msg::kNoteNotWritten, note);
}

} // namespace kelvash::companion
