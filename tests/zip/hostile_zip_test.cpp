// Zips and destinations that are out to do harm, or merely odd.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <random>

#include "foundation/files.h"
#include "support/foundation_home.h"
#include "support/zip_bytes.h"
#include "support/zip_program.h"
#include "zip/hostile_zip_home.h"
#include "zip/zip.h"
#include "zip/zip_module.h"

namespace kelvash::zip {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeEntry;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(HostileZip, AnEmptyFileIsNoZip) {
    MakeFile(drive / "a.zip", "");
    EXPECT_FALSE(ListZip("C:\\a.zip", message));
    EXPECT_EQ(message, "Not a zip archive");
    EXPECT_FALSE(Extract());
    EXPECT_EQ(message, "I can not open zip file: a.zip (Not a zip archive)");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(HostileZip, WipingSparesTheZipItself) {
    MakeFile(out / "A.zip", test::MakeZipBytes({MakeEntry("a.txt", "one")}));
    EXPECT_TRUE(Extract(ZipFolders::Kept, Wipe::Yes, "C:\\out\\a.zip"));
    EXPECT_THAT(OutNames(), ElementsAre("A.zip", "a.txt"));
}

TEST_F(HostileZip, FoldersWithoutFilesAreMade) {
    user.MayBeTold("skipped because they should be extracted out of the level folder");
    Put({MakeEntry("graphics/wads/", ""), MakeEntry("../up/", "")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(OutNames(), ElementsAre("graphics/", "graphics/wads/"));
    EXPECT_FALSE(Exists(drive / "up"));
    EXPECT_EQ(user.Told().size(), 1U);
    EXPECT_TRUE(Extract(ZipFolders::Flat));
    EXPECT_THAT(entries, IsEmpty());
}

TEST_F(HostileZip, AFileWhereAFolderIsNeededFails) {
    user.MayBeTold("Error extracting following entries");
    Put({MakeEntry("a", "file"), MakeEntry("a/b.txt", "x"), MakeEntry("c.txt", "c")});
    EXPECT_FALSE(Extract());
    EXPECT_THAT(OutNames(), ElementsAre("a", "c.txt"));
    EXPECT_EQ(message,
              "Error extracting following entries of zip file a.zip:\r\n"
              "a/b.txt: I can not write the file");
}

TEST_F(HostileZip, ANameThatNoFileCanHaveLeavesOutThatEntryOnly) {
    const std::string longest(251, 'n');
    std::string wide; // 86 signs of three bytes
    for (int i = 0; i < 86; ++i)
        wide += "\u3042";
    Put({MakeEntry(longest + ".txt", "x"), MakeEntry("DATA/" + longest + "s.txt", "too long"),
         MakeEntry(wide + "/deep.txt", "x"), MakeEntry("c.txt", "c")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(OutNames(), ElementsAre("c.txt", longest + ".txt"));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Warning: following entries of zip file a.zip have been skipped "
                            "because their names are too long:\r\nDATA/" +
                            longest + "s.txt\r\n" + wide + "/deep.txt"));
}

TEST_F(HostileZip, SeveralZipsCountAsOne) {
    constexpr double kGigabyte = 1073741824;
    test::ZipBytes big = MakeEntry("big", "x");
    big.declared = 600U << 20;
    Put({big});
    ZipBudget budget;
    budget.Packed = 1000;
    budget.Unpacked = 1.6 * kGigabyte;
    Unzipping job{"C:\\a.zip", "C:\\out"};
    job.Budget = &budget;
    user.WillAnswer("With the files of zip a.zip all unpacked files need 2.2 Gb, that is ", "no");
    EXPECT_EQ(UnzipToFolder(job, bar).End, UnzipEnd::Stopped);
    EXPECT_THAT(OutNames(), IsEmpty());
    user.WillAnswer("With the files of zip a.zip all unpacked files need 2.2 Gb", "yes");
    EXPECT_EQ(UnzipToFolder(job, bar).End, UnzipEnd::Failed); // it lies
    EXPECT_EQ(UnzipToFolder(job, bar).End, UnzipEnd::Failed); // within what was agreed to
    budget.Unpacked = 4.5 * kGigabyte;
    user.WillAnswer("With the files of zip a.zip all unpacked files need 5.1 Gb", "no");
    EXPECT_EQ(UnzipToFolder(job, bar).End, UnzipEnd::Stopped);
    budget.Packed = 100 * kGigabyte;
    budget.Unpacked = 20 * kGigabyte;
    EXPECT_EQ(UnzipToFolder(job, bar).End, UnzipEnd::Failed); // much, but no bomb
}

// The name that an unfinished file has for a while.
TEST_F(HostileZip, AnEntryMayNotHaveTheNameOfUnfinishedFiles) {
    MakeFile(out / "a.txt", "old");
    Put({MakeEntry("KELVASH.tmp", "mine"), MakeEntry("a.txt", "new"), MakeEntry("kelvash.tmp/x", "x")});
    EXPECT_TRUE(Extract());
    EXPECT_THAT(OutNames(), ElementsAre("a.txt"));
    EXPECT_EQ(BytesOf(out / "a.txt"), "new");
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told()[0], testing::EndsWith(":\r\nKELVASH.tmp\r\nkelvash.tmp/x"));
}

// The last declares more bytes than a number of bytes can be.
TEST_F(HostileZip, ASumOfSizesThatOverflowsIsStillMuch) {
    std::vector<test::ZipBytes> all;
    for (int i = 0; i < 3; ++i) {
        test::ZipBytes entry = MakeEntry("huge" + std::to_string(i), "x");
        entry.declared = 0xFFFFFFFFU;
        entry.extra = std::string("\1\0\x08\0\0\0\0\0\0\0\0\x70", 12);
        all.push_back(entry);
    }
    Put(all);
    ASSERT_EQ(ListZip("C:\\a.zip", message)->back().Size, 0x7000000000000000);
    user.WillAnswer("The files of zip a.zip need 8589934592.0 Gb, but in drive [C:]", "no");
    EXPECT_FALSE(Extract());
    EXPECT_THAT(OutNames(), IsEmpty());
}

// One of 256 wrong passwords opens an entry of the traditional kind, and only its data show it.
TEST_F(HostileZip, AWrongPasswordIsAlwaysCalledOne) {
    MakeFile(drive / "in" / "a.txt", "secret text");
    ASSERT_TRUE(test::MakeZipOf(drive / "in", drive / "a.zip", "sesame"));
    for (int i = 0; i < 600; ++i) {
        UnzipClass unzip;
        UnzipSettings("C:\\a.zip", "C:\\out", ZipFolders::Flat, unzip);
        unzip.TestZip = true;
        user.WillAnswer("is encrypted", "wrong" + std::to_string(i));
        user.WillAnswer("is wrong", "cancel");
        EXPECT_FALSE(unzip.UnZip({}));
        EXPECT_TRUE(unzip.NoPassword);
        EXPECT_THAT(unzip.Failed, IsEmpty());
    }
}

TEST_F(HostileZip, TheExactTimeOfAnEntryCounts) {
    test::ZipBytes entry = MakeEntry("a.txt", "x");
    entry.extra = std::string("UT\5\0\1\x01\xCA\x9A\x3B", 9); // 1000000001, an odd second
    Put({entry});
    EXPECT_TRUE(Extract());
    EXPECT_EQ(FileTime("C:\\out\\a.txt"), 1000000001);
}

TEST_F(HostileZip, TheBarMovesWithinAnEntry) {
    std::string noise(3000000, 'x'); // the writing is measured by what comes out packed
    std::minstd_rand random;
    for (char& c : noise)
        c = static_cast<char>(random());
    MakeFile(drive / "in" / "big.bin", noise);
    EXPECT_TRUE(ZipFolder("C:\\in", "C:\\a.zip", entries, Recurse::No, bar, message));
    EXPECT_GT(user.percents.size(), 10U);
    EXPECT_TRUE(std::is_sorted(user.percents.begin(), user.percents.end()));
    user.percents.clear();
    bar = {};
    EXPECT_TRUE(Extract());
    EXPECT_GT(user.percents.size(), 10U);
    EXPECT_TRUE(std::is_sorted(user.percents.begin(), user.percents.end()));
    EXPECT_EQ(user.percents.back(), 100);
}

TEST_F(OddZipTarget, AZipInItsOwnFolderDoesNotHoldItself) {
    MakeFile(drive / "in" / "Old.zip", "the old one");
    EXPECT_TRUE(Make("C:\\in\\old.ZIP"));
    EXPECT_THAT(entries, ElementsAre("C:\\in\\a.txt"));
    EXPECT_EQ(ListZip("C:\\in\\old.zip", message)->size(), 1U);
}

TEST_F(OddZipTarget, AFolderWithoutFilesMakesNoZipAndLeavesTheOldOne) {
    fs::remove(drive / "in" / "a.txt");
    MakeFile(drive / "a.zip", test::MakeZipBytes({MakeEntry("a.txt", "one")}));
    EXPECT_FALSE(Make("C:\\a.zip"));
    EXPECT_NE(message, "");
    EXPECT_EQ(ListZip("C:\\a.zip", message)->size(), 1U);
}

} // namespace
} // namespace kelvash::zip
