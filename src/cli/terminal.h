// The plain mode's screen: lines for a person, a bar, typed answers.
#pragma once

#include <optional>
#include <string>

namespace kelvash::cli {

// Line breaks of the logic (CR LF) become those of the terminal.
void PrintLine(const std::string& text);
// Prints the text and reads a line; nothing at the end of the input.
std::optional<std::string> AskLine(const std::string& text);
// What was chosen without asking, behind the question.
void PrintChoice(const std::string& question, const std::string& answer);

// The bar stays on one line and only shows on a terminal. FinishBar ends the line.
void PrintBar(int percent);
void FinishBar();

// Ctrl+C asks the running job to stop; pressed again it ends the program.
void CatchInterrupt();
bool Interrupted();

} // namespace kelvash::cli
