// Captures of the running game: a picture from the clipboard becomes one of the level's.
//
// Who watches the game reads the clipboard (foundation/clipboard_picture.h), decodes it once
// (swap::DecodePicture), leaves a black one out (companion/black_test.h) and hands it over here. While the
// game runs no box is shown by CaptureShot.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "core/archive.h"
#include "foundation/message_text.h"
#include "swap/picture_codec.h"

namespace kelvash::companion {

// Busy: another program or job holds the Archive's folder; nothing has changed, it can be tried again.
// Failed: it can't be written, the folder can't be locked, or no level of the open Archive has the code.
enum class CaptureEnd { Saved, Busy, Failed };
struct CaptureOutcome {
    CaptureEnd End = CaptureEnd::Failed;
    std::string Path;         // of the new picture
    MessageText Message = {}; // why it isn't Saved, to be told when the game has ended
};
// The automatic capture: saves under the next automatic name and counts the picture's size where the open
// Archive lists the level. What the Archive's own saving would tell or ask is kept for after the game.
CaptureOutcome CaptureShot(const core::LevelPlace& level, const swap::Picture& picture);
// The same for a level of the open Archive.
CaptureOutcome CaptureShot(std::int32_t code, const swap::Picture& picture);

// The button of Dialog_Cattura: asks for a name and saves there. Again: the dialog was given up, or the
// Archive's folder is held, which is told; the form stays. Failed, after a message: the form ends.
enum class SaveCaptureEnd { Saved, Again, Failed };
SaveCaptureEnd SaveCapture(std::int32_t code, const swap::Picture& picture, std::string& path);

// "In future don't prompt me": at once in the profile.
void SetCaptureAsks(bool asks);

} // namespace kelvash::companion
