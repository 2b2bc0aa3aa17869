// What a command gives back: the fields of the event "result", last of a run.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/message_text.h"

namespace kelvash::cli {

// A field as it is told.
struct ToldField {
    std::string name;
    MessageId heading;            // in plain mode; without one the name stands there
    nlohmann::ordered_json value; // plain mode leaves a null out
    std::string json;             // in place of the value; plain mode leaves it out
};

struct Result {
    bool ok = false;
    std::vector<ToldField> fields;
    // Lines for a person in place of the fields; empty: the fields are listed.
    std::string plain;
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
