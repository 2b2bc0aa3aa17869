// A level's picture for friends, by e-mail.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace kelvash::companion {

struct ShotMail {
    std::string Subject;
    std::string Text;
    std::string Attachment; // path of the picture
};
// Hands a letter to the mail program; false, after its own message, if there is none.
using SendShot = std::function<bool(const ShotMail& mail)>;

// False, after a message, for a level without pictures, or what sending says.
[[nodiscard]] bool MailScreenshot(std::int32_t code, const std::string& path, const SendShot& send);

} // namespace kelvash::companion
