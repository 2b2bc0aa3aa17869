// The options that every command of kelvash-cli takes, and how a run ends.
#pragma once

#include <string>
#include <vector>

namespace kelvash::cli {

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
};

// Exit statuses.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;
inline constexpr int kInUse = 4; // another program holds a lock
inline constexpr int kRefused = 3;
inline constexpr int kStopped = 130;

} // namespace kelvash::cli
