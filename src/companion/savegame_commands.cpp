#include "companion/savegame_commands.h"

#include "companion/fragments.h"
#include "companion/savegame_messages.h"
#include "companion/savegame_notes.h"
#include "companion/savegames.h"
#include "companion/slots_work.h"
#include "core/change.h"
#include "foundation/date_text.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/file_stamp.h"

namespace kelvash::companion {

using trle_state::HoldSameBytes;

namespace {

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

// A note of another savegame, which the destination replaces, may be worth keeping.
bool CopyNote(const std::string& note, const std::string& target) {
    if (note.empty() || IsSamePlace(note, target) || HoldSameBytes(note, target)) return true;
    if (FileExists(target) && !AskReplaceFile(note, target)) return true;
    return CopyFileWhole(note, target);
}

} // namespace

bool CopySavegame(const std::string& source, const std::string& destination, swap::Placing placing) {
    if (IsSamePlace(source, destination)) return true;
    const std::string note = OwnNoteOf(source);
    const std::string target_note = NotePathOf(destination);
    if (!CopyFileWhole(source, destination) || !CopyNote(note, target_note)) return false;
    if (placing == swap::Placing::Copy) return true;
    const bool is_whole =
        HoldSameBytes(source, destination) && (note.empty() || HoldSameBytes(note, target_note));
    return is_whole && FlushFile(destination) && swap::LeavePair({source, note});
}

bool DeleteSavegame(std::string_view path) {
    const std::string note = OwnNoteOf(path);
    return DeleteFile(path) && (note.empty() || DeleteFile(note));
}

SlotsOutcome AskDeleteSavegame(std::int32_t code, const std::string& path) {
    const MessageText question =
        LoadMessage(msg::kSaveDeleteQuestion, {std::string(Trim(SavegameLine(path)))});
    if (!AskYesNo(MessageStyle::Question, question)) return {};
    const SlotsWork work(msg::kDoingDeleteSave, code, Asker::User);
    if (!work) return work.Refusal();
    const std::string note = OwnNoteOf(path);
    if (!FileExists(path) || (!DeleteSavegame(path) && FileExists(path)))
        return {SlotsResult::Refused, 0, LoadMessage(msg::kSaveCannotDelete) + path};
    if (!note.empty() && FileExists(note))
        return {SlotsResult::Partly, 1, LoadMessage(msg::kSaveNoteStays) + note};
    SlotsOutcome outcome{SlotsResult::Done};
    if (EqualNoCase(FolderOf(path), work.Slots())) outcome = Compact(work);
    outcome.Count = 1;
    if (outcome.Result == SlotsResult::Done) return outcome;
    outcome.Result = SlotsResult::Partly;
    outcome.Message = LoadMessage(msg::kSaveDeletedPartly, {kLineBreak}) + outcome.Message;
    return outcome;
}

bool SaveSavegameAs(const std::string& path) {
    const std::optional<std::string> target = TheUser().SaveFile(
        {LoadMessage(msg::kSaveAsTitle), LoadMessage(msg::kSaveAsFilter), {}, FileNameOf(path)});
    if (!target) return false;
    const core::Change change(msg::kDoingSaveCopy, core::kAll);
    if (!change) return false;
    if (CopySavegame(path, *target, swap::Placing::Copy)) return true;
    TellCritical(LoadMessage(msg::kSaveCannotCopy) + path);
    return false;
}

MessageText SavegameProperty(const std::string& path, const std::string& image) {
    std::string image_text = LoadMessage(msg::kSaveNoImage);
    if (!image.empty())
        image_text = Quoted(image) + " (" +
                     FormatDate(LoadFragment(fragment::kPropertyDatePattern), FileTime(image).value_or(0)) +
                     ")";
    const std::string note = OwnNoteOf(path);
    return LoadMessage(msg::kSaveProperty, {SavegameLine(path) + kLineBreak, Quoted(path) + kLineBreak,
                                            image_text + kLineBreak}) +
           (note.empty() ? LoadMessage(msg::kSaveNoNote).text : Quoted(note));
}

} // namespace kelvash::companion
