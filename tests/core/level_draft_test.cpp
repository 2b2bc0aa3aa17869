// The draft of a level's files, and their storing in one step.
#include "core/level_draft.h"

#include <gmock/gmock.h>

#include "foundation/files.h"
#include "support/core_home.h"

namespace kelvash::core {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;

const char* const kLevel = "C:\\Levels\\LEVEL_0001";

class LevelDraft : public test::CoreHome {
  protected:
    LevelDraft() : level(levels / "LEVEL_0001") {
        MakeFile(level / "FILES/a.tr4", "old a");
        MakeFile(level / "FILES/b.txt", "old b");
    }
    fs::path level;
};

TEST_F(LevelDraft, BeginsWithTheFilesAndGoesWithoutThem) {
    MakeFile(level / "FILES_NEW/stale.txt", "of a killed run");
    ASSERT_TRUE(MakeDraft(kLevel));
    EXPECT_THAT(Entries(level / "FILES_NEW"), ElementsAre("a.tr4", "b.txt"));
    EXPECT_EQ(test::LinksOf(level / "FILES/a.tr4"), 2U);
    EXPECT_TRUE(DeleteFiles(DraftFolder(kLevel), "*"));
    DropDraft(kLevel);
    EXPECT_THAT(Entries(level), ElementsAre("FILES\\"));
    EXPECT_EQ(BytesOf(level / "FILES/a.tr4"), "old a");
}

TEST_F(LevelDraft, TakesTheFilesPlace) {
    ASSERT_TRUE(MakeDraft(kLevel));
    EXPECT_TRUE(DeleteFile(DraftFolder(kLevel) + "\\a.tr4"));
    MakeFile(level / "FILES_NEW/c.wav", "new c");
    MakeFile(level / "FILES/below/kept.txt", "kept");
    EXPECT_TRUE(StoreLevelFiles(DraftFolder(kLevel), kLevel));
    EXPECT_THAT(Entries(level), ElementsAre("FILES\\"));
    EXPECT_THAT(Entries(level / "FILES"), ElementsAre("b.txt", "below\\", "c.wav"));
    EXPECT_EQ(BytesOf(level / "FILES/below/kept.txt"), "kept");
    EXPECT_EQ(test::LinksOf(level / "FILES/b.txt"), 1U);
}

TEST_F(LevelDraft, FilesOfAnotherFolderAreCopied) {
    MakeFile(drive / "in/A.TR4", "new a");
    EXPECT_TRUE(StoreLevelFiles("C:\\in", kLevel));
    EXPECT_THAT(Entries(level / "FILES"), ElementsAre("A.TR4"));
    EXPECT_TRUE(Exists(drive / "in/A.TR4"));
    EXPECT_TRUE(StoreLevelFiles("C:\\levels\\LEVEL_0001\\Files", kLevel));
    EXPECT_EQ(BytesOf(level / "FILES/A.TR4"), "new a");
    EXPECT_FALSE(StoreLevelFiles("C:\\missing", kLevel));
    EXPECT_EQ(BytesOf(level / "FILES/A.TR4"), "new a");
}

// The states that a kill leaves where two folders can't change places in one step.
TEST_F(LevelDraft, AStoringThatWasCutShortEnds) {
    fs::rename(level / "FILES", level / "FILES_OLD");
    MakeFile(level / "FILES_NEW/new.tr4", "new");
    EndStoring(kLevel);
    EXPECT_THAT(Entries(level), ElementsAre("FILES\\"));
    EXPECT_EQ(BytesOf(level / "FILES/new.tr4"), "new");

    fs::rename(level / "FILES", level / "FILES_OLD");
    EndStoring(kLevel);
    EXPECT_THAT(Entries(level), ElementsAre("FILES\\"));
    EXPECT_EQ(BytesOf(level / "FILES/new.tr4"), "new");

    MakeFile(level / "FILES_OLD/gone.txt", "x");
    MakeFile(level / "FILES_OLD/below/kept.txt", "kept");
    EndStoring(kLevel);
    EXPECT_THAT(Entries(level), ElementsAre("FILES\\"));
    EXPECT_THAT(Entries(level / "FILES"), ElementsAre("below\\", "new.tr4"));
}

} // namespace
} // namespace kelvash::core
