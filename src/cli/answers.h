// Answers written down before a run: those of an answers file and those that a command's options give.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::cli {

struct AnswerEntry {
    std::string when;   // part of the text or title of a box, or of a form's name
    std::string answer; // "yes", "no", "ok", "cancel", "abort", "retry", "ignore", a text or a path
    int times = 1;      // 0: for ever
    int used = 0;
};

// The answer of the first entry that occurs in one of the texts and isn't used up; nothing if there is none.
std::optional<std::string> TakeAnswer(std::vector<AnswerEntry>& entries,
                                      std::initializer_list<std::string_view> shown);

// Adds the entries of an answers file. Gives what is wrong with it; empty if nothing is.
std::string ReadAnswers(const std::filesystem::path& file, std::vector<AnswerEntry>& entries);

} // namespace kelvash::cli
