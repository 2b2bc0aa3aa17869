#include "media/media_config.h"

#include <array>
#include <cstdint>

#include "foundation/bytes.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"
#include "media/fragments.h"
#include "trle_state/fragments.h"

namespace kelvash::media {

namespace {

constexpr std::size_t kHeaderSize = 20;
constexpr std::size_t kEventSize = 1356;
constexpr std::size_t kNameSize = 256;
constexpr std::size_t kFlagsOffset = 266;

// A file field of an event and the flags that put it to use.
struct FileField {
    std::size_t offset;
    std::uint32_t flags;
};
constexpr std::array<FileField, 5> kFileFields = {{
    {0, 0x4},                // movie
    {274, 0x10 | 0x20000},   // image, image sequence
    {530, 0x2 | 0x80},       // e-mail commands, text of a title
    {786, 0x100},            // second text
    {1042, 0x200 | 0x200000} // program, second media file
}};

// The game's saves and the marker stand where media files go, and are no part of a level.
bool IsOfTheFolder(const std::string& name) {
    return MatchesMask(name, LoadFragment(fragment::kSavegameMask)) ||
           EqualNoCase("\\" + name, LoadFragment(fragment::kMarkerName));
}

} // namespace

std::vector<std::string> MediaFileNames(std::string_view bytes) {
    std::vector<std::string> names;
    ByteReader reader(bytes);
    const auto count = reader.Get<std::int32_t>();
    reader.Skip(kHeaderSize - sizeof(count));
    if (reader.Failed() || !reader.Holds(count, kEventSize)) return names;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::string_view event = reader.Bytes(kEventSize);
        const auto flags = ByteReader(event.substr(kFlagsOffset)).Get<std::uint32_t>();
        for (const FileField& field : kFileFields) {
            const std::string name = FileNameOf(ByteReader(event.substr(field.offset)).Text(kNameSize));
            if ((flags & field.flags) != 0 && PlainName::From(name) && !IsOfTheFolder(name))
                names.push_back(name);
        }
    }
    return names;
}

std::vector<std::string> ListMediaFiles(const std::string& folder) {
    const std::vector<std::string> configs = ListFiles(folder, LoadFragment(fragment::kMediaConfigMask));
    std::vector<std::string> names;
    if (configs.empty()) return names;
    const std::string bytes = ReadFileStart(configs.front(), kLongestMediaConfig).value_or(std::string());
    for (const std::string& name : MediaFileNames(bytes))
        if (!EndsWithNoCase(name, LoadFragment(fragment::kWaveExtension)) && FileExists(folder + "\\" + name))
            names.push_back(name);
    return names;
}

} // namespace kelvash::media
