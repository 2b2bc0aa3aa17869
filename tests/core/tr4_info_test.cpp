// The file tr4.inf and the comparison of levels.
#include "core/tr4_info.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "foundation/files.h"
#include "foundation/native_text.h"
#include "support/core_home.h"
#include "support/format_test.h"
#include "support/local_time.h"

namespace kelvash::core {
namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

class Tr4InfoTest : public test::CoreHome {
  protected:
    void AddLevel(std::int32_t code, const std::string& name) {
        AddRecord(code, name);
        std::filesystem::create_directories(Folder(code) / "FILES");
    }
    std::filesystem::path Folder(std::int32_t code) const {
        return levels / ("LEVEL_000" + std::to_string(code));
    }
    void Put(std::int32_t code, const std::string& name, const std::string& bytes) {
        test::MakeFile(Folder(code) / "FILES" / NativeFromText(name), bytes);
    }
    static std::string Name(const std::string& name) { return name + std::string(80 - name.size(), ' '); }
};

TEST_F(Tr4InfoTest, TheFileHoldsACountAndTheRecords) {
    AddLevel(1, "One");
    // 2.5 and -1 as IEEE 754 doubles.
    Tr4List = {{"maze.tr4", 2.5, 1000}, {"ÄTHER.TR4", -1, 0x12345678}};
    ASSERT_TRUE(WriteTr4Info(PlaceAt(1)));
    EXPECT_EQ(test::BytesOf(Folder(1) / "tr4.inf"), "\2\0\0\0"s + Name("maze.tr4") + "\0\0\0\0\0\0\4\x40"s +
                                                        "\xE8\3\0\0"s + Name("\xC4THER.TR4") +
                                                        "\0\0\0\0\0\0\xF0\xBF"s + "\x78\x56\x34\x12"s);
    Tr4List.clear();
    ASSERT_TRUE(ReadTr4Info(PlaceOf(1)));
    ASSERT_EQ(Tr4List.size(), 2U);
    EXPECT_EQ(Tr4List[1].FileName, "ÄTHER.TR4");
    EXPECT_EQ(Tr4List[1].FileDate, -1);
    EXPECT_EQ(Tr4List[1].FileSize, 0x12345678);
}

TEST_F(Tr4InfoTest, AMissingFileIsNone) {
    AddLevel(1, "One");
    Tr4List = {{"left", 0, 0}};
    EXPECT_FALSE(ReadTr4Info(PlaceOf(1)));
    EXPECT_THAT(Tr4List, IsEmpty());
}

TEST_F(Tr4InfoTest, TruncatedAtEveryLengthItGivesWholeRecords) {
    const std::string whole = EncodeTr4Info({{"a.tr4", 1, 1}, {"b.tr4", 2, 2}});
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_EQ(DecodeTr4Info(whole.substr(0, length)).size(), length < 96 ? 0U : 1U) << length;
    EXPECT_EQ(DecodeTr4Info(whole + "more").size(), 2U);
}

TEST(Tr4InfoFormat, WithstandsCutsAndLies) {
    using List = std::vector<Tr4Info>;
    const std::string blanks(70, ' ');
    test::ExpectFormat<List>(
        {.bytes = "\2\0\0\0"s + "level1.tr4" + blanks + "\0\0\0\0\0\0\4\x40\xE8\3\0\0"s + "level2.TR4" +
                  blanks + "\0\0\0\0\0\0\xF0\xBF\x78\x56\x34\x12"s,
         .decode = [](std::string_view bytes) -> std::optional<List> { return DecodeTr4Info(bytes); },
         .encode = EncodeTr4Info,
         .takes_cut = [](std::size_t) { return true; },
         .counts = {{0, 4, &List::size, 2}}});
}

TEST_F(Tr4InfoTest, ACountThatLiesIsCorrected) {
    const std::string record = EncodeTr4Info({{"a.tr4", 1, 1}}).substr(4);
    EXPECT_EQ(DecodeTr4Info("\xFF\xFF\xFF\x7F"s + record).size(), 1U);
    EXPECT_THAT(DecodeTr4Info("\xFF\xFF\xFF\xFF"s + record), IsEmpty());
    EXPECT_THAT(DecodeTr4Info("\0\0\0\0"s + record), IsEmpty());
}

TEST_F(Tr4InfoTest, TheListHasNameDateAndSizeOfEachLevelFile) {
    test::MakeFile(drive / "w/b.TR4", "12345");
    test::MakeFile(drive / "w/a.tr4", "");
    test::MakeFile(drive / "w/a.tr4.zl", "x");
    ASSERT_TRUE(SetFileDate("C:\\w\\b.TR4", test::LocalSeconds(2000, 1, 1, 12, 0, 0)));
    ListTr4("C:\\w");
    ASSERT_EQ(Tr4List.size(), 2U);
    EXPECT_EQ(Tr4List[0].FileName, "a.tr4");
    EXPECT_EQ(Tr4List[1].FileName, "b.TR4");
    EXPECT_EQ(Tr4List[1].FileDate, 36526.5);
    EXPECT_EQ(Tr4List[1].FileSize, 5);
}

TEST_F(Tr4InfoTest, EqualAreNameAndSizeNotTheDate) {
    AddLevel(1, "One");
    AddLevel(2, "Two");
    Tr4List = {{"Maze.TR4", 5, 100}, {"x.tr4", 5, 7}};
    ASSERT_TRUE(WriteTr4Info(PlaceAt(1)));
    EqualLevel equal;
    EXPECT_TRUE(CheckEqualLevels({{"maze.tr4", 9, 100}}, 2, equal));
    EXPECT_EQ(equal.Level.Code, 1);
    EXPECT_EQ(equal.FileName, "Maze.TR4");
    EXPECT_FALSE(CheckEqualLevels({{"maze.tr4", 5, 101}}, 2, equal));
    EXPECT_FALSE(CheckEqualLevels({{"maze.tr", 5, 100}}, 2, equal));
    EXPECT_FALSE(CheckEqualLevels({{"maze.tr4", 5, 100}}, 1, equal)); // its own
    EXPECT_FALSE(CheckEqualLevels({}, 2, equal));
}

// A record holds 80 characters of a name, and its own letters alone.
TEST_F(Tr4InfoTest, TheListHoldsNamesAsARecordDoes) {
    AddLevel(1, "One");
    Put(1, std::string(79, 'x') + "yz.tr4", "12");
    Put(1, "\u0416.tr4", "123");
    ListTr4("C:\\Levels\\LEVEL_0001\\FILES");
    ASSERT_EQ(Tr4List.size(), 2U);
    EXPECT_EQ(Tr4List[0].FileName, std::string(79, 'x') + "y");
    EXPECT_EQ(Tr4List[0].FileSize, 2);
    EXPECT_EQ(Tr4List[1].FileName, "?.tr4");
}

TEST_F(Tr4InfoTest, APairIsReportedOnceForEachDirection) {
    AddLevel(1, "One");
    AddLevel(2, "Two");
    AddLevel(3, "Three");
    Put(3, "other.tr4", "x");
    Tr4List = {{"maze.tr4", 0, 4}};
    ASSERT_TRUE(WriteTr4Info(PlaceAt(1)) && WriteTr4Info(PlaceAt(2)));
    user.WillAnswer(
        "Warning: tr4 file maze.tr4 has same name and same size of tr4 file in level: Two\r\n"
        "Continue scanning for equal levels?",
        "yes");
    user.WillAnswer("in level: One\r\n", "yes");
    EXPECT_EQ(ControllaUguali(), 2);
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: Check for equal levels terminated.\r\nThere are 2 equal levels"));
    EXPECT_THAT(user.Shown(), Contains("Scanning for equal levels"));
}

// The order of the other level's file decides, not that of the level's own.
TEST_F(Tr4InfoTest, TheFirstFileOfTheFirstOtherLevelIsReported) {
    AddLevel(1, "One");
    AddLevel(2, "Two");
    AddLevel(3, "Three");
    Tr4List = {{"b.tr4", 0, 2}, {"a.tr4", 0, 1}};
    ASSERT_TRUE(WriteTr4Info(PlaceAt(2)) && WriteTr4Info(PlaceAt(3)));
    Put(1, "A.TR4", "1");
    Put(1, "B.tr4", "22");
    user.WillAnswer("tr4 file b.tr4 has same name and same size of tr4 file in level: Two\r\n", "yes");
    user.WillAnswer("tr4 file b.tr4 has same name and same size of tr4 file in level: Three\r\n", "yes");
    user.WillAnswer("tr4 file b.tr4 has same name and same size of tr4 file in level: Two\r\n", "yes");
    EXPECT_EQ(ControllaUguali(), 3);
}

TEST_F(Tr4InfoTest, NoEqualLevelIsToldAndNoEndsTheScan) {
    AddLevel(1, "One");
    AddLevel(2, "Two");
    EXPECT_EQ(ControllaUguali(), 0);
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: Check for equal levels terminated.\r\nThere is no equal level."));
    user.Forget();
    Tr4List = {{"maze.tr4", 0, 4}};
    ASSERT_TRUE(WriteTr4Info(PlaceAt(1)) && WriteTr4Info(PlaceAt(2)));
    user.WillAnswer("Continue scanning for equal levels?", "no");
    EXPECT_EQ(ControllaUguali(), -1);
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Tr4InfoTest, WithoutACdTheScanEnds) {
    AddRecord(1, "On CD", 1);
    EXPECT_EQ(ControllaUguali(), -1);
    EXPECT_THAT(user.Told().back(), "exclamation: Cd not available: control for equal level aborted");
}

} // namespace
} // namespace kelvash::core
