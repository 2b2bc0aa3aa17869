#include "cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>

#include "core/fragments.h"
#include "core/profile.h"
#include "foundation/messages.h"

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

CLI::App& AddPathCommand(CLI::App& app, Options& options, const std::string& name,
                         const std::string& argument, const std::string& about) {
    CLI::App& command = *app.add_subcommand(name, about);
    command.add_option(argument, options.path)->required();
    return command;
}

CLI::App& AddLevelCommand(CLI::App& app, Options& options, const std::string& name,
                          const std::string& about) {
    CLI::App& command = *app.add_subcommand(name, about);
    command.add_option("CODE", options.code, "The level's code, as 'levels' shows it")->required();
    return command;
}

void AddForce(CLI::App& command, Options& options) {
    command.add_flag("--force", options.force, "Replaces a file that is there already");
}

void AddInit(CLI::App& app, Options& options) {
    CLI::App& init = *app.add_subcommand(
        "init",
        "First start of a new home: takes the TRLE folder, backs its original files up and starts "
        "an Archive");
    init.add_option("--trle", options.trle, "Folder of the Tomb Raider Level Editor, in original state")
        ->type_name("DIR")
        ->required();
    init.add_option("--archive-folder", options.archive_folder, "Empty folder for the levels")
        ->type_name("DIR")
        ->required();
    init.add_option("--backup", options.backup, "Kind of the backup")
        ->check(CLI::IsMember({"full", "compact"}))
        ->type_name("full|compact")
        ->capture_default_str();
}

void AddArchiveCommands(CLI::App& app, Options& options) {
    app.add_subcommand("status", "Shows the TRLE folder, the Archive and the level that is installed");
    CLI::App& profile = *app.add_subcommand(
        "profile", "Shows the profile or one field of it, or sets a field. Booleans are true and false");
    std::vector<std::string> fields;
    for (const auto& field : core::kProfileFields)
        if (!field.name.empty()) fields.emplace_back(field.name);
    profile.add_option("FIELD", options.field)
        ->check(CLI::IsMember(std::move(fields), CLI::ignore_case))
        ->type_name("");
    profile.add_option("VALUE", options.value, "The new value; behind '--' if it begins with a dash");
    AddPathCommand(app, options, "new", "DIR", "Starts a new Archive with its levels in an empty folder");
    AddPathCommand(app, options, "load", "KVA", "Opens an Archive");
    app.add_subcommand("save", "Saves the Archive");
    AddForce(AddPathCommand(app, options, "save-as", "KVA", "Saves the Archive under another name"), options);
    app.add_subcommand("levels", "Lists the levels of the Archive");
}

void AddSwapCommands(CLI::App& app, Options& options) {
    AddLevelCommand(app, options, "install", "Puts a level into the TRLE folder; 0 takes the level out");
    AddLevelCommand(app, options, "play", "Installs a level, starts the game and waits for its end");
    CLI::App& restore =
        *app.add_subcommand("restore", "Gives the TRLE folder its original configuration back");
    restore
        .add_option("KIND", options.restore_kind,
                    "fast: takes the level out. full: copies all original files back as well")
        ->check(CLI::IsMember({"fast", "full"}))
        ->type_name("fast|full")
        ->required();
    AddPathCommand(app, options, "demo", "DIR",
                   "Makes a sandbox in an empty folder: a stand-in TRLE folder and game, an application's "
                   "folder with an Archive, and a folder of level zips")
        .add_flag("--first-run", options.first_run,
                  "Leaves the program's first start to you: no TRLE folder is chosen, no backup made");
}

void AddSavesCommands(CLI::App& app) {
    CLI::App& saves = *app.add_subcommand("saves", "Shows savegames");
    saves.require_subcommand(1);
    saves.add_subcommand("rescued", "Lists the saves that had no place, and where they lie");
}

void AddIntakeCommands(CLI::App& app, Options& options) {
    CLI::App& add = *app.add_subcommand("add", "Adds a level made of zips, folders and files");
    add.add_option("SOURCE", options.sources)->required();
    add.add_option("--name", options.name, "The level's name, in place of the zip's or its author's");
    CLI::App& level = *app.add_subcommand("level", "Changes a level's properties");
    level.require_subcommand(1);
    CLI::App& set = *level.add_subcommand("set", "Sets what is given, and stores changed files");
    set.add_option("CODE", options.code, "The level's code, as 'levels' shows it")->required();
    set.add_option("--name", options.name, "Its name");
    set.add_option("--note", options.note, "The note of one line");
    set.add_option("--more-info", options.more_info,
                   "The file of the level that More info opens; \"\" for none");
    CLI::App& export_level =
        AddLevelCommand(app, options, "export", "Writes a level with its savegames to a zip");
    export_level.add_option("ZIP", options.path)->required();
    AddForce(export_level, options);
    AddPathCommand(app, options, "config", "FILE", "Shows a package file kelvash.cfg");
}

void AddMaintenanceCommands(CLI::App& app, Options& options) {
    AddLevelCommand(app, options, "remove", "Takes a level out of the Archive");
    app.add_subcommand("sizes", "Counts the sizes of all levels anew");
    app.add_subcommand("equal", "Looks for levels that the Archive holds twice");
    AddPathCommand(app, options, "recover", "DIR", "Makes a new Archive of a folder of LEVEL_NNNN folders");
    AddPathCommand(app, options, "move", "DIR", "Moves the Archive's level folders");
    CLI::App& kept = *app.add_subcommand(
        "kept", "Level folders that no level of the Archive names, put aside in its folder KEPT");
    kept.require_subcommand(0, 1);
    kept.add_subcommand("list", "Lists them");
    kept.add_subcommand("take", "Makes one a level again, with a new code")
        ->add_option("FOLDER", options.kept_folder, "Its name, as the list shows it")
        ->required();
    CLI::App& prefs = *app.add_subcommand("prefs", "Shows or sets how the Archive keeps its files");
    const auto add_switch = [&](const char* name, std::optional<std::string>& value, const char* about) {
        prefs.add_option(name, value, about)->check(CLI::IsMember({"on", "off"}))->type_name("on|off");
    };
    add_switch("--compress", options.compress, "New levels are stored compressed");
    add_switch("--mp3", options.mp3, "Waves of new levels are stored as mp3");
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

int Refuse(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> left = app.remaining();
    if (app.get_subcommands().empty() && !left.empty() && left.front().front() != '-')
        std::cerr << "Unknown command: " << left.front() << '\n';
    else
        std::cerr << error.what() << '\n';
    std::cerr << "Run with --help for more information.\n";
    return kWrongUsage;
}

} // namespace

std::optional<int> ParseOptions(std::vector<std::string> words, Options& options) {
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
    AddInit(app, options);
    AddArchiveCommands(app, options);
    AddSwapCommands(app, options);
    AddSavesCommands(app);
    AddIntakeCommands(app, options);
    AddMaintenanceCommands(app, options);
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
    options.command = app.get_subcommands().front()->get_name();
    return std::nullopt;
}

} // namespace kelvash::cli
