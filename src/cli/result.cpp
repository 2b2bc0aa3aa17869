#include "cli/result.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cli/messages.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

// Headings of the fields that all commands share; others are shown under their own names.
constexpr std::array<std::pair<std::string_view, MessageId>, 19> kHeadings = {{
    {"trle", msg::kCliTrle},
    {"archive", msg::kCliArchive},
    {"levels", msg::kCliLevels},
    {"installed", msg::kCliInstalled},
    {"owner", msg::kCliOwner},
    {"fullBackup", msg::kCliFullBackup},
    {"backupValid", msg::kCliBackupValid},
    {"cutShort", msg::kCliToBeEnded},
    {"kept", msg::kCliKept},
    {"home", msg::kCliHome},
    {"zips", msg::kCliZips},
    {"code", msg::kCliCode},
    {"file", msg::kCliFile},
    {"equal", msg::kCliEqualLevels},
    {"mainSize", msg::kCliMainSize},
    {"secondarySize", msg::kCliSecondarySize},
    {"folder", msg::kCliFolder},
    {"compressFiles", msg::kCliCompressFiles},
    {"encodeWavInMp3", msg::kCliEncodeMp3},
}};

std::string Heading(const std::string& name) {
    const auto* const found = std::find_if(kHeadings.begin(), kHeadings.end(),
                                           [&](const auto& entry) { return entry.first == name; });
    return found == kHeadings.end() ? name : LoadMessage(found->second);
}

std::string PlainValue(const ordered_json& value) {
    if (value.is_string()) return CleanLine(value.get<std::string>());
    if (value.is_boolean()) return LoadMessage(value.get<bool>() ? msg::kCliYes : msg::kCliNo);
    return JsonText(value);
}

// The library escapes the controls of ASCII but DEL, and lets those above pass, to which terminals listen
// too.
std::string WithControlsEscaped(std::string json) {
    constexpr char kDelete = '\x7F';
    constexpr char kLead = '\xC2'; // of U+0080 to U+00BF
    constexpr std::string_view kDigits = "0123456789abcdef";
    const auto is_control = [&](std::size_t at) {
        return json[at] == kDelete || (json[at] == kLead && static_cast<unsigned char>(json[at + 1]) < 0xA0);
    };
    for (std::size_t at = 0; (at = json.find_first_of("\x7F\xC2", at)) != std::string::npos; ++at) {
        if (!is_control(at)) continue;
        const std::size_t length = json[at] == kLead ? 2 : 1;
        const auto code = static_cast<unsigned char>(json[at + length - 1]);
        json.replace(at, length, {'\\', 'u', '0', '0', kDigits[code >> 4], kDigits[code & 15]});
    }
    return json;
}

} // namespace

std::string JsonText(const ordered_json& value) {
    return WithControlsEscaped(value.dump(-1, ' ', false, ordered_json::error_handler_t::replace));
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
            if (!value.is_null()) lines += Heading(name) + ": " + PlainValue(value) + "\n";
    return lines;
}

} // namespace kelvash::cli
