#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>

#include "game_window.h"

namespace standin {

namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWidth = 640, kHeight = 480;
constexpr int kForEver = -1;
constexpr unsigned long kSky = 0x28507A, kSand = 0xB08A50, kLetters = 0xFFFFFF;

class GameWindow {
  public:
    GameWindow(Display* display, const WindowPlan& plan)
        : display_(display),
          plan_(plan),
          window_(
              XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, kWidth, kHeight, 0, 0, kSky)),
          pen_(XCreateGC(display, window_, 0, nullptr)),
          close_(XInternAtom(display, "WM_DELETE_WINDOW", False)) {
        unsigned long process = static_cast<unsigned long>(::getpid());
        XChangeProperty(display, window_, XInternAtom(display, "_NET_WM_PID", False), XA_CARDINAL, 32,
                        PropModeReplace, reinterpret_cast<unsigned char*>(&process), 1);
        XStoreName(display, window_, plan.title.c_str());
        XSizeHints place{};
        place.flags = USPosition;
        place.x = (DisplayWidth(display, DefaultScreen(display)) - kWidth) / 2;
        place.y = (DisplayHeight(display, DefaultScreen(display)) - kHeight) / 2;
        XSetWMNormalHints(display, window_, &place);
        XMoveWindow(display, window_, place.x, place.y);
        XSetWMProtocols(display, window_, &close_, 1);
        XSelectInput(display, window_, ExposureMask | KeyPressMask);
        XMapRaised(display, window_);
        XSync(display, False);
    }

    void Run() {
        const Clock::time_point end = Clock::now() + std::chrono::milliseconds(plan_.milliseconds);
        while (!ended_) {
            while (!ended_ && XPending(display_) > 0) {
                XEvent event;
                XNextEvent(display_, &event);
                Take(event);
            }
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now()).count();
            if (ended_ || (plan_.milliseconds >= 0 && left <= 0)) return;
            pollfd server{ConnectionNumber(display_), POLLIN, 0};
            ::poll(&server, 1, plan_.milliseconds < 0 ? kForEver : static_cast<int>(left));
            if ((server.revents & (POLLHUP | POLLERR)) != 0) return;
        }
    }

  private:
    void Take(XEvent& event) {
        if (event.type == Expose) Draw();
        if (event.type == ClientMessage && static_cast<Atom>(event.xclient.data.l[0]) == close_)
            ended_ = true;
        if (event.type != KeyPress) return;
        const KeySym key = XLookupKeysym(&event.xkey, 0);
        if (key == XK_Escape) ended_ = true;
        if (key == XK_s) {
            saves_ += plan_.on_save() ? 1 : 0;
            Draw();
        }
    }

    void Line(int row, const std::string& text) {
        XDrawString(display_, window_, pen_, 40, 80 + row * 30, text.c_str(), static_cast<int>(text.size()));
    }

    void Draw() {
        XSetForeground(display_, pen_, kSky);
        XFillRectangle(display_, window_, pen_, 0, 0, kWidth, kHeight);
        XSetForeground(display_, pen_, kSand);
        XFillRectangle(display_, window_, pen_, 0, kHeight * 2 / 3, kWidth, kHeight / 3);
        XSetForeground(display_, pen_, kLetters);
        Line(0, plan_.level);
        Line(2, "S: save      Escape: leave the game");
        Line(3, "F9: archive the savegames      F11: bring the last ones back      Print Screen: screenshot");
        Line(5, "Saved: " + std::to_string(saves_));
        XFlush(display_);
    }

    Display* display_;
    const WindowPlan& plan_;
    ::Window window_;
    GC pen_;
    Atom close_;
    int saves_ = 0;
    bool ended_ = false;
};

} // namespace

// What is left of the connection ends with the process.
bool RunWindow(const WindowPlan& plan) {
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr) return false;
    GameWindow(display, plan).Run();
    return true;
}

} // namespace standin
