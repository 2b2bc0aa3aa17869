#include "cli/result.h"

#include "cli/messages.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

std::string PlainValue(const ordered_json& value) {
    if (value.is_string()) return CleanLine(value.get<std::string>());
    if (value.is_boolean()) return LoadMessage(value.get<bool>() ? msg::kCliYes : msg::kCliNo);
    return JsonText(value);
}

std::string Heading(const ToldField& field) {
    if (field.heading == kNoMessage) return field.name;
    return LoadMessage(field.heading);
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
    std::string line = JsonText({{"event", "result"}, {"ok", result.ok}});
    line.pop_back(); // the closing brace
    for (const ToldField& field : result.fields) {
        line += ',';
        AppendJsonName(field.name, line);
        line += field.json.empty() ? JsonText(field.value) : field.json;
    }
    line += '}';
    return line;
}

std::string ResultLines(const Result& result) {
    if (!result.plain.empty()) return result.plain;
    std::string lines;
    for (const ToldField& field : result.fields)
        if (!field.value.is_null()) lines += Heading(field) + ": " + PlainValue(field.value) + "\n";
    return lines;
}

} // namespace kelvash::cli
