// What a command is: one record with its words, its work and what its result tells.
//
// Each command, or close family, has a file command_<name>.cpp that makes its record, and a line in
// commands.inc. Parser, help, plain lines and JSON events read the record; nothing else knows a command.
#pragma once

#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/session.h"
#include "foundation/message_text.h"

namespace kelvash::cli {

// A word or an option that a command takes, and where what was typed goes: that lives as long as the command
// does. Path arguments stand as they were typed.
struct Argument {
    std::string name; // "CODE" goes by its place, "--name" by its name
    // A flag, a text (one that isn't empty is its own default, and help shows it), a text that may be
    // missing, one text or more.
    std::variant<bool*, std::string*, std::optional<std::string>*, std::vector<std::string>*> value;
    std::string about = {};
    bool required = false;
    std::vector<std::string> choices = {}; // nothing else is taken; empty: any text is
    bool any_case = false;                 // of the choices
    std::optional<std::string> type = {};  // what help shows behind the name; otherwise the choices, or TEXT
};

using FieldValue = std::function<nlohmann::ordered_json()>;

// A field of the result.
struct ResultField {
    std::string name;               // in JSON
    MessageId heading = kNoMessage; // in plain mode; without one the name stands there
    // Its value once the command has run; see Absent.
    FieldValue value = {};
    // In place of a value: JSON that the command writes itself, for it can be large. Plain mode shows none.
    std::function<std::string()> json = {};
};

// The value of a field that this result doesn't have.
inline nlohmann::ordered_json Absent() {
    return nlohmann::ordered_json(nlohmann::ordered_json::value_t::discarded);
}

struct Command {
    std::string name;
    std::string about; // for help
    std::vector<Argument> arguments = {};
    // Does the work: true if all of it is done, otherwise a message has told why. Without it one of the parts
    // must be named.
    std::function<bool(Session&)> run = {};
    std::vector<ResultField> fields = {}; // in the order in which they are told
    // Lines for a person in place of the fields; if it gives none, the fields are listed all the same.
    std::function<std::string()> plain = {};
    // Commands behind its name: "set" of "level set".
    std::vector<Command> parts = {};
};

// Runs a command and reads its fields.
Result RunCommand(const Command& command, Session& session);

// Arguments of several commands.
Argument CodeArgument(std::string& code);
Argument PathArgument(const std::string& name, std::string& path);
Argument ForceArgument(bool& force);

// Fields of several commands.
ResultField TrleField(FieldValue value);
ResultField ArchiveField();
ResultField LevelCountField();
// The code of the level in TRLE; null while it is none of the open Archive.
ResultField InstalledField();
ResultField CodeField(FieldValue value);
ResultField FileField(FieldValue value);

} // namespace kelvash::cli
