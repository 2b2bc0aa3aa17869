// The X11 desktop on a server of the test's own, and without any server.
#include "foundation/desktop.h"

#include <SDL.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <utility>

#include "foundation/platform/posix_joystick.h"
#include "support/foundation_home.h"
#include "support/platform.h"
#include "support/x_server.h"

// Behind the others: X11 defines common words as macros.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace kelvash {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(DesktopWithoutDisplay, EveryCallIsHarmless) {
    test::SetEnvironment("DISPLAY", "");
    Desktop& desktop = TheDesktop();
    EXPECT_FALSE(desktop.KeyHeld(kKeyF9));
    desktop.PressKey(kKeyPrintScreen, 0);
    EXPECT_THAT(desktop.TopWindows(), IsEmpty());
    EXPECT_THAT(desktop.WindowsOf(1), IsEmpty());
    desktop.SetTopMost(1, true);
    desktop.ShowCursor(false);
    desktop.ShowCursor(true);
    EXPECT_EQ(desktop.Screen().width, 0);
    desktop.Beep(200, 150);
    EXPECT_FALSE(desktop.WindowAnimation());
    desktop.SetWindowAnimation(true);
    EXPECT_FALSE(desktop.ClipboardHasBitmap());
    desktop.ClearClipboard();
}

TEST(DesktopWithoutDisplay, ADisplayThatDoesNotAnswerIsNone) {
    test::SetEnvironment("DISPLAY", ":64999");
    EXPECT_FALSE(TheDesktop().KeyHeld(kKeyF9));
    EXPECT_EQ(TheDesktop().Screen().width, 0);
    test::SetEnvironment("DISPLAY", "");
}

// A client of its own on the private server plays the other programs.
class X11 : public testing::Test {
  protected:
    X11() : display(XOpenDisplay(nullptr)) {}
    ~X11() override {
        if (display != nullptr) XCloseDisplay(display);
    }
    void SetUp() override { ASSERT_NE(display, nullptr); }

    ::Window Root() { return DefaultRootWindow(display); }
    Atom Named(const char* name) { return XInternAtom(display, name, False); }

    ::Window MakeWindow(::Window parent, bool shown) {
        const ::Window window = XCreateSimpleWindow(display, parent, 0, 0, 100, 100, 0, 0, 0);
        if (shown) XMapWindow(display, window);
        XSync(display, False);
        return window;
    }
    void SetProcess(::Window window, unsigned long id) {
        XChangeProperty(display, window, Named("_NET_WM_PID"), XA_CARDINAL, 32, PropModeReplace,
                        reinterpret_cast<unsigned char*>(&id), 1);
        XSync(display, False);
    }
    void SetCaption(::Window window, const char* atom, Atom type, std::string text) {
        XChangeProperty(display, window, Named(atom), type, 8, PropModeReplace,
                        reinterpret_cast<unsigned char*>(text.data()), static_cast<int>(text.size()));
        XSync(display, False);
    }
    void Key(KeySym symbol, bool pressed) {
        XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), pressed ? True : False, CurrentTime);
        XSync(display, False);
    }

    static std::vector<std::uintptr_t> Handles(const std::vector<DesktopWindow>& windows) {
        std::vector<std::uintptr_t> handles;
        for (const DesktopWindow& window : windows)
            handles.push_back(window.handle);
        return handles;
    }

    test::XServer server;
    Display* display;
    Desktop& desktop = TheDesktop();
};

