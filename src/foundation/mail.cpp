#include "foundation/mail.h"

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/parallel.h"
#include "foundation/platform/mail.h"

namespace kelvash {

bool SendMail(const Mail& mail) {
    platform::NativeMail native{mail.Subject, mail.Text, {}};
    for (const std::string& path : mail.Attachments) {
        if (!FileExists(path)) return false;
        native.Attachments.push_back(NativePath(path));
    }
    bool sent = false;
    return Beside([&] { sent = platform::SendMail(native); }) && sent;
}

} // namespace kelvash
