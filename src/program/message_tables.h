// All tables of messages together, and the translations of them.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::program {

struct TableEntry {
    std::int32_t id;
    std::string_view name;
    std::string_view text;
    bool fragment;
};
// The built-in texts in the order of ids, for the check of the tables and for translators.
const std::vector<TableEntry>& MessageTable();

// What became of a translated table.
struct TableLoading {
    bool Taken = false;
    std::vector<std::size_t> RefusedLines; // counted from 1
    std::vector<std::int32_t> Missing;     // ids of messages that the file has no text for
};
// Reads the texts of a translated table: UTF-8 lines of an id, a tab and the text; lines that begin with "#"
// and empty lines are skipped. Ids that the file lacks keep their text, and so do those whose line is refused
// because it changes a fragment, has other marks than the built-in text, or other masks in a filter of a file
// dialog. Not taken, with nothing changed, if the file can't be read or a line is none of these: that line is
// the refused one then.
[[nodiscard]] TableLoading LoadMessageTable(std::string_view path);
// The same, and nothing is taken.
[[nodiscard]] TableLoading CheckMessageTable(std::string_view path);
// A table of all messages as LoadMessageTable reads it, to be translated.
std::string ExportedMessages();
// The numbers of refused lines for a message, the first of them if they are many.
std::string RefusedLinesText(const TableLoading& loading);

} // namespace kelvash::program
