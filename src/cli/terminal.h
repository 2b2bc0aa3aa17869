// The plain mode's screen: lines for a person, a bar, typed answers.
#pragma once

#include <optional>
#include <string>

namespace kelvash::cli {

// Line breaks of the logic (CR LF) become those of the terminal.
void PrintLine(const std::string& text);
// The same on the standard error.
void PrintError(const std::string& text);
// Prints the text and reads a line; nothing at the end of the input, or once Interrupted. A password isn't
// shown.
std::optional<std::string> AskLine(const std::string& text, bool password);

// The bar stays on one line and only shows on a terminal. FinishBar ends the line.
void PrintBar(int percent);
void FinishBar();

// From CatchInterrupt on, a signal that asks the program to end only makes Interrupted true: a job that can
// be stopped stops, any other is completed, and nothing more is begun.
void CatchInterrupt();
bool Interrupted();

} // namespace kelvash::cli