TEST_F(X11, AKeyIsHeldWhileItIsDown) {
    const std::pair<int, KeySym> keys[] = {
        {kKeyF9, XK_F9},   {kKeyF11, XK_F11},  {kKeyPrintScreen, XK_Print}, {'A', XK_a},       {'5', XK_5},
        {0x0D, XK_Return}, {0x10, XK_Shift_R}, {0x11, XK_Control_L},        {0x1B, XK_Escape}, {0x26, XK_Up},
        {0x60, XK_KP_0}};
    for (const auto& [code, symbol] : keys) {
        EXPECT_FALSE(desktop.KeyHeld(code)) << code;
        Key(symbol, true);
        EXPECT_TRUE(desktop.KeyHeld(code)) << code;
        Key(symbol, false);
        EXPECT_FALSE(desktop.KeyHeld(code)) << code;
    }
    EXPECT_FALSE(desktop.KeyHeld(0x07));
    EXPECT_FALSE(desktop.KeyHeld(0));
    EXPECT_FALSE(desktop.KeyHeld(-1));
}

TEST_F(X11, KeysAreHeldTogether) {
    Key(XK_F9, true);
    EXPECT_FALSE(IsKeyDown({0x11, kKeyF9}));
    Key(XK_Control_R, true);
    EXPECT_TRUE(IsKeyDown({0x11, kKeyF9}));
    Key(XK_Control_R, false);
    Key(XK_F9, false);
}

TEST_F(X11, APressedKeyReachesTheFocusAndIsReleased) {
    const ::Window window = MakeWindow(Root(), true);
    XSelectInput(display, window, KeyPressMask | KeyReleaseMask);
    XSetInputFocus(display, window, RevertToNone, CurrentTime);
    XSync(display, False);
    SendKey(kKeyF11, 0x57);
    XEvent press, release;
    XMaskEvent(display, KeyPressMask, &press);
    XMaskEvent(display, KeyReleaseMask, &release);
    EXPECT_EQ(XLookupKeysym(&press.xkey, 0), static_cast<KeySym>(XK_F11));
    EXPECT_EQ(press.xkey.keycode, release.xkey.keycode);
    EXPECT_FALSE(desktop.KeyHeld(kKeyF11));
    SendKey(0x07, 0); // no such key
}

TEST_F(X11, WindowsHaveCaptionsAndProcesses) {
    const ::Window window = MakeWindow(Root(), true);
    SetProcess(window, 4711);
    SetCaption(window, "_NET_WM_NAME", Named("UTF8_STRING"), "Éditeur 日本");
    SetCaption(window, "WM_NAME", XA_STRING, "other");
    const std::vector<DesktopWindow> windows = ListTopWindows();
    ASSERT_EQ(windows.size(), 1U);
    EXPECT_EQ(windows[0].handle, window);
    EXPECT_EQ(windows[0].caption, "Éditeur 日本");
    EXPECT_EQ(windows[0].process_id, 4711);
}

TEST_F(X11, AnOldCaptionIsLatin) {
    const ::Window window = MakeWindow(Root(), true);
    SetCaption(window, "WM_NAME", XA_STRING, "Tomb Raider \xE8");
    EXPECT_EQ(FindWindowByCaption("Tomb Raider è", Caption::Whole).handle, window);
    EXPECT_EQ(FindWindowByCaption("Tomb", Caption::Start).handle, window);
    EXPECT_EQ(FindWindowByCaption("Tomb", Caption::Whole).handle, 0U);
}

TEST_F(X11, WindowsComeFromTheTopOfTheStackDown) {
    const ::Window lower = MakeWindow(Root(), true);
    const ::Window upper = MakeWindow(Root(), true);
    SetProcess(lower, 1);
    SetProcess(upper, 2);
    EXPECT_THAT(Handles(ListTopWindows()), ElementsAre(upper, lower));
    XRaiseWindow(display, lower);
    XSync(display, False);
    EXPECT_THAT(Handles(ListTopWindows()), ElementsAre(lower, upper));
}

TEST_F(X11, AWindowIsFoundInsideTheFramesOfAWindowManager) {
    const ::Window frame = MakeWindow(Root(), true);
    const ::Window inner = MakeWindow(frame, true);
    const ::Window window = MakeWindow(inner, true);
    const ::Window button = MakeWindow(window, true);
    SetProcess(window, 4711);
    SetProcess(button, 4711); // part of the program's window
    EXPECT_THAT(Handles(ListThreadWindows(4711)), ElementsAre(window));
}

