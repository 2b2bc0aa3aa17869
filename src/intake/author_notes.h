// What a level's record says of its author, while it is shown and edited.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::intake {

// Letters of a name.
inline constexpr std::size_t kLongestAuthor = 79;

struct AuthorNotes {
    std::int32_t Code = -1; // of the level
    std::string Name;
    std::vector<std::string> Emails;
    std::vector<std::string> Sites;
    std::string Note;
};

// Those of a level, given by its place in the table.
AuthorNotes BeginAuthorNotes(std::int32_t index);
// Asks for a new item, or for another text of one; the lists grow by what was typed. False on cancel or an
// empty text.
[[nodiscard]] bool AddEmail(AuthorNotes& notes);
[[nodiscard]] bool AddSite(AuthorNotes& notes);
// Each tells "No selected item" for an index below 0.
[[nodiscard]] bool ChangeEmail(AuthorNotes& notes, std::int32_t item);
[[nodiscard]] bool ChangeSite(AuthorNotes& notes, std::int32_t item);
[[nodiscard]] bool DeleteEmail(AuthorNotes& notes, std::int32_t item);
[[nodiscard]] bool DeleteSite(AuthorNotes& notes, std::int32_t item);
// Opens the mail program or the browser of the desktop; a failure is told.
void SendMail(const AuthorNotes& notes, std::int32_t item);
void GoSite(const AuthorNotes& notes, std::int32_t item);
// Stores the notes in the record, then ArchiveTouched. False, after a message and with nothing changed, if
// one doesn't fit.
[[nodiscard]] bool StoreAuthorNotes(const AuthorNotes& notes);

} // namespace kelvash::intake
