#include "program/level_facts.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/level_list.h"
#include "program/level_view.h"
#include "support/swap_home.h"
#include "swap/install.h"

namespace kelvash::test {
namespace {

class LevelFacts : public SwapHome {
  protected:
    LevelFacts() {
        AddLevel(1, "City of Gold", {{"gold.tr4", "gold"}}, {{"savegame.0", "Gate,"}});
        AddLevel(2, "Alpha", {{"alpha.tr4", "alpha"}});
        AddLevel(3, "Beta", {{"beta.tr4.zl", "packed"}});
        MakeFile(drive / "Levels/LEVEL_0001/SCREENSHOTS/shot.jpg", "picture");
        MakeFile(drive / "Levels/LEVEL_0001/SAVEGAMES/slot1/savegame.3", "Hall,");
    }
    static core::LevelRecord Record() {
        core::LevelRecord level;
        level.Code = 1;
        level.Author = " Ada Example ";
        level.FilesSize = 240'000;
        level.Note = "Bring oil";
        return level;
    }
};

TEST_F(LevelFacts, CountSavegamesAndFindTheNewestPicture) {
    const program::LevelFacts gold = program::FactsOf(1);
    EXPECT_EQ(gold.Savegames, 2);
    EXPECT_EQ(gold.Picture, "C:\\Levels\\LEVEL_0001\\screenshots\\shot.jpg");
    EXPECT_FALSE(gold.Packed);
}

TEST_F(LevelFacts, KnowPackedFiles) {
    const program::LevelFacts beta = program::FactsOf(3);
    EXPECT_TRUE(beta.Packed);
    EXPECT_EQ(beta.Picture, "");
    EXPECT_EQ(beta.Savegames, 0);
}

TEST_F(LevelFacts, StandInOneLine) {
    program::LevelFacts facts;
    facts.Savegames = 3;
    EXPECT_EQ(program::LevelLine(Record(), &facts),
              "Ada Example  \xC2\xB7  234 Kb  \xC2\xB7  3 savegames  \xC2\xB7  Bring oil");
    facts.Savegames = 1;
    EXPECT_EQ(program::LevelLine(Record(), &facts),
              "Ada Example  \xC2\xB7  234 Kb  \xC2\xB7  1 savegame  \xC2\xB7  Bring oil");
}

TEST_F(LevelFacts, LeaveOutWhatIsNotKnown) {
    core::LevelRecord level = Record();
    EXPECT_EQ(program::LevelLine(level, nullptr), "Ada Example  \xC2\xB7  234 Kb  \xC2\xB7  Bring oil");
    level.Author.clear();
    level.Note.clear();
    level.FilesSize = 0;
    EXPECT_EQ(program::LevelLine(level, nullptr), "");
}

TEST_F(LevelFacts, SayNoSizeOfTheOriginalConfiguration) {
    core::LevelRecord level = Record();
    level.Code = 0;
    EXPECT_EQ(program::LevelLine(level, nullptr), "Ada Example  \xC2\xB7  Bring oil");
}

TEST_F(LevelFacts, ThePageTellsWhatPlayTakesOut) {
    const auto view_of = [](std::int32_t code) {
        core::RefreshLevelList();
        core::SelectLevel(code);
        return program::SelectedLevelView().value_or(program::LevelView());
    };
    EXPECT_EQ(view_of(1).TakenOut, "") << "the original configuration is no level";
    ASSERT_TRUE(swap::InstallLevel(2));
    EXPECT_EQ(view_of(1).Name, "City of Gold");
    EXPECT_EQ(view_of(1).TakenOut, "Alpha");
    EXPECT_FALSE(view_of(1).IsIn);
    EXPECT_TRUE(view_of(2).IsIn);
    EXPECT_EQ(view_of(2).TakenOut, "");
}

} // namespace
} // namespace kelvash::test
