// Between the paths of the platform and texts in UTF-8. On Windows a std::filesystem::path that is made of a
// std::string, or gives one, takes the bytes for something else.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace kelvash {

// The native path that a UTF-8 text spells. It isn't a path text: see NativePath in drives.h for those.
std::filesystem::path NativeFromText(std::string_view text);
// What a native path is called, in UTF-8; with "/" between its names in the second form.
std::string TextOfNative(const std::filesystem::path& native);
std::string GenericTextOf(const std::filesystem::path& native);

} // namespace kelvash
