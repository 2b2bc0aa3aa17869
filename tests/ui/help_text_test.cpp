#include "ui/help_text.h"

#include <gmock/gmock.h>

namespace kelvash::ui {

static bool operator==(const HelpTopic& a, const HelpTopic& b) {
    return a.title == b.title && a.position == b.position;
}
static void PrintTo(const HelpTopic& topic, std::ostream* out) {
    *out << '"' << topic.title << "\" at " << topic.position;
}
static bool operator==(const TextMatch& a, const TextMatch& b) {
    return a.position == b.position && a.length == b.length;
}
static void PrintTo(const TextMatch& match, std::ostream* out) {
    *out << match.length << " at " << match.position;
}

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

std::vector<HelpTopic> MainTopics(std::string_view text) {
    return HelpTopics(text, TopicKind::Main);
}
std::vector<HelpTopic> SubTopics(std::string_view text) {
    return HelpTopics(text, TopicKind::Sub);
}
std::optional<TextMatch> Next(std::string_view text, std::string_view what, std::size_t from = 0) {
    return FindText(text, what, from, SearchDirection::Forward, SearchUnit::Anywhere);
}
std::optional<TextMatch> Previous(std::string_view text, std::string_view what, std::size_t from) {
    return FindText(text, what, from, SearchDirection::Backward, SearchUnit::Anywhere);
}
std::optional<TextMatch> NextWord(std::string_view text, std::string_view what, std::size_t from = 0) {
    return FindText(text, what, from, SearchDirection::Forward, SearchUnit::WholeWord);
}
std::optional<TextMatch> PreviousWord(std::string_view text, std::string_view what, std::size_t from) {
    return FindText(text, what, from, SearchDirection::Backward, SearchUnit::WholeWord);
}

TEST(HelpText, TellsTopicsOfTheTwoKindsApartWithTheirPositions) {
    const std::string_view text = "[One]\ntext\n{Two}\n{Three}\n[Four]";
    EXPECT_THAT(MainTopics(text), ElementsAre(HelpTopic{"One", 0}, HelpTopic{"Four", 25}));
    EXPECT_THAT(SubTopics(text), ElementsAre(HelpTopic{"Two", 11}, HelpTopic{"Three", 17}));
}

TEST(HelpText, ATextWithoutBracketsHasNoTopics) {
    EXPECT_THAT(MainTopics("no topics (here) #1#"), IsEmpty());
    EXPECT_THAT(SubTopics(""), IsEmpty());
}

TEST(HelpText, ABracketInsideATitleEndsItAtTheFirstClosingOne) {
    EXPECT_THAT(MainTopics("[The [Play] button]x[Next]"),
                ElementsAre(HelpTopic{"The [Play", 0}, HelpTopic{"Next", 20}));
    EXPECT_THAT(SubTopics("{a{b}c}"), ElementsAre(HelpTopic{"a{b", 0}));
}

TEST(HelpText, AClosingCharacterWithoutATitleIsText) {
    EXPECT_THAT(MainTopics("]a] [b]"), ElementsAre(HelpTopic{"b", 4}));
}

TEST(HelpText, TheKindsDoNotSeeEachOther) {
    EXPECT_THAT(MainTopics("[a {b} c]"), ElementsAre(HelpTopic{"a {b} c", 0}));
    EXPECT_THAT(SubTopics("[a {b} c]"), ElementsAre(HelpTopic{"b", 3}));
    EXPECT_THAT(MainTopics("[a {b] c}"), ElementsAre(HelpTopic{"a {b", 0}));
}

TEST(HelpText, AnUnclosedTitleTakesInTheNextOne) {
    EXPECT_THAT(MainTopics("[One\ntext\n[Two]\n[Three]"),
                ElementsAre(HelpTopic{"One\ntext\n[Two", 0}, HelpTopic{"Three", 16}));
}

TEST(HelpText, ATitleUnclosedAtTheEndIsNoTopic) {
    EXPECT_THAT(MainTopics("[One] [Two"), ElementsAre(HelpTopic{"One", 0}));
    EXPECT_THAT(SubTopics("{"), IsEmpty());
}

TEST(HelpText, AnEmptyTitleIsATopic) {
    EXPECT_THAT(MainTopics("x[]"), ElementsAre(HelpTopic{"", 1}));
}

TEST(HelpText, PositionsCountBytes) {
    EXPECT_THAT(MainTopics("è[Città]"), ElementsAre(HelpTopic{"Città", 2}));
}

TEST(HelpText, FindsTheFirstOccurrenceOfAMark) {
    EXPECT_THAT(FindMark("ab #4# cd #4#", 4), Optional(3U));
    EXPECT_THAT(FindMark("#14# #41# #4#", 4), Optional(10U));
    EXPECT_EQ(FindMark("#14# 4# #4 #", 4), std::nullopt);
    EXPECT_EQ(FindMark("", 1), std::nullopt);
}

TEST(HelpText, SearchesForwardWithoutRegardToCase) {
    const std::string_view text = "Level level LEVEL";
    EXPECT_THAT(Next(text, "lEVEL"), Optional(TextMatch{0, 5}));
    EXPECT_THAT(Next(text, "level", 1), Optional(TextMatch{6, 5}));
    EXPECT_THAT(Next(text, "level", 12), Optional(TextMatch{12, 5}));
    EXPECT_EQ(Next(text, "level", 13), std::nullopt);
    EXPECT_EQ(Next(text, "levels"), std::nullopt);
    EXPECT_EQ(Next(text, "level", 99), std::nullopt);
}

TEST(HelpText, SearchesBackwardForAMatchThatEndsBeforeThePosition) {
    const std::string_view text = "Level level LEVEL";
    EXPECT_THAT(Previous(text, "level", 17), Optional(TextMatch{12, 5}));
    EXPECT_THAT(Previous(text, "level", 99), Optional(TextMatch{12, 5}));
    EXPECT_THAT(Previous(text, "level", 16), Optional(TextMatch{6, 5}));
    EXPECT_THAT(Previous(text, "level", 6), Optional(TextMatch{0, 5}));
    EXPECT_THAT(Previous(text, "level", 5), Optional(TextMatch{0, 5}));
    EXPECT_EQ(Previous(text, "level", 4), std::nullopt);
    EXPECT_EQ(Previous(text, "level", 0), std::nullopt);
}

TEST(HelpText, NothingIsFoundForAnEmptyTextOrInOne) {
    EXPECT_EQ(Next("abc", ""), std::nullopt);
    EXPECT_EQ(Previous("abc", "", 3), std::nullopt);
    EXPECT_EQ(Next("", "a"), std::nullopt);
    EXPECT_EQ(Previous("", "a", 0), std::nullopt);
}

TEST(HelpText, AWholeWordStandsBetweenSeparators) {
    for (const char c : std::string_view("{}[] .=;:,()\n\r")) {
        const std::string before = std::string("x") + c + "level";
        const std::string behind = std::string("level") + c + "x";
        EXPECT_THAT(NextWord(before, "level"), Optional(TextMatch{2, 5})) << int{c};
        EXPECT_THAT(NextWord(behind, "level"), Optional(TextMatch{0, 5})) << int{c};
    }
}

TEST(HelpText, AnythingElseBesideAWordMakesItPartOfALongerOne) {
    for (const char c : std::string_view("a0-_\"'!?#*/\\\t<>")) {
        EXPECT_EQ(NextWord(std::string("x ") + c + "level", "level"), std::nullopt) << c;
        EXPECT_EQ(NextWord(std::string("level") + c + " x", "level"), std::nullopt) << c;
    }
    EXPECT_EQ(NextWord("èlevel levelè", "level"), std::nullopt);
}

TEST(HelpText, TheBordersOfTheTextEndAWord) {
    EXPECT_THAT(NextWord("level", "LEVEL"), Optional(TextMatch{0, 5}));
    EXPECT_THAT(PreviousWord("level", "LEVEL", 5), Optional(TextMatch{0, 5}));
}

TEST(HelpText, PassesOverPartsOfWordsInBothDirections) {
    const std::string_view text = "levels: level, sublevel level";
    EXPECT_THAT(NextWord(text, "level"), Optional(TextMatch{8, 5}));
    EXPECT_THAT(NextWord(text, "level", 9), Optional(TextMatch{24, 5}));
    EXPECT_THAT(PreviousWord(text, "level", 28), Optional(TextMatch{8, 5}));
    EXPECT_EQ(PreviousWord(text, "level", 12), std::nullopt);
    EXPECT_EQ(PreviousWord("levels", "level", 6), std::nullopt);
}

TEST(HelpText, AWholeWordMayHoldSeparators) {
    EXPECT_THAT(NextWord("domain windows, main window", "main window"), Optional(TextMatch{16, 11}));
}

TEST(HelpText, AccentedLettersHaveCaseToo) {
    EXPECT_THAT(Next("la città", "CITTÀ"), Optional(TextMatch{3, 6}));
    EXPECT_THAT(Previous("È è", "è", 5), Optional(TextMatch{3, 2}));
    EXPECT_THAT(Previous("È è", "è", 4), Optional(TextMatch{0, 2}));
}

TEST(HelpText, BytesThatAreNoCharactersAreSearchedAsWell) {
    const std::string_view text = "\x80\xE8 a\xFF level";
    EXPECT_THAT(Next(text, "LEVEL"), Optional(TextMatch{6, 5}));
    EXPECT_THAT(Previous(text, "A", text.size()), Optional(TextMatch{3, 1}));
}

TEST(TextToShow, TakesUtf8AsItIsAndAnythingElseForWindows1252) {
    EXPECT_EQ(TextToShow("città"), "città");
    EXPECT_EQ(TextToShow("citt\xE0 \x80"), "città €");
    EXPECT_EQ(TextToShow("\xC3\xA0 \xE0"), "Ã\xC2\xA0 à");
    EXPECT_EQ(TextToShow(""), "");
}

TEST(TextToShow, MakesEveryLineEndALineFeed) {
    EXPECT_EQ(TextToShow("a\r\nb\rc\n\n\r\r\nd\r"), "a\nb\nc\n\n\n\nd\n");
}

TEST(TextToShow, LeavesTheByteOrderMarkOut) {
    EXPECT_EQ(TextToShow("\xEF\xBB\xBF[One]"), "[One]");
    EXPECT_EQ(TextToShow("[One]\xEF\xBB\xBF"), "[One]\xEF\xBB\xBF");
}

// --- as it is read ---

using ui::ShownHelp;
using ui::WithoutMarks;

TEST(HelpText, IsReadWithoutTheMarksOfItsFormat) {
    EXPECT_EQ(WithoutMarks("#1#\n[Main]\n\n{Sub}\ntext\n").text, "Main\n\nSub\ntext\n");
    EXPECT_EQ(WithoutMarks("#1# #20#\n  #3#\t[Main] #4#\nlast").text, "Main\nlast");
    EXPECT_EQ(WithoutMarks("[]").text, "");
    EXPECT_EQ(WithoutMarks("").text, "");
    EXPECT_EQ(WithoutMarks("\n\n").text, "\n\n");
}

TEST(HelpText, ShowsWhatOnlyLooksLikeItsFormat) {
    for (const char* text : {"see [1] and {2}", "#4", "##", "#x#", "nr. #4# here", "[open\nclosed]", "[a] b",
                             "[a][b]", "] [", "{a]", "(*) savegame.*"})
        EXPECT_EQ(WithoutMarks(text).text, text);
}

TEST(HelpText, KnowsWhichLinesAreTitles) {
    const ShownHelp shown = WithoutMarks("text\n#1#\n[Main]\n\n{Sub}");
    ASSERT_EQ(shown.titles.size(), 2U);
    EXPECT_EQ(shown.titles[0].line, 1U);
    EXPECT_EQ(shown.titles[0].kind, TopicKind::Main);
    EXPECT_EQ(shown.titles[1].line, 3U);
    EXPECT_EQ(shown.titles[1].kind, TopicKind::Sub);
}

TEST(HelpText, FindsAPositionOfTheFileInWhatIsRead) {
    const std::string text = "a\n#1#\n[Main]\nend"; // read as "a\nMain\nend"
    const ShownHelp shown = WithoutMarks(text);
    ASSERT_EQ(shown.text, "a\nMain\nend");
    EXPECT_EQ(shown.PositionOf(0), 0U);
    EXPECT_EQ(shown.PositionOf(text.find("#1#")), 2U);
    EXPECT_EQ(shown.PositionOf(text.find('[')), 2U);
    EXPECT_EQ(shown.PositionOf(text.find("Main")), 2U);
    EXPECT_EQ(shown.PositionOf(text.find(']')), 6U);
    EXPECT_EQ(shown.PositionOf(text.find("end")), 7U);
    EXPECT_EQ(shown.PositionOf(text.size()), 10U);
    EXPECT_EQ(WithoutMarks("a\n#1#").PositionOf(2), 2U);
}

} // namespace
} // namespace kelvash::ui
