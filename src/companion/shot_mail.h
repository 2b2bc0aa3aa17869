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
// Hands a letter to the mail program; false if there is none, or it refuses.
using SendShot = std::function<bool(const ShotMail& mail)>;

// False, after a message, for a level without pictures, and if the letter can't be handed over.
[[nodiscard]] bool MailScreenshot(std::int32_t code, const std::string& path, const SendShot& send);

} // namespace kelvash::companion
