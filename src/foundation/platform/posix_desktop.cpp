#include <poll.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

#include "foundation/platform/platform.h"
#include "foundation/platform/posix_joystick.h"
#include "foundation/platform/posix_keys.h"
#include "foundation/platform/posix_tones.h"
#include "foundation/platform/posix_x11.h"
#include "foundation/text.h"

// Behind the others: X11 defines common words as macros.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xfixes.h>

namespace kelvash::platform {

namespace {

// How deep a window manager hides a program's window below the root in its frames.
constexpr int kFrameDepth = 4;
// More of a caption is of no use; in units of four bytes.
constexpr long kCaptionLength = 1024;

class X11Desktop final : public Desktop {
  public:
    X11Desktop() = default;
    // The connection ends with the process: closing it this late could meet a server that has gone, and fail
    // the program for it.
    ~X11Desktop() override = default;

    bool KeyHeld(int virtual_key) override { return KeysHeld({virtual_key}) != 0; }
    std::uint32_t KeysHeld(std::initializer_list<int> virtual_keys) override;
    void PressKey(int virtual_key, int scan_code) override;
    bool ReadJoystick(int id, JoystickState& state) override { return joysticks_.Read(id, state); }
    std::vector<DesktopWindow> TopWindows() override;
    std::vector<DesktopWindow> WindowsOf(std::int64_t process_id) override;
    DesktopReach Reach() override;
    DesktopWindow FocusedWindow() override;
    void Activate(std::uintptr_t window) override;
    std::string PictureOf(std::uintptr_t window) override;
    bool PrintScreenCopies() override { return false; }
    void SetTopMost(std::uintptr_t window, bool top_most) override;
    void ShowCursor(bool show) override;
    ScreenSize Screen() override;
    void Beep(int hertz, int milliseconds) override { tones_.Play(hertz, milliseconds); }
    bool WindowAnimation() override { return false; }
    void SetWindowAnimation(bool) override {}

  private:
    Display* Connection();
    void Open(const char* name);
    void DropEvents();
    void Close();
    Atom Named(const char* name) { return XInternAtom(display_, name, False); }
    bool Describe(::Window window, DesktopWindow& described);
    std::string CaptionOf(::Window window);
    std::string ProgramOf(::Window window);
    ::Window ParentOf(::Window window);
    bool HasWindowManager();
    void TellManager(::Window window, const char* message, std::initializer_list<long> data);
    bool IsVisible(::Window window);
    void Collect(::Window parent, int depth, std::vector<DesktopWindow>& windows);

