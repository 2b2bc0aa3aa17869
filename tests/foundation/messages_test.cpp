#include "foundation/messages.h"

#include <gmock/gmock.h>

#include <set>

#include "foundation/text.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

using testing::HasSubstr;
using testing::Not;

// The numbers of all marks in a text.
std::set<int> MarksOf(std::string_view text) {
    std::set<int> marks;
    for (std::size_t at = text.find('~'); at != std::string_view::npos; at = text.find('~', at + 1)) {
        int number = 0;
        for (std::size_t i = at + 1; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
            number = number * 10 + (text[i] - '0');
        marks.insert(number);
    }
    return marks;
}

TEST(MessageTable, EveryIdIsUnique) {
    std::set<MessageId> ids;
    for (const MessageEntry& entry : MessageTable())
        EXPECT_TRUE(ids.insert(entry.id).second) << entry.name;
}

TEST(MessageTable, EveryNameIsUnique) {
    std::set<std::string_view> names;
    for (const MessageEntry& entry : MessageTable()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        EXPECT_TRUE(entry.name.starts_with('k')) << entry.name;
    }
}

TEST(MessageTable, IdsAreWithinTheTable) {
    for (const MessageEntry& entry : MessageTable()) {
        EXPECT_GE(static_cast<int>(entry.id), 102) << entry.name;
        EXPECT_LE(static_cast<int>(entry.id), 3999) << entry.name;
    }
}

TEST(MessageTable, MarksAscendWithoutGapsUpToFourteen) {
    for (const MessageEntry& entry : MessageTable()) {
        const std::set<int> marks = MarksOf(entry.text);
        if (marks.empty()) continue;
        EXPECT_EQ(*marks.begin(), 1) << entry.name;
        EXPECT_EQ(*marks.rbegin(), static_cast<int>(marks.size())) << entry.name;
        EXPECT_LE(*marks.rbegin(), 14) << entry.name;
    }
}

TEST(MessageTable, NoTextHoldsALineBreak) {
    for (const MessageEntry& entry : MessageTable()) {
        EXPECT_THAT(std::string(entry.text), Not(HasSubstr("\r"))) << entry.name;
        EXPECT_THAT(std::string(entry.text), Not(HasSubstr("\n"))) << entry.name;
        EXPECT_THAT(std::string(entry.text), Not(HasSubstr("\t")))
            << entry.name; // the table file's separator
    }
}

TEST(MessageTable, TextsOfTheFoundationStandToTheLetter) {
    EXPECT_EQ(LoadMessage(MessageId::kCannotCreateFolder, {}), "I can not create '~1' folder");
    EXPECT_EQ(LoadMessage(MessageId::kErrorCopyingFileTo, {}), "Error copying file '~1' to '");
    EXPECT_EQ(LoadMessage(MessageId::kErrorCopyingFileFromTo, {}), "Error copying file from '~1'  to  '");
    EXPECT_EQ(LoadMessage(MessageId::kUtilityMissing, {}), "Utility \"~1\" doesn't exist");
    EXPECT_EQ(LoadMessage(MessageId::kPipeFailed, {}), "Error in function CreatePipe()");
    EXPECT_EQ(LoadMessage(MessageId::kRedirectFailed, {}),
              "Error redirecting standard output with SetStdHandle");
    EXPECT_EQ(LoadMessage(MessageId::kNulInOutput, {}), "Valore 0");
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
}

TEST(MessageMarks, WithoutArgumentsTheTextIsUnchanged) {
    EXPECT_EQ(FillMarks("\\note~1.txt", {}), "\\note~1.txt");
}

TEST(MessageMarks, OnlyTheFirstOccurrenceOfAMarkIsFilled) {
    EXPECT_EQ(FillMarks("a~1b~1", {"X"}), "aXb~1");
}

TEST(MessageMarks, AMarkWithoutAnArgumentStays) {
    EXPECT_EQ(FillMarks("~1 and ~2", {"X"}), "X and ~2");
    EXPECT_EQ(FillMarks("only ~1", {"X", "Y"}), "only X");
    EXPECT_EQ(LoadMessage(MessageId::kCannotCreateFolder, {"C:\\x", "Y"}), "I can not create 'C:\\x' folder");
}

TEST(MessageMarks, FourteenMarksAreFilledEachWithItsOwn) {
    EXPECT_EQ(FillMarks("~1.~2.~3.~4.~5.~6.~7.~8.~9.~10.~11.~12.~13.~14",
                        {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n"}),
              "a.b.c.d.e.f.g.h.i.j.k.l.m.n");
}

TEST(MessageMarks, AMarkInsideAnArgumentIsFilledInItsTurn) {
    EXPECT_EQ(FillMarks("~1 - ~2", {"<~2>", "X"}), "<X> - ~2");
    EXPECT_EQ(FillMarks("~2 - ~1", {"<~2>", "X"}), "X - <~2>"); // the true one stands first
    EXPECT_EQ(FillMarks("~1~2", {"a~1", "X"}), "a~1X");         // its own turn is over
}

// What only a fragment can be: a part of a path, a mask, an extension, a tag of a file.
TEST(MessageTable, WhatTheProgramWorksWithIsAFragment) {
    std::size_t fragments = 0;
    for (const MessageEntry& entry : MessageTable()) {
        const std::string text(entry.text);
        if (entry.fragment) {
            ++fragments;
            EXPECT_FALSE(text.empty()) << entry.name;
            continue;
        }
        for (const char* start : {"\\", "*.", "#", ".", "SOFTWARE\\", "savegame.", "LEVEL_"})
            EXPECT_FALSE(text.starts_with(start) && text != "... and ~1 more") << entry.name << ": " << text;
        for (const char* part : {":\\", ".tr4|", "|\\"})
            EXPECT_THAT(text, Not(HasSubstr(part))) << entry.name;
    }
    EXPECT_GE(fragments, 150U);
}

// The other texts with a "|" are filters of file dialogs: a shown text, then masks.
TEST(MessageTable, OnlyFiltersAreMessagesWithBars) {
    std::size_t filters = 0;
    for (const MessageEntry& entry : MessageTable()) {
        const std::vector<std::string> parts = Split(entry.text, '|');
        if (entry.fragment || parts.size() < 2) continue;
        ++filters;
        EXPECT_TRUE(entry.name.ends_with("Filter")) << entry.name;
        ASSERT_EQ(parts.size() % 2, 0U) << entry.name;
        for (std::size_t i = 1; i < parts.size(); i += 2)
            EXPECT_TRUE(parts[i].starts_with("*.")) << entry.name;
    }
    EXPECT_GE(filters, 5U);
}

class MessageFile : public test::FoundationHome {
  protected:
    bool Load(const std::string& bytes) {
        test::MakeFile(home / "italian.txt", bytes);
        loading = LoadMessageTable("C:\\Kelvash\\italian.txt");
        return loading.Taken;
    }
    TableLoading loading;
};

TEST_F(MessageFile, TakesTheTextsItHasAndKeepsTheOthers) {
    ASSERT_TRUE(Load("# comment\r\n\r\n114\t Gigabyte\r\n135\tInterrotto: è finita\r\n"));
    EXPECT_EQ(LoadMessage(MessageId::kGigabytes, {}), " Gigabyte");
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Interrotto: è finita");
    EXPECT_EQ(LoadMessage(MessageId::kMegabytes, {}), " Mb");
}

TEST_F(MessageFile, TakesEmptyTextsAndALastLineWithoutEnd) {
    ASSERT_TRUE(Load("114\t\n135\tfine"));
    EXPECT_EQ(LoadMessage(MessageId::kGigabytes, {}), "");
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "fine");
}

TEST_F(MessageFile, TakesAByteOrderMark) {
    ASSERT_TRUE(
        Load("\xEF\xBB\xBF"
             "135\tfine\n"));
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "fine");
}

TEST_F(MessageFile, SkipsIdsThatTheTableLacks) {
    EXPECT_TRUE(Load("1\tnothing\n135\tfine\n"));
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "fine");
}

