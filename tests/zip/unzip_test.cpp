// Extraction: what is written, refused and told.
#include <gmock/gmock.h>

#include <chrono>
#include <cstdlib>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "support/foundation_home.h"
#include "support/local_time.h"
#include "support/zip_bytes.h"
#include "support/zip_program.h"
#include "zip/unzip_home.h"
#include "zip/zip.h"
#include "zip/zip_module.h"

namespace kelvash::zip {
namespace {

using namespace std::string_literals;
using test::MakeEntry;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

TEST_F(Unzip, WritesFilesWithTheirFoldersOrFlat) {
    Put({MakeEntry("readme.txt", "Hi"), MakeEntry("DATA/", ""), MakeEntry("DATA/maze.tr4", "level")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(Tree(), ElementsAre("DATA/maze.tr4", "readme.txt"));
    EXPECT_THAT(entries, ElementsAre("C:\\out\\readme.txt", "C:\\out\\DATA\\maze.tr4"));
    EXPECT_EQ(message, "  inflating: maze.tr4");
    EXPECT_TRUE(Extract(ZipFolders::Flat, Wipe::Yes));
    EXPECT_EQ(Bytes("maze.tr4"), "level");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Unzip, FilesKeepTheirTime) {
    Put({MakeEntry("a.txt", "Hi")}); // 2025-01-01 12:00, local time
    EXPECT_TRUE(Extract());
    const auto seconds = FileTime("C:\\out\\a.txt");
    ASSERT_TRUE(seconds.has_value());
    EXPECT_NEAR(static_cast<double>(*seconds), 1735732800.0, 14 * 3600.0);
}

TEST_F(Unzip, AnEmptyArchiveIsASuccessWithoutProgress) {
    PutBytes("PK\5\6"s + std::string(18, '\0'));
    EXPECT_TRUE(Extract());
    EXPECT_THAT(entries, IsEmpty());
    EXPECT_EQ(user.last_percent, -1);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Unzip, WipingTakesTheFilesOfTheDestinationFirst) {
    test::MakeFile(drive / "out/old.txt", "old");
    test::MakeFile(drive / "out/below/kept.txt", "kept");
    Put({MakeEntry("a.txt", "Hi")});
    EXPECT_TRUE(Extract(ZipFolders::Kept, Wipe::Yes));
    EXPECT_THAT(Tree(), ElementsAre("a.txt", "below/kept.txt"));
}

TEST_F(Unzip, AFileThatExistsIsReplacedUnderItsSpelling) {
    test::MakeFile(drive / "out/Data/README.TXT", "old");
    Put({MakeEntry("DATA/readme.txt", "new")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(Tree(), ElementsAre("Data/README.TXT"));
    EXPECT_EQ(Bytes("Data/README.TXT"), "new");
}

TEST_F(Unzip, EntriesThatLeadOutAreRefusedAndToldAndTheRestIsExtracted) {
    user.MayBeTold("skipped because they should be extracted out of the level folder");
    std::vector<test::ZipBytes> all;
    for (const char* name :
         {"../evil1.txt", "/evil2.txt", "..\\evil3.txt", "C:\\evil4.txt", "a/../../evil5.txt", "c:evil6.txt",
          "\\\\host\\share\\evil7.txt", "..", "con.txt", "x/LPT1", "...", "a/ . /evil8.txt"})
        all.push_back(MakeEntry(name, "evil"));
    all.push_back(MakeEntry("good.txt", "good"));
    all.push_back(MakeEntry("data\\b.txt", "back-slash"));
    Put(all);
    EXPECT_TRUE(Extract());
    EXPECT_THAT(Tree(), ElementsAre("data/b.txt", "good.txt"));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: Warning: following entries of zip file a.zip have been skipped because "
                    "they should be extracted out of the level folder:\r\n../evil1.txt\r\n/evil2.txt\r\n"
                    "..\\evil3.txt\r\nC:\\evil4.txt\r\na/../../evil5.txt\r\nc:evil6.txt\r\n"
                    "\\\\host\\share\\evil7.txt\r\n..\r\ncon.txt\r\nx/LPT1\r\n...\r\na/ . /evil8.txt"));
    for (int i = 1; i <= 8; ++i)
        EXPECT_FALSE(test::Exists(drive / ("evil" + std::to_string(i) + ".txt"))) << i;
    EXPECT_TRUE(Extract(ZipFolders::Flat, Wipe::Yes)); // flat they are refused as well
    EXPECT_FALSE(test::Exists(drive / "out/evil1.txt"));
}

TEST_F(Unzip, OnlySomeNamesAreTold) {
    std::vector<test::ZipBytes> all;
    for (int i = 0; i < 25; ++i)
        all.push_back(MakeEntry("../" + std::to_string(i), ""));
    Put(all);
    EXPECT_TRUE(Extract());
    EXPECT_THAT(user.Told(), ElementsAre(testing::EndsWith("\r\n../19\r\n... and 5 more")));
}

TEST_F(Unzip, OfTwoEntriesOfOneNameTheFirstStays) {
    Put({MakeEntry("a.txt", "first"), MakeEntry("A.TXT", "second"), MakeEntry("x/a.txt", "first"),
         MakeEntry("a.txt", "first")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(Tree(), ElementsAre("a.txt", "x/a.txt"));
    EXPECT_EQ(Bytes("a.txt"), "first");
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Warning: following entries of zip file a.zip have been "
                            "skipped because there is already a file with same name:\r\nA.TXT"));
    user.Forget();
    EXPECT_TRUE(Extract(ZipFolders::Flat, Wipe::Yes));
    EXPECT_EQ(user.Told().size(), 1U); // x/a.txt is the same file again
}

TEST_F(Unzip, NamesComeOutInTheirCodePage) {
    Put({MakeEntry("Gr\x94\xE1"
                   "e.txt",
                   "437"),
         MakeEntry("Stra\xDF"
                   "e \xFC"
                   "ber.txt",
                   "1252"),
         MakeEntry("Łódź.txt", "UTF-8"), MakeEntry("caf\x82.txt", "437"),
         MakeEntry("l\x92\xE9toile.txt", "1252"), MakeEntry("\xB0\xB1.txt", "437")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(Tree(), testing::UnorderedElementsAre("Größe.txt", "Straße über.txt", "Łódź.txt", "café.txt",
                                                      "l’étoile.txt", "░▒.txt"));
}

TEST_F(Unzip, SignsThatNoNameCanHoldBecomeLines) {
    Put({MakeEntry("ab: \"c\"?<d>|*\t.txt", "x")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(Tree(), ElementsAre("ab_ _c___d____.txt"));
}

TEST_F(Unzip, DamagedEntriesFailAndTheOthersAreExtracted) {
    test::ZipBytes wrong = MakeEntry("wrong.txt", "bytes");
    wrong.crc ^= 1;
    test::ZipBytes unknown = MakeEntry("deflate64.txt", "bytes");
    unknown.method = 9;
    Put({wrong, unknown, MakeEntry("good.txt", "good")});
    test::MakeFile(drive / "out/wrong.txt", "the old one");
    EXPECT_FALSE(Extract());
    EXPECT_THAT(Tree(), ElementsAre("good.txt", "wrong.txt"));
    EXPECT_EQ(Bytes("wrong.txt"), "the old one");
    EXPECT_EQ(message,
              "Error extracting following entries of zip file a.zip:\r\n"
              "wrong.txt: the data are damaged\r\n"
              "deflate64.txt: compression method 9 is not supported");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Unzip, AnEntryNeverGetsLongerThanItDeclares) {
    user.MayBeTold("Error extracting following entries");
    test::ZipBytes lying = MakeEntry("lying.txt", std::string(100, 'x'));
    lying.declared = 10;
    Put({lying});
    EXPECT_FALSE(Extract());
    EXPECT_THAT(Tree(), IsEmpty());
}

TEST_F(Unzip, TruncatedZipsAreRefusedAtEveryLength) {
    const std::string whole = test::MakeZipBytes({MakeEntry("a.txt", "content"), MakeEntry("b.txt", "more")});
    for (std::size_t length = 0; length < whole.size(); ++length) {
        PutBytes(whole.substr(0, length));
        EXPECT_FALSE(Extract()) << length;
        EXPECT_THAT(Tree(), IsEmpty()) << length;
    }
    EXPECT_THAT(message, testing::StartsWith("I can not open zip file: a.zip ("));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Unzip, AnEncryptedZipAsksOnceForItsPassword) {
    test::MakeFile(drive / "in/a.txt", "secret text");
    test::MakeFile(drive / "in/b.txt", "more of it");
    ASSERT_TRUE(test::MakeZipOf(drive / "in", drive / "a.zip", "sesame"));
    user.WillAnswer("Encrypted zip file\nThe zip file a.zip is encrypted.\r\nType its password:", "sesame");
    EXPECT_TRUE(Extract());
    EXPECT_EQ(Bytes("a.txt"), "secret text");
    EXPECT_EQ(Bytes("b.txt"), "more of it");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Unzip, ABombIsAskedAbout) {
    std::vector<test::ZipBytes> all;
    for (int i = 0; i < 3; ++i) {
        test::ZipBytes bomb = MakeEntry("bomb" + std::to_string(i), "x");
        bomb.declared = 0xF0000000U;
        all.push_back(bomb);
    }
    Put(all);
    const bool room = FreeSpace("C:\\") > 12LL * 1024 * 1024 * 1024;
    user.WillAnswer(
        room ? "The files of zip a.zip need 11.3 Gb, that is " : "need 11.3 Gb, but in drive [C:]", "no");
    EXPECT_FALSE(Extract());
    EXPECT_THAT(Tree(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_EQ(message, "Stopped by the user");
}

TEST_F(Unzip, MoreThanTheFreeSpaceIsAskedAbout) {
    std::vector<test::ZipBytes> all;
    for (int i = 0; i < 2000; ++i) { // some 8 TB
        test::ZipBytes huge = MakeEntry(std::to_string(i), "");
        huge.declared = 0xFFFFFFF0U;
        all.push_back(huge);
    }
    Put(all);
    user.WillAnswer("but in drive [C:] there are only ", "no");
    EXPECT_FALSE(Extract());
    EXPECT_THAT(Tree(), IsEmpty());
}

TEST_F(Unzip, ManyEntriesInOneFolderAreNoTrouble) {
    constexpr int kCount = 10000; // a search per entry would take minutes
    std::vector<test::ZipBytes> all;
    for (int i = 0; i < kCount; ++i)
        all.push_back(MakeEntry("f" + std::to_string(i), ""));
    Put(all);
    EXPECT_EQ(ListZip("C:\\a.zip", message)->size(), static_cast<std::size_t>(kCount));
    EXPECT_TRUE(Extract());
    EXPECT_EQ(entries.size(), static_cast<std::size_t>(kCount));
    EXPECT_EQ(user.last_percent, 100);
}

TEST_F(Unzip, ASpecifiedStopEndsTheWork) {
    Put({MakeEntry("a.txt", "a"), MakeEntry("b.txt", "b")});
    user.stop = true;
    EXPECT_FALSE(Extract());
    EXPECT_EQ(message, "Stopped by the user");
    EXPECT_THAT(Tree(), IsEmpty());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Unzip, ListingGivesNamesAndSizesWithoutExtracting) {
    Put({MakeEntry("DATA/", ""), MakeEntry("DATA/maze.tr4", "level"), MakeEntry("caf\x82.txt", "")});
    const auto listed = ListZip("C:\\a.zip", message);
    ASSERT_TRUE(listed && listed->size() == 2);
    EXPECT_EQ((*listed)[0].Name, "DATA\\maze.tr4");
    EXPECT_EQ((*listed)[0].Size, 5);
    EXPECT_EQ((*listed)[1].Name, "café.txt");
    EXPECT_THAT(Tree(), IsEmpty());
    EXPECT_FALSE(ListZip("C:\\none.zip", message).has_value());
    EXPECT_NE(message, "");
}

TEST_F(Unzip, ThePropertiesOfTheClassAct) {
    Put({MakeEntry("DATA/my level.tr4", "new"), MakeEntry("readme.txt", "new")});
    UnzipClass unzip;
    unzip.ZipFileName = "C:\\a.zip";
    unzip.ExtractDir = "C:\\out";
    unzip.TestZip = true;
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_THAT(Tree(), IsEmpty());
    unzip.TestZip = false;
    unzip.ExtractList = {"data\\*.tr4"};
    unzip.SpaceToUnderScore = true;
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_THAT(Tree(), ElementsAre("DATA/my_level.tr4"));
    unzip.CaseSensitive = true;
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_THAT(unzip.Written, IsEmpty());
    unzip.ExtractList = {"readme.txt"};
    test::MakeFile(drive / "out/readme.txt", "old");
    unzip.OverWriteFiles = false;
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_EQ(Bytes("readme.txt"), "old");
    unzip.OverWriteFiles = true;
    unzip.ExtractOnlyNewer = true;
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_EQ(Bytes("readme.txt"), "old"); // it is of today
    SetFileDate("C:\\out\\readme.txt", 1000000000);
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_EQ(Bytes("readme.txt"), "new");
    unzip.ExtractOnlyNewer = false;
    unzip.PromptOverwrite = true;
    test::MakeFile(drive / "out/readme.txt", "old");
    user.WillAnswer("Replace file", "no");
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_EQ(Bytes("readme.txt"), "old");
}

TEST_F(Unzip, MasksWithRegardToCaseAreMasksToo) {
    Put({MakeEntry("DATA/a.tr4", "1"), MakeEntry("DATA/b.TR4", "2"), MakeEntry("data/c.tr4", "3"),
         MakeEntry("DATA/plain", "4")});
    UnzipClass unzip;
    unzip.ZipFileName = "C:\\a.zip";
    unzip.ExtractDir = "C:\\out";
    unzip.CaseSensitive = true;
    unzip.ExtractList = {"DATA\\?.tr4", "*pl*.*"};
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_THAT(unzip.Written, ElementsAre("C:\\out\\DATA\\a.tr4", "C:\\out\\DATA\\plain"));
}

TEST_F(Unzip, AListOfEntriesLeavesTheOthersInTheZip) {
    Put({MakeEntry("maze.tr4", "level"), MakeEntry("readme.txt", "Hi"), MakeEntry("DATA/deep.txt", "deep")});
    Unzipping job{"C:\\a.zip", "C:\\out"};
    job.Entries = {"*.TXT"};
    ZipBudget budget;
    job.Budget = &budget;
    const Unzipped unzipped = UnzipToFolder(job, bar);
    EXPECT_EQ(unzipped.End, UnzipEnd::Whole);
    EXPECT_THAT(Tree(), ElementsAre("deep.txt", "readme.txt"));
    EXPECT_EQ(budget.Unpacked, 6);
}

TEST_F(Unzip, TheQuestionBeforeOverwritingShowsTheEntrysOwnFacts) {
    test::ZipBytes entry = MakeEntry("DATA/my level.tr4", std::string(2048, 'x'));
    const std::int64_t time = test::LocalSeconds(2004, 12, 31, 23, 59, 58);
    entry.extra = "UT\5\0\1"s; // and the modification time
    for (int shift = 0; shift < 32; shift += 8)
        entry.extra += static_cast<char>(time >> shift);
    Put({entry});
    test::MakeFile(drive / "out/DATA/my level.tr4", "12345");
    SetFileDate("C:\\out\\DATA\\my level.tr4", test::LocalSeconds(2003, 2, 1, 4, 5, 6));
    UnzipClass unzip;
    unzip.ZipFileName = "C:\\a.zip";
    unzip.ExtractDir = "C:\\out";
    unzip.PromptOverwrite = true;
    user.WillAnswer("Replace file", "yes");
    EXPECT_TRUE(unzip.UnZip({}));
    EXPECT_THAT(user.Asked(), ElementsAre("Replace file: \r\n"
                                          "C:\\out\\DATA\\my level.tr4\r\n"
                                          "Size: 5\r\n"
                                          "Date: 01/02/2003 04.05.06\r\n"
                                          "with file:\r\n"
                                          "DATA/my level.tr4\r\n"
                                          "Size: 2 Kb\r\n"
                                          "Date: 31/12/2004 23.59.58\r\n"
                                          "\r\n"
                                          "Replace it?"));
}

TEST_F(Unzip, AToolThatCannotBeRunIsTold) {
    test::MakeFile(home / "unzip.exe", "no program");
    EXPECT_FALSE(UnzipWithTool("C:\\a.zip", "C:\\out", bar));
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told().front(), StartsWith("critical: Error executing utility: "));
    EXPECT_THAT(user.Told().front(), HasSubstr("unzip.exe"));
}

} // namespace
} // namespace kelvash::zip
