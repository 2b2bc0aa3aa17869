#include "companion/shot_names.h"

#include <gmock/gmock.h>

#include "companion/shots_home.h"
#include "foundation/path.h"
#include "foundation/text.h"

namespace kelvash::test {
namespace {

using companion::NamedShotPath;
using companion::NextShotPath;

class ShotNames : public ShotsHome {
  protected:
    static trle_state::LevelPlace Named(const std::string& name) {
        trle_state::LevelPlace level = core::PlaceOf(1);
        level.Name = name;
        return level;
    }
    static std::string Next(const std::string& name, const std::string& extension = {}) {
        return FileNameOf(NextShotPath(Named(name), extension));
    }
};

TEST_F(ShotNames, CountFromOne) {
    EXPECT_EQ(NextShotPath(core::PlaceOf(1), {}), PathOf("1) City.jpg"));
    EXPECT_EQ(NextShotPath(core::PlaceOf(1), ".bmp"), PathOf("1) City.bmp"));
    Take("1) City.jpg");
    EXPECT_EQ(Next("City"), "2) City.jpg");
    EXPECT_EQ(Next("City", ".bmp"), "1) City.bmp");
}

TEST_F(ShotNames, FillGaps) {
    for (const char* name : {"1) city.JPG", "2) City.jpg", "3) City.jpg"})
        Take(name);
    EXPECT_EQ(Next("City"), "4) City.jpg");
    ASSERT_TRUE(DeleteFile(PathOf("2) City.jpg")));
    EXPECT_EQ(Next("City"), "2) City.jpg");
}

TEST_F(ShotNames, PassOverAFolder) {
    ASSERT_TRUE(CreateFolder(PathOf("1) City.jpg")));
    EXPECT_EQ(Next("City"), "2) City.jpg");
}

TEST_F(ShotNames, HaveABlankForWhatNoFileMayHave) {
    EXPECT_EQ(Next("a/b\\c<d>e:f?g|h\"i"), "1) a b c d e f g h i.jpg");
    EXPECT_EQ(Next("/\\<>:?|\""), "1)         .jpg");
    EXPECT_EQ(Next("Lost *Temple*\t2"), "1) Lost  Temple  2.jpg");
}

TEST_F(ShotNames, AreCutWhereTheDiskWouldRefuseThem) {
    EXPECT_EQ(Next(std::string(256, 'x')), "1) " + std::string(244, 'x') + ".jpg");
    // Two bytes each, and no half of one.
    const std::string cut = Next(std::string("x") + Utf8FromAnsi(std::string(255, '\xFC')));
    EXPECT_EQ(cut, "1) x" + Utf8FromAnsi(std::string(121, '\xFC')) + ".jpg");
}

TEST_F(ShotNames, OfTheUserKeepTheExtension) {
    const auto named = [](const std::string& typed) {
        return NamedShotPath(core::PlaceOf(1), typed, ".jpg");
    };
    EXPECT_EQ(named("Entrance"), PathOf("Entrance.jpg"));
    EXPECT_EQ(named(" Entrance.JPG "), PathOf("Entrance.JPG"));
    EXPECT_EQ(named("Entrance.bmp"), PathOf("Entrance.bmp.jpg"));
    for (const char* bad : {"", " ", ".jpg", "..", "a\\b", "a/b", "c:a", "con", "a*", "a?b", "a\tb", "a|b"})
        EXPECT_EQ(named(bad), "") << bad;
    EXPECT_EQ(named(std::string(247, 'x')), PathOf(std::string(247, 'x') + ".jpg"));
    EXPECT_EQ(named(std::string(248, 'x')), "") << "it couldn't be written anew";
}

} // namespace
} // namespace kelvash::test
