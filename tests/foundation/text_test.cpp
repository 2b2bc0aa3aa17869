#include "foundation/text.h"

#include <gmock/gmock.h>

namespace kelvash {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Text, TrimTakesBlanksAndNothingElse) {
    EXPECT_EQ(Trim("  a b  "), "a b");
    EXPECT_EQ(Trim("\t a\r\n"), "\t a\r\n");
    EXPECT_EQ(Trim("   "), "");
    EXPECT_EQ(Trim(""), "");
    EXPECT_EQ(Trim(std::string_view("\0 ", 2)), std::string_view("\0", 1));
}

TEST(Text, FoldsAsciiAndAccentedLetters) {
    EXPECT_EQ(FoldCase("tomb4.exe_Z"), "TOMB4.EXE_Z");
    EXPECT_EQ(FoldCase("caffè ñ ü"), "CAFFÈ Ñ Ü");
    EXPECT_EQ(FoldCase("ж"), "Ж");
    EXPECT_EQ(FoldCase("ß"), "ß"); // no single capital
    EXPECT_EQ(FoldCase(""), "");
}

TEST(Text, FoldingKeepsBytesThatAreNoCharacters) {
    EXPECT_EQ(FoldCase("a\xE8z\xFF"), "A\xE8Z\xFF");
    EXPECT_EQ(FoldCase("\xC3"), "\xC3");
    EXPECT_EQ(FoldCase(std::string_view("è\0a", 4)), std::string_view("È\0A", 4));
}

TEST(Text, ComparesByTheUpperCaseForm) {
    EXPECT_EQ(CompareNoCase("LEVEL", "level"), 0);
    EXPECT_LT(CompareNoCase("a", "B"), 0);
    EXPECT_GT(CompareNoCase("b", "A"), 0);
    // The underscore stands behind the capitals, so behind all letters; by the small letters it would stand
    // before.
    EXPECT_GT(CompareNoCase("a_b", "azb"), 0);
    EXPECT_LT(CompareNoCase("level", "level2"), 0);
    EXPECT_GT(CompareNoCase("level2", "LEVEL"), 0);
    EXPECT_EQ(CompareNoCase("", ""), 0);
    EXPECT_LT(CompareNoCase("", "a"), 0);
}

TEST(Text, ComparesAccentedLettersWithoutCase) {
    EXPECT_EQ(CompareNoCase("caffè", "CAFFÈ"), 0);
    EXPECT_GT(CompareNoCase("è", "z"), 0); // behind ASCII
    EXPECT_LT(CompareNoCase("z", "É"), 0);
    EXPECT_TRUE(EqualNoCase("Über", "über"));
    EXPECT_FALSE(EqualNoCase("uber", "über"));
}

TEST(Text, ComparesStartsAndEndsWithoutCase) {
    EXPECT_TRUE(StartsWithNoCase("Savegame.3", "SAVEGAME."));
    EXPECT_FALSE(StartsWithNoCase("Save", "savegame"));
    EXPECT_TRUE(EndsWithNoCase("C:\\x\\My.KVA", ".kva"));
    EXPECT_FALSE(EndsWithNoCase("kva", ".kva"));
    EXPECT_TRUE(StartsWithNoCase("x", ""));
    EXPECT_TRUE(EndsWithNoCase("x", ""));
}

TEST(Text, FindsWithoutCase) {
    EXPECT_EQ(FindNoCase("a\\FILES\\b", "\\files\\"), 1U);
    EXPECT_EQ(FindNoCase("abcABC", "BC", 2), 4U);
    EXPECT_EQ(FindNoCase("abc", "x"), std::string_view::npos);
    EXPECT_EQ(FindNoCase("abc", "abcd"), std::string_view::npos);
    EXPECT_EQ(FindNoCase("abc", ""), 0U);
    EXPECT_EQ(FindNoCase("abc", "", 3), 3U);
    EXPECT_EQ(FindNoCase("abc", "a", 4), std::string_view::npos);
}

TEST(Text, SplitsAtSeparators) {
    EXPECT_THAT(Split("", '|'), IsEmpty());
    EXPECT_THAT(Split("a", '|'), ElementsAre("a"));
    EXPECT_THAT(Split("a|", '|'), ElementsAre("a", ""));
    EXPECT_THAT(Split("|a||b", '|'), ElementsAre("", "a", "", "b"));
}