TEST_F(X11, OnlyVisibleWindowsOfTheProcessCount) {
    const ::Window hidden = MakeWindow(Root(), false);
    const ::Window other = MakeWindow(Root(), true);
    SetProcess(hidden, 4711);
    SetProcess(other, 4712);
    EXPECT_THAT(ListThreadWindows(4711), IsEmpty());
    EXPECT_THAT(Handles(ListTopWindows()), ElementsAre(other, hidden));
    XMapWindow(display, hidden);
    XSync(display, False);
    EXPECT_THAT(Handles(ListThreadWindows(4711)), ElementsAre(hidden));
}

TEST_F(X11, TopMostIsAskedOfTheWindowManagerAndRaises) {
    const ::Window lower = MakeWindow(Root(), true);
    const ::Window upper = MakeWindow(Root(), true);
    SetProcess(lower, 1);
    SetProcess(upper, 2);
    XSelectInput(display, Root(), SubstructureNotifyMask);
    XSync(display, True);
    SetTopMost(lower);
    ClearTopMost(lower);
    XSync(display, False);
    std::vector<long> asked;
    XEvent event;
    while (XPending(display) > 0) {
        XNextEvent(display, &event);
        if (event.type != ClientMessage) continue;
        EXPECT_EQ(event.xclient.window, lower);
        EXPECT_EQ(event.xclient.message_type, Named("_NET_WM_STATE"));
        EXPECT_EQ(event.xclient.data.l[1], static_cast<long>(Named("_NET_WM_STATE_ABOVE")));
        asked.push_back(event.xclient.data.l[0]);
    }
    EXPECT_THAT(asked, ElementsAre(1, 0));
    EXPECT_THAT(Handles(ListTopWindows()), ElementsAre(lower, upper));
}

TEST_F(X11, AWindowThatHasGoneIsHarmless) {
    const ::Window window = MakeWindow(Root(), true);
    XDestroyWindow(display, window);
    XSync(display, False);
    SetTopMost(window);
    ClearTopMost(window);
    SetTopMost(0);
    EXPECT_EQ(desktop.Screen().width, 800);
}

TEST_F(X11, WindowsMayVanishWhileTheyAreListed) {
    const pid_t child = ::fork();
    if (child == 0) { // another program that keeps making and closing windows
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        Display* own = XOpenDisplay(nullptr);
        for (;;) {
            unsigned long id = 4711;
            const ::Window window = XCreateSimpleWindow(own, DefaultRootWindow(own), 0, 0, 9, 9, 0, 0, 0);
            XChangeProperty(own, window, XInternAtom(own, "_NET_WM_PID", False), XA_CARDINAL, 32,
                            PropModeReplace, reinterpret_cast<unsigned char*>(&id), 1);
            XMapWindow(own, window);
            XSync(own, False);
            XDestroyWindow(own, window);
            XSync(own, False);
        }
    }
    std::size_t seen = 0;
    for (int i = 0; i < 3000 || (seen == 0 && i < 60000); ++i) // a busy machine starts the other program late
        seen += ListThreadWindows(4711).size();
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    EXPECT_GT(seen, 0U);
}

TEST_F(X11, ScreenCursorAndBell) {
    EXPECT_EQ(desktop.Screen().width, 800);
    EXPECT_EQ(desktop.Screen().height, 600);
    HideCursor();
    HideCursor();
    ShowCursor();
    ShowCursor();
    desktop.Beep(300, 10);
    EXPECT_FALSE(desktop.KeyHeld(kKeyF9)); // the connection is still good
}

TEST_F(X11, AServerThatEndsDoesNotEndTheProgram) {
    EXPECT_EQ(desktop.Screen().width, 800);
    XCloseDisplay(display);
    display = nullptr;
    server.Kill();
    EXPECT_FALSE(desktop.KeyHeld(kKeyF9));
    EXPECT_THAT(desktop.TopWindows(), IsEmpty());
    desktop.PressKey(kKeyF9, 0);
    EXPECT_EQ(desktop.Screen().width, 0);
}