TEST_F(MessageFile, ABadLineChangesNothing) {
    for (const char* bad : {"135 no tab\n", "x\ttext\n", "135x\ttext\n", "\ttext\n", "99999999999\ttext\n"}) {
        EXPECT_FALSE(Load(std::string("114\tchanged\n\n") + bad)) << bad;
        EXPECT_EQ(RefusedLinesText(loading), "3") << bad;
        EXPECT_EQ(LoadMessage(MessageId::kGigabytes, {}), " Gb");
        EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
    }
}

TEST_F(MessageFile, AMissingFileChangesNothing) {
    for (const char* path : {"C:\\Kelvash\\missing.txt", "C:\\Kelvash"}) {
        const TableLoading missing = LoadMessageTable(path);
        EXPECT_FALSE(missing.Taken);
        EXPECT_EQ(RefusedLinesText(missing), "");
    }
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
}

TEST_F(MessageFile, NothingTakesThePlaceOfAFragment) {
    ASSERT_TRUE(Load(
        "1201\t\n135\tBasta\n387\t*\n# note\n360\t\\..\\x\r\n1215\tsavegame.*\n364\t#CODE=\n113\tJa?\n"));
    EXPECT_EQ(loading.RefusedLines,
              (std::vector<std::size_t>{1, 3, 5, 7})); // one that changes nothing is none
    EXPECT_EQ(LoadMessage(MessageId::kExportFolder, {}), "\\out_files");
    EXPECT_EQ(LoadMessage(MessageId::kSavegameMask, {}), "savegame.*");
    EXPECT_EQ(LoadMessage(MessageId::kMarkerName, {}), "\\Kelvash.txt");
    EXPECT_EQ(LoadMessage(MessageId::kMarkerLevelCode, {}), "#LEVEL_CODE=");
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Basta"); // the rest of the file holds
    EXPECT_EQ(LoadMessage(MessageId::kReplaceQuestion, {}), "Ja?");
}

