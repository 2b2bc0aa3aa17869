#include "foundation/platform/posix_x11.h"

namespace kelvash::platform {

namespace {

int IgnoreError(Display*, XErrorEvent*) {
    return 0;
}

int IgnoreEnd(Display*) {
    return 0;
}

} // namespace

ErrorScope::ErrorScope(Display* display, Calls calls)
    : display_(display),
      calls_(calls),
      old_(XSetErrorHandler(IgnoreError)),
      old_end_(XSetIOErrorHandler(IgnoreEnd)) {}

ErrorScope::~ErrorScope() {
    if (calls_ == Calls::Any) XSync(display_, False);
    XSetErrorHandler(old_);
    XSetIOErrorHandler(old_end_);
}

Property::~Property() {
    if (bytes != nullptr) XFree(bytes);
}

bool Property::Read(Display* display, ::Window window, Atom name, long length) {
    unsigned long left = 0;
    return XGetWindowProperty(display, window, name, 0, length, False, AnyPropertyType, &type, &format,
                              &count, &left, &bytes) == Success &&
           bytes != nullptr && count > 0;
}

unsigned long Property::Number() const {
    return format == 32 && count > 0 ? *reinterpret_cast<const unsigned long*>(bytes) : 0;
}

} // namespace kelvash::platform
