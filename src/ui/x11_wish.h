// On which of two display servers the windows stand. A Wayland desktop lets no program see the keys and
// windows of others; the X11 server beside it does, and games under Wine go through that: posix/x11_wish.cpp.
// On Windows there is nothing to wish for.
#pragma once

namespace kelvash::ui {

// Has Qt take the X11 server where both are there and nobody has chosen. To be called before there is an
// application.
void WishForX11();
// Takes the wish back, which programs that are started from here are not to inherit. To be called behind it.
void ForgetWishForX11();

} // namespace kelvash::ui
