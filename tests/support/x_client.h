// A client on a private X server that plays other programs and the player's hand, and a window manager there.
//
// Included behind all other headers: X11 defines common words as macros.
#pragma once

#include <sys/types.h>

#include <functional>
#include <string>

#include "support/x_server.h"

// Behind the others.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace kelvash::test {

// True once the condition holds; false if it doesn't within ten seconds.
bool Comes(const std::function<bool()>& condition);

class XClient {
  public:
    XClient();
    ~XClient();
    XClient(const XClient&) = delete;
    XClient& operator=(const XClient&) = delete;

    ::Window Root() { return DefaultRootWindow(display); }
    Atom Named(const char* name) { return XInternAtom(display, name, False); }
    // 100 x 100 pixels at the upper left.
    ::Window MakeWindow(::Window parent, bool shown);
    void SetProcess(::Window window, unsigned long id);
    void SetProgram(::Window window, const std::string& name, const std::string& kind);
    void SetCaption(::Window window, const char* atom, Atom type, std::string text);
    // A key of the keyboard goes down or up.
    void Key(KeySym symbol, bool pressed);
    // Down, held for that long, and up.
    void Tap(KeySym symbol, int milliseconds = 150);

    XServer server;
    Display* display;
};

// openbox on the display that DISPLAY names, ready for use.
class WindowManager {
  public:
    WindowManager();
    ~WindowManager();
    WindowManager(const WindowManager&) = delete;
    WindowManager& operator=(const WindowManager&) = delete;

  private:
    pid_t process_ = 0;
};

} // namespace kelvash::test
