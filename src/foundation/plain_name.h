// Names that come from outside: zip entries, package files, media files, markers, records of an Archive.
//
// A text of a stranger becomes part of a path only through these types. They can't be made from a text that
// could lead elsewhere on any platform, so what is joined with them stays in its folder.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace kelvash {

inline constexpr std::size_t kLongestFileName = 255; // bytes, on the usual disks of all platforms

// The name of one file or folder: no separator and no drive of any platform, not "." or "..", no control
// character, nothing at its end that Windows drops, no device of Windows (with an extension neither), not the
// name that unfinished files have here; UTF-8 of 1 to kLongestFileName bytes.
class PlainName {
  public:
    static std::optional<PlainName> From(std::string_view text);
    const std::string& Text() const { return text_; }

  private:
    explicit PlainName(std::string_view text) : text_(text) {}
    std::string text_;
};

// A path below a folder: a "\" and a plain name, once or more ("\data\city.tr4").
class PlainPath {
  public:
    static std::optional<PlainPath> From(std::string_view relative);
    const std::string& Text() const { return text_; }

  private:
    explicit PlainPath(std::string_view relative) : text_(relative) {}
    std::string text_;
};

// The path of what lies in a folder under that name.
std::string PathIn(std::string_view folder, const PlainName& name);
std::string PathIn(std::string_view folder, const PlainPath& path);

// True for a name that Windows takes for a device, with any extension.
bool IsDeviceName(std::string_view name);

} // namespace kelvash
