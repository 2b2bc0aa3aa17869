// What a command gives back: the fields of the event "result", last of a run.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

namespace kelvash::cli {

struct Result {
    bool ok = false;
    nlohmann::ordered_json fields = nlohmann::ordered_json::object();
    // One more field whose JSON the command has written itself, for it can be large. Empty name: none.
    std::string large_name = {};
    std::string large_json = {};
    // Lines for a person in place of the fields; empty: the fields are listed, but for those that are null.
    std::string plain = {};
};

// A JSON value in one line. Bytes that are no UTF-8, as file names may hold, become U+FFFD.
std::string JsonText(const nlohmann::ordered_json& value);
// Appends a text in quotes.
void AppendJsonText(std::string_view text, std::string& json);
// Appends a quoted name and a colon.
void AppendJsonName(std::string_view name, std::string& json);

// The event's line, and the lines that plain mode prints in its place.
std::string ResultEvent(const Result& result);
std::string ResultLines(const Result& result);

} // namespace kelvash::cli
