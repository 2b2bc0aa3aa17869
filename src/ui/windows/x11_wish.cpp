#include "ui/x11_wish.h"

// One display server is all there is.
namespace kelvash::ui {

void WishForX11() {}

void ForgetWishForX11() {}

} // namespace kelvash::ui
