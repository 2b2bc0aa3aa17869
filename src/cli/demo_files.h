// The demo's stand-ins for the game's own files: right in form, with contents of the program's own making.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::cli {

// A level file (.tr4): one page of texture, an empty level, one sample. Different seeds look different.
std::string LevelData(unsigned seed);
// A logo (.pak): the unpacked size and a zlib stream.
std::string LogoData(unsigned seed);

// What the game's script says of a level: its title, its file in the data folder without extension, its
// track.
struct ScriptLevel {
    std::string title;
    std::string file;
    int track = 0;
};
// script.dat, and a language file for it: `languages` are the names that the game looks for, in that order.
std::string ScriptData(const std::vector<ScriptLevel>& levels, const std::vector<std::string>& languages);
std::string LanguageData(const std::vector<std::string>& strings);
// The language file's strings for these levels: their titles, then words of the game.
std::vector<std::string> StringsOf(const std::vector<ScriptLevel>& levels,
                                   const std::vector<std::string>& words);
// The sources of both, for the script compiler.
std::string ScriptText(const std::vector<ScriptLevel>& levels);
std::string LanguageText(const std::vector<std::string>& strings);

// A savegame: title, running number, time of play, a state whose bytes sum to 0 modulo 256.
std::string SavegameData(std::string_view title, std::int32_t number, int minutes);

// A bitmap of 320 x 240 at 24 bits: hills under a low sun.
std::string LandscapeBitmap(unsigned seed);
// A PCX picture of 32 x 32 at 8 bits.
std::string GridPcx();
// A document of one page with these lines; ASCII without brackets and back-slashes.
std::string PagePdf(const std::vector<std::string>& lines);

} // namespace kelvash::cli
