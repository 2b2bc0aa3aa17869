#include <poll.h>
#include <signal.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

namespace {

volatile std::sig_atomic_t stop_signalled = 0;

void OnStopSignal(int) {
    stop_signalled = 1;
}

// Hides what is typed for the length of a scope.
class HiddenInput {
  public:
    explicit HiddenInput(Echo echo) {
        if (echo == Echo::Shown || ::tcgetattr(STDIN_FILENO, &shown_) != 0) return;
        termios hidden = shown_;
        hidden.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        hides_ = ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &hidden) == 0;
    }
    ~HiddenInput() {
        if (hides_) ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &shown_);
    }
    HiddenInput(const HiddenInput&) = delete;
    HiddenInput& operator=(const HiddenInput&) = delete;

  private:
    termios shown_{};
    bool hides_ = false;
};

// Nothing at the end of the input, or once the program is to end.
std::optional<char> ReadCharacter() {
    constexpr int kLookEveryMs = 100; // for a signal that came between the look at the flag and the wait
    while (stop_signalled == 0) {
        pollfd input{STDIN_FILENO, POLLIN, 0};
        const int ready = ::poll(&input, 1, kLookEveryMs);
        if (ready == 0 || (ready < 0 && errno == EINTR)) continue;
        char c = 0;
        if (ready < 0 || ::read(STDIN_FILENO, &c, 1) != 1) return std::nullopt;
        return c;
    }
    return std::nullopt;
}

} // namespace

bool OutputIsTerminal() {
    return ::isatty(STDOUT_FILENO) != 0;
}

void CatchStopSignals() {
    for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction action = {};
        if (::sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        action = {};
        action.sa_handler = OnStopSignal;
        action.sa_flags = SA_RESTART; // no file operation is to fail for it
        ::sigaction(number, &action, nullptr);
    }
    ::signal(SIGPIPE, SIG_IGN);
}

bool StopSignalled() {
    return stop_signalled != 0;
}

std::optional<std::string> ReadInputLine(Echo echo) {
    const HiddenInput hidden(echo);
    std::string line;
    for (;;) {
        const std::optional<char> c = ReadCharacter();
        if (c == '\n') return line;
        if (!c && (line.empty() || StopSignalled())) return std::nullopt;
        if (!c) return line;
        line += *c;
    }
}

} // namespace kelvash::platform
