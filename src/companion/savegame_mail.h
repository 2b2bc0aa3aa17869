// Savegames as a mail.
#pragma once

#include <string>
#include <vector>

#include "foundation/mail.h"

namespace kelvash::companion {

// Which command sends them: it decides how a savegame's line looks.
enum class MailFrom { Selection, List };
// The mail with these savegames of the level with that name; nobody is its recipient yet.
Mail SavegameMail(const std::vector<std::string>& files, const std::string& level_name, MailFrom from);
// Hands it to the mail program. False after a message.
bool SendSavegames(const std::vector<std::string>& files, const std::string& level_name, MailFrom from);

} // namespace kelvash::companion
