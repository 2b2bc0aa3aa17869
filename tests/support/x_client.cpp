#include "support/x_client.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <thread>

namespace kelvash::test {

namespace {

void SleepMillis(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

bool ManagerIsThere(Display* display) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0, left = 0;
    unsigned char* bytes = nullptr;
    const Atom name = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", False);
    XGetWindowProperty(display, DefaultRootWindow(display), name, 0, 1, False, AnyPropertyType, &type,
                       &format, &count, &left, &bytes);
    if (bytes != nullptr) XFree(bytes);
    return count > 0;
}

} // namespace

bool Comes(const std::function<bool()>& condition) {
    constexpr int kTries = 1000;
    for (int i = 0; i < kTries; ++i) {
        if (condition()) return true;
        SleepMillis(10);
    }
    return false;
}

XClient::XClient() : display(XOpenDisplay(nullptr)) {}

XClient::~XClient() {
    if (display != nullptr) XCloseDisplay(display);
}

::Window XClient::MakeWindow(::Window parent, bool shown) {
    const ::Window window = XCreateSimpleWindow(display, parent, 0, 0, 100, 100, 0, 0, 0);
    if (shown) XMapWindow(display, window);
    XSync(display, False);
    return window;
}

void XClient::SetProcess(::Window window, unsigned long id) {
    XChangeProperty(display, window, Named("_NET_WM_PID"), XA_CARDINAL, 32, PropModeReplace,
                    reinterpret_cast<unsigned char*>(&id), 1);
    XSync(display, False);
}

void XClient::SetProgram(::Window window, const std::string& name, const std::string& kind) {
    SetCaption(window, "WM_CLASS", XA_STRING, name + '\0' + kind + '\0');
}

void XClient::SetCaption(::Window window, const char* atom, Atom type, std::string text) {
    XChangeProperty(display, window, Named(atom), type, 8, PropModeReplace,
                    reinterpret_cast<unsigned char*>(text.data()), static_cast<int>(text.size()));
    XSync(display, False);
}

void XClient::Key(KeySym symbol, bool pressed) {
    XTestFakeKeyEvent(display, XKeysymToKeycode(display, symbol), pressed ? True : False, CurrentTime);
    XSync(display, False);
}

void XClient::Tap(KeySym symbol, int milliseconds) {
    Key(symbol, true);
    SleepMillis(milliseconds);
    Key(symbol, false);
}

WindowManager::WindowManager() {
    process_ = ::fork();
    if (process_ == 0) {
        const int nothing = ::open("/dev/null", O_RDWR);
        ::dup2(nothing, STDOUT_FILENO);
        ::dup2(nothing, STDERR_FILENO);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        ::execlp("openbox", "openbox", "--sm-disable", "--config-file", "/dev/null", nullptr);
        ::_exit(127);
    }
    Display* const display = XOpenDisplay(nullptr);
    if (display == nullptr) return;
    EXPECT_TRUE(Comes([display] { return ManagerIsThere(display); })) << "openbox can't be started";
    XCloseDisplay(display);
}

WindowManager::~WindowManager() {
    if (process_ <= 0) return;
    ::kill(process_, SIGTERM);
    ::waitpid(process_, nullptr, 0);
}

} // namespace kelvash::test
