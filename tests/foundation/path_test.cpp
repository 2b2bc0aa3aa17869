#include "foundation/path.h"

#include <gtest/gtest.h>

namespace kelvash {
namespace {

TEST(Path, FileNameIsBehindTheLastSlashOrColon) {
    EXPECT_EQ(FileNameOf("C:\\a\\b.txt"), "b.txt");
    EXPECT_EQ(FileNameOf("C:b.txt"), "b.txt");
    EXPECT_EQ(FileNameOf("b.txt"), "b.txt");
    EXPECT_EQ(FileNameOf("C:\\a\\"), "");
    EXPECT_EQ(FileNameOf(""), "");
}

TEST(Path, FolderIsBeforeTheLastSlash) {
    EXPECT_EQ(FolderOf("C:\\a\\b.txt"), "C:\\a");
    EXPECT_EQ(FolderOf("C:\\b.txt"), "C:");
    EXPECT_EQ(FolderOf("C:b.txt"), "");
    EXPECT_EQ(FolderOf("b.txt"), "");
    EXPECT_EQ(FolderOf("C:\\a\\"), "C:\\a");
}

TEST(Path, ExtensionComesFromTheLastDot) {
    EXPECT_EQ(ExtensionOf("C:\\a\\b.tar.gz"), ".gz");
    EXPECT_EQ(ExtensionOf("C:\\a\\b"), "");
    EXPECT_EQ(ExtensionOf("b."), ".");
}

TEST(Path, ADotInAFolderCountsWhenTheFileHasNone) {
    EXPECT_EQ(ExtensionOf("C:\\my.games\\trle"), ".games\\trle");
    EXPECT_EQ(ReplaceExtension("C:\\my.games\\trle", ".x"), "C:\\my.x");
    EXPECT_EQ(StripExtension("C:\\my.games\\trle"), "C:\\my");
}

TEST(Path, BaseNameIsTheFileNameWithoutExtension) {
    EXPECT_EQ(BaseNameOf("C:\\a.b\\level.tr4"), "level");
    EXPECT_EQ(BaseNameOf("C:\\a.b\\level"), "level");
    EXPECT_EQ(BaseNameOf("C:level.old.tr4"), "level.old");
}

TEST(Path, StripsAndReplacesExtensions) {
    EXPECT_EQ(StripExtension("level.tr4"), "level");
    EXPECT_EQ(StripExtension("level"), "level");
    EXPECT_EQ(StripExtension(".tr4"), "");
    EXPECT_EQ(ReplaceExtension("C:\\a\\x.tom", ".tr4"), "C:\\a\\x.tr4");
    EXPECT_EQ(ReplaceExtension("C:\\a\\x", ".tr4"), "C:\\a\\x.tr4");
}

TEST(Path, UrlFileNameTakesEitherSlash) {
    EXPECT_EQ(UrlFileName("http://host/a/level.zip"), "level.zip");
    EXPECT_EQ(UrlFileName("http://host/a\\level.zip"), "level.zip");
    EXPECT_EQ(UrlFileName("level.zip"), "level.zip");
    EXPECT_EQ(UrlFileName("http://host/"), "");
}

TEST(Path, UrlHostEndsAtTheFirstSlashBehindTheScheme) {
    EXPECT_EQ(UrlHost("http://www.host.com/a/b.zip"), "http://www.host.com");
    EXPECT_EQ(UrlHost("http://www.host.com"), "http://www.host.com");
    EXPECT_EQ(UrlHost("www.host.com/a"), "www.host.com");
    EXPECT_EQ(UrlHost(""), "");
}

TEST(Path, SafeFileNameTurnsForbiddenCharactersIntoBlanks) {
    EXPECT_EQ(SafeFileName("a/b\\c<d>e:f?g|h\"i"), "a b c d e f g h i");
    EXPECT_EQ(SafeFileName("a*b.c"), "a*b.c"); // the star isn't among them
}

TEST(NextNumber, GivesOneRunOfDigitsAfterTheOther) {
    const std::string text = "a12b003c";
    std::size_t at = 0;
    EXPECT_EQ(NextNumberIn(text, at), "12");
    EXPECT_EQ(at, 3U);
    EXPECT_EQ(NextNumberIn(text, at), "003");
    EXPECT_EQ(at, 7U);
    EXPECT_EQ(NextNumberIn(text, at), "");
    EXPECT_EQ(NextNumberIn(text, at), "");
}

TEST(NextNumber, EndsWithTheText) {
    std::size_t at = 1;
    EXPECT_EQ(NextNumberIn("99", at), "9");
    EXPECT_EQ(at, 2U);
    at = 50;
    EXPECT_EQ(NextNumberIn("99", at), "");
    at = 0;
    EXPECT_EQ(NextNumberIn("", at), "");
}

TEST(NextLine, SkipsEmptyLinesAndTakesAnyLineEnd) {
    const std::string text = "a\r\n\r\nb\nc\r\rd";
    std::size_t at = 0;
    EXPECT_EQ(NextLineIn(text, at), "a");
    EXPECT_EQ(at, 5U);
    EXPECT_EQ(NextLineIn(text, at), "b");
    EXPECT_EQ(NextLineIn(text, at), "c");
    EXPECT_EQ(NextLineIn(text, at), "d");
    EXPECT_EQ(at, text.size());
    EXPECT_EQ(NextLineIn(text, at), "");
}

TEST(NextLine, GivesAnEmptyLineOnlyAtTheStart) {
    std::size_t at = 0;
    EXPECT_EQ(NextLineIn("\r\na", at), "");
    EXPECT_EQ(NextLineIn("\r\na", at), "a");
    at = 9;
    EXPECT_EQ(NextLineIn("a", at), "");
}

TEST(Mask, StarsAndQuestionMarks) {
    EXPECT_TRUE(MatchesMask("savegame.12", "savegame.*"));
    EXPECT_TRUE(MatchesMask("SAVEGAME.0", "savegame.*"));
    EXPECT_FALSE(MatchesMask("savegame12", "savegame.*"));
    EXPECT_TRUE(MatchesMask("level.tr4", "*.tr4"));
    EXPECT_FALSE(MatchesMask("level.tr4x", "*.tr4"));
    EXPECT_TRUE(MatchesMask("a1.x", "a?.x"));
    EXPECT_FALSE(MatchesMask("a12.x", "a?.x"));
    EXPECT_TRUE(MatchesMask("abcabd", "*abd"));
    EXPECT_TRUE(MatchesMask("x", "**"));
    EXPECT_FALSE(MatchesMask("x", ""));
    EXPECT_TRUE(MatchesMask("", "*"));
}

TEST(Mask, StarDotStarIsEverything) {
    EXPECT_TRUE(MatchesMask("noextension", "*.*"));
    EXPECT_TRUE(MatchesMask("a.b", "*.*"));
    EXPECT_TRUE(MatchesMask("noextension", "*"));
}

TEST(Mask, CaseMattersWhereItIsAskedFor) {
    EXPECT_TRUE(MatchesMaskWithCase("Level.tr4", "L*.tr?"));
    EXPECT_FALSE(MatchesMaskWithCase("level.tr4", "L*.tr?"));
    EXPECT_TRUE(MatchesMaskWithCase("noextension", "*.*"));
    EXPECT_TRUE(MatchesMaskWithCase("savegame", "savegame.*"));
    EXPECT_FALSE(MatchesMaskWithCase("SAVEGAME", "savegame.*"));
}

TEST(Mask, AnyExtensionAtTheEndIsAlsoNone) {
    EXPECT_TRUE(MatchesMask("savegame", "savegame.*"));
    EXPECT_TRUE(MatchesMask("SAVEGAME", "save*.*"));
    EXPECT_FALSE(MatchesMask("savegam", "savegame.*"));
}

TEST(Mask, OneQuestionMarkIsOneCharacterOfSeveralBytes) {
    EXPECT_TRUE(MatchesMask("caffè.txt", "caff?.txt"));
    EXPECT_FALSE(MatchesMask("caffè.txt", "caff??.txt"));
    EXPECT_TRUE(MatchesMask("CAFFÈ.TXT", "*è.txt"));
}

TEST(Mask, ManyStarsEndSoon) {
    std::string stars, name(2000, 'a');
    for (int i = 0; i < 500; ++i)
        stars += "a*";
    EXPECT_FALSE(MatchesMask(name, stars + "b"));
    EXPECT_TRUE(MatchesMask(name, stars));
}

TEST(StaysInside, TakesPathsBelowTheFolder) {
    for (const char* path : {"\\data\\level.tr4", "\\a", "\\a..b", "\\..a", "\\caffè\\x", "\\ a"})
        EXPECT_TRUE(StaysInside(path)) << path;
}

TEST(StaysInside, RefusesWhateverLeadsOut) {
    for (const char* path : {"",
                             "\\",
                             "a",
                             "data\\level.tr4",
                             "\\..",
                             "\\..\\x",
                             "\\a\\..\\..\\x",
                             "\\a\\..",
                             "\\.",
                             "\\a\\.\\b",
                             "\\.. \\x",
                             "\\. .\\x",
                             "\\...\\x",
                             "\\ \\x",
                             "\\\\server\\share",
                             "\\a\\\\b",
                             "\\a\\",
                             "\\a.\\b",
                             "\\data\\aux.tr4",
                             "C:\\x",
                             "\\C:\\x",
                             "\\a:stream",
                             "/etc/passwd",
                             "\\a/../b",
                             "\\/x"})
        EXPECT_FALSE(StaysInside(path)) << path;
    EXPECT_FALSE(StaysInside(std::string_view("\\a\0b", 4)));
}

} // namespace
} // namespace kelvash
