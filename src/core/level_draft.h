// A level's files while they are being changed.
//
// Whoever changes the files of a level that exists works on a draft, a folder FILES_NEW beside FILES. It
// begins with second names of the level's files where the disk knows such, else with copies: nothing in it
// may be written in place, only deleted and replaced. FILES itself changes in one step, when StoreLevelFiles
// has a whole draft to put in its place. A draft that is found without its user is left over and worth
// nothing.
#pragma once

#include <string>

namespace kelvash::core {

std::string DraftFolder(const std::string& level_folder);

// Makes the draft of a level's files anew. False, with nothing left of it, if it can't be had whole.
[[nodiscard]] bool MakeDraft(const std::string& level_folder);
void DropDraft(const std::string& level_folder);

// Makes FILES hold the files of `source` and no others, its sub-folders apart. The source is any folder,
// which stays as it is; or the draft, which is gone then; or FILES itself, which is left alone. Takes room
// for the level's files once more. False with FILES as it was.
[[nodiscard]] bool StoreLevelFiles(const std::string& source, const std::string& level_folder);

// Ends a storing that was cut short where the disk can't put a folder in another's place in one step.
void EndStoring(const std::string& level_folder);

} // namespace kelvash::core
