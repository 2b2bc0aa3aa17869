#include "companion/shot_names.h"

#include <algorithm>
#include <optional>

#include "companion/fragments.h"
#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/known_names.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"

namespace kelvash::companion {

namespace {

// What a file's name gets behind it while it is written.
constexpr std::size_t kUnfinished = 4; // bytes

// What SafeFileName leaves: no file of Windows can have it.
std::string WithoutOddities(std::string name) {
    std::replace_if(
        name.begin(), name.end(),
        [](char letter) { return letter == '*' || static_cast<unsigned char>(letter) < ' '; }, ' ');
    return name;
}

// At most so many bytes of a text, and whole characters.
std::string_view Shortened(std::string_view text, std::size_t most) {
    if (text.size() <= most) return text;
    while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80)
        --most;
    return text.substr(0, most);
}

} // namespace

std::string NextShotPath(const trle_state::LevelPlace& level, std::string_view extension) {
    const std::string end(extension.empty() ? LoadFragment(fragment::kShotJpeg) : std::string(extension));
    const std::string folder = core::ScreenshotsFolder(level.Folder);
    const std::string name = WithoutOddities(SafeFileName(level.Name));
    const KnownNames names(folder);
    for (int counter = 1;; ++counter) {
        const std::string start = std::to_string(counter) + LoadFragment(fragment::kShotCounterEnd);
        const std::size_t room = kLongestFileName - kUnfinished - start.size() - end.size();
        std::string path = folder + "\\" + start;
        path.append(Shortened(name, room)).append(end);
        if (!FileExists(path) && !FolderExists(path)) return path;
    }
}

std::string NamedShotPath(const trle_state::LevelPlace& level, std::string_view typed,
                          std::string_view extension) {
    std::string name(Trim(typed));
    if (!name.empty() && !EndsWithNoCase(name, extension)) name += extension;
    const std::optional<PlainName> plain = PlainName::From(name);
    // No Windows takes these in a name, and pictures move there with their Archive.
    if (!plain || !PlainName::From(Trim(typed)) || name.find_first_of("<>\"|?*") != std::string::npos ||
        name.size() == extension.size() || name.size() > kLongestFileName - kUnfinished)
        return {};
    return PathIn(core::ScreenshotsFolder(level.Folder), *plain);
}

} // namespace kelvash::companion