    Display* display_ = nullptr;
    std::string tried_; // the display that was opened, or couldn't be
    bool lost_ = false;
    bool cursor_hidden_ = false;
    Joysticks joysticks_;
    Tones tones_;
};

// The connection, opened with the first call that needs it, and again after the server has ended; null
// without a display.
Display* X11Desktop::Connection() {
    const char* name = std::getenv("DISPLAY");
    if (name == nullptr || *name == '\0') return nullptr;
    // A server of this machine that isn't there is found out at once, and may come back.
    const bool may_come = display_ == nullptr && *name == ':';
    if (lost_ || may_come || tried_ != name) Open(name);
    if (display_ == nullptr) return nullptr;
    DropEvents();
    if (lost_) Open(name);
    return display_;
}

// Nobody asked for events, but a new keyboard mapping is told all the same. The end of the server is seen by
// its end of the connection, without a question that would have to be awaited.
void X11Desktop::DropEvents() {
    const ErrorScope scope(display_, ErrorScope::Calls::Answered);
    pollfd server{ConnectionNumber(display_), POLLIN, 0};
    if (::poll(&server, 1, 0) > 0 && (server.revents & (POLLHUP | POLLERR)) != 0) {
        lost_ = true;
        return;
    }
    while (XPending(display_) > 0) {
        XEvent event;
        XNextEvent(display_, &event);
        if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
    }
}

void X11Desktop::Open(const char* name) {
    Close();
    tried_ = name;
    display_ = XOpenDisplay(name);
    if (display_ == nullptr) return;
    XSetIOErrorExitHandler(
        display_, [](Display*, void* self) { static_cast<X11Desktop*>(self)->lost_ = true; }, this);
}

// A connection that broke can't be closed in order: what is left of it stays.
void X11Desktop::Close() {
    if (display_ != nullptr && !lost_) XCloseDisplay(display_);
    display_ = nullptr;
    lost_ = false;
    cursor_hidden_ = false;
}

std::uint32_t X11Desktop::KeysHeld(std::initializer_list<int> virtual_keys) {
    Display* display = Connection();
    if (display == nullptr) return 0;
    const ErrorScope scope(display, ErrorScope::Calls::Answered);
    std::array<char, 32> keys{};
    XQueryKeymap(display, keys.data());
    std::uint32_t held = 0, bit = 1;
    for (const int key : virtual_keys) {
        const std::vector<KeySym> symbols = KeySymbols(key);
        if (std::any_of(symbols.begin(), symbols.end(), [&](KeySym symbol) {
                const unsigned code = XKeysymToKeycode(display, symbol);
                return code != 0 && (static_cast<unsigned char>(keys[code / 8]) >> (code % 8) & 1) != 0;
            }))
            held |= bit;
        bit <<= 1;
    }
    return held;
}

void X11Desktop::PressKey(int virtual_key, int) {
    Display* display = Connection();
    const std::vector<KeySym> symbols = KeySymbols(virtual_key);
    if (display == nullptr || symbols.empty()) return;
    const ErrorScope scope(display);
    const unsigned code = XKeysymToKeycode(display, symbols.front());
    if (code == 0) return;
    XTestFakeKeyEvent(display, code, True, CurrentTime);
    XTestFakeKeyEvent(display, code, False, CurrentTime);
}

std::string X11Desktop::CaptionOf(::Window window) {
    Property utf8;
    if (utf8.Read(display_, window, Named("_NET_WM_NAME"), kCaptionLength) && utf8.format == 8)
        return utf8.Text();
    Property plain;
    if (!plain.Read(display_, window, XA_WM_NAME, kCaptionLength) || plain.format != 8) return {};
    return plain.type == XA_STRING ? Utf8FromAnsi(plain.Text()) : plain.Text();
}

// Wine names a window's program there; so do most others in some way.
std::string X11Desktop::ProgramOf(::Window window) {
    Property names;
    if (!names.Read(display_, window, XA_WM_CLASS, kCaptionLength) || names.format != 8) return {};
    return Utf8FromAnsi(names.Text().c_str()); // two names, each with its NUL
}

// False for a window that is no program's own: it has neither a caption nor a process.
bool X11Desktop::Describe(::Window window, DesktopWindow& described) {
    described = {window, CaptionOf(window), 0};
    Property process;
    if (process.Read(display_, window, Named("_NET_WM_PID"), 1))
        described.process_id = static_cast<std::int64_t>(process.Number());
    if (described.process_id == 0 && described.caption.empty()) return false;
    described.program = ProgramOf(window);
    return true;
}

// Below `parent`, from the top of the stack down; a program's window is not looked into.
void X11Desktop::Collect(::Window parent, int depth, std::vector<DesktopWindow>& windows) {
    ::Window root = 0, above = 0;
    ::Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display_, parent, &root, &above, &children, &count) == 0) return;
    for (unsigned i = count; i-- > 0;) {
        DesktopWindow window;
        if (Describe(children[i], window))
            windows.push_back(window);
        else if (depth > 1)
            Collect(children[i], depth - 1, windows);
    }
    if (children != nullptr) XFree(children);
}

bool X11Desktop::IsVisible(::Window window) {
    XWindowAttributes attributes{};
    return XGetWindowAttributes(display_, window, &attributes) != 0 && attributes.map_state == IsViewable;
}

std::vector<DesktopWindow> X11Desktop::TopWindows() {
    std::vector<DesktopWindow> windows;
    Display* display = Connection();
    if (display == nullptr) return windows;
    const ErrorScope scope(display);
    Collect(DefaultRootWindow(display), kFrameDepth, windows);
    return windows;
}

std::vector<DesktopWindow> X11Desktop::WindowsOf(std::int64_t process_id) {
    std::vector<DesktopWindow> windows = TopWindows();
    if (windows.empty()) return windows;
    const ErrorScope scope(display_);
    std::erase_if(windows, [&](const DesktopWindow& window) {
        return window.process_id != process_id || !IsVisible(window.handle);
    });
    return windows;
}

