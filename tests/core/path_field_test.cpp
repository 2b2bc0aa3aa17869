#include "core/path_field.h"

#include <gmock/gmock.h>

#include "support/test_home.h"

namespace kelvash::core {
namespace {

class PathField : public test::TestHome {};

TEST_F(PathField, HoldsEveryCharacterOfItsCodePage) {
    for (const std::string path : {"", "C:", "C:\\Games\\trle", "C:\\Spi\xC3\xABl \xE2\x82\xAC"})
        EXPECT_TRUE(CheckPath(path)) << path;
    EXPECT_TRUE(CanKeepPath("C:\\" + std::string(253, 'x')));
    EXPECT_TRUE(FaultOfPath("C:\\trle").text.empty());
}

TEST_F(PathField, TellsWhyItCannotHoldAPath) {
    std::string accents = "C:\\"; // 256 bytes of UTF-8 and more, but not more characters than fit
    for (int i = 0; i < 253; ++i)
        accents += "\xC3\xA9";
    EXPECT_TRUE(CheckPath(accents));
    EXPECT_FALSE(CheckPath(accents + "x"));
    EXPECT_FALSE(CheckPath("C:\\\xCE\xBB"));
    EXPECT_FALSE(CheckPath("C:\\trle "));
    EXPECT_FALSE(CheckPath(" C:\\trle"));
    EXPECT_THAT(
        user.Told(),
        testing::ElementsAre(
            "critical: This path is too long for the files of Kelvash (at most 256 characters): " + accents +
                "x",
            "critical: This path has characters that the files of Kelvash can not hold (only those of "
            "Windows-1252): C:\\\xCE\xBB",
            "critical: This path begins or ends with a blank, which the files of Kelvash can not "
            "hold: C:\\trle ",
            "critical: This path begins or ends with a blank, which the files of Kelvash can not "
            "hold:  C:\\trle"));
}

} // namespace
} // namespace kelvash::core
