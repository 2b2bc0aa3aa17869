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

// A note of another savegame, which the destination replaces, may be worth keeping. `replaced` is that of the
// savegame that has been replaced.
bool CopyNote(const std::string& note, const std::string& target, const std::string& replaced) {
    if (note.empty()) return replaced.empty() || DeleteFile(replaced);
    if (IsSamePlace(note, target) || HoldSameBytes(note, target)) return true;
    if (FileExists(target) && !AskReplaceFile(note, target)) return true;
    return CopyFileWhole(note, target);
}

} // namespace

bool CopySavegame(const std::string& source, const std::string& destination, swap::Placing placing) {
    if (IsSamePlace(source, destination)) return true;
    const std::string note = OwnNoteOf(source);
    const std::string target_note = NotePathOf(destination);
    const std::string replaced = FileExists(destination) ? OwnNoteOf(destination) : std::string();
    if (!CopyFileWhole(source, destination) || !CopyNote(note, target_note, replaced)) return false;
    if (placing == swap::Placing::Copy) return true;
    const bool is_whole = swap::IsHeldBy({source, note}, {destination, target_note});
    return is_whole && FlushFile(destination) && swap::LeavePair({source, note});
}

bool DeleteSavegame(std::string_view path) {
    const std::string note = OwnNoteOf(path);
    return DeleteFile(path) && (note.empty() || DeleteFile(note));
}

SlotsOutcome AskDeleteSavegame(std::int32_t code, const std::string& path) {
    const trle_state::FileStamp seen = StampWithHash(path);
    const MessageText question =
        LoadMessage(msg::kSaveDeleteQuestion, {std::string(Trim(SavegameLine(path)))});
    if (!AskYesNo(MessageStyle::Question, question)) return {};
    const SlotsWork work(msg::kDoingDeleteSave, code, Asker::User);
    if (!work) return work.Refusal();
    MessageText why;
    if (!work.Has(path, seen, why)) return {SlotsResult::Refused, 0, why};
    const std::string note = OwnNoteOf(path);
    const bool all_gone = DeleteSavegame(path);
    if (FileExists(path)) return {SlotsResult::Refused, 0, LoadMessage(msg::kSaveCannotDelete) + path};
    SlotsOutcome outcome{SlotsResult::Done};
    if (work.IsInSlots(path)) outcome = Compact(work);
    outcome.Count = 1;
    if (outcome.Result != SlotsResult::Done)
        outcome.Message = LoadMessage(msg::kSaveDeletedPartly, {kLineBreak}) + outcome.Message;
    if (!all_gone) {
        const std::string more = outcome.Message.text.empty() ? "" : kLineBreak + outcome.Message.text;
        outcome.Message = LoadMessage(msg::kSaveNoteStays) + note + more;
    }
    if (!outcome.Message.text.empty()) outcome.Result = SlotsResult::Partly;
    return outcome;
}

bool SaveSavegameAs(const std::string& path) {
    const trle_state::FileStamp seen = StampWithHash(path);
    const std::optional<std::string> target = TheUser().SaveFile(
        {LoadMessage(msg::kSaveAsTitle), LoadMessage(msg::kSaveAsFilter), {}, FileNameOf(path)});
    if (!target) return false;
    const core::Change change(msg::kDoingSaveCopy, core::kAll);
    if (!change) return false;
    if (!trle_state::IsStill(path, seen)) {
        TellCritical(LoadMessage(msg::kSaveCopyAnother) + path);
        return false;
    }
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
    return LoadMessageOfOthers(msg::kSaveProperty, {SavegameLine(path) + kLineBreak,
                                                    Quoted(path) + kLineBreak, image_text + kLineBreak}) +
           (note.empty() ? LoadMessage(msg::kSaveNoNote).text : Quoted(note));
}

} // namespace kelvash::companion
