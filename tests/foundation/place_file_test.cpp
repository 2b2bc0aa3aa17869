#include "foundation/place_file.h"

#include "foundation/files.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;

class PlacingFiles : public test::FoundationHome {};

TEST_F(PlacingFiles, GivesASecondPlaceAndKeepsTheDate) {
    MakeFile(drive / "a/one", "bytes");
    std::filesystem::create_directories(drive / "b");
    ASSERT_TRUE(SetFileDate("C:\\a\\one", 1'000'000'000));
    EXPECT_TRUE(PlaceFileNew("C:\\a\\one", "C:\\b\\two"));
    EXPECT_TRUE(CopyFileNew("C:\\a\\one", "C:\\b\\three"));
    for (const char* place : {"C:\\b\\two", "C:\\b\\three"}) {
        EXPECT_EQ(ReadWholeFile(place), "bytes");
        EXPECT_EQ(FileTime(place), 1'000'000'000);
    }
    MakeFile(drive / "a/one", "others");
    EXPECT_EQ(BytesOf(drive / "b/three"), "bytes"); // bytes of its own
    EXPECT_TRUE(LeavePlace("C:\\a\\one"));
    EXPECT_FALSE(Exists(drive / "a/one"));
    EXPECT_TRUE(Exists(drive / "b/two"));
    EXPECT_TRUE(LeavePlace("C:\\a\\one"));
    EXPECT_FALSE(Exists(drive / "b/Kelvash.tmp"));
}

TEST_F(PlacingFiles, ReplacesNothingInAnySpelling) {
    MakeFile(drive / "a/one", "new");
    MakeFile(drive / "SAVE.0", "old");
    std::filesystem::create_directories(drive / "folder");
    for (const char* taken : {"C:\\save.0", "C:\\SAVE.0", "C:\\folder"}) {
        EXPECT_FALSE(PlaceFileNew("C:\\a\\one", taken));
        EXPECT_FALSE(CopyFileNew("C:\\a\\one", taken));
    }
    EXPECT_EQ(BytesOf(drive / "SAVE.0"), "old");
    EXPECT_FALSE(Exists(drive / "Kelvash.tmp"));
}

TEST_F(PlacingFiles, FailsWithoutASourceOrAFolder) {
    MakeFile(drive / "one", "x");
    EXPECT_FALSE(PlaceFileNew("C:\\none", "C:\\two"));
    EXPECT_FALSE(CopyFileNew("C:\\none", "C:\\two"));
    EXPECT_FALSE(PlaceFileNew("C:\\one", "C:\\no folder\\two"));
    EXPECT_FALSE(Exists(drive / "two"));
    EXPECT_FALSE(IsLink("C:\\one"));
}

} // namespace
} // namespace kelvash
