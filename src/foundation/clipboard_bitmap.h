// Bitmaps as a clipboard of Windows carries them: without a file's head, the pixels right behind masks and
// palette.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace kelvash {

// The bytes of a bitmap file; nothing for what is cut before its pixels, or has a head of less than 40 bytes.
std::optional<std::string> FileOfDib(std::string_view dib);
// What the clipboard gets of a bitmap file, wherever its pixels lie; nothing for what is none.
std::optional<std::string> DibOfFile(std::string_view file);

} // namespace kelvash
