#include "program/message_tables.h"

#include <gmock/gmock.h>

#include <map>
#include <set>

#include "core/archive_messages.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/texts.h"
#include "intake/fragments.h"
#include "intake/messages.h"
#include "support/foundation_home.h"
#include "trle_state/fragments.h"
#include "zip/messages.h"

namespace kelvash::program {
namespace {

using testing::HasSubstr;
using testing::Not;

// The numbers of all marks in a text.
std::set<int> MarksOf(std::string_view text) {
    std::set<int> marks;
    for (std::size_t at = text.find('~'); at != std::string_view::npos; at = text.find('~', at + 1)) {
        if (at + 1 == text.size() || text[at + 1] < '0' || text[at + 1] > '9') continue;
        int number = 0;
        for (std::size_t i = at + 1; i < text.size() && text[i] >= '0' && text[i] <= '9'; ++i)
            number = number * 10 + (text[i] - '0');
        marks.insert(number);
    }
    return marks;
}

// The window's texts are in the command line's table and the other way round, with those of all folders
// between.
TEST(MessageTable, HoldsTheTextsOfEveryFolderAndForm) {
    std::map<std::int32_t, std::string_view> texts;
    for (const TableEntry& entry : MessageTable())
        texts.emplace(entry.id, entry.text);
    EXPECT_EQ(texts[114], " Gb");                                            // foundation
    EXPECT_EQ(texts[1000], "inflating");                                     // zip
    EXPECT_EQ(texts[225], "Internal error: unknown level code: ");           // program
    EXPECT_EQ(texts[417], "Error while installing files to play new level"); // swap
    EXPECT_EQ(texts[342], " Cd Request");                                    // a form
    EXPECT_EQ(texts[2900], "No Archive is open");                            // command line
}

TEST(MessageTable, EveryIdIsUnique) {
    std::set<std::int32_t> ids;
    for (const TableEntry& entry : MessageTable())
        EXPECT_TRUE(ids.insert(entry.id).second) << entry.name;
}

TEST(MessageTable, EveryNameIsUnique) {
    std::set<std::string_view> names;
    for (const TableEntry& entry : MessageTable()) {
        EXPECT_TRUE(names.insert(entry.name).second) << entry.name;
        EXPECT_TRUE(entry.name.starts_with('k')) << entry.name;
    }
}

TEST(MessageTable, IdsAreWithinTheTable) {
    for (const TableEntry& entry : MessageTable()) {
        EXPECT_GE(entry.id, 102) << entry.name;
        EXPECT_LE(entry.id, 4999) << entry.name;
    }
}

TEST(MessageTable, MarksAscendWithoutGapsUpToFourteen) {
    for (const TableEntry& entry : MessageTable()) {
        const std::set<int> marks = MarksOf(entry.text);
        if (marks.empty()) continue;
        EXPECT_EQ(*marks.begin(), 1) << entry.name;
        EXPECT_EQ(*marks.rbegin(), static_cast<int>(marks.size())) << entry.name;
        EXPECT_LE(*marks.rbegin(), 14) << entry.name;
    }
}

TEST(MessageTable, NoTextHoldsALineBreak) {
    for (const TableEntry& entry : MessageTable()) {
        EXPECT_THAT(std::string(entry.text), Not(HasSubstr("\r"))) << entry.name;
        EXPECT_THAT(std::string(entry.text), Not(HasSubstr("\n"))) << entry.name;
        EXPECT_THAT(std::string(entry.text), Not(HasSubstr("\t")))
            << entry.name; // the table file's separator
    }
}

// What only a fragment can be: a part of a path, a mask, an extension, a tag of a file.
TEST(MessageTable, WhatTheProgramWorksWithIsAFragment) {
    std::size_t fragments = 0;
    for (const TableEntry& entry : MessageTable()) {
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
    for (const TableEntry& entry : MessageTable()) {
        const std::vector<std::string> parts = Split(entry.text, '|');
        if (entry.fragment || parts.size() < 2) continue;
        ++filters;
        EXPECT_TRUE(entry.name.ends_with("Filter")) << entry.name;
        ASSERT_EQ(parts.size() % 2, 0U) << entry.name;
        for (std::size_t i = 1; i < parts.size(); i += 2)
            EXPECT_TRUE(parts[i].starts_with("*.") || parts[i] == "savegame.*") << entry.name;
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
    EXPECT_EQ(LoadMessage(msg::kGigabytes), " Gigabyte");
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "Interrotto: è finita");
    EXPECT_EQ(LoadMessage(msg::kMegabytes), " Mb");
}

TEST_F(MessageFile, TakesEmptyTextsAndALastLineWithoutEnd) {
    ASSERT_TRUE(Load("114\t\n135\tfine"));
    EXPECT_EQ(LoadMessage(msg::kGigabytes), "");
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "fine");
}

TEST_F(MessageFile, TakesAByteOrderMark) {
    ASSERT_TRUE(
        Load("\xEF\xBB\xBF"
             "135\tfine\n"));
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "fine");
}

TEST_F(MessageFile, SkipsIdsThatTheTableLacks) {
    EXPECT_TRUE(Load("1\tnothing\n135\tfine\n"));
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "fine");
}

TEST_F(MessageFile, ABadLineChangesNothing) {
    for (const char* bad : {"135 no tab\n", "x\ttext\n", "135x\ttext\n", "\ttext\n", "99999999999\ttext\n"}) {
        EXPECT_FALSE(Load(std::string("114\tchanged\n\n") + bad)) << bad;
        EXPECT_EQ(RefusedLinesText(loading), "3") << bad;
        EXPECT_EQ(LoadMessage(msg::kGigabytes), " Gb");
        EXPECT_EQ(LoadMessage(msg::kBreakUser), "Break user");
    }
}

