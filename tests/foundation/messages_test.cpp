#include "foundation/messages.h"

#include <gmock/gmock.h>

#include <set>

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

// A table of one text, under the id of the first entry.
class LoadedMessage : public test::FoundationHome {
  protected:
    std::string Load(const std::string& text, const MessageArgs& args) {
        test::MakeFile(home / "table.txt", "102\t" + text + "\n");
        EXPECT_TRUE(LoadMessageTable("C:\\Kelvash\\table.txt"));
        return LoadMessage(MessageId::kCannotCreateFolder, args);
    }
};

TEST_F(LoadedMessage, WithoutArgumentsTheTextIsUnchanged) {
    EXPECT_EQ(Load("\\note~1.txt", {}), "\\note~1.txt");
}

TEST_F(LoadedMessage, OnlyTheFirstOccurrenceOfAMarkIsFilled) {
    EXPECT_EQ(Load("a~1b~1", {"X"}), "aXb~1");
}

TEST_F(LoadedMessage, AMarkWithoutAnArgumentStays) {
    EXPECT_EQ(Load("~1 and ~2", {"X"}), "X and ~2");
    EXPECT_EQ(Load("only ~1", {"X", "Y"}), "only X");
}

TEST_F(LoadedMessage, FourteenMarksAreFilledEachWithItsOwn) {
    EXPECT_EQ(Load("~1.~2.~3.~4.~5.~6.~7.~8.~9.~10.~11.~12.~13.~14",
                   {"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l", "m", "n"}),
              "a.b.c.d.e.f.g.h.i.j.k.l.m.n");
}

TEST_F(LoadedMessage, AMarkInsideAnArgumentIsFilledInItsTurn) {
    EXPECT_EQ(Load("~1 - ~2", {"<~2>", "X"}), "<X> - ~2");
    EXPECT_EQ(Load("~2 - ~1", {"<~2>", "X"}), "X - <~2>"); // the true one stands first
    EXPECT_EQ(Load("~1~2", {"a~1", "X"}), "a~1X");         // its own turn is over
}

class MessageFile : public test::FoundationHome {
  protected:
    bool Load(const std::string& bytes) {
        test::MakeFile(home / "italian.txt", bytes);
        return LoadMessageTable("C:\\Kelvash\\italian.txt");
    }
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
        EXPECT_FALSE(Load(std::string("114\tchanged\n") + bad)) << bad;
        EXPECT_EQ(LoadMessage(MessageId::kGigabytes, {}), " Gb");
        EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
    }
}

TEST_F(MessageFile, AMissingFileChangesNothing) {
    EXPECT_FALSE(LoadMessageTable("C:\\Kelvash\\missing.txt"));
    EXPECT_FALSE(LoadMessageTable("C:\\Kelvash"));
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
}

TEST_F(MessageFile, ASecondFileStartsFromTheBuiltInTexts) {
    ASSERT_TRUE(Load("114\tfirst\n"));
    ASSERT_TRUE(Load("135\tsecond\n"));
    EXPECT_EQ(LoadMessage(MessageId::kGigabytes, {}), " Gb");
    ResetMessages();
    EXPECT_EQ(LoadMessage(MessageId::kBreakUser, {}), "Break user");
}

} // namespace
} // namespace kelvash
