// The export of a level to a zip.
#include "intake/export_level.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "intake/apply_config.h"
#include "intake/export_level_home.h"
#include "support/intake_home.h"
#include "support/swap_world.h"
#include "zip/zip_module.h"

namespace kelvash::intake {
namespace {

using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST_F(Export, HoldsTheFilesAndThePackageFile) {
    AddLevel(1, "A/B: the \"Maze\"", kMaze);
    core::profile.DownloadFolder = "C:\\in";
    Select(1);
    EXPECT_TRUE(ExportTo("C:\\out.zip"));
    EXPECT_EQ(user.last_start, "C:\\in\\TR_Level_A B  the  Maze .zip");
    EXPECT_THAT(NamesOf("C:\\out.zip"),
                UnorderedElementsAre("maze.tr4", "script.dat", "english.dat", "kelvash.cfg"));
    EXPECT_THAT(user.Told(), ElementsAre("plain: All files of current level saved in C:\\out.zip"));
    EXPECT_THAT(user.Shown(), Contains("Copying level files in progress"));
    EXPECT_THAT(user.Shown(), Contains("Zipping file in C:\\out.zip"));
    EXPECT_THAT(user.Shown(), Contains("Removing files from temp dir"));
    EXPECT_TRUE(NothingTemporary());
    EXPECT_EQ(core::profile.DownloadFolder, "C:");
}

TEST_F(Export, ThePackageFileSaysWhatTheRecordDoes) {
    AddLevel(1, " The Maze ", kMaze);
    core::LevelRecord record = core::archive.Table[1];
    record.Note = "note";
    record.Author = "Ada";
    record.Emails = "a@x.org\0b@x.org"s;
    record.Sites = "http://x.org";
    record.AuthorNote = "Hello";
    record.MoreInfoFile = "readme.txt";
    core::archive.Table.Replace(1, record);
    LevelConfig.ExeKind = "ZIP";
    LevelConfig.UseWads = "left over";
    ConfigApplied = true;
    Select(1);
    ASSERT_TRUE(ExportTo("C:\\out.zip"));
    EXPECT_FALSE(ConfigApplied);
    const auto field = [](const std::string& text, std::size_t width) {
        return text + std::string(width - text.size(), ' ');
    };
    EXPECT_EQ(ConfigOf("C:\\out.zip"), field("The Maze", 256) + field("note", 256) + field("Ada", 80) +
                                           field("Hello", 256) + field("a@x.org\0b@x.org"s, 256) +
                                           field("http://x.org", 256) + field("", 4096) + field("", 2048) +
                                           field("", 512) + field("", 600) + field("readme.txt", 80) +
                                           field("", 10) + "\3\0\0\0"s + "\13\0english.dat\5\0\0\0"s +
                                           "\10\0maze.tr4\12\0\0\0"s + "\12\0script.dat\6\0\0\0"s + "\0\0"s);
}

TEST_F(Export, SavegamesComeFromTheStashOrFromTrle) {
    AddLevel(1, "Stashed", kMaze, {{"savegame.0", "stashed"}, {"shot1.jpg", "no save"}});
    AddLevel(2, "In TRLE", kMaze, {{"savegame.0", "old"}});
    test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=2#\r\n#LEVEL_NAME=In TRLE#\r\n");
    test::MakeFile(trle / "savegame.3", "in play");
    Select(1);
    ASSERT_TRUE(ExportTo("C:\\one.zip"));
    EXPECT_THAT(NamesOf("C:\\one.zip"),
                UnorderedElementsAre("english.dat", "kelvash.cfg", "maze.tr4", "savegame.0", "script.dat"));
    Select(2);
    ASSERT_TRUE(ExportTo("C:\\two.zip"));
    EXPECT_THAT(NamesOf("C:\\two.zip"),
                UnorderedElementsAre("english.dat", "kelvash.cfg", "maze.tr4", "savegame.3", "script.dat"));
}

TEST_F(Export, ScreenshotsGoAlongOnRequest) {
    AddLevel(1, "Maze", kMaze);
    test::MakeFile(LevelPath(1) / "SCREENSHOTS/a.jpg", "a");
    test::MakeFile(LevelPath(1) / "SCREENSHOTS/b.bmp", "b");
    Select(1);
    const std::string question =
        "There are some screenshots for current level. Do you want export also screenshots?";
    user.WillAnswer(question, "no");
    ASSERT_TRUE(ExportTo("C:\\no.zip"));
    EXPECT_EQ(NamesOf("C:\\no.zip").size(), 4U);
    user.WillAnswer(question, "yes");
    ASSERT_TRUE(ExportTo("C:\\yes.zip"));
    EXPECT_THAT(NamesOf("C:\\yes.zip"), UnorderedElementsAre("a.jpg", "b.bmp", "english.dat", "kelvash.cfg",
                                                             "maze.tr4", "script.dat"));
    EXPECT_THAT(user.Shown(), Contains("Copy screenshots in progress..."));
}

TEST_F(Export, StoredFormsAreUndone) {
    AddLevel(1, "Maze", {{"maze.tr4.zl", test::ZlibStream("level data")}, {"script.dat", "s"}});
    Select(1);
    ASSERT_TRUE(ExportTo("C:\\out.zip"));
    EXPECT_THAT(NamesOf("C:\\out.zip"), UnorderedElementsAre("kelvash.cfg", "maze.tr4", "script.dat"));
    ConfigOf("C:\\out.zip");
    EXPECT_EQ(test::BytesOf(drive / "x/maze.tr4"), "level data");
    EXPECT_THAT(StoredNames(), ElementsAre("maze.tr4.zl", "script.dat"));
    EXPECT_TRUE(NothingTemporary());
}

TEST_F(Export, AnOldZipIsReplacedWhole) {
    AddLevel(1, "Maze", kMaze);
    MakeZip("out.zip", {{"old.txt", "old"}});
    Select(1);
    ASSERT_TRUE(ExportTo("C:\\out.zip"));
    EXPECT_EQ(NamesOf("C:\\out.zip").size(), 4U);
}

TEST_F(Export, ACancelledNameLeavesNothing) {
    AddLevel(1, "Maze", kMaze);
    Select(1);
    user.WillAnswer("Save exported level files", "cancel");
    EXPECT_FALSE(ExportLevel());
    EXPECT_TRUE(NothingTemporary());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Export, TellsWhileTheFoldersAreRemoved) {
    AddLevel(1, "Maze", kMaze);
    Select(1);
    std::vector<std::string> ends;
    user.on_close = [&] {
        ends.push_back(user.Shown().back() + (NothingTemporary() ? ": gone" : ": still there"));
    };
    EXPECT_TRUE(ExportTo("C:\\out.zip"));
    user.WillAnswer("Save exported level files", "cancel");
    EXPECT_FALSE(ExportLevel());
    EXPECT_THAT(ends,
                ElementsAre("Removing files from temp dir: gone", "Removing files from temp dir: gone"));
}

TEST_F(Export, EmptiesAFolderThatALastExportHasLeft) {
    AddLevel(1, "Maze", kMaze);
    test::MakeFile(home / "out_files/of_old.wav", "x");
    test::MakeFile(home / "out_files/deep/of_old.wav", "x");
    Select(1);
    EXPECT_TRUE(ExportTo("C:\\out.zip"));
    EXPECT_THAT(NamesOf("C:\\out.zip"),
                UnorderedElementsAre("maze.tr4", "script.dat", "english.dat", "kelvash.cfg"));
    EXPECT_TRUE(NothingTemporary());
}

TEST_F(Export, OfALevelWithoutItsFilesFails) {
    AddLevel(1, "Empty", {}, {{"savegame.0", "saved"}});
    AddLevel(2, "Only a text", {{"readme.txt", "x"}});
    AddLevel(3, "Gone", kMaze);
    std::filesystem::remove_all(LevelPath(3));
    Select(1);
    EXPECT_FALSE(ExportLevel());
    EXPECT_EQ(user.Told().back(),
              "critical: The files of the level are missing: C:\\Levels\\LEVEL_0001\\files");
    Select(2);
    EXPECT_FALSE(ExportLevel());
    EXPECT_EQ(user.Told().back(), "critical: The level has no .tr4 file: C:\\Levels\\LEVEL_0002\\files");
    Select(3);
    EXPECT_FALSE(ExportLevel());
    EXPECT_EQ(user.Told().back(),
              "critical: The files of the level are missing: C:\\Levels\\LEVEL_0003\\files");
    EXPECT_TRUE(NothingTemporary());
}

TEST_F(Export, GoesNeverOverFilesOfLevelsOrOfTheProgram) {
    AddLevel(1, "Maze", kMaze);
    test::MakeFile(home / "test.kva", "the Archive");
    Select(1);
    for (const char* target :
         {"C:\\Kelvash\\out_files\\out.zip", "C:\\Levels\\LEVEL_0001\\files\\maze.tr4",
          "C:\\levels\\level_0001\\out.zip", "C:\\trle\\data\\out.zip", "C:\\trle\\tomb4.exe",
          "C:\\Kelvash\\LEVEL_0000\\FILES\\x.zip", "C:\\Kelvash\\backup_trle\\script.dat",
          "C:\\Kelvash\\TEST.KVA", "C:\\Kelvash\\Kelvash.prf", "C:\\Levels\\KEPT\\x.zip"}) {
        EXPECT_FALSE(ExportTo(target));
        EXPECT_EQ(user.Told().back(),
                  std::string("critical: The zip can not be written there, among the files "
                              "of levels, of Kelvash or of Tomb Raider Level Editor: ") +
                      target);
    }
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES/maze.tr4"), "level data");
    EXPECT_EQ(test::BytesOf(home / "test.kva"), "the Archive");
    EXPECT_FALSE(test::Exists(trle / "data/out.zip"));
    EXPECT_TRUE(NothingTemporary());
    EXPECT_TRUE(ExportTo("C:\\Levels\\out.zip"));
    EXPECT_TRUE(ExportTo("C:\\Kelvash\\out.zip"));
}

TEST_F(Export, AStopIsNoError) {
    AddLevel(1, "Maze", kMaze);
    Select(1);
    user.stop = true;
    EXPECT_FALSE(ExportLevel());
    EXPECT_THAT(user.Told(), IsEmpty());
    EXPECT_TRUE(NothingTemporary());
}

// A level as it may lie in an Archive, by a seed.
struct Generated {
    test::FileMap files, saves;
    core::LevelRecord record;
};

class Dice {
  public:
    explicit Dice(unsigned seed) : state_(seed * 2654435761U + 1) {}
    unsigned Roll(unsigned sides) {
        state_ = state_ * 1664525U + 1013904223U;
        return (state_ >> 8) % sides;
    }
    std::string Bytes(unsigned most) {
        std::string bytes(Roll(most), '\0');
        for (char& c : bytes)
            c = static_cast<char>(Roll(256));
        return bytes;
    }
    std::string Word(unsigned most) {
        static const std::string letters = "abcdefghijklmnopqrstuvwxyz ABCäöß'()-";
        std::string word = "w";
        for (unsigned i = Roll(most); i > 0; --i)
            word += letters.substr(0, 29)[Roll(29)];
        return word + "é";
    }

