// The smaller forms in which a level's files may lie in the Archive, and their undoing in a temporary folder.
//
// ".tr4", ".wav" and ".mp3" files may be stored as one compressed stream each (name plus ".zl"), load.bmp as
// load.jpg, waves as mp3. A level's files can be in any mix of forms. What the Archive holds is never
// decompressed in place.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "trle_state/level_place.h"

namespace kelvash::swap {

// Makes a level's files ready in a temporary folder where they are stored in smaller forms. `temp` is that
// folder, empty if nothing had to be done. Files that come to suspiciously much are asked about. False after
// a message or a No; where a file can't be decompressed the folder stays as it is till its next use. The
// Archive's own files are never touched.
[[nodiscard]] bool DecompressLevelFiles(const std::string& folder, std::string& temp, bool decode_mp3);

// Makes \_temp_Dec hold a copy of a folder's files and no others, and gives its path. False, with nothing
// left of it, after a message.
[[nodiscard]] bool CopyToTempDec(const std::string& folder, std::string& temp);

// Decompresses one .zl into \_temp_ and gives the path of the result; empty after a message. With
// `show_dialog` the zip dialog is shown meanwhile. RemoveTempFolder removes what it has made.
std::string DecompressOneFile(const std::string& path, bool show_dialog);
void RemoveTempFolder();

// Moves the prepared files of a level into its FILES folder in the forms that the header asks for. Labels go
// to the caller's form. False after a message, or when a needed CD isn't there.
[[nodiscard]] bool CompressLevelFiles(const std::string& source, const trle_state::LevelPlace& level);

// Takes the two compression settings of the open Archive. If they change anything, offers to bring the files
// of the levels on disk into the forms that they ask for, and tells the sizes before and after. False if a
// file kept its old form although it was to change.
struct CompressionSettings {
    bool CompressFiles = false;
    bool EncodeWavInMp3 = false;
};
bool ApplyCompressionSettings(const CompressionSettings& settings);

} // namespace kelvash::swap
