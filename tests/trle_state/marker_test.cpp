#include "trle_state/marker.h"

#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/swap_home.h"
#include "trle_state/trle_state.h"

namespace kelvash::trle_state {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MarkerFile : public test::SwapHome {
  protected:
    void Write(std::string_view text) { test::MakeFile(trle / "Kelvash.txt", text); }
};

TEST_F(MarkerFile, HasEightLinesEndedByCrLf) {
    std::string hash;
    ASSERT_TRUE(WriteMarker(
        {12, " City of Caffè ", {"\\script.dat", "\\load.bmp"}, {"\\script.dat", "\\data\\a.tr4"}}, true,
        hash));
    EXPECT_EQ(hash.size(), 32U);
    EXPECT_EQ(Marker(),
              ": Don't remove this file!\r\n"
              ": It is necessary at Kelvash \r\n"
              ": to know current configuration in TRLE\r\n"
              " \r\n"
              "#LEVEL_CODE=0012#\r\n"
              "#LEVEL_NAME=City of Caff\xE8#\r\n"
              "#OVERWROTEN_FILES=\\script.dat|\\load.bmp#\r\n"
              "#COPIED_FILES=\\script.dat|\\data\\a.tr4#\r\n");
}

TEST_F(MarkerFile, WithoutItsListsEndsAfterTheName) {
    const std::string text = MarkerText({7, "x", {"\\a"}, {"\\b"}}, false);
    EXPECT_EQ(text.substr(text.find("#LEVEL_CODE")), "#LEVEL_CODE=0007#\r\n#LEVEL_NAME=x#\r\n");
}

TEST_F(MarkerFile, EmptyListsAreEmptyFields) {
    const std::string text = MarkerText({7, "x", {}, {}}, true);
    EXPECT_EQ(text.substr(text.find("#OVER")), "#OVERWROTEN_FILES=#\r\n#COPIED_FILES=#\r\n");
}

TEST_F(MarkerFile, FieldIsFoundWithoutRegardToCase) {
    EXPECT_EQ(MarkerField("#LEVEL_CODE=", "x #level_code= 0012 #"), "0012");
}

TEST_F(MarkerFile, FieldEndsAtTheTextsEnd) {
    EXPECT_EQ(MarkerField("#LEVEL_NAME=", "#LEVEL_NAME=ab c "), "ab c");
}

TEST_F(MarkerFile, NameThatAHandWroteIsCutAtAHash) {
    EXPECT_EQ(MarkerField("#LEVEL_NAME=", "#LEVEL_NAME=Level #9#\r\n"), "Level");
}

TEST_F(MarkerFile, NameHasABlankForAHashAndAQuestionMarkForAnotherAlphabet) {
    const std::string text = MarkerText({1, "City#COPIED_FILES=\\tomb4.exe# Γ", {}, {}}, true);
    EXPECT_NE(text.find("#LEVEL_NAME=City COPIED_FILES=\\tomb4.exe  ?#\r\n"), std::string::npos) << text;
    EXPECT_THAT(MarkerList("#COPIED_FILES=", text), IsEmpty());
}

TEST_F(MarkerFile, LeavesOutEntriesThatItsFormCannotHold) {
    const std::string text =
        MarkerText({1, "x", {"\\a|b.dat"}, {"\\#a.dat", "\\data\\Γ.tr4", "\\data\\é.tr4"}}, true);
    EXPECT_EQ(text.substr(text.find("#OVER")), "#OVERWROTEN_FILES=#\r\n#COPIED_FILES=\\data\\é.tr4#\r\n");
}

TEST_F(MarkerFile, ListIsCleanedOfWhatNoInstallWrites) {
    EXPECT_THAT(CleanMarkerList("#COPIED_FILES=",
                                "#COPIED_FILES=\\a.dat|\\tomb4.exe|\\data\\b.tr4|\\..\\c|"
                                "\\audio\\d.wav|\\script\\script.txt|e|C:\\f||\\g.LNK#"),
                ElementsAre("\\a.dat", "\\data\\b.tr4", "\\audio\\d.wav", "\\g.LNK"));
}

TEST_F(MarkerFile, MissingFieldIsEmpty) {
    EXPECT_EQ(MarkerField("#LEVEL_CODE=", "nothing here"), "");
}

TEST_F(MarkerFile, EmptyListAtTheEndIsNoError) {
    EXPECT_THAT(MarkerList("#COPIED_FILES=", "#COPIED_FILES=#"), IsEmpty());
    EXPECT_THAT(MarkerList("#COPIED_FILES=", "#COPIED_FILES=\\a|\\b#"), ElementsAre("\\a", "\\b"));
}

TEST_F(MarkerFile, CodeDropsLeadingZeros) {
    Write("#LEVEL_CODE=0012#\r\n");
    EXPECT_EQ(CurrentLevelCode(), 12);
}

TEST_F(MarkerFile, FieldsMayStandInAnyOrder) {
    Write("#COPIED_FILES=#\r\n#LEVEL_CODE=0003#\r\n");
    EXPECT_EQ(CurrentLevelCode(), 3);
}

TEST_F(MarkerFile, AbsentMeansTheOriginalConfiguration) {
    EXPECT_EQ(CurrentLevelCode(), 0);
}

TEST_F(MarkerFile, OfZeroLengthGivesCodeZeroAndStays) {
    Write("");
    EXPECT_EQ(CurrentLevelCode(), 0);
    EXPECT_TRUE(test::Exists(trle / "Kelvash.txt"));
}

TEST_F(MarkerFile, ThatCannotBeReadCountsAsAbsent) {
    std::filesystem::create_directory(trle / "Kelvash.txt");
    EXPECT_EQ(CurrentLevelCode(), 0);
}

TEST_F(MarkerFile, CodeThatIsNoNumberIsZero) {
    Write("#LEVEL_CODE=abc#");
    EXPECT_EQ(CurrentLevelCode(), 0);
}

TEST_F(MarkerFile, PathIsInTheTrimmedTrleFolder) {
    core::profile.TrleFolder = " C:\\trle ";
    EXPECT_EQ(MarkerPath(), "C:\\trle\\Kelvash.txt");
}

} // namespace
} // namespace kelvash::trle_state
