// Zips and destinations that are links or may not be written.
#include <gmock/gmock.h>

#include "zip/hostile_zip_home.h"

namespace kelvash::zip {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeEntry;
using test::MakeFile;

TEST_F(HostileZip, NothingIsWrittenThroughALinkThatStandsThere) {
    MakeFile(drive / "precious.txt", "mine");
    fs::create_symlink(drive / "precious.txt", out / "a.txt");
    fs::create_symlink(drive / "precious.txt", out / "Kelvash.tmp");
    fs::create_symlink(drive / "made.txt", out / "b.txt");
    Put({MakeEntry("a.txt", "new"), MakeEntry("b.txt", "new")});
    EXPECT_TRUE(Extract());
    EXPECT_EQ(BytesOf(drive / "precious.txt"), "mine");
    EXPECT_FALSE(Exists(drive / "made.txt"));
    EXPECT_FALSE(fs::is_symlink(out / "a.txt"));
    EXPECT_EQ(BytesOf(out / "b.txt"), "new");
}

TEST_F(OddZipTarget, ALinkStaysOne) {
    MakeFile(drive / "store" / "real.zip", "the old one");
    fs::create_symlink(drive / "store" / "real.zip", drive / "a.zip");
    EXPECT_TRUE(Make("C:\\a.zip"));
    EXPECT_TRUE(fs::is_symlink(drive / "a.zip"));
    EXPECT_EQ(ListZip("C:\\store\\real.zip", message)->size(), 1U);
}

TEST_F(OddZipTarget, AReadOnlyFileStands) {
    MakeFile(drive / "a.zip", "the old one");
    fs::permissions(drive / "a.zip", fs::perms(0444));
    EXPECT_FALSE(Make("C:\\a.zip"));
    EXPECT_NE(message, "");
    EXPECT_EQ(BytesOf(drive / "a.zip"), "the old one");
}

TEST_F(OddZipTarget, NamesThatAreNoUtf8AreStoredAsText) {
    MakeFile(drive / "in" /
                 "Gr\xF6\xDF"
                 "e.txt",
             "x");
    EXPECT_TRUE(Make("C:\\a.zip"));
    EXPECT_EQ(ListZip("C:\\a.zip", message)->back().Name, "Größe.txt");
}

} // namespace
} // namespace kelvash::zip
