#include "cd/cd_access.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/ports.h"
#include "foundation/drives.h"
#include "support/core_home.h"

namespace kelvash::core {
namespace {

using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class CdAccess : public test::CoreHome {
  protected:
    CdAccess() { AddRecord(12, "Twelve", 3); }
    void WillChoose(const std::string& chosen) {
        user.WillFill<cd::CdDriveChoice>([chosen](cd::CdDriveChoice& choice) {
            EXPECT_EQ(choice.Title, " Cd Request");
            EXPECT_EQ(choice.Text, "Please, insert CD # 3");
            EXPECT_EQ(choice.Drive, "E:");
            choice.Drive = chosen;
            return true;
        });
    }
    // An empty disc in a reader.
    fs::path InsertDisc(char letter) {
        const fs::path disc = root / (std::string("disc_") + letter);
        fs::create_directories(disc);
        EXPECT_TRUE(SetDrive(letter, disc, DriveType::CdRom));
        return disc;
    }
};

// --- looking on a disc ---

TEST_F(CdAccess, FindsALevelByLooking) {
    const fs::path disc = InsertDisc('E');
    MakeFile(disc / "Aaa" / "other" / "x", "");
    MakeFile(disc / "My Archive" / "level_0007" / "x", "");
    MakeFile(disc / "My Archive" / "Level_0012" / "x", "");
    MakeFile(disc / "Zzz" / "LEVEL_0099" / "x", "");
    EXPECT_EQ(core::FindArchiveFolderOnCd("E:"), "E:\\My Archive");
    EXPECT_EQ(core::CdLevelFolder("E:", 12), "E:\\My Archive\\LEVEL_0012");
    EXPECT_EQ(core::CdLevelFolder("E:", 7), "E:\\My Archive\\LEVEL_0007");
    EXPECT_EQ(core::CdLevelFolder("E:", 8), "");
    EXPECT_EQ(core::CdLevelFolder("E:", 99), "") << "only the first folder with levels is the root";
}

TEST_F(CdAccess, FindsNoLevelsInTheRootItself) {
    const fs::path disc = InsertDisc('E');
    MakeFile(disc / "LEVEL_0012" / "x", "");
    EXPECT_EQ(core::FindArchiveFolderOnCd("E:"), "");
    EXPECT_EQ(core::CdLevelFolder("E:", 12), "");
}

TEST_F(CdAccess, ReadsOnlyTheLastFourDigits) {
    const fs::path disc = InsertDisc('E');
    MakeFile(disc / "A" / "LEVEL_x" / "x", "");
    MakeFile(disc / "A" / "LEVEL_" / "x", "");
    MakeFile(disc / "A" / "LEVEL_backup_0012" / "x", "");
    MakeFile(disc / "A" / "x_LEVEL_0013" / "x", "");
    EXPECT_EQ(core::CdLevelFolder("E:", 12), "E:\\A\\LEVEL_0012");
    EXPECT_EQ(core::CdLevelFolder("E:", 13), "") << "the name must begin with it";
}

TEST_F(CdAccess, FindsNothingWithoutADisc) {
    EXPECT_EQ(core::CdLevelFolder("E:", 12), "");
    EXPECT_EQ(core::CdLevelFolder("", 12), "");
    EXPECT_EQ(core::CdLevelFolder("X:", 12), "");
}

// --- asking for a disc ---

TEST_F(CdAccess, NeedsNothingForALevelOnDisk) {
    AddRecord(5, "Five");
    EXPECT_TRUE(RequestCd(PlaceOf(5)));
    EXPECT_TRUE(RequestCd(PlaceOf(77))) << "nor for an unknown code";
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(CdAccess, NeedsAReader) {
    EXPECT_FALSE(RequestCd(PlaceOf(12)));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error: no cd reader available in this pc"));
}

TEST_F(CdAccess, TakesADiscThatIsInSilently) {
    InsertDisc('E');
    const fs::path second = InsertDisc('F');
    MakeFile(second / "A" / "LEVEL_0012" / "FILES" / "Game.TR4", "");
    EXPECT_TRUE(RequestCd(PlaceOf(12)));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_EQ(core::archive.Header.MainFolder, "F:\\Levels");
}

TEST_F(CdAccess, AsksThoughTheFolderIsInWhenItHasNoPlainLevel) {
    const fs::path disc = InsertDisc('E');
    MakeFile(disc / "A" / "LEVEL_0012" / "FILES" / "game.tr4.zl", "");
    WillChoose("E:");
    EXPECT_TRUE(RequestCd(PlaceOf(12)));
    EXPECT_EQ(core::archive.Header.MainFolder, "E:\\Levels");
}

TEST_F(CdAccess, TellsEachWrongChoiceAndAsksAgain) {
    InsertDisc('E');
    const fs::path second = InsertDisc('F');
    const fs::path empty = InsertDisc('G');
    fs::remove(empty);
    for (const char* chosen : {"", "X:", "G:", "E:", "F: [TOMB]"})
        WillChoose(chosen);
    MakeFile(second / "A" / "LEVEL_0012" / "x", "");
    EXPECT_TRUE(RequestCd(PlaceOf(12)));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: No drive unit selected", "critical: Error: drive [X:] is not present",
                            "critical: Drive [G:] not ready",
                            "critical: Error: in this CD is not present the level sub-folder: \\LEVEL_0012"));
    EXPECT_EQ(core::archive.Header.MainFolder, "F:\\Levels");
}

TEST_F(CdAccess, GivesUpWithTheUser) {
    InsertDisc('E');
    user.WillGiveUp<cd::CdDriveChoice>();
    EXPECT_FALSE(RequestCd(PlaceOf(12)));
    EXPECT_EQ(core::archive.Header.MainFolder, "C:\\Levels");
}

} // namespace
} // namespace kelvash::core
