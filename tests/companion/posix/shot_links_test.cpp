// Pictures of a level that are links to others.
#include <gmock/gmock.h>

#include <filesystem>

#include "companion/shot_commands.h"
#include "companion/shots_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;

class ShotLinks : public ShotsHome {
  protected:
    ShotLinks() {
        Take("a.bmp");
        std::filesystem::create_symlink(folder / "a.bmp", folder / "link.jpg");
    }
};

TEST_F(ShotLinks, AreNotSavedOverWhatTheyLeadTo) {
    user.WillAnswer("Save current screenshot", PathOf("link.jpg"));
    EXPECT_TRUE(companion::SaveShotAs(1, PathOf("a.bmp")));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotLinks, GoByThemselves) {
    user.WillAnswer("Delete screen-shot link.jpg", "yes");
    EXPECT_TRUE(companion::DeleteShot(1, PathOf("link.jpg")));
    EXPECT_THAT(Names(), ElementsAre("a.bmp"));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
}

} // namespace
} // namespace kelvash::test