TEST(Text, JoinsWithSeparators) {
    EXPECT_EQ(Join({}, ", "), "");
    EXPECT_EQ(Join({"a"}, ", "), "a");
    EXPECT_EQ(Join({"a", "", "b"}, "|"), "a||b");
    EXPECT_EQ(Join({"", "a"}, "|"), "|a");
}

TEST(Text, PadsNumbersWithZeros) {
    EXPECT_EQ(ZeroPadded(7, 4), "0007");
    EXPECT_EQ(ZeroPadded(12345, 4), "12345");
    EXPECT_EQ(ZeroPadded(-7, 4), "-0007");
    EXPECT_EQ(ZeroPadded(0, 0), "0");
    EXPECT_EQ(ZeroPadded(INT64_MIN, 1), "-9223372036854775808");
}

TEST(Text, ReadsALeadingNumber) {
    EXPECT_EQ(LeadingNumber("  12 levels"), 12);
    EXPECT_EQ(LeadingNumber("-3.5"), -3);
    EXPECT_EQ(LeadingNumber("x12"), 0);
    EXPECT_EQ(LeadingNumber(""), 0);
    EXPECT_EQ(LeadingNumber("   "), 0);
    EXPECT_EQ(LeadingNumber("2147483648"), 2147483647);
    EXPECT_EQ(LeadingNumber("-99999999999"), INT32_MIN);
}

TEST(Text, ReadsAWholeNumber) {
    EXPECT_EQ(WholeNumber("-42"), -42);
    EXPECT_EQ(WholeNumber("2147483647"), 2147483647);
    EXPECT_EQ(WholeNumber("2147483648"), std::nullopt);
    EXPECT_EQ(WholeNumber("4 "), std::nullopt);
    EXPECT_EQ(WholeNumber(" 4"), std::nullopt);
    EXPECT_EQ(WholeNumber(""), std::nullopt);
    EXPECT_EQ(WholeNumber("-"), std::nullopt);
}

TEST(AnsiText, AllBytesSurviveARoundTrip) {
    std::string bytes;
    for (int code = 0; code < 256; ++code)
        bytes += static_cast<char>(code);
    EXPECT_EQ(AnsiFromUtf8(Utf8FromAnsi(bytes)), bytes);
}

TEST(AnsiText, TheCodesOfWindowsStandForTheirCharacters) {
    EXPECT_EQ(Utf8FromAnsi("\x80\x8A\x99\xE8\xFF"), "€Š™èÿ");
    EXPECT_EQ(AnsiFromUtf8("€Š™èÿ"), "\x80\x8A\x99\xE8\xFF");
    // The five holes are the controls of the same number.
    EXPECT_EQ(Utf8FromAnsi("\x81\x8D\x8F\x90\x9D"), "\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D");
}

TEST(AnsiText, WhatHasNoPlaceBecomesAQuestionMark) {
    EXPECT_EQ(AnsiFromUtf8("aжb"), "a?b");
    EXPECT_EQ(AnsiFromUtf8("日本"), "??");
    EXPECT_EQ(AnsiFromUtf8("😀!"), "?!");
    EXPECT_EQ(AnsiFromUtf8("\xC2\x80"), "?"); // the control whose code means the euro
}

TEST(AnsiText, BytesThatAreNoUtf8Stay) {
    EXPECT_EQ(AnsiFromUtf8("caff\xE8"), "caff\xE8");
    EXPECT_EQ(AnsiFromUtf8("\xE8z"), "\xE8z");
    EXPECT_EQ(AnsiFromUtf8("\xC3"), "\xC3");
    EXPECT_EQ(AnsiFromUtf8("\xFF\xFE"), "\xFF\xFE");
}

TEST(AnsiText, LongSpellingsOfAsciiAreNoCharacters) {
    EXPECT_EQ(AnsiFromUtf8("\xC0\xAF"), "\xC0\xAF");
    EXPECT_EQ(AnsiFromUtf8("\xE0\x80\xAF"), "\xE0\x80\xAF"); // would be "/"
    EXPECT_EQ(AnsiFromUtf8("\xF0\x80\x81\x9C"), "\xF0\x80\x81\x9C");
    EXPECT_EQ(AnsiFromUtf8("\xF7\xBF\xBF\xBF"), "\xF7\xBF\xBF\xBF");
}

TEST(AnsiText, BytesThatBeginNoCharacterStay) {
    EXPECT_EQ(AnsiFromUtf8("\xF9\x80\x80\x80"), "\xF9\x80\x80\x80");
    EXPECT_EQ(AnsiFromUtf8("\xFF\xBF\xBF\xBF"), "\xFF\xBF\xBF\xBF");
    EXPECT_EQ(AnsiFromUtf8("\xED\xA0\x80"), "\xED\xA0\x80"); // half of a pair
}

