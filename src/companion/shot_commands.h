// What the user does with a level's pictures, one at a time: `path` is the picture, `code` the level's.
//
// The default picture, which stands for none, is refused each time. A result of true is that all is done;
// what stands in the way has been told, or the user has given up.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace kelvash::companion {

// Puts a text on the clipboard.
using CopyText = std::function<void(const std::string& text)>;

// Asks for a picture and copies it into the level's; `added` is its path there.
[[nodiscard]] bool AddScreenshot(std::int32_t code, std::string& added);
void TellHowToCapture();

// With the native path.
void CopyShotPath(const std::string& path, const CopyText& copy);
// In the profile's graphics program, for which the user is asked where none is set.
[[nodiscard]] bool OpenShotEditor(const std::string& path);
void ShowShotProperty(const std::string& path);

[[nodiscard]] bool DeleteShot(std::int32_t code, const std::string& path);
// Asks for the new name, which keeps the extension; `path` is the new one afterwards.
[[nodiscard]] bool RenameShot(std::int32_t code, std::string& path);
// A copy, or a conversion into the other kind, anywhere.
[[nodiscard]] bool SaveShotAs(std::int32_t code, const std::string& path);

} // namespace kelvash::companion
