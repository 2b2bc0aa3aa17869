#include "core/level_list.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "support/core_home.h"

namespace kelvash::core {
namespace {

using testing::ElementsAre;

class LevelListTest : public test::CoreHome {
  protected:
    LevelListTest() {
        profile.TrleFolder = "C:\\trle";
        AddRecord(4, "zebra");
        AddRecord(2, "  Apple ");
        AddRecord(9, "mango");
    }
    void PutInTrle(const std::string& code, const std::string& name) {
        test::MakeFile(drive / "trle" / "Kelvash.txt",
                       "#LEVEL_CODE=" + code + "#\r\n#LEVEL_NAME=" + name + "#\r\n");
    }
    static std::vector<std::string> Texts() {
        std::vector<std::string> texts;
        for (const LevelListItem& item : level_list.Items)
            texts.push_back(item.Text);
        return texts;
    }
};

TEST_F(LevelListTest, IsSortedByTextWithoutRegardToCase) {
    PutInTrle("0004", "zebra");
    RefreshLevelList();
    EXPECT_THAT(Texts(), ElementsAre("- TRLE: Original configuration -", "Apple", "mango", "zebra (*)"));
    EXPECT_EQ(level_list.Items[1].Code, 2);
    EXPECT_EQ(level_list.Items[3].Code, 4);
}

TEST_F(LevelListTest, PutsLettersWithMarksBesideThoseWithout) {
    AddRecord(5, "\xC3\x84ra"); // "Ära"
    AddRecord(6, "Ark");
    RefreshLevelList();
    EXPECT_THAT(Texts(), ElementsAre("- TRLE: Original configuration - (*)", "Apple", "\xC3\x84ra", "Ark",
                                     "mango", "zebra"));
}

TEST_F(LevelListTest, MarksLevelZeroWithoutAMarker) {
    RefreshLevelList();
    EXPECT_EQ(Texts()[0], "- TRLE: Original configuration - (*)");
}

TEST_F(LevelListTest, StoresTheTrimmedNameBackAndKeepsTheTable) {
    RefreshLevelList();
    EXPECT_EQ(archive.Table[2].Name, "Apple");
    EXPECT_EQ(archive.Table[1].Code, 4) << "nothing sorts the table";
}

TEST_F(LevelListTest, SelectsTheFirstWhenNoneWasSelected) {
    EXPECT_EQ(SelectedLevel(), -1);
    RefreshLevelList();
    EXPECT_EQ(level_list.Selected, 0);
    EXPECT_EQ(SelectedLevel(), 0);
}

TEST_F(LevelListTest, KeepsTheSelectedLevelWhereverItGoes) {
    RefreshLevelList();
    SelectLevel(4);
    EXPECT_EQ(level_list.Selected, 3);
    archive.Table.Edit(1)->Name = "aardvark";
    RefreshLevelList();
    EXPECT_EQ(level_list.Selected, 1);
    EXPECT_EQ(SelectedLevel(), 4);
}

TEST_F(LevelListTest, SelectsTheFirstWhenTheSelectedIsGone) {
    RefreshLevelList();
    SelectLevel(4);
    archive.Table.Remove(1);
    RefreshLevelList();
    EXPECT_EQ(level_list.Selected, 0);
}

TEST_F(LevelListTest, StaysWhereItIsForALevelThatIsNotThere) {
    RefreshLevelList();
    SelectLevel(9);
    SelectLevel(77);
    EXPECT_EQ(SelectedLevel(), 9);
}

TEST_F(LevelListTest, IsEmptyWithoutAnArchive) {
    RefreshLevelList();
    archive = ArchiveState();
    RefreshLevelList();
    EXPECT_TRUE(level_list.Items.empty());
    EXPECT_EQ(level_list.Selected, -1);
    EXPECT_EQ(SelectedLevel(), -1);
}

TEST_F(LevelListTest, ClearsTheProgressAndTellsTheView) {
    TheUser().SetLabel(BarPlace::MainWindow, "Old");
    TheUser().SetBar(BarPlace::MainWindow, 50);
    RefreshLevelList();
    EXPECT_THAT(user.Shown(), ElementsAre("Old", ""));
    EXPECT_EQ(user.last_percent, 0);
    EXPECT_EQ(user.list_changes, 1);
}

TEST_F(LevelListTest, KeepsLevelsOfOneNameInTheOrderOfTheTable) {
    AddRecord(20, "MANGO");
    AddRecord(1, "Mango");
    RefreshLevelList();
    EXPECT_THAT(Texts(), ElementsAre("- TRLE: Original configuration - (*)", "Apple", "mango", "MANGO",
                                     "Mango", "zebra"));
}

// --- the search ---

class LevelSearch : public LevelListTest {
  protected:
    LevelSearch() {
        AddRecord(11, "Ünderground mango");
        PutInTrle("0009", "mango");
        RefreshLevelList(); // configuration, Apple, mango (*), Ünderground mango, zebra
    }
};

TEST_F(LevelSearch, FindsFromTheTop) {
    SelectLevel(4);
    EXPECT_EQ(FindLevel(" MANGO "), 2);
    EXPECT_EQ(FindLevel("p"), 1);
    EXPECT_EQ(FindLevel("(*)"), 2) << "the mark is part of the text";
    EXPECT_EQ(FindLevel("ünder"), 3) << "without regard to case beyond ASCII too";
    EXPECT_EQ(FindLevel("nothing"), -1);
    EXPECT_EQ(FindLevel("  "), -1);
}

TEST_F(LevelSearch, FindsTheNextBehindTheSelected) {
    SelectLevel(9);
    EXPECT_EQ(FindNextLevel("mango"), 3);
    SelectLevel(11);
    EXPECT_EQ(FindNextLevel("mango"), -1);
}

TEST_F(LevelSearch, FindsTheNearestBeforeTheSelected) {
    SelectLevel(11);
    EXPECT_EQ(FindPreviousLevel("mango"), 2);
    SelectLevel(9);
    EXPECT_EQ(FindPreviousLevel("mango"), -1);
}

TEST_F(LevelSearch, StepsToTheNeighboursWithoutAText) {
    SelectLevel(9);
    EXPECT_EQ(FindNextLevel(""), 3);
    EXPECT_EQ(FindPreviousLevel(" "), 1);
    SelectLevel(0);
    EXPECT_EQ(FindPreviousLevel(""), -1);
    SelectLevel(4); // zebra
    EXPECT_EQ(FindNextLevel(""), -1);
}

TEST_F(LevelSearch, FindsNothingInAnEmptyList) {
    archive = ArchiveState();
    RefreshLevelList();
    EXPECT_EQ(FindNextLevel(""), -1);
    EXPECT_EQ(FindPreviousLevel(""), -1);
    EXPECT_EQ(FindLevel("a"), -1);
}

} // namespace
} // namespace kelvash::core
