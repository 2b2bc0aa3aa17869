// A level's picture for friends, by e-mail.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/mail.h"

namespace kelvash::companion {

// The mail with that picture; nobody is its recipient yet.
Mail ScreenshotMail(std::int32_t code, const std::string& path);
// Hands it to the mail program. False, after a message, for a level without pictures, and if it can't be.
[[nodiscard]] bool MailScreenshot(std::int32_t code, const std::string& path);

} // namespace kelvash::companion