  private:
    unsigned state_;
};

Generated Generate(unsigned seed) {
    Dice dice(seed);
    Generated level;
    level.files = {{"script.dat", dice.Bytes(500)}, {"english.dat", dice.Bytes(5000)}};
    for (unsigned i = 0; i <= dice.Roll(3); ++i)
        level.files[dice.Word(12) + std::to_string(i) + ".tr4"] = dice.Bytes(200000);
    for (unsigned i = 0; i < dice.Roll(5); ++i)
        level.files[std::to_string(100 + i) + ".wav"] = dice.Bytes(3000);
    for (unsigned i = 0; i < dice.Roll(4); ++i)
        level.files[dice.Word(8) + std::to_string(i) + ".txt"] = dice.Bytes(100);
    for (unsigned i = 0; i < dice.Roll(6); ++i)
        level.saves["savegame." + std::to_string(i)] = dice.Bytes(2000);
    level.record.Name = dice.Word(40);
    level.record.Note = dice.Word(200);
    level.record.Author = dice.Word(60);
    level.record.Emails = dice.Word(20) + '\0' + dice.Word(20);
    level.record.Sites = dice.Word(30);
    level.record.AuthorNote = dice.Word(200);
    level.record.MoreInfoFile = dice.Roll(2) == 0 ? "" : level.files.rbegin()->first;
    return level;
}

class RoundTrip : public Export, public testing::WithParamInterface<unsigned> {};

TEST_P(RoundTrip, AddingAnExportedLevelGivesTheSameLevel) {
    const Generated made = Generate(GetParam());
    AddLevel(1, made.record.Name, {made.files.begin(), made.files.end()},
             {made.saves.begin(), made.saves.end()});
    core::LevelRecord record = made.record;
    record.Code = 1;
    core::archive.Table.Replace(1, record);
    core::profile.CheckEqualLevels = false;
    core::archive.Header.CompressFiles = GetParam() % 2 == 1;
    Select(1);
    ASSERT_TRUE(ExportTo("C:\\out.zip"));
    AddLevels({"C:\\out.zip"});
    ASSERT_EQ(user.Told().back(), "plain: Added levels: 1 of 1") << testing::PrintToString(user.Told());
    const core::LevelRecord& added = core::archive.Table[2];
    EXPECT_EQ(added.Name, made.record.Name);
    EXPECT_EQ(added.Note, made.record.Note);
    EXPECT_EQ(added.Author, made.record.Author);
    EXPECT_EQ(added.Emails, made.record.Emails);
    EXPECT_EQ(added.Sites, made.record.Sites);
    EXPECT_EQ(added.AuthorNote, made.record.AuthorNote);
    EXPECT_EQ(added.MoreInfoFile, made.record.MoreInfoFile);
    EXPECT_EQ(test::FilesIn(StashPath(2)), test::FilesIn(StashPath(1)));
    // What is stored packed comes out as it was in another export.
    Select(2);
    ASSERT_TRUE(ExportTo("C:\\again.zip"));
    ConfigOf("C:\\again.zip");
    test::FileMap again = test::FilesIn(drive / "x");
    again.erase("kelvash.cfg");
    test::FileMap expected;
    for (const auto* part : {&made.files, &made.saves})
        for (const auto& [name, bytes] : *part)
            expected[test::Lower(name)] = bytes;
    EXPECT_EQ(again, expected);
}

INSTANTIATE_TEST_SUITE_P(Seeds, RoundTrip, testing::Range(1U, 13U));

} // namespace
} // namespace kelvash::intake
