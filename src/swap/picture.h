// The load screen's two forms: the bitmap that the game reads and the JPEG that takes its place in an
// archive.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvash::swap {

// Convert a file, given by path texts. The target is replaced only when the whole result is on the disk.
// False, with the target as it was, if the source can't be read, isn't whole or is out of the bounds of
// bitmap_file.h, and if the target can't be written.
[[nodiscard]] bool BitmapToJpeg(std::string_view bitmap, std::string_view jpeg);
[[nodiscard]] bool JpegToBitmap(std::string_view jpeg, std::string_view bitmap);

// The same from the bytes of a file to the bytes of the other.
// Every bitmap that PlainBitmap takes; gives quality 90 with 4:2:0 subsampling.
std::optional<std::string> JpegFromBitmap(std::string_view bytes);
// Colour and grey pictures, no CMYK; gives 24 bits, the 40-byte head, rows from bottom to top. A picture that
// is cut short or needs repair is refused.
std::optional<std::string> BitmapFromJpeg(std::string_view bytes);

} // namespace kelvash::swap
