#include "companion/shot_mail.h"

#include "companion/shot_files.h"
#include "companion/shot_messages.h"
#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/path.h"
#include "foundation/user.h"

namespace kelvash::companion {

bool MailScreenshot(std::int32_t code, const std::string& path, const SendShot& send) {
    if (IsDefaultShot(path) || !FileExists(path)) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kMailNoShot));
        return false;
    }
    if (send({LoadMessage(msg::kMailSubject, {FileNameOf(path)}) + core::PlaceOf(code).Name,
              LoadMessage(msg::kMailText), path}))
        return true;
    TellCritical(LoadMessage(msg::kMailShotFailed));
    return false;
}

} // namespace kelvash::companion
