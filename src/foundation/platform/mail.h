// Handing a mail to the user's mail program (posix_mail.cpp, windows_mail.cpp).
#pragma once

#include <string>
#include <vector>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

struct NativeMail {
    std::string Subject;
    std::string Text; // lines end with CR LF
    std::vector<NativeFile> Attachments;
};

// May run on any thread. False if there is no mail program, or if it refuses.
bool SendMail(const NativeMail& mail);

} // namespace kelvash::platform
