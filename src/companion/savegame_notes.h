// The notes of savegames: a file note<N>.txt beside savegame.N.
//
// Several odd savegames can have one number (savegame.1, savegame.01): the note is that of the one whose
// extension is the plain number, else of the first. A note is in Windows-1252, or in UTF-8 with a byte order
// mark where that can't hold it.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "trle_state/file_stamp.h"

namespace kelvash::companion {

// Where the note of a savegame is, or would be.
std::string NotePathOf(std::string_view savegame);
// The same for one that is there and is this savegame's own; else empty.
std::string OwnNoteOf(std::string_view savegame);
// The same for many, in their order; each folder is read once.
std::vector<std::string> OwnNotesOf(const std::vector<std::string>& savegames);

// The text without the line end behind it; empty without a note.
std::string ReadNote(std::string_view savegame);
// The text of a note file.
std::string ReadNoteFile(std::string_view note);
// What a savegame and its note were when a new text for it was begun.
struct SeenNote {
    trle_state::FileStamp Savegame;
    std::optional<std::string> Text; // nothing: not known
};
SeenNote LookAtNote(const std::string& savegame);
// Replaces the note of a level's savegame; a text that trims to nothing deletes it. Asks where the note says
// something else than what was seen. False after a message or a No, with the old note in its place: also
// where the savegame is no level's, has become another one, or its number is another's. Opens its own
// core::Change.
[[nodiscard]] bool WriteNote(const std::string& savegame, std::string_view text, const SeenNote& seen = {});

} // namespace kelvash::companion
