// The demo: a sandbox to try the program in, without the game and without a file of anybody else's.
//
// In a folder it makes
// - drive_c\Program Files\Core Design\trle, a stand-in TRLE folder; its tomb4.exe is the stand-in game
// - drive_c\Kelvash, an application's folder, set up, whose drives.txt makes drive_c the drive C:
// - drive_c\Levels, the folders of its Archive, with four levels of different kinds
// - drive_c\zips, two more levels as zips, to be added
#pragma once

#include <filesystem>
#include <string>

namespace kelvash::cli {

// Native paths.
struct Sandbox {
    std::filesystem::path home;
    std::filesystem::path trle;
    std::filesystem::path zips;
};

// Where the stand-in game is: in share/kelvash beside the program's folder, or beside the program. The first
// of the two if it is in neither.
std::filesystem::path StandInGame();

// How far the sandbox is: ready to play, or as before the program's first start, with an Archive to load.
enum class SandboxState { Ready, Untouched };

// Makes the sandbox in a folder that is missing or empty, and takes its home as this run's. The backup's
// questions go through the user port. False after a message.
[[nodiscard]] bool MakeSandbox(const std::filesystem::path& folder, SandboxState state, Sandbox& sandbox);

} // namespace kelvash::cli
