// Parts of the open dialog that its procedures share.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "intake/new_level.h"

namespace kelvash::intake {

bool ContainsNoCase(const std::vector<std::string>& texts, std::string_view text);

// Unpacks and lists what has arrived in the work folder; for the last level of the table its package file is
// applied.
void TakeWhatArrived(NewLevel& level);

// The name of the selected document; empty for "< NONE >".
std::string MoreInfoName(const NewLevel& level);
// Selects a document of the list; "< NONE >" for a name that isn't there.
void SelectMoreInfo(NewLevel& level, std::string_view name);

// Shows a text in Label_Info.
void ShowInfo(const std::string& text);

// --- the work folder (work_folder.cpp) ---

std::vector<FileStamp> StampFiles(const std::string& folder);
bool SameStamps(const std::vector<FileStamp>& a, const std::vector<FileStamp>& b);
// Finds or makes the folder that the dialog works in. False after a message.
[[nodiscard]] bool OpenWorkFolder(NewLevel& level);
// Removes what was made for the dialog: the temporary folder or the draft, and files that were opened for a
// view.
void CloseWorkFolder(NewLevel& level);
// Takes over what was put into the level's own folder, or changed there, by others while the dialog works in
// another one. False after a message: what isn't taken over would be lost with OK.
[[nodiscard]] bool TakeOutsideFiles(NewLevel& level);
// Makes a file of a draft one of its own, for a program that may write it in place.
[[nodiscard]] bool PartFromLevel(const NewLevel& level, const std::string& file);
// True if the dialog has brought or changed that file of its folder.
bool IsTheDialogs(const NewLevel& level, const std::string& file);
// True if files differ in number, name, size or time from those at the beginning.
bool DiffersFromSnapshot(const NewLevel& level);
// Of a file and its stored form ("X" and "X.zl") one of which is new, the other goes.
void DropOlderForms(const NewLevel& level);

// --- what isn't the level's own (sort_out_files.cpp) ---

// Moves savegames into the stash, or TRLE while the level is in, and pictures to its screenshots, load
// screens as copies; a file that has the name of one of them is rescued (swap/rescued_saves.h), which is
// told. Deletes the helpers of a package. False after a message: what has no other place is still in the work
// folder.
[[nodiscard]] bool SortOutFiles(const NewLevel& level);

// --- zips and what else arrives (work_zips.cpp) ---

// How what was to be added has arrived. A refusal has been told.
enum class Arrival { Whole, Failed, Stopped, Declined, Refused };
struct Arrived {
    Arrival How = Arrival::Failed;
    std::string Reason{}; // of a failure, or of what the user didn't give, where there is one to tell
};
// Tells a stop by the user, or what the user doesn't want, which is no error.
void TellStop(const Arrived& arrived);
// How a job of copying has ended; to be asked while its dialog is open.
Arrived ArrivedWith(bool whole);
bool IsZip(std::string_view path);
// Unpacks a zip into a folder or copies any other file there. A zip goes straight into the target, or through
// \_temp_zip, from where its files are copied flat.
enum class Through { Direct, TempFolder };
[[nodiscard]] Arrived AddFileOrZip(NewLevel& level, const std::string& source, const std::string& target,
                                   Through through);
// Copies files flat into a folder. Ends, after a message, at the first that can't be copied, and when the
// user stops it.
Arrived CopyFlat(const std::vector<std::string>& files, const std::string& folder);
// Unpacks every zip of the work folder, and those that come out of them. A zip that can't be unpacked stays.
void UnpackZips(NewLevel& level);

// The reason of a failure as a line behind its text; empty if there is none to tell.
std::string ReasonLine(const std::string& reason);

} // namespace kelvash::intake