DesktopReach X11Desktop::Reach() {
    if (Connection() != nullptr) return DesktopReach::Full;
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    return wayland == nullptr || *wayland == '\0' ? DesktopReach::NoDisplay : DesktopReach::OnlyWayland;
}

// 0 behind the root.
::Window X11Desktop::ParentOf(::Window window) {
    ::Window root = 0, parent = 0;
    ::Window* children = nullptr;
    unsigned count = 0;
    if (XQueryTree(display_, window, &root, &parent, &children, &count) == 0) return 0;
    if (children != nullptr) XFree(children);
    return parent;
}

// The focus lies on a program's window, or on one within it. Where it follows the pointer, or is on a window
// of the manager's own, the manager knows whose it is.
DesktopWindow X11Desktop::FocusedWindow() {
    Display* display = Connection();
    if (display == nullptr) return {};
    const ErrorScope scope(display);
    ::Window focus = 0;
    int revert = 0;
    XGetInputFocus(display, &focus, &revert);
    DesktopWindow found;
    const ::Window root = DefaultRootWindow(display);
    for (::Window at = focus == PointerRoot ? 0 : focus; at != 0 && at != root; at = ParentOf(at))
        if (Describe(at, found)) return found;
    Property active;
    if (active.Read(display, root, Named("_NET_ACTIVE_WINDOW"), 1) && active.Number() != 0 &&
        Describe(active.Number(), found))
        return found;
    return {};
}

bool X11Desktop::HasWindowManager() {
    Property manager;
    return manager.Read(display_, DefaultRootWindow(display_), Named("_NET_SUPPORTING_WM_CHECK"), 1);
}

void X11Desktop::TellManager(::Window window, const char* message, std::initializer_list<long> data) {
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = Named(message);
    event.xclient.format = 32;
    std::copy(data.begin(), data.end(), event.xclient.data.l);
    XSendEvent(display_, DefaultRootWindow(display_), False,
               SubstructureRedirectMask | SubstructureNotifyMask, &event);
}

void X11Desktop::Activate(std::uintptr_t window) {
    Display* display = Connection();
    if (display == nullptr || window == 0) return;
    const ErrorScope scope(display);
    constexpr long kFromPager = 2; // as the user's own wish: not held back as an intruder
    if (HasWindowManager()) {
        TellManager(window, "_NET_ACTIVE_WINDOW", {kFromPager, CurrentTime, 0});
        return;
    }
    XRaiseWindow(display, window);
    if (IsVisible(window)) XSetInputFocus(display, window, RevertToParent, CurrentTime);
}

std::string X11Desktop::PictureOf(std::uintptr_t window) {
    Display* display = Connection();
    if (display == nullptr || window == 0) return {};
    const ErrorScope scope(display);
    return PictureOfWindow(display, window);
}

void X11Desktop::SetTopMost(std::uintptr_t window, bool top_most) {
    Display* display = Connection();
    if (display == nullptr || window == 0) return;
    const ErrorScope scope(display);
    constexpr long kFromApplication = 1;
    TellManager(window, "_NET_WM_STATE",
                {top_most ? 1 : 0, static_cast<long>(Named("_NET_WM_STATE_ABOVE")), 0, kFromApplication});
    if (top_most) XRaiseWindow(display, window); // all there is without a window manager
}

void X11Desktop::ShowCursor(bool show) {
    Display* display = Connection();
    if (display == nullptr || cursor_hidden_ == !show) return;
    const ErrorScope scope(display);
    int event = 0, error = 0;
    if (XFixesQueryExtension(display, &event, &error) == False) return;
    if (show)
        XFixesShowCursor(display, DefaultRootWindow(display));
    else
        XFixesHideCursor(display, DefaultRootWindow(display));
    cursor_hidden_ = !show;
}

ScreenSize X11Desktop::Screen() {
    Display* display = Connection();
    if (display == nullptr) return {};
    return {DisplayWidth(display, DefaultScreen(display)), DisplayHeight(display, DefaultScreen(display))};
}

} // namespace

Desktop& OwnDesktop() {
    static X11Desktop desktop;
    return desktop;
}

} // namespace kelvash::platform
