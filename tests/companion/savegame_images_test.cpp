#include "companion/savegame_images.h"

#include <gmock/gmock.h>

#include "core/profile.h"
#include "foundation/files.h"
#include "support/savegame_home.h"

namespace kelvash::companion {
namespace {

using test::MakeFile;
using testing::ElementsAre;

constexpr std::int64_t kTime = 1'000'000'000;
const std::string kShots = "C:\\Levels\\LEVEL_0001\\screenshots\\";

class SavegameImages : public test::SavegameHome {
  protected:
    SavegameImages() {
        PutSlot(0, 1);
        EXPECT_TRUE(SetFileDate(save, kTime));
    }
    void PutShot(const std::string& name, std::int64_t time) {
        MakeFile(LevelPath(1) / "SCREENSHOTS" / name, name);
        EXPECT_TRUE(SetFileDate(kShots + name, time));
    }
    const std::string save = "C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.0";
};

TEST_F(SavegameImages, AreLinkedUpToTheLimit) {
    core::profile.ScreenshotMinutes = 5;
    EXPECT_EQ(LinkedImage(kTime, {{"a", kTime + 300}}), "a");
    EXPECT_EQ(LinkedImage(kTime, {{"a", kTime - 300}}), "a");
    EXPECT_EQ(LinkedImage(kTime, {{"a", kTime + 301}}), "");
    EXPECT_EQ(LinkedImage(kTime, {{"a", kTime - 301}}), "");
    EXPECT_EQ(LinkedImage(kTime, {}), "");
}

TEST_F(SavegameImages, TheFirstOfEquallyNearOnesIsLinked) {
    EXPECT_EQ(LinkedImage(kTime, {{"far", kTime + 20}, {"a", kTime + 9}, {"b", kTime - 9}}), "a");
    EXPECT_EQ(LinkedImage(kTime, {{"a", kTime + 9}, {"b", kTime - 8}}), "b");
}

TEST_F(SavegameImages, OfNoMinutesMustHaveTheVeryDate) {
    core::profile.ScreenshotMinutes = 0;
    EXPECT_EQ(LinkedImage(kTime, {{"a", kTime + 1}}), "");
    EXPECT_EQ(LinkedImage(kTime, {{"a", kTime}}), "a");
}

TEST_F(SavegameImages, AChosenOneGetsTheDateAndOthersStepAside) {
    PutShot("a.jpg", kTime);
    PutShot("b.jpg", kTime + 4000);
    user.WillAnswer("Choose image (screenshot) to link at current savegame", kShots + "b.jpg");
    EXPECT_TRUE(ChooseLinkedImage(1, save));
    EXPECT_EQ(user.last_start, "C:\\Levels\\LEVEL_0001\\screenshots");
    EXPECT_EQ(user.last_filter, "Images (*.jpg;*.bmp)|*.jpg;*.bmp");
    EXPECT_EQ(FileTime(kShots + "b.jpg"), kTime);
    EXPECT_EQ(FileTime(kShots + "a.jpg"), kTime + 5);
    EXPECT_EQ(LinkedImage(kTime, DatedImages({kShots + "a.jpg", kShots + "b.jpg"})), kShots + "b.jpg");
}

TEST_F(SavegameImages, NeedPictures) {
    const std::string told =
        "exclamation: You have no images (screenshots) in current level\r\nTip: to have images (screenshot) "
        "to "
        "associate at savegames just you type [Print screen] key on your keyboard while you are playing";
    EXPECT_FALSE(ChooseLinkedImage(1, save));
    PutShot("Load.bmp", kTime);
    EXPECT_FALSE(ChooseLinkedImage(1, save));
    EXPECT_THAT(user.Told(), ElementsAre(told, told));
}

TEST_F(SavegameImages, OfElsewhereAreNotTouched) {
    PutShot("a.jpg", kTime + 7);
    MakeFile(drive / "holiday.jpg", "x");
    ASSERT_TRUE(SetFileDate("C:\\holiday.jpg", 5));
    user.WillAnswer("Choose image", "C:\\holiday.jpg");
    EXPECT_FALSE(ChooseLinkedImage(1, save));
    EXPECT_EQ(FileTime("C:\\holiday.jpg"), 5);
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Only an image of the level itself can be linked: C:\\holiday.jpg"));
    user.WillAnswer("Choose image", "cancel");
    EXPECT_FALSE(ChooseLinkedImage(1, save));
}

} // namespace
} // namespace kelvash::companion
