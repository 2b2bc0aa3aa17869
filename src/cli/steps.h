// Steps that the runs of several commands take.
#pragma once

#include <cstdint>
#include <string>

#include "cli/session.h"

namespace kelvash::cli {

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
// Tell what their name says.
void TellNoArchive();
void TellProfileNotSaved();
// True if the typed path can be reached by a drive, which every path of the logic must; tells otherwise.
[[nodiscard]] bool TakePath(const std::string& typed, std::string& path);
// The same in a run that takes no application's folder.
[[nodiscard]] bool TakePathWithoutHome(const Session& session, const std::string& typed, std::string& path);
// True if a file may be written there: one that is there is only replaced by force; tells otherwise.
[[nodiscard]] bool MayWrite(const std::string& path, bool force);
// Runs a part of a command. True if it gives true and has told no failure.
template <class Run>
[[nodiscard]] bool DoneWithoutFailure(const CliUser& user, const Run& run) {
    const int before = user.Failures();
    return run() && user.Failures() == before;
}

} // namespace kelvash::cli
