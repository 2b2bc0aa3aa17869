#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/extensions/Xfixes.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

#include "foundation/platform/platform.h"
#include "foundation/platform/posix_joystick.h"
#include "foundation/platform/posix_keys.h"
#include "foundation/text.h"

namespace kelvash::platform {

namespace {

// How deep a window manager hides a program's window below the root in its frames.
constexpr int kFrameDepth = 4;
// More of a caption is of no use; in units of four bytes.
constexpr long kCaptionLength = 1024;

int IgnoreError(Display*, XErrorEvent*) {
    return 0;
}

int IgnoreEnd(Display*) {
    return 0;
}

// Windows of other programs vanish at any time, and the server may end. While this lives, neither ends the
// program, as Xlib's own handlers would do it.
class ErrorScope {
  public:
    explicit ErrorScope(Display* display)
        : display_(display), old_(XSetErrorHandler(IgnoreError)), old_end_(XSetIOErrorHandler(IgnoreEnd)) {}
    ~ErrorScope() {
        XSync(display_, False);
        XSetErrorHandler(old_);
        XSetIOErrorHandler(old_end_);
    }
    ErrorScope(const ErrorScope&) = delete;
    ErrorScope& operator=(const ErrorScope&) = delete;

  private:
    Display* display_;
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
    ~Property() {
        if (bytes != nullptr) XFree(bytes);
    }
    bool Read(Display* display, ::Window window, Atom name, long length) {
        unsigned long left = 0;
        return XGetWindowProperty(display, window, name, 0, length, False, AnyPropertyType, &type, &format,
                                  &count, &left, &bytes) == Success &&
               bytes != nullptr && count > 0;
    }
    std::string Text() const { return {reinterpret_cast<const char*>(bytes), count}; }
};

class X11Desktop final : public Desktop {
  public:
    X11Desktop() = default;
    // The connection ends with the process: closing it this late could meet a server that has gone, and fail
    // the program for it.
    ~X11Desktop() override = default;

    bool KeyHeld(int virtual_key) override;
    void PressKey(int virtual_key, int scan_code) override;
    bool ReadJoystick(int id, JoystickState& state) override { return joysticks_.Read(id, state); }
    std::vector<DesktopWindow> TopWindows() override;
    std::vector<DesktopWindow> WindowsOf(std::int64_t process_id) override;
    void SetTopMost(std::uintptr_t window, bool top_most) override;
    void ShowCursor(bool show) override;
    ScreenSize Screen() override;
    void Beep(int hertz, int milliseconds) override;
    bool WindowAnimation() override { return false; }
    void SetWindowAnimation(bool) override {}
    // X11 hands a selection over through the receiver's event loop, which only the forms have: their desktop
    // answers.
    bool ClipboardHasBitmap() override { return false; }
    void ClearClipboard() override {}

  private:
    Display* Connection();
    void Open(const char* name);
    void DropEvents();
    void Close();
    Atom Named(const char* name) { return XInternAtom(display_, name, False); }
    bool Describe(::Window window, DesktopWindow& described);
    std::string CaptionOf(::Window window);
    bool IsVisible(::Window window);
    void Collect(::Window parent, int depth, std::vector<DesktopWindow>& windows);

    Display* display_ = nullptr;
    std::string tried_; // the display that was opened, or couldn't be
    bool lost_ = false;
    bool cursor_hidden_ = false;
    Joysticks joysticks_;
};

// The connection, opened with the first call that needs it, and again after the server has ended; null
// without a display.
Display* X11Desktop::Connection() {
    const char* name = std::getenv("DISPLAY");
    if (name == nullptr || *name == '\0') return nullptr;
    if (lost_ || tried_ != name) Open(name);
    if (display_ == nullptr) return nullptr;
    DropEvents();
    if (lost_) Open(name);
    return display_;
}

// Nobody asked for events, but a new keyboard mapping is told all the same.
void X11Desktop::DropEvents() {
    const ErrorScope scope(display_);
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

bool X11Desktop::KeyHeld(int virtual_key) {
    Display* display = Connection();
    if (display == nullptr) return false;
    const ErrorScope scope(display);
    std::array<char, 32> keys{};
    XQueryKeymap(display, keys.data());
    const std::vector<KeySym> symbols = KeySymbols(virtual_key);
    return std::any_of(symbols.begin(), symbols.end(), [&](KeySym symbol) {
        const unsigned code = XKeysymToKeycode(display, symbol);
        return code != 0 && (static_cast<unsigned char>(keys[code / 8]) >> (code % 8) & 1) != 0;
    });
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

// False for a window that is no program's own: it has neither a caption nor a process.
bool X11Desktop::Describe(::Window window, DesktopWindow& described) {
    described = {window, CaptionOf(window), 0};
    Property process;
    if (process.Read(display_, window, Named("_NET_WM_PID"), 1) && process.format == 32)
        described.process_id =
            static_cast<std::int64_t>(*reinterpret_cast<const unsigned long*>(process.bytes));
    return described.process_id != 0 || !described.caption.empty();
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

void X11Desktop::SetTopMost(std::uintptr_t window, bool top_most) {
    Display* display = Connection();
    if (display == nullptr || window == 0) return;
    const ErrorScope scope(display);
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window;
    event.xclient.message_type = Named("_NET_WM_STATE");
    event.xclient.format = 32;
    event.xclient.data.l[0] = top_most ? 1 : 0; // add, remove
    event.xclient.data.l[1] = static_cast<long>(Named("_NET_WM_STATE_ABOVE"));
    event.xclient.data.l[3] = 1; // from an application
    XSendEvent(display, DefaultRootWindow(display), False, SubstructureRedirectMask | SubstructureNotifyMask,
               &event);
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

void X11Desktop::Beep(int hertz, int milliseconds) {
    Display* display = Connection();
    if (display == nullptr) return;
    {
        const ErrorScope scope(display);
        XKeyboardControl bell{};
        bell.bell_pitch = hertz;
        bell.bell_duration = milliseconds;
        XChangeKeyboardControl(display, KBBellPitch | KBBellDuration, &bell);
        XBell(display, 100);
    }
    Sleep(milliseconds / 1000.0); // the next one would cut it off
}

} // namespace

Desktop& OwnDesktop() {
    static X11Desktop desktop;
    return desktop;
}

} // namespace kelvash::platform
