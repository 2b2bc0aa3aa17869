// Pictures of a level that are links to others.
#include <gmock/gmock.h>
#include <unistd.h>

#include <filesystem>

#include "companion/shot_commands.h"
#include "companion/shots_home.h"
#include "core/profile.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;

class ShotLinks : public ShotsHome {
  protected:
    ShotLinks() {
        Take("a.bmp");
        std::filesystem::create_symlink(folder / "a.bmp", folder / "link.jpg");
    }
};

TEST_F(ShotLinks, AreNotSavedOverWhatTheyLeadTo) {
    user.WillAnswer("Save current screenshot", PathOf("link.jpg"));
    EXPECT_TRUE(companion::SaveShotAs(1, PathOf("a.bmp")));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotLinks, GoByThemselves) {
    user.WillAnswer("Delete screen-shot link.jpg", "yes");
    EXPECT_TRUE(companion::DeleteShot(1, PathOf("link.jpg")));
    EXPECT_THAT(Names(), ElementsAre("a.bmp"));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
}

TEST_F(ShotLinks, AreNotPutInThePlaceOfWhatTheyLeadTo) {
    std::filesystem::create_symlink(folder / "a.bmp", folder / "link.bmp");
    std::string path = PathOf("link.bmp");
    user.WillAnswer("Rename screen-shot", "a");
    EXPECT_FALSE(companion::RenameShot(1, path));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: Both names lead to one image already: " + PathOf("a.bmp")));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
    EXPECT_EQ(path, PathOf("link.bmp"));
}

// On a disk that has regard to it they are two pictures.
class ShotsOfOneSpelling : public ShotsHome {
  protected:
    ShotsOfOneSpelling() {
        Take("a.bmp");
        Take("A.bmp", kRedBlue + "another");
    }
    void SetUp() override {
        if (Names().size() != 2) GTEST_SKIP() << "this disk holds no two spellings of a name";
    }
};

TEST_F(ShotsOfOneSpelling, DoNotReplaceEachOtherUnasked) {
    std::string path = PathOf("a.bmp");
    user.WillAnswer("Rename screen-shot", "A");
    user.WillAnswer("Replace file", "no");
    EXPECT_FALSE(companion::RenameShot(1, path));
    EXPECT_THAT(Names(), testing::UnorderedElementsAre("A.bmp", "a.bmp"));
    user.WillAnswer("Rename screen-shot", "A");
    user.WillAnswer("Replace file", "yes");
    EXPECT_TRUE(companion::RenameShot(1, path));
    EXPECT_THAT(Names(), ElementsAre("A.bmp"));
    EXPECT_EQ(BytesOf(folder / "A.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotsOfOneSpelling, AreSavedOverEachOther) {
    user.WillAnswer("Save current screenshot", PathOf("A.bmp"));
    EXPECT_TRUE(companion::SaveShotAs(1, PathOf("a.bmp")));
    EXPECT_EQ(BytesOf(folder / "A.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 2 * 62);
}

TEST_F(ShotLinks, OpenInTheGraphicalProgram) {
    MakeFile(drive / "paint", "#!/bin/sh\nprintf '%s' \"$1\" > '" + (root / "opened").string() + "'\n");
    std::filesystem::permissions(drive / "paint", std::filesystem::perms::owner_all);
    core::profile.GraphicsProgram = "C:\\paint";
    EXPECT_TRUE(companion::OpenShotEditor(PathOf("a.bmp")));
    for (int i = 0; i < 500 && !(Exists(root / "opened") && !BytesOf(root / "opened").empty()); ++i)
        usleep(10'000);
    EXPECT_EQ(BytesOf(root / "opened"), (folder / "a.bmp").string())
        << "a native program takes a native path";
}

} // namespace
} // namespace kelvash::test
