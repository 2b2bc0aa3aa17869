#include "companion/screenshots.h"

#include <gmock/gmock.h>

#include "foundation/files.h"
#include "support/swap_home.h"

namespace kelvash::companion {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ScreenshotsOf : public test::SwapHome {
  protected:
    ScreenshotsOf() { AddLevel(1, "City", {{"city.tr4", "city"}}); }
    void Take(const std::string& name, std::int64_t seconds) {
        test::MakeFile(LevelPath(1) / "SCREENSHOTS" / name, "picture");
        ASSERT_TRUE(SetFileDate("C:\\Levels\\LEVEL_0001\\SCREENSHOTS\\" + name, seconds));
    }
};

TEST_F(ScreenshotsOf, ALevelAreItsJpegsAndBitmaps) {
    Take("2) City.JPG", 3);
    Take("1) City.bmp", 2);
    Take("notes.txt", 9);
    EXPECT_THAT(Screenshots(core::PlaceOf(1)),
                ElementsAre("C:\\Levels\\LEVEL_0001\\screenshots\\1) City.bmp",
                            "C:\\Levels\\LEVEL_0001\\screenshots\\2) City.JPG"));
}

TEST_F(ScreenshotsOf, ALevelHaveANewest) {
    Take("1) City.jpg", 2000);
    Take("2) City.jpg", 3000);
    Take("3) City.jpg", 1000);
    EXPECT_EQ(NewestScreenshot(core::PlaceOf(1)), "C:\\Levels\\LEVEL_0001\\screenshots\\2) City.jpg");
}

TEST_F(ScreenshotsOf, ALevelWithoutAnyAreNone) {
    EXPECT_THAT(Screenshots(core::PlaceOf(1)), IsEmpty());
    EXPECT_EQ(NewestScreenshot(core::PlaceOf(1)), "");
    EXPECT_EQ(NewestScreenshot(core::PlaceOf(77)), "");
}

} // namespace
} // namespace kelvash::companion
