// A mail that the user's own mail program shows, to be looked at and sent there.
#pragma once

#include <string>
#include <vector>

namespace kelvash {

struct Mail {
    std::string Subject;
    std::string Text;                          // lines end with CR LF
    std::vector<std::string> Attachments = {}; // path texts
};

// Hands a mail to the user's mail program, with the interface pumped meanwhile. False if there is none, if it
// can't be started or refuses, or if an attachment isn't there.
[[nodiscard]] bool SendMail(const Mail& mail);

} // namespace kelvash
