// A small TRLE folder with its backup, level 0000 and an Archive of levels, written to the disk by hand: what
// the long tests of the swap walk through and kill the program in.
//
// Every file's bytes say whose it is and carry a serial number, so that a file in the wrong place or of the
// wrong age is known by its bytes. Files are stamped in the order of their serial numbers.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::test {

// Path below a folder with "/" between names, in lower case -> bytes. Names are equal without regard to case.
using FileMap = std::map<std::string, std::string>;
// Lower case of ASCII letters.
std::string Lower(std::string_view text);

// All files of a tree, and those directly in a folder; empty for a missing one.
FileMap TreeOf(const std::filesystem::path& folder);
FileMap FilesIn(const std::filesystem::path& folder);
// The part of a map that the game writes: savegame.*, shot*.jpg and note*.txt of the root.
FileMap SavesOf(const FileMap& root);
bool IsSaveName(const std::string& lower_name);

// A file as a level's maker spelt it, and its bytes.
struct NamedFile {
    std::string name;
    std::string bytes;
};
struct WorldLevel {
    std::int32_t code;
    std::string name;      // UTF-8
    std::string ansi_name; // the same in Windows-1252
    std::vector<NamedFile> files;
    std::vector<NamedFile> stash;
    // What the stored forms among the files hold, under the stored names: the file in a .zl, the bitmap of
    // load.jpg.
    std::vector<NamedFile> plain = {};
};

// Where things lie: below a native folder that is drive C:.
struct World {
    explicit World(const std::filesystem::path& drive_c);
    std::filesystem::path drive, home, trle, backup, levels;
    std::filesystem::path LevelPath(std::int32_t code) const;
    std::filesystem::path FilesPath(std::int32_t code) const { return LevelPath(code) / "FILES"; }
    std::filesystem::path StashPath(std::int32_t code) const { return LevelPath(code) / "BACKUP_SAVEGAMES"; }
};

enum class Backup { Compact, Full };

// Makes the TRLE folder, its backup and level 0000.
void MakeTrleWorld(const World& world, Backup backup);
// Makes a level's folder. The Archive is filled by OpenWorld.
void MakeLevel(const World& world, const WorldLevel& level);
// Fills the profile and the Archive in memory with the levels, level 0000 included, and writes both files.
void OpenWorld(const World& world, const std::vector<WorldLevel>& levels, Backup backup);

// Writes a file with a new serial number behind its text and stamps it accordingly; gives its bytes. A file
// of that name in another case is replaced under the name it has.
std::string WriteStamped(const std::filesystem::path& path, const std::string& text);
// The number that WriteStamped put behind a text; 0 if there is none.
int SerialOf(const std::string& bytes);

// One zlib stream of the bytes.
std::string ZlibStream(const std::string& bytes);
// A grey JPEG of 8 x 8 points and the bitmap that it converts into.
std::string GreyJpeg();
std::string GreyBitmap();

} // namespace kelvash::test
