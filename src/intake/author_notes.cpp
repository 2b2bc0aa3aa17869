#include "intake/author_notes.h"

#include <optional>

#include "core/archive.h"
#include "core/change.h"
#include "core/path_field.h"
#include "foundation/messages.h"
#include "foundation/strangers_files.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "intake/fragments.h"
#include "intake/messages.h"

namespace kelvash::intake {

namespace {

// Bytes that are one too many, as the texts of these fields are counted in their files.
constexpr std::size_t kListTooLong = 256;

std::vector<std::string> ItemsOf(const std::string& list) {
    std::vector<std::string> items;
    for (const std::string& item : Split(list, '\0'))
        if (!Trim(item).empty()) items.emplace_back(Trim(item));
    return items;
}

bool HasItem(const std::vector<std::string>& items, std::int32_t item, MessageId otherwise) {
    if (item >= 0 && item < static_cast<std::int32_t>(items.size())) return true;
    ShowMessage(MessageStyle::Exclamation, LoadMessage(otherwise));
    return false;
}

// What was typed; nothing on cancel or for blanks.
std::optional<std::string> AskItem(MessageId title, MessageId text, const std::string& old) {
    const std::optional<std::string> typed = TheUser().Input(LoadMessage(title), LoadMessage(text), old);
    if (!typed || Trim(*typed).empty()) return std::nullopt;
    return std::string(Trim(*typed));
}

bool Add(std::vector<std::string>& items, MessageId title, MessageId text) {
    const std::optional<std::string> typed = AskItem(title, text, {});
    if (typed) items.push_back(*typed);
    return typed.has_value();
}

bool Change(std::vector<std::string>& items, std::int32_t item, MessageId title, MessageId text) {
    if (!HasItem(items, item, msg::kAutoreNoItem)) return false;
    std::string& old = items[static_cast<std::size_t>(item)];
    const std::optional<std::string> typed = AskItem(title, text, old);
    if (typed) old = *typed;
    return typed.has_value();
}

bool Delete(std::vector<std::string>& items, std::int32_t item) {
    if (!HasItem(items, item, msg::kAutoreNoItem)) return false;
    items.erase(items.begin() + item);
    return true;
}

void Open(const std::string& address) {
    if (OpenStrangersAddress(address) == Opening::Failed)
        TellCritical(LoadMessage(msg::kAutoreCannotOpen) + address);
}

// Tells a text that is too long for its field, or has characters that it can't hold.
bool Fits(const std::string& text, std::size_t too_long, MessageId message) {
    if (AnsiFromUtf8(text).size() < too_long) return core::CheckText(Trim(text), too_long);
    TellCritical(LoadMessage(message));
    return false;
}

} // namespace

AuthorNotes BeginAuthorNotes(std::int32_t index) {
    const core::LevelRecord& level = core::archive.Table[index];
    return {level.Code, std::string(Trim(level.Author)), ItemsOf(level.Emails), ItemsOf(level.Sites),
            std::string(Trim(level.AuthorNote))};
}

bool AddEmail(AuthorNotes& notes) {
    return Add(notes.Emails, msg::kAutoreTitleEmail, msg::kAutoreInsertEmail);
}

bool AddSite(AuthorNotes& notes) {
    return Add(notes.Sites, msg::kAutoreTitleUrl, msg::kAutoreInsertUrl);
}

bool ChangeEmail(AuthorNotes& notes, std::int32_t item) {
    return Change(notes.Emails, item, msg::kAutoreTitleEmail, msg::kAutoreChangeCurrentEmail);
}

bool ChangeSite(AuthorNotes& notes, std::int32_t item) {
    return Change(notes.Sites, item, msg::kAutoreTitleUrl, msg::kAutoreChangeUrl);
}

bool DeleteEmail(AuthorNotes& notes, std::int32_t item) {
    return Delete(notes.Emails, item);
}

bool DeleteSite(AuthorNotes& notes, std::int32_t item) {
    return Delete(notes.Sites, item);
}

void SendMail(const AuthorNotes& notes, std::int32_t item) {
    if (HasItem(notes.Emails, item, msg::kAutoreNoItem))
        Open(LoadFragment(fragment::kAutoreMailto) + notes.Emails[static_cast<std::size_t>(item)]);
}

void GoSite(const AuthorNotes& notes, std::int32_t item) {
    if (HasItem(notes.Sites, item, msg::kAutoreNoSite)) Open(notes.Sites[static_cast<std::size_t>(item)]);
}

bool StoreAuthorNotes(const AuthorNotes& notes) {
    const std::string separator(1, '\0');
    const std::string emails = Join(notes.Emails, separator);
    const std::string sites = Join(notes.Sites, separator);
    const std::string name(Trim(notes.Name));
    if (!Fits(emails, kListTooLong, msg::kAutoreEmailsLong) ||
        !Fits(sites, kListTooLong, msg::kAutoreSitesLong) ||
        !Fits(name, kLongestAuthor + 1, msg::kAutoreNameLong) ||
        !Fits(notes.Note, kListTooLong, msg::kAutoreNoteLong))
        return false;
    const core::Change change(msg::kDoingAuthor, core::kArchiveFolder, notes.Code);
    if (!change || !change.Level().IsListed()) return false;
    {
        const core::LevelEdit level = core::archive.Table.Edit(change.Level().Index);
        level->Emails = emails;
        level->Sites = sites;
        level->Author = name;
        level->AuthorNote = Trim(notes.Note);
    }
    core::ArchiveTouched();
    return true;
}

} // namespace kelvash::intake
