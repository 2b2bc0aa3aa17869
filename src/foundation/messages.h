// The numbered message table: every text that the program shows and the file-name fragments it composes.
//
// One id stands for one use in one place; equal texts are not shared, so that a translation may tell them
// apart. The texts stand in message_table.inc. A table file with the same ids can take the place of messages
// (LoadMessageTable); fragments are what the program works with, and nothing takes their place.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/message_text.h"

namespace kelvash {

// Names for the code, numbers for the table file. The numbers are opaque and never change.
enum class MessageId : std::int32_t {
#define KELVASH_MESSAGE(name, id, text) name = id,
#include "foundation/message_table.inc"
#undef KELVASH_MESSAGE
};

using MessageArgs = std::vector<std::string>;

// The entry with "~1" replaced by the first argument, then "~2" by the second, ...: each time only the first
// occurrence, so that "~1" and "~10" can stand in one text. A mark without an argument stays.
MessageText LoadMessage(MessageId id, const MessageArgs& args);

// The usual content of a mark.
inline constexpr const char* kLineBreak = "\r\n";

// A text with its marks filled as LoadMessage fills them.
std::string FillMarks(std::string text, const MessageArgs& args);

// What became of a translated table.
struct TableLoading {
    bool Taken = false;
    std::vector<std::size_t> RefusedLines; // counted from 1
};
// Takes the texts of a translated table: UTF-8 lines of an id, a tab and the text; lines that begin with "#"
// and empty lines are skipped. Ids that the file lacks keep their text, and so do those whose line is refused
// because it changes a fragment, has other marks than the built-in text, or other masks in a filter of a file
// dialog. Not taken, with nothing changed, if the file can't be read or a line is none of these: that line is
// the refused one then.
[[nodiscard]] TableLoading LoadMessageTable(std::string_view path);
// The numbers of refused lines for a message, the first of them if they are many.
std::string RefusedLinesText(const TableLoading& loading);
// Which answers to a question can lose something that the user has, or go on for ever when nobody is there.
// Ok and Retry count as yes; No, Cancel and Abort as no.
enum class Harm { NothingLoses, YesLoses, NoLoses, AnyLoses };
// Nothing for a message that begins no question.
std::optional<Harm> HarmOf(MessageId id);
// True for a message that asks for a password: what is typed is neither shown nor told.
bool AsksPassword(MessageId id);

// Back to the built-in texts.
void ResetMessages();

struct MessageEntry {
    MessageId id;
    std::string_view name;
    std::string_view text;
    bool fragment;
};
// The built-in table in the order of ids, for the check of the table and for translators.
const std::vector<MessageEntry>& MessageTable();

} // namespace kelvash
