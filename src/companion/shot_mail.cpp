#include "companion/shot_mail.h"

#include "companion/shot_files.h"
#include "companion/shot_messages.h"
#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/path.h"
#include "foundation/user.h"

namespace kelvash::companion {

Mail ScreenshotMail(std::int32_t code, const std::string& path) {
    return {.Subject = LoadMessageOfOthers(msg::kMailSubject, {FileNameOf(path)}) + core::PlaceOf(code).Name,
            .Text = LoadMessage(msg::kMailText),
            .Attachments = {path}};
}

bool MailScreenshot(std::int32_t code, const std::string& path) {
    if (IsDefaultShot(path) || !FileExists(path)) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kMailNoShot));
        return false;
    }
    if (SendMail(ScreenshotMail(code, path))) return true;
    TellCritical(LoadMessage(msg::kMailShotFailed));
    return false;
}

} // namespace kelvash::companion
