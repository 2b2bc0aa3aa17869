#include "cli/terminal.h"

#include <algorithm>
#include <iostream>

#include "foundation/platform/platform.h"
#include "foundation/state.h"
#include "foundation/text.h"

namespace kelvash::cli {

namespace {

struct TerminalState {
    bool BarShown = false;
};
constinit bool& bar_shown = State<TerminalState>::Get().BarShown;

std::string WithoutCarriageReturns(std::string text) {
    std::erase(text, '\r');
    return text;
}

// Names and notes of strangers could work on the terminal, or pass for other lines than they are.
std::string Printable(const std::string& text) {
    return WithoutCarriageReturns(CleanText(text));
}

} // namespace

void PrintLine(const std::string& text) {
    FinishBar();
    std::cout << Printable(text) << '\n' << std::flush;
}

void PrintError(const std::string& text) {
    FinishBar();
    std::cerr << Printable(text) << '\n' << std::flush;
}

std::optional<std::string> AskLine(const std::string& text, bool password) {
    FinishBar();
    std::cout << WithoutCarriageReturns(text) << std::flush;
    std::optional<std::string> line =
        platform::ReadInputLine(password ? platform::Echo::Hidden : platform::Echo::Shown);
    if (!line || password) std::cout << '\n'; // the one that wasn't typed, or not shown
    if (!line) return std::nullopt;
    return WithoutCarriageReturns(std::move(*line));
}

void PrintBar(int percent) {
    constexpr int kWidth = 40;
    if (!platform::OutputIsTerminal()) return;
    const int full = std::clamp(percent, 0, 100) * kWidth / 100;
    std::cout << "\r[" << std::string(static_cast<std::size_t>(full), '#')
              << std::string(static_cast<std::size_t>(kWidth - full), '.') << "] " << percent << "% "
              << std::flush;
    bar_shown = true;
}

void FinishBar() {
    if (bar_shown) std::cout << '\n';
    bar_shown = false;
}

void CatchInterrupt() {
    platform::CatchStopSignals();
}

bool Interrupted() {
    return platform::StopSignalled();
}

} // namespace kelvash::cli
