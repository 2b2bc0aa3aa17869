#include "media/media_config.h"

#include <gmock/gmock.h>

#include "support/format_test.h"

namespace kelvash::media {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

using Names = std::vector<std::string>;

void PutAt(std::string& bytes, std::size_t at, const std::string& piece) {
    bytes.replace(at, piece.size(), piece);
}

// Two events: one with a movie and an image in use, one with a program.
std::string TwoEvents() {
    std::string bytes(20 + 2 * 1356, ' ');
    PutAt(bytes, 0, "\2\0\0\0"s);
    PutAt(bytes, 20, "C:\\films\\intro.avi");
    PutAt(bytes, 20 + 266, "\x14\0\2\0"s);
    PutAt(bytes, 20 + 274, "caf\xE9.bmp");
    PutAt(bytes, 20 + 530, "unused.txt");
    PutAt(bytes, 1376 + 266, "\0\2\0\0"s);
    PutAt(bytes, 1376 + 1042, "extra.exe");
    return bytes;
}

TEST(MediaConfig, NamesTheFilesThatItsFlagsUse) {
    EXPECT_THAT(MediaFileNames(TwoEvents()), ElementsAre("intro.avi", "café.bmp", "extra.exe"));
}

TEST(MediaConfig, NamesNoSaveNoMarkerAndNothingThatIsNoPlainName) {
    for (const std::string name : {"savegame.3", "KELVASH.txt", "..", "con", "C:\\films\\"}) {
        std::string bytes = TwoEvents().substr(0, 1376);
        PutAt(bytes, 0, "\1\0\0\0"s);
        PutAt(bytes, 20, std::string(256, ' '));
        PutAt(bytes, 20, name);
        EXPECT_THAT(MediaFileNames(bytes), ElementsAre("café.bmp")) << name;
    }
    EXPECT_THAT(MediaFileNames(""), IsEmpty());
}

TEST(MediaConfigFormat, WithstandsCutsAndLies) {
    test::ExpectFormat<Names>({.bytes = TwoEvents(),
                               .decode = [](std::string_view bytes) -> std::optional<Names> {
                                   const Names names = MediaFileNames(bytes);
                                   return names.empty() ? std::nullopt : std::optional<Names>(names);
                               },
                               .counts = {{0, 4, &Names::size, 3}}});
}

} // namespace
} // namespace kelvash::media
