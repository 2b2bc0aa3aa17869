#include "cli/result.h"

#include <algorithm>
#include <array>
#include <utility>

#include "foundation/messages.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

// Headings of the fields that all commands share; others are shown under their own names.
constexpr std::array<std::pair<std::string_view, MessageId>, 15> kHeadings = {{
    {"trle", MessageId::kCliTrle},
    {"archive", MessageId::kCliArchive},
    {"levels", MessageId::kCliLevels},
    {"installed", MessageId::kCliInstalled},
    {"fullBackup", MessageId::kCliFullBackup},
    {"home", MessageId::kCliHome},
    {"zips", MessageId::kCliZips},
    {"code", MessageId::kCliCode},
    {"file", MessageId::kCliFile},
    {"equal", MessageId::kCliEqualLevels},
    {"mainSize", MessageId::kCliMainSize},
    {"secondarySize", MessageId::kCliSecondarySize},
    {"folder", MessageId::kCliFolder},
    {"compressFiles", MessageId::kCliCompressFiles},
    {"encodeWavInMp3", MessageId::kCliEncodeMp3},
}};

std::string Heading(const std::string& name) {
    const auto* const found = std::find_if(kHeadings.begin(), kHeadings.end(),
                                           [&](const auto& entry) { return entry.first == name; });
    return found == kHeadings.end() ? name : LoadMessage(found->second, {});
}

std::string PlainValue(const ordered_json& value) {
    if (value.is_string()) return value.get<std::string>();
    if (value.is_boolean())
        return LoadMessage(value.get<bool>() ? MessageId::kCliYes : MessageId::kCliNo, {});
    return JsonText(value);
}

} // namespace

std::string JsonText(const ordered_json& value) {
    return value.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

void AppendJsonText(std::string_view text, std::string& json) {
    const std::size_t start = json.size();
    json += '"';
    for (const char c : text) {
        if (c < ' ' || c > '~') { // the library knows the rest, at a price that only few texts pay
            json.resize(start);
            json += JsonText(std::string(text));
            return;
        }
        if (c == '"' || c == '\\') json += '\\';
        json += c;
    }
    json += '"';
}

void AppendJsonName(std::string_view name, std::string& json) {
    json += '"';
    json += name;
    json += "\":";
}

std::string ResultEvent(const Result& result) {
    ordered_json event = {{"event", "result"}, {"ok", result.ok}};
    event.update(result.fields);
    std::string line = JsonText(event);
    if (result.large_name.empty()) return line;
    line.back() = ','; // the closing brace
    line.reserve(line.size() + result.large_json.size() + 32);
    AppendJsonName(result.large_name, line);
    line += result.large_json;
    line += '}';
    return line;
}

std::string ResultLines(const Result& result) {
    std::string lines = result.plain;
    if (lines.empty())
        for (const auto& [name, value] : result.fields.items())
            lines += Heading(name) + ": " + PlainValue(value) + "\n";
    return lines;
}

} // namespace kelvash::cli
