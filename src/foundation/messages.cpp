#include "foundation/messages.h"

#include <unordered_map>

#include "foundation/files.h"
#include "foundation/path.h"
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

} // namespace

const std::vector<MessageEntry>& MessageTable() {
    static const std::vector<MessageEntry> table = {
#define KELVASH_MESSAGE(name, id, text) {MessageId::name, #name, text},
#include "foundation/message_table.inc"
#undef KELVASH_MESSAGE
    };
    return table;
}

MessageText LoadMessage(MessageId id, const MessageArgs& args) {
    std::string text = Texts().at(static_cast<std::int32_t>(id));
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string mark = "~" + std::to_string(i + 1);
        if (const std::size_t at = text.find(mark); at != std::string::npos)
            text.replace(at, mark.size(), args[i]);
    }
    return {id, std::move(text)};
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

bool LoadMessageTable(std::string_view path) {
    const std::optional<std::string> file = ReadFileBytes(path);
    if (!file) return false;
    TextTable table = BuiltInTexts();
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF"; // some editors begin a file with it
    for (std::size_t at = file->starts_with(kByteOrderMark) ? kByteOrderMark.size() : 0; at < file->size();) {
        const std::string line = NextLineIn(*file, at);
        if (line.empty() || line.front() == '#') continue;
        const std::size_t tab = line.find('\t');
        const std::optional<std::int32_t> id = WholeNumber(line.substr(0, tab));
        if (tab == std::string::npos || !id) return false;
        if (const auto entry = table.find(*id); entry != table.end()) entry->second = line.substr(tab + 1);
    }
    Texts() = std::move(table);
    return true;
}

void ResetMessages() {
    Texts() = BuiltInTexts();
}

} // namespace kelvash
