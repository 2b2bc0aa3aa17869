// What the X11 side shares: errors that end nothing, and properties of windows.
//
// Included behind all other headers: X11 defines common words as macros.
#pragma once

#include <X11/Xlib.h>

#include <string>

namespace kelvash::platform {

// Windows of other programs vanish at any time, and the server may end. While this lives, neither ends the
// program, as Xlib's own handlers would do it.
class ErrorScope {
  public:
    // Answered: every call within waits for its answer, so that no error can come later. It saves a round
    // trip.
    enum class Calls { Answered, Any };
    explicit ErrorScope(Display* display, Calls calls = Calls::Any);
    ~ErrorScope();
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;

  private:
    Display* display_;
    Calls calls_;
    XErrorHandler old_;
    XIOErrorHandler old_end_;
};

// The server's answer, freed at the end.
struct Property {
    unsigned char* bytes = nullptr;
    unsigned long count = 0;
    Atom type = None;
    int format = 0;
    Property() = default;
    Property(const Property&) = delete;
    Property& operator=(const Property&) = delete;
    ~Property();
    // False if the window has none of that name. `length` is in units of four bytes.
    bool Read(Display* display, ::Window window, Atom name, long length);
    std::string Text() const { return {reinterpret_cast<const char*>(bytes), count}; }
    // The first number of one whose format is 32; 0 if it is another.
    unsigned long Number() const;
};

// What a window shows, as Desktop::PictureOf gives it. Within an ErrorScope.
std::string PictureOfWindow(Display* display, ::Window window);

} // namespace kelvash::platform