TEST(AnsiText, TellsUtf8FromOtherBytes) {
    EXPECT_TRUE(IsUtf8(""));
    EXPECT_TRUE(IsUtf8("plain"));
    EXPECT_TRUE(IsUtf8(std::string_view("a\0è€😀", 11)));
    EXPECT_TRUE(IsUtf8("\xC2\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBD\xF4\x8F\xBF\xBF"));
    for (const char* const text : {"caff\xE8", "\xC3", "\x80", "\xE2\x82", "\xC0\xAF", "\xED\xA0\x80",
                                   "\xF4\x90\x80\x80", "\xF9\x80\x80\x80", "\xFF", "a\xE8z"})
        EXPECT_FALSE(IsUtf8(text)) << text;
}

TEST(AnsiText, NulsAreCharactersLikeOthers) {
    EXPECT_EQ(AnsiFromUtf8(std::string_view("a\0è", 4)), std::string_view("a\0\xE8", 3));
    EXPECT_EQ(Utf8FromAnsi(std::string_view("a\0\xE8", 3)), std::string_view("a\0è", 4));
}

TEST(CleanText, PlainTextsOfAnyAlphabetStay) {
    for (const char* text :
         {"", "City of Khamoon", "caffè «x» 日本 Лара", "a\tb\r\nc", "#1 <b>bold</b> & 100 %", "\u00A0"})
        EXPECT_EQ(CleanText(text), text);
}

TEST(CleanText, EscapeSequencesOfTerminalsGoWhole) {
    EXPECT_EQ(CleanText("a\x1B[31mred\x1B[0m!"), "ared!");
    EXPECT_EQ(CleanText("\x1B[2J\x1B[H\x1B[?25lx"), "x");
    EXPECT_EQ(CleanText("\x1B]0;title\ax\x1B]52;c;ZXZpbA==\x1B\\y"), "xy");
    EXPECT_EQ(CleanText("\x1BPq#0\x1B\\z\x1B_app\x1B\\\x1B^pm\a."), "z.");
    EXPECT_EQ(CleanText("\x1B"
                        "c\x1B(0k\x1B#8x"),
              "kx");
    EXPECT_EQ(CleanText("\u009B31mred\u009D0;t\a!"), "red!");
    EXPECT_EQ(CleanText("end\x1B"), "end");
    EXPECT_EQ(CleanText("end\x1B[12;"), "end");
    EXPECT_EQ(CleanText("a\x1B]no end\nnext line"), "a\nnext line");
}

TEST(CleanText, ControlsAndBadBytesGo) {
    EXPECT_EQ(CleanText(std::string("a\0b\bc\ad\x7F"
                                    "e\v",
                                    10)),
              "abcde");
    EXPECT_EQ(CleanText("a\u0085b\u0080c"), "abc");
    EXPECT_EQ(CleanText("\x9B"
                        "31m"),
              "\uFFFD31m"); // an 8-bit terminal would take the byte for a sequence
}

TEST(CleanText, WhatTurnsTheDirectionGoes) {
    EXPECT_EQ(CleanText("photo\u202Egpj.exe"), "photogpj.exe");
    EXPECT_EQ(CleanText("\u2066a\u2069\u200Fb\u200Ec\u061C"), "abc");
}

TEST(CleanLine, IsOneLine) {
    EXPECT_EQ(CleanLine("City\r\n! fake message"), "City ! fake message");
    EXPECT_EQ(CleanLine(std::string("a\0\0b\tc\n", 7)), "a b c ");
    EXPECT_EQ(CleanLine("a\x1B[1mb"), "ab");
}

TEST(CleanLines, AreALineEachAndNotTooMany) {
    EXPECT_EQ(CleanLines({}), "");
    EXPECT_EQ(CleanLines({"a", "b\nc"}), "\r\na\r\nb c");
    EXPECT_EQ(CleanLines(std::vector<std::string>(21, "x")).size(), 20U * 3 + 5);
}

TEST(HoldsControls, KnowsThoseAboveAscii) {
    EXPECT_FALSE(HoldsControls("caffè"));
    EXPECT_TRUE(HoldsControls("a\nb"));
    EXPECT_TRUE(HoldsControls("a\x7F"));
    EXPECT_TRUE(HoldsControls("a\u009Bb"));
    EXPECT_TRUE(HoldsControls(std::string_view("\0", 1)));
}

} // namespace
} // namespace kelvash
