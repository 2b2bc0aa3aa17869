#include "foundation/messages.h"

#include <algorithm>
#include <unordered_map>

#include "foundation/files.h"
#include "foundation/text.h"

namespace kelvash {

namespace {

using TextTable = std::unordered_map<std::int32_t, std::string>;

TextTable BuiltInTexts() {
    TextTable table;
    for (const MessageEntry& entry : MessageTable())
        table.emplace(static_cast<std::int32_t>(entry.id), entry.text);
    return table;
}

TextTable& Texts() {
    static TextTable table = BuiltInTexts();
    return table;
}

// A translation of the whole table takes some hundred kilobytes.
constexpr std::size_t kLongestTable = std::size_t{4} << 20;

const MessageEntry* FindEntry(std::int32_t id) {
    static const std::unordered_map<std::int32_t, const MessageEntry*> entries = [] {
        std::unordered_map<std::int32_t, const MessageEntry*> all;
        for (const MessageEntry& entry : MessageTable())
            all.emplace(static_cast<std::int32_t>(entry.id), &entry);
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

bool MayReplace(const MessageEntry& entry, std::string_view text) {
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

LineKind TakeLine(std::string_view line, TextTable& table) {
    if (line.empty() || line.front() == '#') return LineKind::Good;
    const std::size_t tab = line.find('\t');
    const std::optional<std::int32_t> id = WholeNumber(line.substr(0, tab));
    if (tab == std::string_view::npos || !id) return LineKind::Unreadable;
    const MessageEntry* entry = FindEntry(*id);
    if (entry == nullptr) return LineKind::Good;
    const std::string_view text = line.substr(tab + 1);
    if (!MayReplace(*entry, text)) return LineKind::Refused;
    table[*id] = text;
    return LineKind::Good;
}

} // namespace

const std::vector<MessageEntry>& MessageTable() {
    static const std::vector<MessageEntry> table = {
#define KELVASH_MESSAGE(name, id, text) {MessageId::name, #name, text, false},
#define KELVASH_FRAGMENT(name, id, text) {MessageId::name, #name, text, true},
#include "foundation/message_table.inc"
#undef KELVASH_MESSAGE
    };
    return table;
}

std::string FillMarks(std::string text, const MessageArgs& args) {
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string mark = "~" + std::to_string(i + 1);
        if (const std::size_t at = text.find(mark); at != std::string::npos)
            text.replace(at, mark.size(), args[i]);
    }
    return text;
}

std::optional<Harm> HarmOf(MessageId id) {
    switch (id) {
#define KELVASH_MESSAGE(name, id, text)
#define KELVASH_QUESTION(name, id, text, harm) \
    case MessageId::name:                      \
        return Harm::harm;
#include "foundation/message_table.inc"
#undef KELVASH_MESSAGE
        default:
            return std::nullopt;
    }
}

bool AsksPassword(MessageId id) {
    switch (id) {
#define KELVASH_MESSAGE(name, id, text)
#define KELVASH_PASSWORD(name, id, text) \
    case MessageId::name:                \
        return true;
#include "foundation/message_table.inc"
#undef KELVASH_MESSAGE
        default:
            return false;
    }
}

MessageText LoadMessage(MessageId id, const MessageArgs& args) {
    return {id, FillMarks(Texts().at(static_cast<std::int32_t>(id)), args)};
}

TableLoading LoadMessageTable(std::string_view path) {
    const std::optional<std::string> file = ReadFileStart(path, kLongestTable + 1);
    if (!file || file->size() > kLongestTable) return {};
    TextTable table = BuiltInTexts();
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
                return {false, {number}};
        }
    Texts() = std::move(table);
    loading.Taken = true;
    return loading;
}

std::string RefusedLinesText(const TableLoading& loading) {
    constexpr std::size_t kMostNumbers = 20;
    std::vector<std::string> numbers;
    for (const std::size_t line : loading.RefusedLines)
        if (numbers.size() < kMostNumbers) numbers.push_back(std::to_string(line));
    return Join(numbers, ", ") + (loading.RefusedLines.size() > kMostNumbers ? ", ..." : "");
}

void ResetMessages() {
    Texts() = BuiltInTexts();
}

} // namespace kelvash
