// The watcher's own calls on real files: what they make of savegames and pictures of the level in TRLE.
#include "companion/watch_calls.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "foundation/lock.h"
#include "foundation/platform/platform.h"
#include "support/swap_home.h"

namespace kelvash::companion {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class WatchCallsOnFiles : public test::SwapHome {
  protected:
    WatchCallsOnFiles() {
        AddLevel(1, "City", {{"city.tr4", "c"}},
                 {{"savegame.0", Savegame('\1')}, {"savegame.1", Savegame('\2')}});
    }
    // Title, and the running number behind its 75 bytes.
    static std::string Savegame(char number) {
        std::string bytes = "Gate,";
        bytes.resize(75);
        return bytes + number + '\0';
    }
    core::LevelPlace Level() const { return core::PlaceOf(1); }
    static std::string Bitmap(unsigned char shade) {
        std::string bitmap(
            "BM\x46\0\0\0\0\0\0\0\x36\0\0\0\x28\0\0\0\2\0\0\0\2\0\0\0\1\0\x18\0\0\0\0\0\x10\0\0\0"
            "\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0",
            54);
        for (int row = 0; row < 2; ++row)
            bitmap += std::string(6, static_cast<char>(shade)) + std::string(2, '\0');
        return bitmap;
    }
    fs::path Shots() const { return LevelPath(1) / "SCREENSHOTS"; }
};

// Another program at work in the Archive's folder.
class OtherProgram {
  public:
    OtherProgram()
        : descriptor_(platform::OpenLockFile(RuntimeFolder() / (FolderIdentity("C:\\Levels") + ".lock"))) {
        EXPECT_EQ(platform::TryLock(descriptor_), LockResult::Taken);
    }
    ~OtherProgram() { platform::CloseLockFile(descriptor_); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;

  private:
    int descriptor_;
};

TEST_F(WatchCallsOnFiles, APictureIsStoredUnderTheNextName) {
    EXPECT_EQ(watch_calls.SavePicture(Level(), Bitmap(200)).End, Work::Done);
    const WorkOutcome second = watch_calls.SavePicture(Level(), Bitmap(100));
    EXPECT_EQ(second.End, Work::Done);
    EXPECT_EQ(second.Path, "C:\\Levels\\LEVEL_0001\\screenshots\\2) City.jpg");
    EXPECT_THAT(NamesIn(Shots()), ElementsAre("1) City.jpg", "2) City.jpg"));
}

TEST_F(WatchCallsOnFiles, BlackIsBlackAndDamageIsNot) {
    EXPECT_TRUE(watch_calls.IsBlack(Bitmap(0)));
    EXPECT_FALSE(watch_calls.IsBlack(Bitmap(1)));
    EXPECT_FALSE(watch_calls.IsBlack("no picture"));
    EXPECT_EQ(watch_calls.SavePicture(Level(), "no picture").End, Work::Failed);
    EXPECT_EQ(watch_calls.SavePicture(Level(), Bitmap(200).substr(0, 60)).End, Work::Failed);
}

TEST_F(WatchCallsOnFiles, WhatAPictureShowsHasNothingToDoWithItsEncoding) {
    std::string other = Bitmap(200);
    other[38] = 100; // its resolution
    EXPECT_EQ(watch_calls.WhatItShows(other), watch_calls.WhatItShows(Bitmap(200)));
    EXPECT_NE(watch_calls.WhatItShows(Bitmap(201)), watch_calls.WhatItShows(Bitmap(200)));
    EXPECT_NE(watch_calls.WhatItShows("no picture"), watch_calls.WhatItShows("no other"));
}

TEST_F(WatchCallsOnFiles, ALevelsFolderThatHasGoneIsAFailure) {
    fs::remove_all(levels);
    test::MakeFile(levels, "a file in its place");
    const WorkOutcome outcome = watch_calls.SavePicture(Level(), Bitmap(200));
    EXPECT_EQ(outcome.End, Work::Failed);
    EXPECT_FALSE(outcome.Why.text.empty());
    EXPECT_NE(watch_calls.ArchiveSlots(Level(), 15).End, Work::Done);
    EXPECT_THAT(user.Told(), testing::IsEmpty());
}

TEST_F(WatchCallsOnFiles, SavegamesAreArchivedAndBroughtBack) {
    EXPECT_EQ(watch_calls.ArchiveSlots(Level(), 15).End, Work::Done);
    EXPECT_THAT(NamesIn(LevelPath(1) / "SAVEGAMES" / "slot1"), ElementsAre("savegame.0", "savegame.1"));
    EXPECT_THAT(NamesIn(StashPath(1)), ElementsAre("savegame.0"));
    EXPECT_EQ(watch_calls.ArchiveSlots(Level(), 15).End, Work::Nothing) << "one alone stays";
    EXPECT_EQ(watch_calls.RestoreLastSlot(Level()).End, Work::Done);
    EXPECT_EQ(NamesIn(StashPath(1)).size(), 2U);
    EXPECT_THAT(user.Told(), testing::IsEmpty()) << "no box over the game";
}

TEST_F(WatchCallsOnFiles, AnotherProgramAtWorkIsARefusal) {
    const OtherProgram other;
    EXPECT_EQ(watch_calls.ArchiveSlots(Level(), 15).End, Work::Refused);
    EXPECT_EQ(watch_calls.RestoreLastSlot(Level()).End, Work::Refused);
    EXPECT_EQ(watch_calls.SavePicture(Level(), Bitmap(200)).End, Work::Refused);
    EXPECT_THAT(user.Told(), testing::IsEmpty());
    EXPECT_THAT(NamesIn(StashPath(1)), ElementsAre("savegame.0", "savegame.1"));
}

} // namespace
} // namespace kelvash::companion
