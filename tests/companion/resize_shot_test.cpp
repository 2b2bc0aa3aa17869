#include "companion/resize_shot.h"

#include <gmock/gmock.h>

#include "companion/picture_scaling.h"
#include "companion/shot_files.h"
#include "companion/shots_home.h"

namespace kelvash::test {
namespace {

using companion::BeginResize;
using companion::SaveResized;
using companion::ShotQuality;
using companion::Stretched;
using testing::ElementsAre;

swap::Picture Grey(std::uint32_t width, std::uint32_t height, const std::vector<int>& values) {
    swap::Picture picture{width, height, {}};
    for (const int value : values)
        picture.Pixels.append(3, static_cast<char>(value));
    return picture;
}

std::vector<int> ValuesOf(const swap::Picture& picture) {
    std::vector<int> values;
    for (std::size_t i = 0; i < picture.Pixels.size(); i += 3)
        values.push_back(static_cast<unsigned char>(picture.Pixels[i]));
    return values;
}

class ResizeShot : public ShotsHome {
  protected:
    bool Save(const std::string& target, int quality = 90) {
        user.WillAnswer("Save resized scree-shot", target);
        return SaveResized(1, PathOf("a.bmp"), Noise(), quality,
                           [this](const std::string& text) { copied = text; });
    }
    static swap::Picture Noise() {
        swap::Picture picture{64, 64, {}};
        for (int i = 0; i < 64 * 64 * 3; ++i)
            picture.Pixels += static_cast<char>(i * i * 7919 >> 5);
        return picture;
    }
    std::string copied;
};

TEST_F(ResizeShot, SavesInTheQualityThatIsChosen) {
    Take("a.bmp");
    std::vector<std::int64_t> sizes;
    for (const ShotQuality& quality : companion::ShotQualities()) {
        const std::string target = "C:\\quality" + std::to_string(quality.Value) + ".jpg";
        EXPECT_TRUE(Save(target, quality.Value));
        sizes.push_back(FileSize(target));
    }
    for (std::size_t i = 1; i < sizes.size(); ++i)
        EXPECT_LT(sizes[i], sizes[i - 1]) << i;
    user.Forget();
}

TEST(PictureScaling, KeepsAPictureOfTheSameSize) {
    EXPECT_THAT(ValuesOf(Stretched(Grey(3, 1, {0, 100, 255}), 3, 1)), ElementsAre(0, 100, 255));
}

TEST(PictureScaling, MeansWhatASmallerOneStandsFor) {
    EXPECT_THAT(ValuesOf(Stretched(Grey(2, 2, {0, 100, 100, 200}), 1, 1)), ElementsAre(100));
    EXPECT_EQ(ValuesOf(Stretched(Grey(640, 480, std::vector<int>(640 * 480, 77)), 160, 120)),
              std::vector<int>(160 * 120, 77));
}

TEST(PictureScaling, RunsFromPixelToPixelInALargerOne) {
    EXPECT_THAT(ValuesOf(Stretched(Grey(2, 1, {0, 200}), 4, 1)), ElementsAre(0, 50, 150, 200));
    EXPECT_THAT(ValuesOf(Stretched(Grey(1, 1, {9}), 2, 2)), ElementsAre(9, 9, 9, 9));
}

TEST(PictureScaling, KeepsTheColoursApart) {
    const swap::Picture picture{2, 1, std::string("\xFF\0\0\0\0\xFF", 6)};
    EXPECT_EQ(Stretched(picture, 2, 2).Pixels, std::string("\xFF\0\0\0\0\xFF\xFF\0\0\0\0\xFF", 12));
}

TEST(ShotSizes, AreShownAsTheyAre) {
    std::vector<std::string> texts;
    for (const companion::ShotSize& size : companion::kShotSizes)
        texts.push_back(ShotSizeText(size));
    EXPECT_THAT(texts, ElementsAre("   480 X 360", "   440 X 330", "   400 X 300", "   360 X 270",
                                   "   320 X 240", "   240 X 180", "   200 X 150", "   160 X 120"));
}

TEST(ShotSizes, HaveFiveQualities) {
    std::vector<std::string> texts;
    for (const ShotQuality& quality : companion::ShotQualities())
        texts.push_back(LoadMessage(quality.Name).text + " " + std::to_string(quality.Value));
    EXPECT_THAT(texts, ElementsAre("Highest 90", "Good 70", "Middle 60", "Poor 40", "Least 20"));
}

TEST_F(ResizeShot, BeginsWithThePicture) {
    Take("a.bmp");
    swap::Picture picture;
    EXPECT_TRUE(BeginResize(PathOf("a.bmp"), picture));
    EXPECT_EQ(picture.Width, 2U);
}

TEST_F(ResizeShot, RefusesTheDefaultPictureAndWhatIsNone) {
    swap::Picture picture;
    Take("a.bmp", "no picture");
    EXPECT_FALSE(BeginResize("C:\\Kelvash\\default_shot.jpg", picture));
    EXPECT_FALSE(BeginResize(PathOf("a.bmp"), picture));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: This is a default screen-shot, you can not resize it :-)",
                            "critical: This image can't be read: " + PathOf("a.bmp")));
}

TEST_F(ResizeShot, SavesAJpegAndCopiesItsPath) {
    Take("a.bmp", kRedBlue, 5000);
    EXPECT_TRUE(Save(PathOf("small.jpg")));
    EXPECT_EQ(user.last_start, "\\a.jpg"); // in its own folder it could be the original
    EXPECT_EQ(user.last_filter, "Jpeg Images (*.jpg)|*.jpg|Bitmap Images (*.bmp)|*.bmp");
    EXPECT_EQ(BytesOf(folder / "small.jpg").substr(0, 2), "\xFF\xD8");
    EXPECT_EQ(DateOf("small.jpg"), 5000);
    EXPECT_EQ(Counted(), 62 + FileSize(PathOf("small.jpg")));
    EXPECT_EQ(copied, (folder / "small.jpg").string());
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: Saved image in " + copied + "\r\nCopied full path in clipboard"));
    EXPECT_FALSE(Exists(home / "_temp.bmp"));
}

TEST_F(ResizeShot, SavesABitmap) {
    Take("a.bmp");
    EXPECT_TRUE(Save("C:\\small.bmp"));
    EXPECT_EQ(BytesOf(drive / "small.bmp").size(), 54U + 64 * 64 * 3);
    EXPECT_EQ(Counted(), 62);
    user.Forget();
}

TEST_F(ResizeShot, TakesJpegForANameWithoutAKind) {
    Take("a.bmp");
    EXPECT_TRUE(Save("C:\\small"));
    EXPECT_TRUE(Exists(drive / "small.jpg"));
    user.WillAnswer("C:\\small.jpg", "no");
    EXPECT_FALSE(Save("C:\\small"));
    user.Forget();
}

TEST_F(ResizeShot, TellsWhatCanNotBeWritten) {
    Take("a.bmp");
    EXPECT_FALSE(Save("C:\\nowhere\\small.jpg"));
    EXPECT_FALSE(Save("C:\\nowhere\\small.bmp"));
    EXPECT_FALSE(Save("cancel"));
    EXPECT_EQ(copied, "");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error converting image from .bmp to .jpg",
                                         "critical: The image could not be saved in C:\\nowhere\\small.bmp"));
}

} // namespace
} // namespace kelvash::test