TEST_F(MessageFile, NoFragmentAtAllCanBeReplaced) {
    std::string file;
    for (const MessageEntry& entry : MessageTable())
        if (entry.fragment) file += std::to_string(static_cast<int>(entry.id)) + "\tchanged\n";
    ASSERT_TRUE(Load(file));
    for (const MessageEntry& entry : MessageTable())
        EXPECT_EQ(LoadMessage(entry.id, {}), entry.text) << entry.name;
}

TEST_F(MessageFile, AMarkThatIsLostOrAddedIsRefused) {
    ASSERT_TRUE(
        Load("102\tohne Namen\n133\t~3: \"~1\"~2\n130\t\"~1\" fehlt, ~2\n135\t~1\n1235\tx\n131\t~ 5 %\n"));
    EXPECT_EQ(loading.RefusedLines, (std::vector<std::size_t>{1, 3, 4, 5}));
    EXPECT_EQ(LoadMessage(MessageId::kCannotCreateFolder, {}), "I can not create '~1' folder");
    EXPECT_EQ(LoadMessage(MessageId::kSubprocessFailed, {"a", "b", "c"}),
              "c: \"a\"b"); // another order is fine
    EXPECT_EQ(LoadMessage(MessageId::kUtilityMissing, {"x"}), "Utility \"x\" doesn't exist");
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
    EXPECT_EQ(LoadMessage(MessageId::kPipeFailed, {}), "~ 5 %"); // no mark without a number
}

TEST_F(MessageFile, AFilterKeepsItsMasks) {
    ASSERT_TRUE(
        Load("204\tArchivi (*.kva)|*.kva\n206\tArchivi|*.*\n1209\tZip\n1054\tZip|*.zip|Tutti|*.*|x|*\n"));
    EXPECT_EQ(loading.RefusedLines, (std::vector<std::size_t>{2, 3, 4}));
    EXPECT_EQ(LoadMessage(MessageId::kLoadArchiveFilter, {}), "Archivi (*.kva)|*.kva");
    EXPECT_EQ(LoadMessage(MessageId::kExportFilter, {}), "Zip files (*.zip)|*.zip");
}

TEST_F(MessageFile, ManyRefusedLinesAreTheFirstOfThem) {
    std::string file;
    for (int i = 0; i < 30; ++i)
        file += "1201\t\n";
    ASSERT_TRUE(Load(file));
    EXPECT_EQ(RefusedLinesText(loading),
              "1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, ...");
}

TEST_F(MessageFile, OneOfManyMegabytesIsNone) {
    EXPECT_FALSE(Load(std::string((std::size_t{4} << 20) + 1, '\n')));
}

TEST_F(MessageFile, ASecondFileStartsFromTheBuiltInTexts) {
    ASSERT_TRUE(Load("114\tfirst\n"));
    ASSERT_TRUE(Load("135\tsecond\r\r\n"));
    EXPECT_EQ(LoadMessage(MessageId::kGigabytes, {}), " Gb");
    ResetMessages();
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
}

TEST(MessageTable, AQuestionSaysWhichOfItsAnswersCanLoseSomething) {
    EXPECT_EQ(HarmOf(MessageId::kReplaceFile), Harm::YesLoses);
    EXPECT_EQ(HarmOf(MessageId::kEqualQuestion), Harm::NoLoses);
    EXPECT_EQ(HarmOf(MessageId::kArchiveChangedQuestion), Harm::AnyLoses);
    EXPECT_EQ(HarmOf(MessageId::kExportShotsQuestion), Harm::NothingLoses);
    EXPECT_EQ(HarmOf(MessageId::kBreakUser), std::nullopt);
}

TEST(MessageTable, KnowsWhatAsksForAPassword) {
    EXPECT_TRUE(AsksPassword(MessageId::kZipPassword));
    EXPECT_FALSE(AsksPassword(MessageId::kRenameTr4Input));
}

} // namespace
} // namespace kelvash
