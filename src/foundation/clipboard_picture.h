// The picture on the clipboard, read and put without a toolkit: a program without windows captures too.
//
// On X11 all goes over connections of its own, in at most 200 ms whatever the clipboard's owner does; where
// there is no display, no X server any more, or too old a one, there is no clipboard. Nothing here waits for
// the program's own windows: what they own themselves is none (see TakeOwnWindow).
#pragma once

#include <cstdint>
#include <string>

namespace kelvash {

// A number that changes whenever a program has put something on the clipboard, this one included, or has
// emptied it. 0 without a clipboard. Cheap: it asks the server for nothing.
std::uint64_t ClipboardChange();

// None: no bitmap is there. Slow: its owner hasn't answered yet; who asks again while ClipboardChange stays
// the same may get it. Failed: one is offered and couldn't be had: refused, too slow for seconds, out of
// bounds, or its owner has gone.
enum class ClipboardContent { None, Picture, Slow, Failed };
struct ClipboardPicture {
    ClipboardContent Content = ClipboardContent::None;
    std::string Bytes; // of a .bmp, .png or .jpg file, as the owner gave them: not looked into
};
ClipboardPicture ReadClipboardPicture();

// Empties the clipboard, whoever owns it.
void EmptyClipboard();
// Puts the bytes of a .bmp file on the clipboard, for all programs as long as this one runs and none puts
// something else there. False if it can't be.
[[nodiscard]] bool PutClipboardPicture(std::string bitmap);

// Who names a window of this program's own interface, 0 for none at the moment: what such windows own is no
// picture for the program, and waiting for it would be in vain. Null for nobody.
using OwnWindow = std::uintptr_t (*)();
void TakeOwnWindow(OwnWindow window);

} // namespace kelvash
