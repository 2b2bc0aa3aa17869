#include "companion/shot_capture.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "companion/shot_files.h"
#include "companion/shots_home.h"
#include "companion/watched_level.h"
#include "core/profile.h"

namespace kelvash::test {
namespace {

using companion::CaptureEnd;
using companion::CaptureOutcome;
using companion::CaptureShot;
using companion::SaveCapture;
using companion::SaveCaptureEnd;
using testing::ElementsAre;
using testing::IsEmpty;

const swap::Picture kPicture{2, 1, std::string("\xFF\0\0\0\0\xFF", 6)};

class ShotCapture : public ShotsHome {};

TEST_F(ShotCapture, TakesTheNextName) {
    Take("1) City.jpg");
    const CaptureOutcome outcome = CaptureShot(1, kPicture);
    EXPECT_EQ(outcome.End, CaptureEnd::Saved);
    EXPECT_EQ(outcome.Path, PathOf("2) City.jpg"));
    EXPECT_THAT(Names(), ElementsAre("1) City.jpg", "2) City.jpg"));
    EXPECT_EQ(Counted(), 62 + FileSize(PathOf("2) City.jpg")));
    EXPECT_TRUE(companion::ReadShot(PathOf("2) City.jpg")).has_value());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(ShotCapture, CapturesWhateverTheLevelIsCalled) {
    AddLevel(2, std::string(256, 'x'), {});
    AddLevel(3, "*:?", {});
    EXPECT_EQ(CaptureShot(2, kPicture).End, CaptureEnd::Saved);
    EXPECT_EQ(CaptureShot(3, kPicture).End, CaptureEnd::Saved);
    EXPECT_THAT(NamesIn(LevelPath(3) / "SCREENSHOTS"), ElementsAre("1)    .jpg"));
}

TEST_F(ShotCapture, MakesTheFolderThatIsMissing) {
    std::filesystem::remove(folder);
    EXPECT_EQ(CaptureShot(1, kPicture).End, CaptureEnd::Saved);
}

TEST_F(ShotCapture, StoresForALevelOfAnotherArchiveAndCountsNothing) {
    std::filesystem::create_directories(drive / "Other/LEVEL_0009");
    core::LevelPlace other;
    other.Name = "Ruins";
    other.Folder = "C:\\Other\\LEVEL_0009";
    const CaptureOutcome outcome = CaptureShot(other, kPicture);
    EXPECT_EQ(outcome.End, CaptureEnd::Saved);
    EXPECT_THAT(NamesIn(drive / "Other/LEVEL_0009/screenshots"), ElementsAre("1) Ruins.jpg"));
    EXPECT_EQ(Counted(), 0);
    EXPECT_EQ(core::archive.Header.SecondaryFolderSize, 0);
}

TEST_F(ShotCapture, FindsTheLevelOfTheOriginalConfiguration) {
    ASSERT_TRUE(companion::LevelInTrle().has_value());
    EXPECT_EQ(companion::LevelInTrle()->Code, 0);
    core::CloseArchive(); // it has its folder without one
    const std::optional<core::LevelPlace> level = companion::LevelInTrle();
    ASSERT_TRUE(level);
    const CaptureOutcome outcome = CaptureShot(*level, kPicture);
    EXPECT_EQ(outcome.End, CaptureEnd::Saved) << outcome.Message.text;
    EXPECT_EQ(outcome.Path.substr(0, outcome.Path.find(')')), "C:\\Kelvash\\LEVEL_0000\\screenshots\\1");
    EXPECT_TRUE(FileExists(outcome.Path));
}

TEST_F(ShotCapture, SaysAfterwardsWhatCouldNotBeSaved) {
    std::filesystem::remove_all(LevelPath(1));
    const CaptureOutcome outcome = CaptureShot(1, kPicture);
    EXPECT_EQ(outcome.End, CaptureEnd::Failed);
    EXPECT_EQ(outcome.Message.text,
              "A screenshot could not be saved.\r\n" + PathOf("1) City.jpg") + "\r\nthe folder is missing");
    EXPECT_EQ(CaptureShot(77, kPicture).Message.text,
              "A screenshot could not be saved: its level isn't in the open Archive.");
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_EQ(Counted(), 0);
}

TEST_F(ShotCapture, AsksForANameWhereItIsWanted) {
    user.WillAnswer("Save captured screenshot", PathOf("Door"));
    std::string path;
    EXPECT_EQ(SaveCapture(1, kPicture, path), SaveCaptureEnd::Saved);
    EXPECT_EQ(path, PathOf("Door.jpg"));
    EXPECT_EQ(user.last_start, PathOf("1) City.jpg"));
    EXPECT_EQ(user.last_filter, "File jpg (*.jpg)|*.jpg");
    EXPECT_THAT(Names(), ElementsAre("Door.jpg"));
    EXPECT_EQ(Counted(), FileSize(PathOf("Door.jpg")));
}

TEST_F(ShotCapture, HasItsFolderMadeBeforeItAsks) {
    std::filesystem::remove(folder);
    user.WillAnswer("Save captured screenshot", "cancel");
    std::string path;
    EXPECT_EQ(SaveCapture(1, kPicture, path), SaveCaptureEnd::Again);
    EXPECT_TRUE(std::filesystem::is_directory(LevelPath(1) / "screenshots"));
}

TEST_F(ShotCapture, CountsOnlyWhatIsTheLevels) {
    user.WillAnswer("Save captured screenshot", "C:\\Door.jpg");
    std::string path;
    EXPECT_EQ(SaveCapture(1, kPicture, path), SaveCaptureEnd::Saved);
    EXPECT_TRUE(Exists(drive / "Door.jpg"));
    EXPECT_EQ(Counted(), 0);
}

TEST_F(ShotCapture, ReplacesNothingUnasked) {
    Take("Door.bmp.jpg");
    user.WillAnswer("Save captured screenshot", PathOf("Door.bmp"));
    user.WillAnswer("Door.bmp.jpg", "no");
    std::string path;
    EXPECT_EQ(SaveCapture(1, kPicture, path), SaveCaptureEnd::Again);
    EXPECT_EQ(BytesOf(folder / "Door.bmp.jpg"), kRedBlue);
}

TEST_F(ShotCapture, StaysOpenWhenItsDialogIsGivenUp) {
    user.WillAnswer("Save captured screenshot", "cancel");
    std::string path;
    EXPECT_EQ(SaveCapture(1, kPicture, path), SaveCaptureEnd::Again);
    EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(ShotCapture, TellsWhatCanNotBeWritten) {
    user.WillAnswer("Save captured screenshot", "C:\\nowhere\\Door.jpg");
    std::string path;
    EXPECT_EQ(SaveCapture(1, kPicture, path), SaveCaptureEnd::Failed);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving captured screen-shot in : \r\n"
                                         "C:\\nowhere\\Door.jpg\r\nError: the folder is missing"));
}

TEST_F(ShotCapture, AsksNoMoreWhenToldSo) {
    companion::SetCaptureAsks(true);
    EXPECT_TRUE(core::profile.PromptCapture);
    companion::SetCaptureAsks(false);
    EXPECT_FALSE(core::profile.PromptCapture);
}

} // namespace
} // namespace kelvash::test
