#include "cli/terminal.h"

#include <algorithm>
#include <csignal>
#include <iostream>

#include "foundation/platform/platform.h"
#include "foundation/text.h"

namespace kelvash::cli {

namespace {

volatile std::sig_atomic_t interrupted = 0;
bool bar_shown = false;

void OnInterrupt(int) {
    interrupted = 1;
    std::signal(SIGINT, SIG_DFL);
}

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

std::optional<std::string> AskLine(const std::string& text) {
    FinishBar();
    std::cout << Printable(text) << std::flush;
    // Nothing is under way here that could be stopped: Ctrl+C ends the program.
    auto* const handler = std::signal(SIGINT, SIG_DFL);
    std::string line;
    const bool typed = static_cast<bool>(std::getline(std::cin, line));
    std::signal(SIGINT, handler);
    if (!typed) {
        std::cout << '\n';
        return std::nullopt;
    }
    return WithoutCarriageReturns(std::move(line));
}

void PrintChoice(const std::string& question, const std::string& answer) {
    PrintLine(question + answer);
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
    std::signal(SIGINT, OnInterrupt);
}

bool Interrupted() {
    return interrupted != 0;
}

} // namespace kelvash::cli
