// The notes of savegames: a file note<N>.txt beside savegame.N.
//
// Several odd savegames can have one number (savegame.1, savegame.01): the note is that of the one whose
// extension is the plain number, else of the first. A note is in Windows-1252, or in UTF-8 with a byte order
// mark where that can't hold it.
#pragma once

#include <string>
#include <string_view>

namespace kelvash::companion {

// Where the note of a savegame is, or would be.
std::string NotePathOf(std::string_view savegame);
// The same for one that is there and is this savegame's own; else empty.
std::string OwnNoteOf(std::string_view savegame);
// True for the name of a note: note<N>.txt.
bool IsNoteName(std::string_view name);

// The text without the line end behind it; empty without a note.
std::string ReadNote(std::string_view savegame);
// The text of a note file.
std::string ReadNoteFile(std::string_view note);
// Replaces the note; a text that trims to nothing deletes it. False after a message, with the old one in its
// place. Opens its own core::Change.
[[nodiscard]] bool WriteNote(const std::string& savegame, std::string_view text);

} // namespace kelvash::companion