TEST_F(MessageFile, AMissingFileChangesNothing) {
    for (const char* path : {"C:\\Kelvash\\missing.txt", "C:\\Kelvash"}) {
        const TableLoading missing = LoadMessageTable(path);
        EXPECT_FALSE(missing.Taken);
        EXPECT_EQ(RefusedLinesText(missing), "");
        EXPECT_TRUE(missing.Missing.empty());
    }
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "Break user");
}

TEST_F(MessageFile, NothingTakesThePlaceOfAFragment) {
    ASSERT_TRUE(Load(
        "1201\t\n135\tBasta\n387\t*\n# note\n360\t\\..\\x\r\n1215\tsavegame.*\n364\t#CODE=\n113\tJa?\n"));
    EXPECT_EQ(loading.RefusedLines,
              (std::vector<std::size_t>{1, 3, 5, 7})); // one that changes nothing is none
    EXPECT_EQ(LoadFragment(fragment::kExportFolder), "\\out_files");
    EXPECT_EQ(LoadFragment(fragment::kSavegameMask), "savegame.*");
    EXPECT_EQ(LoadFragment(fragment::kMarkerName), "\\Kelvash.txt");
    EXPECT_EQ(LoadFragment(fragment::kMarkerLevelCode), "#LEVEL_CODE=");
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "Basta"); // the rest of the file holds
    EXPECT_EQ(LoadMessage(msg::kReplaceQuestion), "Ja?");
}

TEST_F(MessageFile, NoFragmentAtAllCanBeReplaced) {
    std::string file;
    std::size_t fragments = 0;
    for (const TableEntry& entry : MessageTable())
        if (entry.fragment) ++fragments, file += std::to_string(entry.id) + "\tchanged\n";
    ASSERT_TRUE(Load(file));
    EXPECT_EQ(loading.RefusedLines.size(), fragments);
    EXPECT_EQ(LoadFragment(fragment::kMarkerName), "\\Kelvash.txt");
}

TEST_F(MessageFile, AMarkThatIsLostOrAddedIsRefused) {
    ASSERT_TRUE(
        Load("102\tohne Namen\n133\t~3: \"~1\"~2\n130\t\"~1\" fehlt, ~2\n135\t~1\n1235\tx\n131\t~ 5 %\n"));
    EXPECT_EQ(loading.RefusedLines, (std::vector<std::size_t>{1, 3, 4, 5}));
    EXPECT_EQ(LoadMessage(msg::kCannotCreateFolder), "I can not create '~1' folder");
    EXPECT_EQ(LoadMessage(msg::kSubprocessFailed, {"a", "b", "c"}),
              "c: \"a\"b"); // another order is fine
    EXPECT_EQ(LoadMessage(msg::kUtilityMissing, {"x"}), "Utility \"x\" doesn't exist");
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "Break user");
    EXPECT_EQ(LoadMessage(msg::kPipeFailed), "~ 5 %"); // no mark without a number
}

TEST_F(MessageFile, AFilterKeepsItsMasks) {
    ASSERT_TRUE(
        Load("204\tArchivi (*.kva)|*.kva\n206\tArchivi|*.*\n1209\tZip\n1054\tZip|*.zip|Tutti|*.*|x|*\n"));
    EXPECT_EQ(loading.RefusedLines, (std::vector<std::size_t>{2, 3, 4}));
    EXPECT_EQ(LoadMessage(msg::kLoadArchiveFilter), "Archivi (*.kva)|*.kva");
    EXPECT_EQ(LoadMessage(msg::kExportFilter), "Zip files (*.zip)|*.zip");
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
    EXPECT_EQ(LoadMessage(msg::kGigabytes), " Gb");
    SetTranslation({});
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "Break user");
}

TEST(MessageTable, AQuestionSaysWhichOfItsAnswersCanLoseSomething) {
    EXPECT_EQ(HarmOf(msg::kReplaceFile), Harm::YesLoses);
    EXPECT_EQ(HarmOf(msg::kEqualQuestion), Harm::NoLoses);
    EXPECT_EQ(HarmOf(msg::kArchiveChangedQuestion), Harm::AnyLoses);
    EXPECT_EQ(HarmOf(msg::kExportShotsQuestion), Harm::NothingLoses);
    EXPECT_EQ(HarmOf(msg::kBreakUser), std::nullopt);
}

TEST(MessageTable, KnowsWhatAsksForAPassword) {
    EXPECT_TRUE(AsksPassword(msg::kZipPassword));
    EXPECT_FALSE(AsksPassword(msg::kRenameTr4Input));
}

TEST_F(MessageFile, IsToldWhatItLacks) {
    std::string whole = ExportedMessages();
    ASSERT_TRUE(Load(whole));
    EXPECT_TRUE(loading.Missing.empty());
    EXPECT_TRUE(loading.RefusedLines.empty());
    const std::string line = "135\tBreak user\n";
    const std::size_t at = whole.find(line);
    ASSERT_NE(at, std::string::npos);
    ASSERT_TRUE(Load(whole.erase(at, line.size())));
    EXPECT_EQ(loading.Missing, std::vector<std::int32_t>{135});
}

TEST_F(MessageFile, ACheckTakesNothing) {
    test::MakeFile(home / "italian.txt", "135\tfine\n360\tx\n");
    const TableLoading checked = CheckMessageTable("C:\\Kelvash\\italian.txt");
    EXPECT_TRUE(checked.Taken);
    EXPECT_EQ(checked.RefusedLines, std::vector<std::size_t>{2});
    EXPECT_EQ(LoadMessage(msg::kBreakUser), "Break user");
}

} // namespace
} // namespace kelvash::program
