#include "program/end.h"

#include "core/archive.h"
#include "core/profile.h"
#include "core/session.h"
#include "foundation/desktop.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/user.h"
#include "program/messages.h"

namespace kelvash::program {

namespace {

void PutAnimationBack() {
    if (core::session.Started) TheDesktop().SetWindowAnimation(core::session.WindowAnimation);
}

bool MayLoseArchive() {
    return AskYesNo(
        MessageStyle::Exclamation,
        LoadMessageOfOthers(msg::kCloseUnsavedArchive, {FileNameOf(core::profile.LastArchive), kLineBreak}));
}

bool MayLoseProfile() {
    return AskYesNo(MessageStyle::Exclamation,
                    LoadMessageOfOthers(msg::kCloseUnsavedProfile, {core::ProfilePath(), kLineBreak}));
}

} // namespace

bool SaveProfile() {
    static_cast<void>(core::AskSaveArchive()); // archive.ArchiveChanged tells
    const bool stands = core::ProfileStands();
    PutAnimationBack();
    return stands;
}

bool SaveToClose() {
    if (!core::AskSaveArchive()) {
        if (!MayLoseArchive()) return false;
        core::DropChanges();
    }
    if (!core::ProfileStands() && !MayLoseProfile()) return false;
    PutAnimationBack();
    return true;
}

} // namespace kelvash::program
