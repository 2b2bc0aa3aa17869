#include "cli/parser.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "core/fragments.h"
#include "foundation/messages.h"
#include "foundation/text.h"

namespace kelvash::cli {

namespace {

constexpr double kLongestWait = 86400; // seconds

void AddGlobalOptions(CLI::App& app, Options& options) {
    app.add_option("--home", options.home, "The application's folder")->type_name("DIR");
    app.add_option("--drive", options.drives,
                   "Puts a drive letter on a native folder (repeatable); ',cdrom' makes it a CD drive")
        ->type_name("L=DIR[,cdrom]")
        ->allow_extra_args(false);
    app.add_option("--answers", options.answers,
                   "JSON array of {\"id\": N or \"when\": TEXT, \"answer\": TEXT, \"times\": N} for the "
                   "boxes that ask")
        ->type_name("FILE");
    app.add_option("--wait", options.wait, "Waits that long for another Kelvash that is at work")
        ->check(CLI::Range(0.0, kLongestWait))
        ->type_name("SECONDS");
    app.add_flag("--register", options.register_home,
                 "Registers file type and menu entry although --home is given");
    app.add_flag("--json", options.json, "Tells everything as JSON, one object a line");
    app.add_flag("--yes", options.yes, "Affirms each question whose yes can lose nothing");
    app.add_flag("--no-input", options.no_input,
                 "Asks nobody: questions without an answer take the harmless one");
    app.add_flag("--quiet", options.quiet, "Tells failures and the result only; as JSON the result only");
    app.set_version_flag("--version", "kelvash-cli " + LoadFragment(fragment::kAboutVersion));
}

// Tells the parser of one argument; what is typed goes to where it points. One of a command that has parts
// isn't asked for, because a part may be named in its place.
void AddArgument(CLI::App& parser, const Argument& argument, bool is_asked) {
    if (bool* const* flag = std::get_if<bool*>(&argument.value)) {
        parser.add_flag(argument.name, **flag, argument.about);
        return;
    }
    CLI::Option& option =
        *std::visit([&](auto* value) { return parser.add_option(argument.name, *value, argument.about); },
                    argument.value);
    option.required(argument.required && is_asked);
    if (!argument.choices.empty()) {
        if (argument.any_case)
            option.check(CLI::IsMember(argument.choices, CLI::ignore_case));
        else
            option.check(CLI::IsMember(argument.choices));
        option.type_name(Join(argument.choices, "|"));
    }
    if (argument.type) option.type_name(*argument.type);
    std::string* const* text = std::get_if<std::string*>(&argument.value);
    if (text != nullptr && !(*text)->empty()) option.capture_default_str();
}

void AddCommand(CLI::App& parent, const Command& command) {
    CLI::App& parser = *parent.add_subcommand(command.name, command.about);
    for (const Argument& argument : command.arguments)
        AddArgument(parser, argument, command.parts.empty());
    for (const Command& part : command.parts)
        AddCommand(parser, part);
    if (!command.parts.empty()) parser.require_subcommand(command.run ? 0 : 1, 1);
}

// The command that the parser has read below an application, or behind the name of another command.
const Command* ChosenOf(const CLI::App& parser, const std::vector<Command>& commands) {
    const std::vector<CLI::App*> named = parser.get_subcommands();
    if (named.empty()) return nullptr;
    const CLI::App& inner = *named.front();
    for (const Command& command : commands) {
        if (command.name != inner.get_name()) continue;
        const Command* part = ChosenOf(inner, command.parts);
        return part != nullptr ? part : &command;
    }
    return nullptr;
}

// A word that a command has taken though one of its parts is named, which takes all: the parser hands a
// command what its part has no use for. Nothing if there is none.
std::optional<std::string> SurplusOf(const CLI::App& app) {
    const std::vector<CLI::App*> named = app.get_subcommands();
    if (named.empty()) return std::nullopt;
    const CLI::App& command = *named.front();
    if (!command.get_subcommands().empty())
        for (const CLI::Option* option : command.get_options())
            if (option->count() > 0)
                return option->results().empty() ? option->get_name() : option->results().front();
    return SurplusOf(command);
}

// An argument that the command needs, and that nobody has typed; null if there is none.
const Argument* MissingArgument(const Command& command) {
    for (const Argument& argument : command.arguments) {
        std::string* const* text = std::get_if<std::string*>(&argument.value);
        if (argument.required && text != nullptr && (*text)->empty()) return &argument;
    }
    return nullptr;
}

// CLI11 takes "-1" for an option. No option is a number, so such words go behind the "--" that ends them all;
// a value is the last argument wherever it can be negative.
void ProtectNegativeNumbers(std::vector<std::string>& words) {
    const auto negative = [](const std::string& word) {
        return word.size() > 1 && word[0] == '-' && word[1] >= '0' && word[1] <= '9';
    };
    const auto end = std::find(words.begin(), words.end(), "--");
    if (end != words.end()) return;
    const auto numbers =
        std::stable_partition(words.begin(), words.end(), [&](const auto& word) { return !negative(word); });
    if (numbers != words.end()) words.insert(numbers, "--");
}

int Complain(const std::string& what) {
    std::cerr << what << "\nRun with --help for more information.\n";
    return kWrongUsage;
}

int Refuse(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining();
    if (app.get_subcommands().empty() && !left.empty() && left.front().front() != '-')
        return Complain("Unknown command: " + left.front());
    return Complain(error.what());
}

} // namespace

std::optional<int> ParseWords(std::vector<std::string> words, const std::vector<Command>& commands,
                              Options& options, const Command*& chosen) {
    CLI::App app(
        "Keeps custom levels of the Tomb Raider Level Editor in an Archive and swaps them into its "
        "folder.\nExit status: 0 done, 1 failed, 2 wrong usage, 3 refused by a question, 4 another Kelvash "
        "is at "
        "work, 130 stopped by a signal.",
        "kelvash-cli");
    app.fallthrough();
    app.get_formatter()->column_width(28);
    app.get_formatter()->label("SUBCOMMAND", "COMMAND");
    app.get_formatter()->label("Subcommands", "Commands");
    AddGlobalOptions(app, options);
    for (const Command& command : commands)
        AddCommand(app, command);
    ProtectNegativeNumbers(words);
    std::reverse(words.begin(), words.end()); // as the parser takes them
    try {
        app.parse(std::move(words));
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() != 0) return Refuse(app, error);
        return app.exit(error);
    }
    if (app.get_subcommands().empty()) {
        std::cerr << "No command given.\n" << app.help();
        return kWrongUsage;
    }
    if (app.get_subcommands().size() > 1) {
        std::cerr << "More than one command given.\n";
        return kWrongUsage;
    }
    chosen = ChosenOf(app, commands);
    const bool has_parts = chosen != nullptr && !chosen->parts.empty();
    if (const Argument* missing = has_parts ? MissingArgument(*chosen) : nullptr; missing != nullptr)
        return Complain(missing->name + " is required");
    if (const std::optional<std::string> surplus = SurplusOf(app))
        return Complain("The following argument was not expected: " + *surplus);
    return std::nullopt;
}

} // namespace kelvash::cli
