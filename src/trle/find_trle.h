// Finding the folder of the Tomb Raider Level Editor.
#pragma once

#include <string>
#include <string_view>

namespace kelvash::trle {

// The form that has the TRLE folder found.
struct TrleFolderChoice {
    static constexpr const char* kForm = "Dialog_TrovaTrle";
    std::string Title;
    std::string Folder; // where it starts, empty for nowhere; then the chosen one
};

// The folder that the App Paths key of TRLE's room editor names; empty if there is none.
std::string FindTrleInRegistry();
// Makes profile.TrleFolder valid: as it is, else by the form, which starts from what the registry knows.
// False if the user gives up.
[[nodiscard]] bool ChooseTrleFolder();
// Asks for the TRLE folder by the form, whether the one in use is valid or not, until one passes the check.
// False, with nothing changed, if the user gives up.
[[nodiscard]] bool AskTrleFolder();

} // namespace kelvash::trle