// SDL's virtual stick plays the real one.
class Joystick : public testing::Test {
  protected:
    Joystick() {
        TheDesktop().ReadJoystick(0, state); // starts what is linked in here
        device = SDL_JoystickAttachVirtual(SDL_JOYSTICK_TYPE_GAMECONTROLLER, 2, 12, 0);
        stick = SDL_JoystickOpen(device);
    }
    ~Joystick() override {
        SDL_JoystickClose(stick);
        SDL_JoystickDetachVirtual(device);
    }
    JoystickState state;
    int device = -1;
    SDL_Joystick* stick = nullptr;
};

TEST(PluggedInJoystick, IsADeviceWithAJoysticksButtons) {
    const std::filesystem::path devices = test::MakeTemporaryFolder();
    const auto plug_in = [&](const std::string& name, const std::string& keys) {
        test::MakeFile(devices / name / "device" / "capabilities" / "key", keys);
    };
    EXPECT_FALSE(platform::JoystickPluggedIn(devices / "none"));
    EXPECT_FALSE(platform::JoystickPluggedIn(devices));
    plug_in("event0", "1000000000007 ff9f207ac14057ff febeffdfffefffff fffffffffffffffe\n"); // keyboard
    plug_in("event1", "1f0000 0 0 0 0\n"); // mouse: 0x110-0x114
    plug_in("event2", "");
    EXPECT_FALSE(platform::JoystickPluggedIn(devices));
    plug_in("event3", "7fdb000000000000 0 0 0 0\n"); // gamepad: 0x130-0x13E
    EXPECT_TRUE(platform::JoystickPluggedIn(devices));
    std::filesystem::remove_all(devices);
}

TEST_F(Joystick, AxesRunFromZeroWithTheRestInTheMiddle) {
    ASSERT_NE(stick, nullptr) << SDL_GetError();
    ASSERT_TRUE(TheDesktop().ReadJoystick(device, state));
    EXPECT_NEAR(state.x, 32767, 1);
    EXPECT_NEAR(state.y, 32767, 1);
    EXPECT_EQ(state.buttons, 0U);
    SDL_JoystickSetVirtualAxis(stick, 0, -32768);
    SDL_JoystickSetVirtualAxis(stick, 1, 32767);
    ASSERT_TRUE(TheDesktop().ReadJoystick(device, state));
    EXPECT_EQ(state.x, 0);
    EXPECT_EQ(state.y, 65535);
}

TEST_F(Joystick, EachButtonIsABit) {
    ASSERT_NE(stick, nullptr) << SDL_GetError();
    SDL_JoystickSetVirtualButton(stick, 0, 1);
    SDL_JoystickSetVirtualButton(stick, 3, 1);
    SDL_JoystickSetVirtualButton(stick, 11, 1);
    ASSERT_TRUE(TheDesktop().ReadJoystick(device, state));
    EXPECT_EQ(state.buttons, 0x809U);
    SDL_JoystickSetVirtualButton(stick, 3, 0);
    ASSERT_TRUE(TheDesktop().ReadJoystick(device, state));
    EXPECT_EQ(state.buttons, 0x801U);
}

TEST_F(Joystick, AStickThatIsPulledOutIsGone) {
    ASSERT_NE(stick, nullptr) << SDL_GetError();
    ASSERT_TRUE(TheDesktop().ReadJoystick(device, state));
    SDL_JoystickDetachVirtual(device);
    EXPECT_FALSE(TheDesktop().ReadJoystick(device, state));
}

TEST(NoJoystick, AMissingOneIsNotRead) {
    JoystickState state;
    EXPECT_FALSE(TheDesktop().ReadJoystick(999, state));
    EXPECT_FALSE(TheDesktop().ReadJoystick(-1, state));
}

} // namespace
} // namespace kelvash
