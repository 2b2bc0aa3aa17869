#include <gmock/gmock.h>

#include "foundation/files.h"
#include "support/foundation_home.h"
#include "support/local_time.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

class Trees : public test::FoundationHome {
  protected:
    // A small level with a folder FILES; 20 bytes.
    void MakeLevel() {
        MakeFile(drive / "level" / "tomb4.exe", "12345");
        MakeFile(drive / "level" / "data" / "a.tr4", "123");
        MakeFile(drive / "level" / "data" / "deep" / "b.tr4", "12");
        MakeFile(drive / "level" / "FILES" / "readme.txt", "1234567890");
    }
};

TEST_F(Trees, NamesOfAFolderComeBeforeItsSubFoldersAreFollowed) {
    MakeLevel();
    const Tree tree = ScanTree("C:\\level");
    EXPECT_THAT(tree.folders, ElementsAre("C:\\level\\data", "C:\\level\\FILES", "C:\\level\\data\\deep"));
    EXPECT_THAT(tree.files, ElementsAre("C:\\level\\tomb4.exe", "C:\\level\\data\\a.tr4",
                                        "C:\\level\\data\\deep\\b.tr4", "C:\\level\\FILES\\readme.txt"));
    EXPECT_THAT(ScanTree("C:\\none").files, IsEmpty());
    EXPECT_THAT(ScanTree("C:\\none").folders, IsEmpty());
}

TEST_F(Trees, SizeCountsTheMatchingFiles) {
    MakeLevel();
    EXPECT_EQ(TreeSize("C:\\level", "*"), 20);
    EXPECT_EQ(TreeSize("C:\\level", "*.TR4"), 5);
    EXPECT_EQ(TreeSize("C:\\level", "*.none"), 0);
    EXPECT_EQ(TreeSize("C:\\none", "*"), 0);
}

TEST_F(Trees, CopyTakesEverything) {
    MakeLevel();
    EXPECT_TRUE(CopyTree("C:\\level", "C:\\copy", false, Existing::Replace, FilesFolders::Copy));
    EXPECT_EQ(BytesOf(drive / "copy" / "tomb4.exe"), "12345");
    EXPECT_EQ(BytesOf(drive / "copy" / "data" / "deep" / "b.tr4"), "12");
    EXPECT_EQ(BytesOf(drive / "copy" / "FILES" / "readme.txt"), "1234567890");
    EXPECT_THAT(user.Shown(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Trees, CopyCanLeaveTheFilesFolderBehind) {
    MakeLevel();
    EXPECT_TRUE(CopyTree("C:\\level", "C:\\copy", false, Existing::Replace, FilesFolders::Skip));
    EXPECT_TRUE(Exists(drive / "copy" / "data" / "a.tr4"));
    EXPECT_FALSE(Exists(drive / "copy" / "FILES" / "readme.txt"));
}

TEST_F(Trees, AFilesFolderAboveTheSourceDoesNotCount) {
    MakeFile(drive / "files" / "level" / "a.tr4", "a");
    EXPECT_TRUE(CopyTree("C:\\files\\level", "C:\\copy", false, Existing::Replace, FilesFolders::Skip));
    EXPECT_EQ(BytesOf(drive / "copy" / "a.tr4"), "a");
}

TEST_F(Trees, CopyShowsItsProgressByBytes) {
    MakeLevel();
    EXPECT_TRUE(CopyTree("C:\\level", "C:\\copy", true, Existing::Replace, FilesFolders::Copy));
    EXPECT_THAT(user.Shown(), ElementsAre("Copying files in progress..."));
    EXPECT_EQ(user.last_percent, 100);
    Bar bar{BarPlace::MainWindow, -1};
    EXPECT_TRUE(CopyTreeShown("C:\\level", "C:\\copy", bar, Existing::Replace, FilesFolders::Copy));
    EXPECT_EQ(bar.percent, 100);
}

TEST_F(Trees, CopyAsksBeforeItReplaces) {
    MakeFile(drive / "from" / "a.txt", "new");
    MakeFile(drive / "from" / "b.txt", "new");
    MakeFile(drive / "to" / "a.txt", "old");
    user.WillAnswer("C:\\to\\a.txt", "no");
    EXPECT_TRUE(CopyTree("C:\\from", "C:\\to", false, Existing::Ask, FilesFolders::Copy));
    EXPECT_EQ(BytesOf(drive / "to" / "a.txt"), "old");
    EXPECT_EQ(BytesOf(drive / "to" / "b.txt"), "new");
}

TEST_F(Trees, CopyTellsAFolderThatCannotBeMade) {
    MakeLevel();
    EXPECT_FALSE(CopyTree("C:\\level", "C:\\no\\copy", false, Existing::Replace, FilesFolders::Copy));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I can not create 'C:\\no\\copy' folder"));
    user.Forget();
    MakeFile(drive / "copy" / "data" / "deep", "a file in the way");
    EXPECT_FALSE(CopyTree("C:\\level", "C:\\copy", false, Existing::Replace, FilesFolders::Copy));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I can not create 'C:\\copy\\data\\deep' folder"));
}

TEST_F(Trees, CopyTellsTheFileThatFailed) {
    MakeLevel();
    MakeFile(drive / "copy" / "data" / "a.tr4" / "in the way", "");
    EXPECT_FALSE(CopyTree("C:\\level", "C:\\copy", false, Existing::Replace, FilesFolders::Copy));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error copying file 'C:\\level\\data\\a.tr4' to "
                                         "'C:\\copy\\data\\a.tr4'"));
    EXPECT_FALSE(Exists(drive / "copy" / "FILES")); // stopped there
}

