#include "foundation/plain_name.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

using namespace std::string_literals;

TEST(PlainName, TakesNamesOfAnyAlphabet) {
    for (const char* name :
         {"a",       "city.tr4",     ".hidden",   "a..b",     " a",      "Song #1.wav",     "#a.tr4",
          "x|y",     "caffè",        "Лара.txt",  "日本.bmp", "com.txt", "COM10",           "COM0.x",
          "console", "nul_",         "aux-1.wav", "a b.c d",  "~1",      "kelvash.tmp.txt", "-rf",
          "$x",      "%USERPROFILE%"}) {
        const std::optional<PlainName> plain = PlainName::From(name);
        ASSERT_TRUE(plain) << name;
        EXPECT_EQ(plain->Text(), name);
    }
    EXPECT_TRUE(PlainName::From(std::string(255, 'a')));
}

TEST(PlainName, CannotBeMadeOfANameThatLeadsElsewhere) {
    for (const std::string& name :
         {""s, "."s, ".."s, "..."s, "/"s, "\\"s, "/abs/x"s, "../../../.bashrc"s, "..\\..\\x"s, "C:\\x"s,
          "C:x"s, "a\\..\\..\\x"s, "a/b"s, "a\\b"s, "x:stream"s, ":"s, "\\\\server\\share"s, "~/x"s})
        EXPECT_FALSE(PlainName::From(name)) << name;
}

TEST(PlainName, CannotBeMadeOfANameThatNoFileCanHave) {
    for (const std::string& name :
         {"a."s, "a "s, "a. "s, " "s, "a\0b"s, "a\nb"s, "a\rb"s, "a\tb"s, "\x1B[2J"s, "a\x7F"s, "a\u0085b"s,
          "a\u009Bb"s, "\xE9t\xE9"s, "\xC0\xAF"s, "\xED\xA0\x80"s, std::string(256, 'a')})
        EXPECT_FALSE(PlainName::From(name)) << name;
}

TEST(PlainName, CannotBeMadeOfADeviceOfWindows) {
    for (const char* name :
         {"con", "CON", "PRN", "aux.tr4", "Nul.txt", "nul .txt", "COM1", "com9.wav", "LPT1", "lpt9.x.y",
          "COM\u00B9", "lpt\u00B3.txt", "CONIN$", "conout$.wav", "clock$"})
        EXPECT_FALSE(PlainName::From(name)) << name;
}

TEST(PlainName, CannotBeMadeOfTheNameOfUnfinishedFiles) {
    EXPECT_FALSE(PlainName::From("Kelvash.tmp"));
    EXPECT_FALSE(PlainName::From("KELVASH.TMP"));
}

TEST(PlainPath, IsPlainNamesBelowAFolder) {
    for (const char* path : {"\\a", "\\data\\city.tr4", "\\audio\\Song #1.wav", "\\a\\b\\c"}) {
        const std::optional<PlainPath> plain = PlainPath::From(path);
        ASSERT_TRUE(plain) << path;
        EXPECT_EQ(PathIn("C:\\trle", *plain), std::string("C:\\trle") + path);
    }
    for (const char* path : {"", "\\", "a", "a\\b", "\\..\\x", "\\a\\..\\x", "\\a\\\\b", "\\a\\", "\\\\a",
                             "\\/etc/passwd", "\\C:\\x", "\\data\\aux", "\\data.\\x", "\\a\\x:y", "/a"})
        EXPECT_FALSE(PlainPath::From(path)) << path;
}

TEST(PlainPath, IsJoinedByItsName) {
    EXPECT_EQ(PathIn("C:\\trle\\data", *PlainName::From("city.tr4")), "C:\\trle\\data\\city.tr4");
}

using PathOfTheSystem = test::FoundationHome;

// The last door: what slips through elsewhere still can't leave by a separator that path texts don't have.
TEST_F(PathOfTheSystem, HoldsNoSlash) {
    test::MakeFile(root / "outside.txt", "x");
    for (const std::string& path : {"C:\\Kelvash\\" + (root / "outside.txt").string(), "C:\\../outside.txt"s,
                                    "C:\\Kelvash\\../../outside.txt"s, "C:/Kelvash"s}) {
        EXPECT_FALSE(FileExists(path)) << path;
        EXPECT_FALSE(ReplaceFileBytes(path, "evil", Flush::No)) << path;
        EXPECT_FALSE(CreateFolder(path)) << path;
    }
    EXPECT_EQ(test::BytesOf(root / "outside.txt"), "x");
}

} // namespace
} // namespace kelvash
