// What all that works on a level's pictures does with their files.
//
// A picture's date ties it to a savegame, so what is made of it bears its date. Every file is replaced whole:
// written beside it, flushed, renamed.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "swap/picture_codec.h"
#include "trle_state/level_place.h"

namespace kelvash::companion {

// True for the pictures that stand for none: that of the program, and that of the original configuration.
bool IsDefaultShot(std::string_view path);
// True for the names that a level's pictures have: .jpg and .bmp.
bool IsShotName(std::string_view path);

// What a change of a level's pictures locks: those of the original configuration lie in the application's
// folder.
unsigned LocksOfShots(std::int32_t code);

// True for two paths that lead to one file. Names that differ by case alone may be two files of a disk that
// has regard to it.
bool IsSameShot(const std::string& path, const std::string& other);
// True if a file has that very name, in this case.
bool HasExactly(const std::string& path);

// Nothing for a file that can't be read, isn't whole, or claims more than memory should hold.
std::optional<swap::Picture> ReadShot(std::string_view path);
// The same; tells the failure.
std::optional<swap::Picture> ReadShotOrTell(std::string_view path);

// Adds bytes (below 0 too) to a level's record and to the sum of the Archive.
void AddImageToLevel(std::int64_t size, const trle_state::LevelPlace& level);

// Writes a picture's file, with that date if there is one, and counts it if it is in the level's folder,
// which is made where it is missing. False, with nothing changed, if it can't be written.
[[nodiscard]] bool StoreShot(const trle_state::LevelPlace& level, const std::string& path,
                             std::string_view bytes, std::optional<std::int64_t> date);
// The same with the bytes and the date of a file. Where both are one file already, nothing is done.
[[nodiscard]] bool CopyShot(const trle_state::LevelPlace& level, const std::string& source,
                            const std::string& path);

// The JPEG encoder: a bitmap's file, or the picture on the clipboard. False, with the destination as it was,
// if there is no such picture or it can't be written.
[[nodiscard]] bool ConvertToJpeg(std::string_view source, std::string_view destination, int quality);
[[nodiscard]] bool SaveClipboardJpeg(std::string_view path);

} // namespace kelvash::companion
