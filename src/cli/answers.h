// Answers written down before a run: those of an answers file and those that a command's options give.
#pragma once

#include <filesystem>
#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/message_text.h"

namespace kelvash::cli {

struct AnswerEntry {
    MessageId id = kNoMessage; // of the box; otherwise `when` says which one is meant
    std::string when{};        // part of the text or title of a box, or of a form's name
    std::string answer{};      // "yes", "no", "ok", "cancel", "abort", "retry", "ignore", a text or a path
    int times = 1;             // 0: for ever
    int used = 0;
    std::map<std::string, int> given{}; // of one that serves for ever: how often, by what the box showed
};

// What is known of a box that asks: its message, and its texts, titles and form's name.
struct BoxSigns {
    MessageId id = kNoMessage;
    std::initializer_list<std::string_view> shown;
};

// An entry that serves for ever answers one and the same box so often: what asks again until the answer is
// right has to end.
inline constexpr int kMostRepeats = 10'000;

// The answer of the first entry that fits a box and isn't used up; nothing if there is none.
std::optional<std::string> TakeAnswer(std::vector<AnswerEntry>& entries, const BoxSigns& box);

// Adds the entries of an answers file. Gives what is wrong with it; empty if nothing is.
std::string ReadAnswers(const std::filesystem::path& file, std::vector<AnswerEntry>& entries);

} // namespace kelvash::cli
