// Adding a level and changing its properties: the one door through which files become a level of the Archive.
//
// The files are gathered flat in one work folder, recognised, repaired where something is missing, and stored
// in the level's FILES folder. NewLevel is the state of one open Dialog_NewLevel; the form that is opened
// with it (foundation/form.h) shows its fields and calls these procedures until it isn't Open any more.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "core/archive.h"
#include "zip/zip_module.h"

namespace kelvash::intake {

// A file of the work folder as it was at the beginning.
struct FileStamp {
    std::string Name;
    std::int64_t Time = 0; // seconds since 1970, UTC
    std::int64_t Size = 0; // bytes
};

enum class FormState { Open, Saved, Cancelled };

// The zips of one open dialog, those that come out of zips included.
struct ZipsAtWork {
    zip::ZipBudget Budget;
    std::map<std::string, int> Depths;     // of zips that came out of another one, by folded name
    std::map<std::string, FileStamp> Left; // not to be tried again as they are, by folded name
    int Inner = 0;                         // zips that came out of another one and were unpacked
    bool Stopped = false;                  // the user has refused the latest unpacking, or stopped it
};

struct NewLevel {
    static constexpr const char* kForm = "Dialog_NewLevel";
    core::LevelPlace Level;
    bool Adding = false;          // the level is only being added, and goes again unless it is stored
    std::string WorkFolder;       // whose files are shown and worked on
    std::string LevelFilesFolder; // the level's own FILES
    core::LevelRecord SavedRecord;
    // True for the last level of the table: its properties run as those of a new level. That is meant.
    bool IsNewLevel = false;
    bool UsesTempFolder = false;
    // WorkFolder is a draft beside FILES (core/level_draft.h): the level's own files stay as they are until
    // OK.
    bool UsesDraft = false;
    std::vector<FileStamp> Snapshot;
    std::map<std::string, FileStamp> Outside; // FILES as last seen, by folded name
    ZipsAtWork Zips;
    bool FilesChanged = false; // the files must be stored again
    bool ConfigFound = false;
    bool ConfigFromDatabase = false;
    std::vector<std::string> FileList; // full paths
    std::string LastZip;               // path of the zip that was added last
    std::string FirstMoreInfo;         // name of the document that was selected at the beginning
    FormState State = FormState::Open; // the form closes when it isn't Open any more
    bool Stopped = false;              // the user has stopped the latest adding of files

    // What the form shows; the first three are edited in it. MoreInfo is an index of MoreInfoChoices, whose
    // first item is "< NONE >".
    std::string Name;
    std::string Note;
    std::int32_t MoreInfo = 0;
    std::vector<std::string> MoreInfoChoices;
    std::string SizeText;
    bool OnCd = false; // the files can't be changed
};
// A package file has been applied in the open dialog: another one is deleted unread.
extern bool& ConfigApplied;

// The command "Add new level": adds a record and its folders and opens the form, with what is given (a zip, a
// folder or a file) already taken in. A level that isn't saved goes again with its folder. True, with the
// level selected, if it was saved.
bool AddLevel(const std::string& source = {});
// The command "Properties of current level" on the selected level. True if they were saved.
bool ShowProperty();
// The same as AddLevel without the form, questions apart, of all sources of one level. Its name is the one
// given, else the package's, else the zip's, else the first source's.
bool AddLevelOf(const std::vector<std::string>& sources, const std::string& name = {});
// Adds each source as a level of its own in that way, and tells a summary at the end.
void AddLevels(const std::vector<std::string>& sources);

// Prepares the dialog for the properties of a level, or for a level that is being added; a zip gives
// it the first files and its name.
// State is Cancelled if the dialog must not open.
void BeginLevel(NewLevel& level, const core::LevelPlace& place);
void BeginNewLevel(NewLevel& level, const core::LevelPlace& place, const std::string& zip);
// Unpacks zips that lie in the work folder and lists its files anew.
void RefreshFileList(NewLevel& level);
// Pul_Refresh: the same, then the package file.
void Refresh(NewLevel& level);
// Takes sources in and stores the level without a form, or gives it up.
void TakeSourcesAndStore(NewLevel& level, const std::vector<std::string>& sources,
                         const std::string& name = {});
// Selects a document by the usual names of readme files if none is selected, and keeps what was selected
// first. Nothing after a package file, which has said what it is.
void PickMoreInfoFile(NewLevel& level);

// Pul_AddFile and Pul_AddFolder ask for what to add; AddSource takes a zip, a folder or a file that was
// dropped or typed. What can't be had is told; what arrived stays. False if something is missing.
void AddFile(NewLevel& level);
void AddFolder(NewLevel& level);
bool AddSource(NewLevel& level, const std::string& path);

// Items of FileList. Pul_Remove tells and asks; Pul_RimuoviTutti doesn't.
void RemoveFile(NewLevel& level, std::int32_t item);
void RemoveAllFiles(NewLevel& level);
// Opens a file with the desktop's program; a stored one (.zl) is decompressed first.
void OpenLevelFile(const NewLevel& level, std::int32_t item);

// Pul_Ok: checks the level and stores it. State is Saved then, Open after a message if something is missing,
// Cancelled if the user gave the level up.
void StoreLevel(NewLevel& level);
// Pul_Cancel: puts the record back and removes the temporary folder.
void CancelLevel(NewLevel& level);
// Esc and the window's own button: the same, after a question if something would be lost.
void GiveUpLevel(NewLevel& level);

// How the game is to reach a level without a script of its own. False if it can't. With an empty
// `level_name` nothing is to be done; else it is the standard level to choose. May rename the .tr4 file,
// after a question, which gives no name.
[[nodiscard]] bool ResolveStartLevel(const std::string& folder, std::string& level_name);
// Leaves one language file in a folder, after a question if there are several and none is the user's, and
// completes the folder with the original script.dat. False after a message, and if the user doesn't choose:
// then the folder is as it was.
[[nodiscard]] bool ChooseLanguageFile(const std::string& folder);
// Place in the table of a level that has a .tr4 file of the same name and size as one of this folder; -1 if
// there is none.
std::int32_t FindSameTr4(const std::string& folder, const core::LevelPlace& own, std::string& tr4_name);
// Documents of a folder, in the order of the documentation masks.
std::vector<std::string> ListDocumentFiles(std::string_view folder);
// True for a file of the room editor's source form: known by its extension, or by a .tom or .wad beside it.
bool IsLevelSourceFile(std::string_view path);

} // namespace kelvash::intake
