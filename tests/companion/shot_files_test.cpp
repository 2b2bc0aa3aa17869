#include "companion/shot_files.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "companion/shots_home.h"

namespace kelvash::test {
namespace {

using companion::AddImageToLevel;
using companion::ConvertToJpeg;
using companion::CopyShot;
using companion::IsDefaultShot;
using companion::IsShotName;
using companion::ReadShot;
using companion::ReadShotOrTell;
using companion::SaveClipboardJpeg;
using companion::StoreShot;
using testing::ElementsAre;
using testing::IsEmpty;

class ShotFiles : public ShotsHome {};

TEST_F(ShotFiles, StandForNoneInTwoPlaces) {
    EXPECT_TRUE(IsDefaultShot("C:\\Kelvash\\default_shot.jpg"));
    EXPECT_TRUE(IsDefaultShot("c:\\kelvash\\DEFAULT_SHOT.JPG"));
    EXPECT_TRUE(IsDefaultShot("C:\\Kelvash\\LEVEL_0000\\SCREENSHOTS\\Tomb Raider Level Editor.bmp"));
    EXPECT_FALSE(IsDefaultShot(PathOf("Tomb Raider Level Editor.bmp")));
    EXPECT_FALSE(IsDefaultShot(PathOf("default_shot.jpg")));
}

TEST_F(ShotFiles, AreJpegsAndBitmaps) {
    EXPECT_TRUE(IsShotName("a.jpg"));
    EXPECT_TRUE(IsShotName("C:\\a.BMP"));
    EXPECT_FALSE(IsShotName("a.jpeg"));
    EXPECT_FALSE(IsShotName("a.png"));
}

TEST_F(ShotFiles, AreReadByWhatTheyHold) {
    Take("1.jpg", kRedBlue); // others write bitmaps under such names
    const auto picture = ReadShot(PathOf("1.jpg"));
    ASSERT_TRUE(picture.has_value());
    EXPECT_EQ(picture->Width, 2U);
    EXPECT_EQ(picture->Height, 1U);
    EXPECT_EQ(picture->Pixels, std::string("\xFF\0\0\0\0\xFF", 6));
}

TEST_F(ShotFiles, ThatAreNoneAreTold) {
    std::string huge = kRedBlue; // 65535 x 65535
    huge[18] = huge[19] = huge[22] = huge[23] = '\xFF';
    Take("huge.bmp", huge);
    Take("cut.bmp", kRedBlue.substr(0, 60));
    Take("empty.jpg", "");
    Take("text.jpg", "no picture");
    for (const char* name : {"huge.bmp", "cut.bmp", "empty.jpg", "text.jpg", "missing.jpg"})
        EXPECT_FALSE(ReadShotOrTell(PathOf(name)).has_value());
    EXPECT_THAT(user.Told(), ElementsAre("critical: This image can't be read: " + PathOf("huge.bmp"),
                                         "critical: This image can't be read: " + PathOf("cut.bmp"),
                                         "critical: This image can't be read: " + PathOf("empty.jpg"),
                                         "critical: This image can't be read: " + PathOf("text.jpg"),
                                         "critical: This image can't be read: " + PathOf("missing.jpg")));
}

TEST_F(ShotFiles, CountInTheLevelAndInTheArchive) {
    AddImageToLevel(100, core::PlaceOf(1));
    AddImageToLevel(-30, core::PlaceOf(1));
    AddImageToLevel(7, core::PlaceOf(77)); // there is no such level
    EXPECT_EQ(Counted(), 70);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 70);
}

TEST_F(ShotFiles, AreStoredWithTheirDateAndTheDifferenceOfSizes) {
    Take("a.bmp", std::string(100, 'x'));
    ASSERT_TRUE(StoreShot(core::PlaceOf(1), PathOf("a.bmp"), kRedBlue, 2'000'000));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
    EXPECT_EQ(DateOf("a.bmp"), 2'000'000);
    EXPECT_EQ(Counted(), 62);
    ASSERT_TRUE(StoreShot(core::PlaceOf(1), "C:\\elsewhere.bmp", kRedBlue, std::nullopt));
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotFiles, HaveTheirFolderMade) {
    std::filesystem::remove(folder);
    ASSERT_TRUE(StoreShot(core::PlaceOf(1), PathOf("a.bmp"), kRedBlue, std::nullopt));
    EXPECT_EQ(Counted(), 62);
    std::filesystem::remove_all(LevelPath(1));
    EXPECT_FALSE(StoreShot(core::PlaceOf(1), PathOf("b.bmp"), kRedBlue, std::nullopt));
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotFiles, AreNotDestroyedByACopyOntoThemselves) {
    Take("a.bmp");
    ASSERT_TRUE(CopyShot(core::PlaceOf(1), PathOf("a.bmp"), PathOf("A.BMP")));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
    EXPECT_THAT(Names(), ElementsAre("a.bmp"));
}

TEST_F(ShotFiles, AreCopiedWithTheirDate) {
    MakeFile(drive / "new.bmp", kRedBlue);
    ASSERT_TRUE(SetFileDate("C:\\new.bmp", 3'000'000));
    ASSERT_TRUE(CopyShot(core::PlaceOf(1), "C:\\new.bmp", PathOf("a.bmp")));
    EXPECT_EQ(DateOf("a.bmp"), 3'000'000);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotFiles, LeaveNothingBesideThemWhenTheyCanNotBePut) {
    Take("a.bmp");
    std::filesystem::create_directories(folder / "b.bmp" / "sub");
    EXPECT_FALSE(StoreShot(core::PlaceOf(1), PathOf("b.bmp"), kRedBlue, 2'000'000));
    EXPECT_FALSE(CopyShot(core::PlaceOf(1), PathOf("a.bmp"), PathOf("b.bmp")));
    EXPECT_FALSE(CopyShot(core::PlaceOf(1), PathOf("missing.bmp"), PathOf("c.bmp")));
    EXPECT_THAT(Names(), ElementsAre("a.bmp"));
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotFiles, AreConvertedToJpeg) {
    Take("a.bmp");
    ASSERT_TRUE(ConvertToJpeg(PathOf("a.bmp"), "C:\\a.jpg", 90));
    EXPECT_EQ(BytesOf(drive / "a.jpg").substr(0, 4), "\xFF\xD8\xFF\xE0");
    MakeFile(drive / "b.jpg", "old");
    EXPECT_FALSE(ConvertToJpeg("C:\\missing.bmp", "C:\\b.jpg", 90));
    EXPECT_EQ(BytesOf(drive / "b.jpg"), "old");
    EXPECT_FALSE(ConvertToJpeg(PathOf("a.bmp"), "C:\\nowhere\\b.jpg", 90));
}

TEST_F(ShotFiles, ComeFromNoClipboardWithoutOne) {
    SetEnvironment("DISPLAY", "");
    EXPECT_FALSE(SaveClipboardJpeg(PathOf("a.jpg")));
    EXPECT_THAT(Names(), IsEmpty());
}

} // namespace
} // namespace kelvash::test
