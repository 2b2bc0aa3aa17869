#include "companion/savegame_search.h"

#include "companion/savegame_messages.h"
#include "companion/savegame_notes.h"
#include "foundation/messages.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::companion {

namespace {

struct NoteSearch {
    std::string Text; // empty before the first search
};
constinit NoteSearch& last = State<NoteSearch>::Get();

bool Holds(const std::string& note, const std::string& folded) {
    return FoldCase(note.empty() ? note : ReadNoteFile(note)).find(folded) != std::string::npos;
}

std::optional<std::size_t> Search(const std::vector<std::string>& archived,
                                  std::optional<std::size_t> selected, SearchWay way) {
    const std::size_t count = archived.size();
    const std::vector<std::string> notes = OwnNotesOf(archived);
    const std::string folded = FoldCase(last.Text);
    const bool back = way == SearchWay::Back;
    // Without a selection the first to be looked at is the first of the list, or the last.
    const std::size_t start = selected.value_or(back ? 0 : count - 1) % count;
    for (std::size_t step = 1; step <= count; ++step) {
        const std::size_t at = (back ? start + count - step : start + step) % count;
        if (Holds(notes[at], folded)) return at;
    }
    ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kFindNothing));
    return std::nullopt;
}

bool IsThereAny(const std::vector<std::string>& archived) {
    if (archived.empty()) ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kFindNoSaves));
    return !archived.empty();
}

} // namespace

std::optional<std::size_t> FindSavegameNote(const std::vector<std::string>& archived,
                                            std::optional<std::size_t> selected) {
    if (!IsThereAny(archived)) return std::nullopt;
    const std::optional<std::string> typed =
        TheUser().Input(LoadMessage(msg::kFindTitle), LoadMessage(msg::kFindText), last.Text);
    if (!typed || typed->empty()) return std::nullopt;
    last.Text = *typed;
    return Search(archived, selected, SearchWay::Forward);
}

std::optional<std::size_t> FindSavegameAgain(const std::vector<std::string>& archived,
                                             std::optional<std::size_t> selected, SearchWay way) {
    if (last.Text.empty() || archived.empty()) return std::nullopt;
    return Search(archived, selected, way);
}

} // namespace kelvash::companion
