#include "intake/level_config.h"

#include <gmock/gmock.h>

#include "intake/level_config_home.h"
#include "support/format_test.h"
#include "support/platform.h"
#include "support/test_home.h"

namespace kelvash::intake {
namespace {

using test::BytesOf;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(LevelConfigFile, IsWrittenToTheByte) {
    LevelConfig.LevelName = "The Größe";
    LevelConfig.LevelNote = "note";
    LevelConfig.AuthorName = "Ada";
    LevelConfig.AuthorMessage = "hello";
    LevelConfig.AuthorEmails = std::string("a@b\0c@d", 7);
    LevelConfig.AuthorSites = std::string("http://x\0http://y", 17);
    LevelConfig.ExternWaves = std::string("TR4\0a.wav\0b.wav\0c.wav", 21);
    LevelConfig.ImportWads = std::string("city.wad\0http://w/city.zip", 26);
    LevelConfig.ImportNotes = "City wads";
    LevelConfig.Duplications = std::string("a.*\0b", 5);
    LevelConfig.MoreInfoFile = "readme.txt";
    LevelConfig.ExeKind = "MIRROR";
    LevelConfig.FileNames = {"C:\\temp\\city.tr4", "D:load.bmp"};
    LevelConfig.FileSizes = {258, 65536};
    LevelConfig.UseWads = std::string("city\0old.*", 10);
    ASSERT_TRUE(WriteLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    const std::string expected =
        Padded(
            "The Gr\xF6\xDF"
            "e",
            256) +
        Padded("note", 256) + Padded("Ada", 80) + Padded("hello", 256) +
        Padded(std::string("a@b\0c@d", 7), 256) + Padded(std::string("http://x\0http://y", 17), 256) +
        Padded(std::string("TR4\0a.wav\0b.wav\0c.wav", 21), 4096) +
        Padded(std::string("city.wad\0http://w/city.zip", 26), 2048) + Padded("City wads", 512) +
        Padded(std::string("a.*\0b", 5), 600) + Padded("readme.txt", 80) + Padded("MIRROR", 10) +
        std::string("\x02\0\0\0", 4) + std::string("\x08\0city.tr4\x02\x01\0\0", 14) +
        std::string("\x08\0load.bmp\0\0\x01\0", 14) + std::string("\x0A\0city\0old.*", 12);
    EXPECT_EQ(BytesOf(home / "kelvash.cfg"), expected);
    EXPECT_EQ(expected.size(), 8710U + 14 + 14 + 12);

    const LevelConfigRecord written = LevelConfig;
    ASSERT_TRUE(ReadLevelConfig("C:\\Kelvash\\KELVASH.CFG"));
    EXPECT_EQ(LevelConfig.LevelName, "The Größe");
    EXPECT_EQ(LevelConfig.AuthorEmails, written.AuthorEmails);
    EXPECT_EQ(LevelConfig.ExternWaves, written.ExternWaves);
    EXPECT_EQ(LevelConfig.UseWads, written.UseWads);
    EXPECT_EQ(LevelConfig.ExeKind, "MIRROR");
    EXPECT_EQ(LevelConfig.FileCount, 2);
    EXPECT_THAT(LevelConfig.FileNames, ElementsAre("city.tr4", "load.bmp"));
    EXPECT_THAT(LevelConfig.FileSizes, ElementsAre(258, 65536));
}

TEST_F(LevelConfigFile, OfTheHeaderAloneHasEmptyLists) {
    LevelConfig.UseWads = "left from before";
    LevelConfig.FileNames = {"left"};
    ASSERT_TRUE(Read(Header("  City ", std::string(4, '\0'))));
    EXPECT_EQ(LevelConfig.LevelName, "City");
    EXPECT_THAT(LevelConfig.FileNames, IsEmpty());
    EXPECT_EQ(LevelConfig.UseWads, "");
}

TEST_F(LevelConfigFile, MayEndBehindItsLastEntryAndGainsTwoBytes) {
    const std::string bytes =
        Header("City", std::string("\x01\0\0\0", 4)) + std::string("\x03\0a.b\x05\0\0\0", 9);
    ASSERT_TRUE(Read(bytes));
    EXPECT_THAT(LevelConfig.FileNames, ElementsAre("a.b"));
    EXPECT_EQ(LevelConfig.UseWads, "");
    ASSERT_TRUE(WriteLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    EXPECT_EQ(BytesOf(home / "kelvash.cfg"), bytes + std::string(2, '\0'));
}

TEST_F(LevelConfigFile, CutsALongNameWithoutAMessage) {
    LevelConfig.LevelName = std::string(300, 'x');
    ASSERT_TRUE(WriteLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    ASSERT_TRUE(ReadLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    EXPECT_EQ(LevelConfig.LevelName, std::string(256, 'x'));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(LevelConfigFile, KeepsTheTailOfALongerFile) {
    ASSERT_TRUE(WriteLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    MakeFile(home / "kelvash.cfg", BytesOf(home / "kelvash.cfg") + "old tail");
    ASSERT_TRUE(WriteLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    EXPECT_TRUE(BytesOf(home / "kelvash.cfg").ends_with("old tail"));
}

TEST_F(LevelConfigFile, ThatIsMissingIsTold) {
    EXPECT_FALSE(ReadLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Config file 'C:\\Kelvash\\kelvash.cfg' not found"));
}

TEST_F(LevelConfigFile, ThatEndsWithinItsTrailingTextIsTold) {
    EXPECT_FALSE(Read(Header("City", std::string(4, '\0')) + std::string("\x05\0a.tom", 6)));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error reading config file: C:\\Kelvash\\kelvash.cfg"));
    EXPECT_FALSE(Read(Header("City", std::string(4, '\0')) + "\x05"));
    EXPECT_EQ(user.Told().back(), "critical: Error reading config file: C:\\Kelvash\\kelvash.cfg");
}

// Blanks are trimmed, NULs aren't.
TEST_F(LevelConfigFile, KeepsTheNulsAtTheEndOfAField) {
    const std::string ada("Ada\0\0", 5);
    EXPECT_TRUE(
        Read(std::string(512, ' ') + Padded("  " + ada, 80) + std::string(8114, ' ') + std::string(4, '\0')));
    EXPECT_EQ(LevelConfig.AuthorName, ada);
    ASSERT_TRUE(WriteLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    EXPECT_EQ(BytesOf(home / "kelvash.cfg").substr(512, 80), Padded(ada, 80));
}

TEST_F(LevelConfigFile, ThatCantBeWrittenIsTold) {
    EXPECT_FALSE(WriteLevelConfig("C:\\none\\kelvash.cfg"));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error opening for write config file: C:\\none\\kelvash.cfg"));
}

TEST_F(LevelConfigFile, CutAtAnyLengthIsToldOrReadsWhatIsThere) {
    const std::string whole = Header("City", std::string("\x02\0\0\0", 4)) +
                              std::string("\x03\0a.b\x05\0\0\0", 9) + std::string("\x01\0c\x06\0\0\0", 7) +
                              std::string("\x03\0u\0v", 5);
    for (std::size_t length = 8600; length < whole.size(); ++length) {
        user.Forget();
        const bool complete = length == whole.size() - 5;
        EXPECT_EQ(Read(whole.substr(0, length)), complete) << length;
        if (!complete) {
            EXPECT_THAT(user.Told(),
                        ElementsAre("critical: Error reading config file: C:\\Kelvash\\kelvash.cfg"))
                << length;
        }
    }
    EXPECT_TRUE(Read(whole));
}

TEST(LevelConfigFormat, WithstandsCutsAndLies) {
    const std::string whole = Header("City", std::string("\x02\0\0\0", 4)) +
                              std::string("\x03\0a.b\x05\0\0\0", 9) + std::string("\x01\0c\x06\0\0\0", 7) +
                              std::string("\x03\0u\0v", 5);
    const auto files = [](const LevelConfigRecord& config) { return config.FileNames.size(); };
    test::ExpectFormat<LevelConfigRecord>(
        {.bytes = whole,
         .decode = [](std::string_view bytes) -> std::optional<LevelConfigRecord> {
             LevelConfigRecord config;
             if (DecodeLevelConfig(bytes, config) != ConfigFault::None) return std::nullopt;
             return config;
         },
         .encode = EncodeLevelConfig,
         .takes_cut = [&](std::size_t length) { return length == whole.size() - 5; }, // the trailing text
         .counts = {{8706, 4, files, 2},
                    {8710, 2, files, 3},
                    {8726, 2, [](const LevelConfigRecord& config) { return config.UseWads.size(); }, 3}}});
}

TEST_F(LevelConfigFile, LiesAboutItsCountsInVain) {
    user.MayBeTold("Error reading config file: C:\\Kelvash\\kelvash.cfg");
    EXPECT_FALSE(Read(Header("City", "\xFF\xFF\xFF\x7F")));
    EXPECT_FALSE(Read(Header("City", std::string("\x01\0\0\0", 4)) + "\xFF\xFFxx"));
    EXPECT_TRUE(Read(Header("City", "\xFF\xFF\xFF\xFF"))) << "no entries, as for 0";
    EXPECT_EQ(LevelConfig.FileCount, 0);
}

TEST(ConfigLists, ReadAnEmptyGroupBackAsItsItems) {
    EXPECT_THAT(ConfigItems("", 4), IsEmpty());
    EXPECT_EQ(AddEmptyGroup("", 4), std::string(3, '\0'));
    EXPECT_THAT(ConfigItems(AddEmptyGroup("", 4), 4), ElementsAre("", "", "", ""));
    EXPECT_EQ(AddEmptyGroup("a", 2), std::string("a\0\0", 3));
    EXPECT_THAT(ConfigItems(std::string("a\0b\0\0", 5), 2), ElementsAre("a", "b", "", ""));
}

} // namespace
} // namespace kelvash::intake