TEST_F(Trees, CopyWithABarHasItsOwnWords) {
    MakeLevel();
    MakeFile(drive / "copy" / "data" / "a.tr4" / "in the way", "");
    Bar bar;
    EXPECT_FALSE(CopyTreeShown("C:\\level", "C:\\copy", bar, Existing::Replace, FilesFolders::Copy));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error copying file from 'C:\\level\\data\\a.tr4'  to  "
                                         "'C:\\copy\\data\\a.tr4'"));
}

TEST_F(Trees, RemovalTakesTheWholeTree) {
    MakeLevel();
    fs::create_directories(drive / "level" / "empty" / "deeper");
    Bar bar;
    EXPECT_TRUE(RemoveFolderTree("C:\\level", bar));
    EXPECT_FALSE(Exists(drive / "level"));
    EXPECT_EQ(bar.percent, 100);
    EXPECT_TRUE(RemoveFolderTree("C:\\level", bar)); // nothing to remove
}

TEST(FormatSize, ChangesTheUnitAtItsBoundaries) {
    EXPECT_EQ(FormatSize(0), "0");
    EXPECT_EQ(FormatSize(1023), "1023");
    EXPECT_EQ(FormatSize(1024), "1 Kb");
    EXPECT_EQ(FormatSize(2047), "1 Kb");
    EXPECT_EQ(FormatSize(1048575), "1023 Kb");
    EXPECT_EQ(FormatSize(1048576), "1.0 Mb");
    EXPECT_EQ(FormatSize(1073741823), "1024.0 Mb");
    EXPECT_EQ(FormatSize(1073741824), "1.0 Gb");
}

TEST(FormatSize, HasOneDecimal) {
    EXPECT_EQ(FormatSize(1572864), "1.5 Mb");
    EXPECT_EQ(FormatSize(1100000), "1.0 Mb"); // 1.049
    EXPECT_EQ(FormatSize(1101005), "1.1 Mb"); // 1.05
    EXPECT_EQ(FormatSize(262144000), "250.0 Mb");
    EXPECT_EQ(FormatSize(4294967296), "4.0 Gb");
    EXPECT_EQ(FormatSize(1610612736), "1.5 Gb");
    EXPECT_EQ(FormatSize(2000000000000000), "1862645.1 Gb");
}

TEST_F(Trees, AskReplaceFileTellsBothFiles) {
    MakeFile(drive / "new.txt", std::string(2048, 'x'));
    MakeFile(drive / "old.txt", "12345");
    ASSERT_TRUE(SetFileDate("C:\\new.txt", test::LocalSeconds(2004, 12, 31, 23, 59, 58)));
    ASSERT_TRUE(SetFileDate("C:\\old.txt", test::LocalSeconds(2003, 2, 1, 4, 5, 6)));
    user.WillAnswer("Replace it?", "yes");
    EXPECT_TRUE(AskReplaceFile("C:\\new.txt", "C:\\old.txt"));
    EXPECT_THAT(user.Asked(), ElementsAre("Replace file: \r\n"
                                          "C:\\old.txt\r\n"
                                          "Size: 5\r\n"
                                          "Date: 01/02/2003 04.05.06\r\n"
                                          "with file:\r\n"
                                          "C:\\new.txt\r\n"
                                          "Size: 2 Kb\r\n"
                                          "Date: 31/12/2004 23.59.58\r\n"
                                          "\r\n"
                                          "Replace it?"));
    user.WillAnswer("Replace it?", "no");
    EXPECT_FALSE(AskReplaceFile("C:\\new.txt", "C:\\old.txt"));
}

} // namespace
} // namespace kelvash
