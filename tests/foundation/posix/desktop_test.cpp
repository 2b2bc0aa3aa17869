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
#include "support/x_client.h"

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
    EXPECT_EQ(desktop.Reach(), DesktopReach::NoDisplay);
    EXPECT_EQ(desktop.KeysHeld({kKeyF9, kKeyF11}), 0U);
    EXPECT_EQ(desktop.FocusedWindow().handle, 0U);
    desktop.Activate(1);
    EXPECT_EQ(desktop.PictureOf(1), "");
    EXPECT_FALSE(desktop.PrintScreenCopies());
    desktop.SetTopMost(1, true);
    desktop.ShowCursor(false);
    desktop.ShowCursor(true);
    EXPECT_EQ(desktop.Screen().width, 0);
    desktop.Beep(200, 150);
    EXPECT_FALSE(desktop.WindowAnimation());
    desktop.SetWindowAnimation(true);
}

TEST(DesktopWithoutDisplay, ADisplayThatDoesNotAnswerIsNone) {
    test::SetEnvironment("DISPLAY", ":64999");
    EXPECT_FALSE(TheDesktop().KeyHeld(kKeyF9));
    EXPECT_EQ(TheDesktop().Screen().width, 0);
    test::SetEnvironment("DISPLAY", "");
}

class X11 : public testing::Test, protected test::XClient {
  protected:
    void SetUp() override { ASSERT_NE(display, nullptr); }

    static std::vector<std::uintptr_t> Handles(const std::vector<DesktopWindow>& windows) {
        std::vector<std::uintptr_t> handles;
        for (const DesktopWindow& window : windows)
            handles.push_back(window.handle);
        return handles;
    }

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
    desktop.Beep(0, 10);
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

TEST_F(X11, KeysAreAskedAboutTogether) {
    EXPECT_EQ(desktop.KeysHeld({kKeyF9, kKeyF11, kKeyPrintScreen}), 0U);
    Key(XK_F9, true);
    Key(XK_Print, true);
    EXPECT_EQ(desktop.KeysHeld({kKeyF9, kKeyF11, kKeyPrintScreen}), 0b101U);
    EXPECT_EQ(desktop.KeysHeld({0, kKeyPrintScreen}), 0b10U);
    Key(XK_F9, false);
    Key(XK_Print, false);
}

TEST_F(X11, TheFocusIsOnAProgramsWindow) {
    EXPECT_EQ(desktop.Reach(), DesktopReach::Full);
    EXPECT_EQ(desktop.FocusedWindow().handle, 0U);
    const ::Window window = MakeWindow(Root(), true);
    const ::Window field = MakeWindow(window, true);
    SetProcess(window, 4711);
    SetProgram(window, "tomb4.exe", "Tomb4.exe");
    XSetInputFocus(display, field, RevertToNone, CurrentTime);
    XSync(display, False);
    const DesktopWindow focused = desktop.FocusedWindow();
    EXPECT_EQ(focused.handle, window);
    EXPECT_EQ(focused.process_id, 4711);
    EXPECT_EQ(focused.program, "tomb4.exe");
    XSetInputFocus(display, None, RevertToNone, CurrentTime);
    XSync(display, False);
    EXPECT_EQ(desktop.FocusedWindow().handle, 0U);
}

TEST_F(X11, AWindowComesToTheFrontWithTheFocus) {
    const ::Window lower = MakeWindow(Root(), true);
    const ::Window upper = MakeWindow(Root(), true);
    SetProcess(lower, 1);
    SetProcess(upper, 2);
    desktop.Activate(lower);
    EXPECT_THAT(Handles(ListTopWindows()), ElementsAre(lower, upper));
    EXPECT_EQ(desktop.FocusedWindow().handle, lower);
    desktop.Activate(0);
    desktop.Activate(0x7FFFFFF); // no such window
    EXPECT_EQ(desktop.FocusedWindow().handle, lower);
}

TEST_F(X11, AWindowManagerGivesTheFocus) {
    const test::WindowManager manager;
    const ::Window first = MakeWindow(Root(), true);
    SetProcess(first, 1);
    const ::Window second = MakeWindow(Root(), true);
    SetProcess(second, 2);
    desktop.Activate(first);
    EXPECT_TRUE(test::Comes([&] { return desktop.FocusedWindow().handle == first; }));
    desktop.Activate(second);
    EXPECT_TRUE(test::Comes([&] { return desktop.FocusedWindow().handle == second; }));
    EXPECT_THAT(Handles(ListThreadWindows(1)), ElementsAre(first));
}

// A picture of 2 x 2 pixels, rows from the bottom up: blue, green, red.
TEST_F(X11, AWindowsPictureIsABitmapFile) {
    const ::Window window = XCreateSimpleWindow(display, Root(), 10, 10, 2, 2, 0, 0, 0x102030);
    XMapWindow(display, window);
    XSync(display, False);
    const GC pen = XCreateGC(display, window, 0, nullptr);
    XSetForeground(display, pen, 0xFF8001);
    XDrawPoint(display, window, pen, 1, 0); // the upper right
    XSync(display, False);
    const std::string head(
        "BM\x46\0\0\0\0\0\0\0\x36\0\0\0"
        "\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0\0\0\0\0\x10\0\0\0"
        "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
        54);
    const std::string rows("\x30\x20\x10\x30\x20\x10\0\0\x30\x20\x10\x01\x80\xFF\0\0", 16);
    EXPECT_EQ(desktop.PictureOf(window), head + rows);
    XFreeGC(display, pen);
}

TEST_F(X11, APictureHasWhatIsOnTheScreen) {
    const ::Window window = MakeWindow(Root(), true); // 100 x 100
    XMoveWindow(display, window, -40, 530);
    XSync(display, False);
    const std::string picture = desktop.PictureOf(window);
    ASSERT_EQ(picture.size(), 54U + 180 * 70);
    EXPECT_EQ(picture.substr(18, 8), std::string("\x3C\0\0\0\x46\0\0\0", 8)); // 60 x 70
    XMoveWindow(display, window, 900, 0);
    XSync(display, False);
    EXPECT_EQ(desktop.PictureOf(window), "") << "all of it is outside";
    XUnmapWindow(display, window);
    XSync(display, False);
    EXPECT_EQ(desktop.PictureOf(window), "");
    XDestroyWindow(display, window);
    XSync(display, False);
    EXPECT_EQ(desktop.PictureOf(window), "");
}

TEST(DesktopWithoutDisplay, AWaylandDesktopWithoutX11IsKnown) {
    test::SetEnvironment("DISPLAY", "");
    test::SetEnvironment("WAYLAND_DISPLAY", "wayland-0");
    EXPECT_EQ(TheDesktop().Reach(), DesktopReach::OnlyWayland);
    test::SetEnvironment("WAYLAND_DISPLAY", "");
    EXPECT_EQ(TheDesktop().Reach(), DesktopReach::NoDisplay);
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
