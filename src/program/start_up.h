// From the launch to the ready main window.
//
// StartUp insists on a TRLE folder with a backup of its original files and on an open Archive. Each question
// goes through the user port; each failure ends the start-up with no Archive open.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace kelvash::program {

// The form that asks at the first start for an Archive.
struct FirstArchiveChoice {
    static constexpr const char* kForm = "Dialog_NewArc";
    std::string Title;
    bool MakeNew = false; // chosen: a new one, not one that stands somewhere
};

// What a first start secures, one after the other.
enum class FirstStep { TrleFolder, Backup, Archive, Over };
using FirstStepWatcher = std::function<void(FirstStep begins)>;

// Runs once; a second call does nothing. The command line holds tokens in double quotes: a .kva path is the
// Archive to open, a folder called "trle" a source to install TRLE from. False if there is no TRLE to work
// on, which was told: the program is to end. Whether an Archive is open says core::ArchiveIsOpen.
//
// The watcher is called at a first start alone, which is one that knows of no Archive yet, or goes on with
// one that was broken off. One that ends early doesn't come to the later steps.
bool StartUp(std::string_view command_line, const FirstStepWatcher& at_first_start = {});
// Loads the Archive that the profile names. False after a message if it is gone or can't be loaded.
[[nodiscard]] bool LoadLastArchive(const std::string& path);
// Writes down at once which Archive is in use, and TRLE folder and backup with it: a kill must not bring the
// first start back. What can't be written now is written, or told, at the end of the run.
void KeepArchiveInUse();
void TellArchiveNotLoaded(const std::string& path);
// Opens the Archive of that path again, after another one could not take its place. A path that is empty, or
// an Archive that can't be opened (which is told), leaves none open.
void ReturnToArchive(const std::string& former);

// Opens the Archive that another start of the program names, by its native path; the former one comes back if
// it can't be opened, which is told.
void OpenWishedArchive(const std::string& native);

// What the tokens of a command line name; both may be empty.
struct CommandLine {
    std::string Archive;
    std::string TrleSource;
};
CommandLine ParseCommandLine(std::string_view text);

// Makes the folder of level 0000 with the manual, the default screenshot and the backup's savegames. True if
// it was there already.
[[nodiscard]] bool CreateLevelZero();

} // namespace kelvash::program
