#include <io.h>
#include <stdio.h>

#include <csignal>
#include <iostream>

#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace {

volatile std::sig_atomic_t stop_signalled = 0;

// Each signal sets its handling back.
void OnStopSignal(int number) {
    std::signal(number, OnStopSignal);
    stop_signalled = 1;
}

} // namespace

bool OutputIsTerminal() {
    return _isatty(_fileno(stdout)) != 0;
}

void CatchStopSignals() {
    for (const int number : {SIGINT, SIGTERM, SIGBREAK})
        std::signal(number, OnStopSignal);
}

bool StopSignalled() {
    return stop_signalled != 0;
}

std::optional<std::string> ReadInputLine(Echo echo) {
    const HANDLE input = ::GetStdHandle(STD_INPUT_HANDLE);
    DWORD shown = 0;
    const bool hides = echo == Echo::Hidden && ::GetConsoleMode(input, &shown) != 0 &&
                       ::SetConsoleMode(input, shown & ~static_cast<DWORD>(ENABLE_ECHO_INPUT)) != 0;
    std::string line;
    const bool typed = static_cast<bool>(std::getline(std::cin, line));
    if (hides) ::SetConsoleMode(input, shown);
    if (!typed || StopSignalled()) return std::nullopt;
    return line;
}

} // namespace kelvash::platform
