#include "foundation/files.h"
#include "foundation/place_file.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

class PlacedFiles : public test::FoundationHome {
  protected:
    static std::string Read(const std::string& path) { return ReadWholeFile(path); }
};

TEST_F(PlacedFiles, HaveTwoPlacesUntilOneIsLeft) {
    test::MakeFile(drive / "a", "bytes");
    EXPECT_TRUE(PlaceFileNew("C:\\a", "C:\\b"));
    EXPECT_EQ(Read("C:\\b"), "bytes");
    EXPECT_TRUE(LeavePlace("C:\\a"));
    EXPECT_FALSE(FileExists("C:\\a"));
    EXPECT_EQ(Read("C:\\b"), "bytes");
    EXPECT_TRUE(LeavePlace("C:\\a")); // nothing is there
}

TEST_F(PlacedFiles, ReplaceNothing) {
    test::MakeFile(drive / "a", "bytes");
    test::MakeFile(drive / "b", "another");
    std::filesystem::create_directories(drive / "folder");
    for (const char* target : {"C:\\b", "C:\\folder"}) {
        EXPECT_FALSE(PlaceFileNew("C:\\a", target));
        EXPECT_FALSE(CopyFileNew("C:\\a", target));
    }
    EXPECT_EQ(Read("C:\\b"), "another");
    EXPECT_FALSE(PlaceFileNew("C:\\none", "C:\\c"));
    EXPECT_FALSE(CopyFileNew("C:\\none", "C:\\c"));
    EXPECT_FALSE(FileExists("C:\\c"));
}

TEST_F(PlacedFiles, ACopyHasBytesAndDateOfItsOwn) {
    test::MakeFile(drive / "a", "bytes");
    ASSERT_TRUE(SetFileDate("C:\\a", 1'000'000'000));
    EXPECT_TRUE(CopyFileNew("C:\\a", "C:\\b"));
    EXPECT_EQ(FileTime("C:\\b"), 1'000'000'000);
    EXPECT_FALSE(std::filesystem::equivalent(drive / "a", drive / "b"));
    EXPECT_FALSE(FileExists("C:\\Kelvash.tmp"));
}

// A run that was killed between the link and its end leaves the partial file as a second name.
TEST_F(PlacedFiles, WhatALeftOverNameIsOfStaysAsItIs) {
    test::MakeFile(drive / "a", "bytes");
    test::MakeFile(drive / "precious", "precious");
    for (int i = 0; i < 2; ++i) {
        std::filesystem::create_hard_link(drive / "precious", drive / "Kelvash.tmp");
        EXPECT_TRUE(i == 0 ? CopyFileNew("C:\\a", "C:\\b") : CopyFileWhole("C:\\a", "C:\\b"));
        EXPECT_EQ(Read("C:\\precious"), "precious");
        EXPECT_EQ(Read("C:\\b"), "bytes");
        EXPECT_FALSE(FileExists("C:\\Kelvash.tmp"));
    }
}

TEST_F(PlacedFiles, FoldersAndFilesStand) {
    test::MakeFile(drive / "in/a", "bytes");
    EXPECT_TRUE(AnythingStands("C:\\in"));
    EXPECT_TRUE(AnythingStands("C:\\in\\A"));
    EXPECT_FALSE(AnythingStands("C:\\in\\b"));
    EXPECT_TRUE(FlushFolder("C:\\in"));
}

} // namespace
} // namespace kelvash
