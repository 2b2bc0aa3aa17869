#include "companion/savegame_mail.h"

#include "companion/fragments.h"
#include "companion/savegame_messages.h"
#include "companion/savegames.h"
#include "foundation/date_text.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/user.h"

namespace kelvash::companion {

namespace {

std::string Quoted(const std::string& text) {
    return "\"" + text + "\"";
}

std::string Subject(const std::vector<std::string>& files, const std::string& level_name) {
    if (files.size() != 1)
        return std::to_string(files.size()) + LoadMessage(msg::kMailManySubject) + Quoted(level_name);
    std::string title;
    const std::int32_t number = ReadSavegameInfo(files.front(), title);
    const std::string what = std::to_string(number) + LoadMessage(msg::kMailDash) + Quoted(title);
    return LoadMessage(msg::kMailOneSubject, {what}) + Quoted(level_name);
}

// The number in four characters at least, as in the lists.
std::string NumberText(std::int32_t number) {
    constexpr std::size_t kWidth = 4;
    std::string text = std::to_string(number);
    if (text.size() < kWidth) text.insert(0, kWidth - text.size(), ' ');
    return text;
}

std::string SelectionLine(const std::string& file) {
    std::string title;
    const std::int32_t number = ReadSavegameInfo(file, title);
    return NumberText(number) + LoadMessage(msg::kMailDash) + title + LoadMessage(msg::kMailDateStart) +
           FormatDate(LoadFragment(fragment::kMailDatePattern), FileTime(file).value_or(0)) +
           LoadMessage(msg::kMailDateEnd) + LoadMessage(msg::kMailArrow) + FileNameOf(file);
}

std::string ListLine(const std::string& file) {
    return SavegameLine(file) + LoadMessage(msg::kMailListArrow) + FileNameOf(file);
}

} // namespace

Mail SavegameMail(const std::vector<std::string>& files, const std::string& level_name, MailFrom from) {
    Mail mail;
    mail.Subject = Subject(files, level_name);
    for (const std::string& file : files)
        mail.Text += (from == MailFrom::Selection ? SelectionLine(file) : ListLine(file)) + kLineBreak;
    mail.Attachments = files;
    return mail;
}

bool SendSavegames(const std::vector<std::string>& files, const std::string& level_name, MailFrom from) {
    if (SendMail(SavegameMail(files, level_name, from))) return true;
    TellCritical(LoadMessage(msg::kMailFailed));
    return false;
}

} // namespace kelvash::companion
