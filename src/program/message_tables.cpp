#include "program/message_tables.h"

#include <algorithm>
#include <unordered_map>

#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::program {

namespace {

// A translation of the whole table takes some hundred kilobytes.
constexpr std::size_t kLongestTable = std::size_t{4} << 20;

const TableEntry* FindEntry(std::int32_t id) {
    static const std::unordered_map<std::int32_t, const TableEntry*> entries = [] {
        std::unordered_map<std::int32_t, const TableEntry*> all;
        for (const TableEntry& entry : MessageTable())
            all.emplace(entry.id, &entry);
        return all;
    }();
    const auto found = entries.find(id);
    return found == entries.end() ? nullptr : found->second;
}

// The numbers of a text's marks, in ascending order.
std::vector<std::string> MarksOf(std::string_view text) {
    std::vector<std::string> marks;
    for (std::size_t at = 0; (at = text.find('~', at)) != std::string_view::npos;) {
        const std::size_t end = std::min(text.find_first_not_of("0123456789", ++at), text.size());
        if (end > at) marks.emplace_back(text.substr(at, end - at));
    }
    std::sort(marks.begin(), marks.end());
    return marks;
}

// A filter is pairs of a shown text and its masks; a text without "|" is none, and has nothing to keep.
bool KeepsMasks(std::string_view built_in, std::string_view text) {
    const std::vector<std::string> old_parts = Split(built_in, '|');
    const std::vector<std::string> parts = Split(text, '|');
    if (old_parts.size() < 2) return parts.size() < 2;
    if (parts.size() != old_parts.size()) return false;
    for (std::size_t i = 1; i < parts.size(); i += 2)
        if (parts[i] != old_parts[i]) return false;
    return true;
}

bool MayReplace(const TableEntry& entry, std::string_view text) {
    if (entry.fragment) return text == entry.text; // in a file that lists the whole table
    // An empty text only leaves a label blank; with marks something would go untold.
    return MarksOf(text) == MarksOf(entry.text) && KeepsMasks(entry.text, text);
}

std::string_view CutLine(std::string_view& rest) {
    const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    const std::string_view line = rest.substr(0, end);
    rest.remove_prefix(end);
    rest.remove_prefix(rest.starts_with(kLineBreak) ? 2 : std::min<std::size_t>(rest.size(), 1));
    return line;
}

enum class LineKind { Good, Refused, Unreadable };

LineKind TakeLine(std::string_view line, Translation& table) {
    if (line.empty() || line.front() == '#') return LineKind::Good;
    const std::size_t tab = line.find('\t');
    const std::optional<std::int32_t> id = WholeNumber(line.substr(0, tab));
    if (tab == std::string_view::npos || !id) return LineKind::Unreadable;
    const TableEntry* entry = FindEntry(*id);
    if (entry == nullptr) return LineKind::Good;
    const std::string_view text = line.substr(tab + 1);
    if (!MayReplace(*entry, text)) return LineKind::Refused;
    table[*id] = text;
    return LineKind::Good;
}

// What a file holds, and what becomes of it.
TableLoading ReadTable(std::string_view path, Translation& table) {
    const std::optional<std::string> file = ReadFileStart(path, kLongestTable + 1);
    if (!file || file->size() > kLongestTable) return {};
    TableLoading loading;
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // some editors begin a file with it
    std::string_view rest = *file;
    if (rest.starts_with(kByteOrderMark)) rest.remove_prefix(kByteOrderMark.size());
    for (std::size_t number = 1; !rest.empty(); ++number)
        switch (TakeLine(CutLine(rest), table)) {
            case LineKind::Good:
                break;
            case LineKind::Refused:
                loading.RefusedLines.push_back(number);
                break;
            case LineKind::Unreadable:
                return {false, {number}, {}};
        }
    for (const TableEntry& entry : MessageTable())
        if (!entry.fragment && !table.contains(entry.id)) loading.Missing.push_back(entry.id);
    loading.Taken = true;
    return loading;
}

} // namespace

const std::vector<TableEntry>& MessageTable() {
    static const std::vector<TableEntry> table = [] {
        std::vector<TableEntry> all = {
#define KELVASH_MESSAGE(name, id, text) {id, #name, text, false},
#define KELVASH_QUESTION(name, id, text, harm) {id, #name, text, false},
#define KELVASH_PASSWORD(name, id, text) {id, #name, text, false},
#define KELVASH_FRAGMENT(name, id, text) {id, #name, text, true},

// Of all folders and forms: src/CMakeLists.txt makes it.
#include "all_tables.inc"

#undef KELVASH_MESSAGE
#undef KELVASH_QUESTION
#undef KELVASH_PASSWORD
#undef KELVASH_FRAGMENT
        };
        std::sort(all.begin(), all.end(),
                  [](const TableEntry& a, const TableEntry& b) { return a.id < b.id; });
        return all;
    }();
    return table;
}

TableLoading LoadMessageTable(std::string_view path) {
    Translation table;
    TableLoading loading = ReadTable(path, table);
    if (loading.Taken) SetTranslation(std::move(table));
    return loading;
}

TableLoading CheckMessageTable(std::string_view path) {
    Translation table;
    return ReadTable(path, table);
}

std::string ExportedMessages() {
    std::string lines;
    for (const TableEntry& entry : MessageTable())
        if (!entry.fragment)
            lines.append(std::to_string(entry.id)).append("\t").append(entry.text).append("\n");
    return lines;
}

std::string RefusedLinesText(const TableLoading& loading) {
    constexpr std::size_t kMostNumbers = 20;
    std::vector<std::string> numbers;
    for (const std::size_t line : loading.RefusedLines)
        if (numbers.size() < kMostNumbers) numbers.push_back(std::to_string(line));
    return Join(numbers, ", ") + (loading.RefusedLines.size() > kMostNumbers ? ", ..." : "");
}

} // namespace kelvash::program
