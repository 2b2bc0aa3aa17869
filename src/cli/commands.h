// The commands: each is one function over the logic.
#pragma once

#include <cstdint>
#include <string>

#include "cli/result.h"
#include "cli/session.h"

namespace kelvash::cli {

// Runs the command that the options name.
Result RunCommand(Session& session);

// commands_home.cpp
Result Init(Session& session);
Result Status(Session& session);
Result New(Session& session);
Result Load(Session& session);
Result Save(Session& session);
Result SaveAs(Session& session);
// commands_profile.cpp
Result Profile(Session& session);
// commands_levels.cpp
Result Levels(Session& session);
Result Install(Session& session);
Result Play(Session& session);
Result Restore(Session& session);
// commands_demo.cpp
Result Demo(Session& session);
// commands_intake.cpp
Result Add(Session& session);
Result LevelSet(Session& session);
Result Export(Session& session);
Result Config(Session& session);
// commands_maintenance.cpp
Result Remove(Session& session);
Result Sizes(Session& session);
Result Equal(Session& session);
Result Recover(Session& session);
Result Move(Session& session);
Result Kept(Session& session);
Result Prefs(Session& session);
// commands_saves.cpp
Result Saves(Session& session);

// Shared by the commands (commands.cpp).

// Opens the home as it stands, without a question on a good one: the profile and its Archive. False, after a
// message, if the home is missing or the Archive can't be opened. No Archive at all is no failure.
[[nodiscard]] bool OpenQuickly(Session& session);
// The program's whole start-up. True if an Archive is open and nobody has asked the program to end meanwhile;
// a message tells a missing Archive.
[[nodiscard]] bool StartUpWithArchive(Session& session, const std::string& command_line);
// The program's end: offers to save the Archive and keeps the profile. False, after a message or a question
// without an answer, if one of them isn't saved.
[[nodiscard]] bool EndSession(const Session& session);
// True, with the code, if a level of the open Archive has it; tells otherwise.
[[nodiscard]] bool TakeCode(const std::string& typed, std::int32_t& code);
// The same, and the level is selected in the list as the commands of the main form want it.
[[nodiscard]] bool SelectCode(const std::string& typed, std::int32_t& code);
// The code of the level in TRLE; null while it is none of the open Archive.
nlohmann::ordered_json InstalledCode();
// Tell what their name says.
void TellNoArchive();
void TellProfileNotSaved();
// True if the typed path can be reached by a drive, which every path of the logic must; tells otherwise.
[[nodiscard]] bool TakePath(const std::string& typed, std::string& path);
// The same for a file to be written: one that is there is only replaced with --force.
[[nodiscard]] bool TakeTarget(const Options& options, std::string& path);
// Runs a part of a command. True if it gives true and has told no failure.
template <class Run>
[[nodiscard]] bool DoneWithoutFailure(const CliUser& user, const Run& run) {
    const int before = user.Failures();
    return run() && user.Failures() == before;
}

} // namespace kelvash::cli
