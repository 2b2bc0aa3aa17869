// The messages: every text that the program shows, and the fragments of file names and formats that it
// composes.
//
// One id stands for one use in one place; equal texts are not shared, so that a translation may tell them
// apart. Each folder and each form has a table of its own (*.inc) and a header that declares its entries:
//
// clang-format off
//   KELVASH_MESSAGE(name, id, text)         a text that is shown; a filter of a file dialog is one
//   KELVASH_QUESTION(name, id, text, harm)  one with which a question begins, and which answers lose something
//   KELVASH_PASSWORD(name, id, text)        one that asks for a password
//   KELVASH_FRAGMENT(name, id, text)        what the program works with: a part of a path, a mask, a list that
//                                           "|" divides, a tag or comment of a file, a word that is looked
//                                           for, a date pattern, a version; no translation takes its place
// clang-format on
//
// Texts stand to the letter, misspellings and blanks included. A new entry goes to the end of its section.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "foundation/message_text.h"

namespace kelvash {

using MessageArgs = std::vector<std::string>;

// The entry with "~1" replaced by the first argument, then "~2" by the second, ...: each time only the first
// occurrence, so that "~1" and "~10" can stand in one text. A mark without an argument stays; one that an
// argument brings is filled in its turn.
MessageText LoadMessage(MessageId id, const MessageArgs& args = {});

// The same for arguments that others have written, paths and names above all (a short path has a "~2" in it):
// what looks like a mark in one stays.
MessageText LoadMessageOfOthers(MessageId id, const MessageArgs& args);

struct Fragment {
    std::int32_t id;
    std::string_view name;
    std::string_view text;
};
// Marks are filled as LoadMessage fills them.
std::string LoadFragment(const Fragment& fragment, const MessageArgs& args = {});

// The usual content of a mark.
inline constexpr const char* kLineBreak = "\r\n";

// A text with its marks filled as LoadMessage fills them.
std::string FillMarks(std::string text, const MessageArgs& args);

// Nothing for a message that begins no question.
std::optional<Harm> HarmOf(MessageId id);
// True for a message that asks for a password.
bool AsksPassword(MessageId id);

// Texts by the ids of the messages whose place they take.
using Translation = std::unordered_map<std::int32_t, std::string>;
// Takes the place of the translation before; see program/message_tables.h for what may stand in one.
void SetTranslation(Translation translation);

} // namespace kelvash
