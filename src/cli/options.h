// The command line of kelvash-cli.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace kelvash::cli {

// What was asked for. Path arguments stand as they were typed.
struct Options {
    std::string home;                // empty: the platform's rule
    std::vector<std::string> drives; // "L=DIR[,cdrom]"
    std::string answers;             // file; empty for none
    bool json = false;
    bool register_home = false; // outside of a --home too
    double wait = 0;            // seconds, for locks that others hold
    bool yes = false;
    bool no_input = false;
    bool quiet = false;
    bool force = false; // of 'export' and 'save-as': replaces a file that is there
    std::string command;

    // Arguments of the commands that have them.
    std::string trle;
    std::string archive_folder;
    std::string backup = "full"; // or "compact"
    std::string path;            // DIR or KVA
    bool first_run = false;      // of the demo: leave the first start to the user
    std::string code;
    std::string restore_kind;               // "fast" or "full"
    std::optional<std::string> kept_folder; // of 'kept take'; without it the list is wanted
    std::string field;                      // empty: all fields
    std::optional<std::string> value;
    std::vector<std::string> sources;
    std::optional<std::string> name;
    std::optional<std::string> note;
    std::optional<std::string> more_info;
    std::optional<std::string> compress; // "on" or "off"
    std::optional<std::string> mp3;      // "on" or "off"
};

// Exit statuses.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kInUse = 4; // another program holds a lock
inline constexpr int kRefused = 3;
inline constexpr int kStopped = 130;

// Fills the options from the words behind the program's name. Nothing if there is a command to run; otherwise
// the exit status, after help on stdout or a complaint on stderr.
std::optional<int> ParseOptions(std::vector<std::string> words, Options& options);

} // namespace kelvash::cli
