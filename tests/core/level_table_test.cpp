#include "core/level_table.h"

#include <gmock/gmock.h>

namespace kelvash::core {
namespace {

using testing::ElementsAre;

LevelRecord Level(std::int32_t code, const std::string& name) {
    LevelRecord level;
    level.Code = code;
    level.Name = name;
    return level;
}

std::vector<std::string> NamesOf(const LevelTable& table) {
    std::vector<std::string> names;
    for (const LevelRecord& level : table)
        names.push_back(level.Name);
    return names;
}

LevelTable ThreeLevels() {
    return {Level(0, "Zero"), Level(9, "Nine"), Level(4, "Four")};
}

TEST(LevelTable, BeginsWithoutALevel) {
    const LevelTable table;
    EXPECT_TRUE(table.IsEmpty());
    EXPECT_EQ(table.Size(), 0);
    EXPECT_EQ(table.Find(0), -1);
}

TEST(LevelTable, KeepsTheOrderInWhichLevelsCame) {
    LevelTable table = ThreeLevels();
    EXPECT_EQ(table.Append(Level(1, "One")), 3);
    EXPECT_THAT(NamesOf(table), ElementsAre("Zero", "Nine", "Four", "One"));
    EXPECT_EQ(table.Size(), 4);
    EXPECT_EQ(table[2].Name, "Four");
}

TEST(LevelTable, FindsALevelByItsCode) {
    const LevelTable table = ThreeLevels();
    EXPECT_EQ(table.Find(0), 0);
    EXPECT_EQ(table.Find(9), 1);
    EXPECT_EQ(table.Find(4), 2);
    EXPECT_EQ(table.Find(5), -1);
    EXPECT_EQ(table.Find(-1), -1);
    EXPECT_EQ(table.ByCode(4).Name, "Four");
}

TEST(LevelTable, GivesABlankRecordForACodeThatNoLevelHas) {
    const LevelTable table = ThreeLevels();
    EXPECT_EQ(table.ByCode(77).Name, "");
    EXPECT_EQ(table.ByCode(77).CdNumber, 0);
}

TEST(LevelTable, FindsWhatStandsBehindARemovedLevel) {
    LevelTable table = ThreeLevels();
    table.Remove(1);
    EXPECT_THAT(NamesOf(table), ElementsAre("Zero", "Four"));
    EXPECT_EQ(table.Find(9), -1);
    EXPECT_EQ(table.Find(4), 1);
}

TEST(LevelTable, FindsAReplacedLevelByItsNewCode) {
    LevelTable table = ThreeLevels();
    table.Replace(1, Level(12, "Twelve"));
    EXPECT_EQ(table.Find(9), -1);
    EXPECT_EQ(table.Find(12), 1);
    EXPECT_EQ(table[1].Name, "Twelve");
}

TEST(LevelTable, FindsAnEditedLevelByItsNewCode) {
    LevelTable table = ThreeLevels();
    {
        const LevelEdit level = table.Edit(2);
        level->Name = "Five";
        level->Code = 5;
    }
    EXPECT_EQ(table.Find(4), -1);
    EXPECT_EQ(table.ByCode(5).Name, "Five");
}

// A file may be damaged.
TEST(LevelTable, GivesTheFirstOfTwoLevelsWithOneCode) {
    LevelTable table = {Level(7, "First"), Level(3, "Other"), Level(7, "Second")};
    EXPECT_EQ(table.Find(7), 0);
    table.Edit(1)->Code = 7;
    EXPECT_EQ(table.Find(7), 0);
    table.Remove(0);
    EXPECT_EQ(table.ByCode(7).Name, "Other");
    table.Append(Level(7, "Third"));
    EXPECT_EQ(table.Find(7), 0);
}

TEST(LevelTable, HandsOutTheHighestCodePlusOne) {
    EXPECT_EQ(LevelTable().NextCode(), 0);
    LevelTable table = ThreeLevels();
    EXPECT_EQ(table.NextCode(), 10) << "a gap is never filled";
    table.Remove(1);
    EXPECT_EQ(table.NextCode(), 5);
}

TEST(LevelTable, HandsOutTheFirstFreeCodeAboveWhichThereIsNone) {
    const LevelTable table = {Level(0, "Zero"), Level(2147483647, "Last"), Level(1, "One")};
    EXPECT_EQ(table.NextCode(), 2);
}

TEST(LevelTable, IsNotChangedWithItsCopy) {
    LevelTable table = ThreeLevels();
    LevelTable copy = table;
    copy.Remove(0);
    copy.Append(Level(30, "Thirty"));
    EXPECT_EQ(table.Find(9), 1);
    EXPECT_EQ(table.Find(30), -1);
    EXPECT_EQ(copy.Find(9), 0);
    EXPECT_EQ(copy.Find(30), 2);
}

} // namespace
} // namespace kelvash::core
