// The commands by which levels come in, go out and are looked after.
#include <gmock/gmock.h>

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "cli/cli_home.h"
#include "support/zip_bytes.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class IntakeCommands : public CliHome {
  protected:
    IntakeCommands() {
        SetUpHome();
        MakeFile(drive / "in/maze.zip",
                 MakeZipBytes({MakeEntry("maze.tr4", "level data"), MakeEntry("script.dat", "s"),
                               MakeEntry("english.dat", "e"), MakeEntry("DOC/readme.txt", "Hi")}));
    }
    CliRun Add() { return Json({"add", (drive / "in/maze.zip").string(), "--name", "The Maze"}); }
    std::filesystem::path Level(int code) const {
        return drive / ("Levels/LEVEL_000" + std::to_string(code));
    }
};

TEST_F(IntakeCommands, AddTakesAZipWithANameOfItsOwn) {
    const CliRun run = Add();
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true,"code":1})");
    EXPECT_EQ(run.lines.front(),
              R"({"event":"progress","caption":"Unzipping file 'maze.zip' in progress..."})");
    EXPECT_EQ(BytesOf(Level(1) / "FILES/maze.tr4"), "level data");
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("code":1,"name":"The Maze","note":"")"));
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("moreInfo":"readme.txt")"));
}

TEST_F(IntakeCommands, AddTakesSeveralSourcesForOneLevel) {
    MakeFile(drive / "in/music/105.wav", "wave");
    const CliRun run = Json({"add", "C:\\in\\maze.zip", "C:\\in\\music"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_TRUE(Exists(Level(1) / "FILES/105.wav"));
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("name":"maze")"));
}

TEST_F(IntakeCommands, AFolderNamesALevel) {
    for (const char* name : {"maze.tr4", "script.dat", "english.dat"})
        MakeFile(drive / "in/The Gate" / name, name);
    EXPECT_EQ(Json({"add", "C:\\in\\The Gate"}).status, 0);
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("name":"The Gate")"));
}

TEST_F(IntakeCommands, ALevelThatIsRefusedIsNotAdded) {
    MakeFile(drive / "in/bad.zip", MakeZipBytes({MakeEntry("readme.txt", "no level")}));
    const CliRun run = Json({"add", "C:\\in\\bad.zip"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":false,"code":-1})");
    EXPECT_THAT(run.Output(), HasSubstr("Missing file .tr4 and also file .tom"));
    EXPECT_FALSE(Exists(Level(1)));
    EXPECT_EQ(Json({"add", "C:\\in\\gone.zip"}).status, 1);
    EXPECT_EQ(Json({"add"}).status, 2);
}

// Two languages, neither of them the user's.
class LanguageQuestion : public IntakeCommands {
  protected:
    LanguageQuestion() {
        MakeFile(drive / "in/two.zip",
                 MakeZipBytes({MakeEntry("maze.tr4", "level data"), MakeEntry("script.dat", "s"),
                               MakeEntry("french.dat", "f"), MakeEntry("german.dat", "g")}));
    }
    CliRun AddTwo(const std::string& answers) {
        return Json({"--answers", Answers(answers), "add", "C:\\in\\two.zip"});
    }
};

TEST_F(LanguageQuestion, WithoutAnAnswerNothingIsAdded) {
    for (const CliRun& run :
         {Json({"add", "C:\\in\\two.zip"}), Plain({"--no-input", "add", "C:\\in\\two.zip"}),
          Plain({"--yes", "--no-input", "add", "C:\\in\\two.zip"})}) {
        EXPECT_EQ(run.status, 3) << run.Output();
        EXPECT_THAT(
            run.errors,
            HasSubstr("This question needs an answer, and none was given: This level contains 2 language "
                      "files (.dat). Please choose only one. (Write number you wish: 1-2)"));
        EXPECT_FALSE(Exists(Level(1)));
    }
    EXPECT_THAT(Json({"status"}).Output(), HasSubstr(R"("levels":1)"));
}

TEST_F(LanguageQuestion, CancelAddsNothing) {
    const CliRun run = AddTwo(R"([{"id": 1070, "answer": "cancel"}])");
    EXPECT_EQ(run.status, 3);
    EXPECT_EQ(run.errors, "");
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":false,"code":-1})");
    EXPECT_FALSE(Exists(Level(1)));
}

TEST_F(LanguageQuestion, IsAnsweredByANumber) {
    const CliRun run = AddTwo(R"([{"id": 1070, "answer": "2"}])");
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_TRUE(Exists(Level(1) / "FILES/german.dat"));
    EXPECT_FALSE(Exists(Level(1) / "FILES/french.dat"));
}

TEST_F(LanguageQuestion, AWrongNumberForEverEnds) {
    const CliRun run = AddTwo(R"([{"id": 1070, "answer": "3", "times": 0}])");
    EXPECT_EQ(run.status, 1) << run.Output();
    EXPECT_THAT(run.Output(),
                HasSubstr(R"("id":3720,"style":"critical","text":"The level is not stored because no )"
                          R"(language is chosen: '3' is no number of the list")"));
    EXPECT_FALSE(Exists(Level(1)));
}

TEST_F(IntakeCommands, LevelSetChangesWhatIsGiven) {
    ASSERT_EQ(Add().status, 0);
    const CliRun run =
        Json({"level", "set", "1", "--name", "Renamed", "--note", "Mind the gap", "--more-info", ""});
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true,"code":1})");
    const std::string levels = Json({"levels"}).lines.at(0);
    EXPECT_THAT(levels, HasSubstr(R"("code":1,"name":"Renamed","note":"Mind the gap")"));
    EXPECT_THAT(levels, HasSubstr(R"("moreInfo":"","filesSize":14)"));
    EXPECT_EQ(Json({"level", "set", "1", "--more-info", "README.TXT"}).status, 0);
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("moreInfo":"readme.txt")"));
    EXPECT_THAT(Json({"level", "set", "1", "--more-info", "none.txt"}).lines.front(),
                HasSubstr("The level has no such file: none.txt"));
    EXPECT_EQ(Json({"level", "set", "7", "--name", "x"}).status, 1);
    EXPECT_EQ(Json({"level", "set", "1"}).status, 1);
    EXPECT_EQ(Json({"level"}).status, 2);
}

TEST_F(IntakeCommands, AnExportedLevelCanBeAddedAgain) {
    ASSERT_EQ(Add().status, 0);
    MakeFile(drive / "out.zip", "mine");
    EXPECT_EQ(Json({"export", "1", "C:\\out.zip"}).status, 1);
    EXPECT_EQ(BytesOf(drive / "out.zip"), "mine");
    const CliRun run = Json({"export", "1", "C:\\out.zip", "--force"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true,"file":"C:\\out.zip"})");
    EXPECT_THAT(run.Output(), HasSubstr(R"("All files of current level saved in C:\\out.zip")"));
    const std::string answers = Answers(R"([{"when": "has same name and same size", "answer": "yes"}])");
    EXPECT_EQ(Json({"--answers", answers, "add", "C:\\out.zip"}).status, 0);
    EXPECT_EQ(BytesOf(Level(2) / "FILES/maze.tr4"), "level data");
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("code":2,"name":"The Maze")"));
}

TEST_F(IntakeCommands, ConfigShowsEveryField) {
    const auto field = [](const std::string& text, std::size_t width) {
        return text + std::string(width - text.size(), ' ');
    };
    using namespace std::string_literals;
    MakeFile(drive / "kelvash.cfg",
             field("Maze", 256) + field("note", 256) + field("Ada", 80) + field("Hello", 256) +
                 field("a@x.org\0b@x.org"s, 256) + field("http://x.org", 256) +
                 field("TR4\0one.wav\0two.wav\0"s + "three.wav", 4096) + field("a.wad\0http://y.org"s, 2048) +
                 field("wads", 512) + field("a.*\0b"s, 600) + field("readme.txt", 80) + field("ZIP", 10) +
                 "\1\0\0\0\5\0a.tr4\7\0\0\0"s + "\7\0x.tom\0y"s);
    const CliRun run = Json({"config", "C:\\kelvash.cfg"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(
        run.lines.back(),
        R"({"event":"result","ok":true,"levelName":"Maze","levelNote":"note","authorName":"Ada","authorMessage":"Hello","authorEmails":["a@x.org","b@x.org"],"authorSites":["http://x.org"],"externWaves":[["TR4","one.wav","two.wav","three.wav"]],"importWads":[["a.wad","http://y.org"]],"importNotes":"wads","duplications":[["a.*","b"]],"moreInfoFile":"readme.txt","exeKind":"ZIP","files":[{"name":"a.tr4","size":7}],"useWads":[["x.tom","y"]]})");
    EXPECT_EQ(
        Json({"config", "C:\\none.cfg"}).lines.front(),
        R"({"event":"message","id":970,"style":"critical","text":"Config file 'C:\\none.cfg' not found"})");
}

TEST_F(IntakeCommands, APasswordIsNotTold) {
    MakeFile(root / "locked" / "maze.tr4", "level data");
    MakeFile(root / "locked" / "script.dat", "s");
    const std::string zip = (drive / "in" / "locked.zip").string();
    ASSERT_EQ(
        std::system(("cd " + (root / "locked").string() + " && zip -q -P sesame " + zip + " *").c_str()), 0);
    const CliRun run = Json({"add", zip, "--answers", Answers(R"([{"id":1017,"answer":"sesame"}])")});
    EXPECT_THAT(run.Output(), HasSubstr(R"("event":"input","id":1017,)"));
    EXPECT_THAT(run.Output(), HasSubstr(R"("answer":"***"})"));
    EXPECT_THAT(run.Output(), testing::Not(HasSubstr("sesame")));
    EXPECT_EQ(BytesOf(Level(1) / "FILES" / "maze.tr4"), "level data") << run.Output();
}

TEST_F(IntakeCommands, RemoveAsksAndTakesTheLevelOut) {
    ASSERT_EQ(Add().status, 0);
    EXPECT_EQ(Json({"remove", "1"}).status, 3); // nobody said yes
    EXPECT_EQ(Json({"--yes", "remove", "1"}).status, 3) << "a yes can lose the level";
    const std::string answers = Answers(
        R"([{"when": "Are you sure to want remove level", "answer": "yes"}, {"when": "Do you want remove all sub-folders", "answer": "yes"}])");
    const CliRun run = Json({"--answers", answers, "remove", "1"});
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":true})");
    EXPECT_FALSE(Exists(Level(1)));
    EXPECT_THAT(Json({"status"}).lines.at(0), HasSubstr(R"("levels":1)"));
}

TEST_F(IntakeCommands, SizesAreCountedAnew) {
    ASSERT_EQ(Add().status, 0);
    MakeFile(Level(1) / "FILES/more.wav", std::string(100, 'w'));
    MakeFile(Level(1) / "SCREENSHOTS/shot.jpg", std::string(10, 'j'));
    const CliRun run = Json({"sizes"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines.back(), testing::StartsWith(R"({"event":"result","ok":true,"mainSize":)"));
    EXPECT_THAT(run.Output(), HasSubstr("Primary (only read) folder size = "));
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("filesSize":114,"savesSize":10)"));
}

TEST_F(IntakeCommands, EqualLevelsAreCounted) {
    ASSERT_EQ(Add().status, 0);
    EXPECT_EQ(Json({"equal"}).lines.back(), R"({"event":"result","ok":true,"equal":0})");
    const std::string answers = Answers(R"([{"when": "has same name", "answer": "yes", "times": 0}])");
    ASSERT_EQ(Json({"--answers", answers, "add", "C:\\in\\maze.zip"}).status, 0);
    EXPECT_EQ(Json({"--answers", answers, "equal"}).lines.back(),
              R"({"event":"result","ok":true,"equal":2})");
}

TEST_F(IntakeCommands, AnArchiveIsMovedAndRecovered) {
    ASSERT_EQ(Add().status, 0);
    std::filesystem::create_directories(drive / "new");
    const CliRun moved = Json({"move", "C:\\new"});
    EXPECT_EQ(
        moved.lines.back(),
        R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive.kva","folder":"C:\\new","levels":2})");
    EXPECT_FALSE(Exists(Level(1)));
    EXPECT_TRUE(Exists(drive / "new/LEVEL_0001/FILES/maze.tr4"));
    const CliRun recovered = Json({"recover", "C:\\new"});
    EXPECT_EQ(
        recovered.lines.back(),
        R"({"event":"result","ok":true,"archive":"C:\\Kelvash\\LevelArchive2.kva","folder":"C:\\new","levels":2})");
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("name":"Level Name 1")"));
}

TEST_F(IntakeCommands, AFolderThatNoRecordNamesIsKeptAndTakenBack) {
    MakeFile(Level(1) / "FILES/lost.tr4", "lost");
    MakeFile(Level(1) / "BACKUP_SAVEGAMES/savegame.0", "precious");
    const CliRun added = Add();
    ASSERT_EQ(added.status, 0);
    EXPECT_THAT(added.Output(), HasSubstr("C:\\\\Levels\\\\LEVEL_0001 belongs to no level of this archive"));
    const nlohmann::json listed = nlohmann::json::parse(Json({"kept", "list"}).lines.back());
    ASSERT_EQ(listed["kept"].size(), 1U);
    EXPECT_EQ(listed["kept"][0]["name"], "lost");
    EXPECT_EQ(listed["kept"][0]["size"], 12);
    EXPECT_EQ(nlohmann::json::parse(Json({"kept"}).lines.back()), listed);
    const std::string folder = listed["kept"][0]["folder"];
    EXPECT_THAT(folder, testing::StartsWith("LEVEL_0001_"));
    const CliRun taken = Json({"kept", "take", folder});
    EXPECT_EQ(taken.status, 0);
    EXPECT_EQ(taken.lines.back(), R"({"event":"result","ok":true,"code":2,"kept":[]})");
    EXPECT_EQ(BytesOf(Level(2) / "BACKUP_SAVEGAMES/savegame.0"), "precious");
    EXPECT_THAT(Json({"levels"}).lines.at(0), HasSubstr(R"("code":2,"name":"lost")"));
    const CliRun again = Json({"kept", "take", folder});
    EXPECT_EQ(again.status, 1);
    EXPECT_EQ(again.lines.back(), R"({"event":"result","ok":false,"code":null,"kept":[]})");
    EXPECT_EQ(Json({"kept", "take", ""}).status, 1);
    EXPECT_EQ(Json({"kept", "take"}).status, 2);
    EXPECT_EQ(Json({"kept", "drop"}).status, 2);
}

TEST_F(IntakeCommands, AMoveOrAnExportThatFailsSaysSo) {
    ASSERT_EQ(Add().status, 0);
    const CliRun moved = Json({"move", "C:\\nowhere"});
    EXPECT_EQ(moved.status, 1);
    EXPECT_THAT(moved.Output(), HasSubstr("The target folder does not exist: C:\\\\nowhere"));
    std::filesystem::remove(Level(1) / "FILES/maze.tr4");
    const CliRun exported = Json({"export", "1", "C:\\out.zip"});
    EXPECT_EQ(exported.status, 1);
    EXPECT_FALSE(Exists(drive / "out.zip"));
}

TEST_F(IntakeCommands, PreferencesAreShownAndSet) {
    EXPECT_EQ(Json({"prefs"}).lines.back(),
              R"({"event":"result","ok":true,"compressFiles":false,"encodeWavInMp3":false})");
    ASSERT_EQ(Add().status, 0);
    const std::string answers =
        Answers(R"([{"when": "Compression settings have been changed", "answer": "yes"}])");
    EXPECT_EQ(Json({"--answers", answers, "prefs", "--compress", "on"}).lines.back(),
              R"({"event":"result","ok":true,"compressFiles":true,"encodeWavInMp3":false})");
    EXPECT_TRUE(Exists(Level(1) / "FILES/maze.tr4.zl"));
    EXPECT_EQ(Json({"prefs", "--compress", "maybe"}).status, 2);
}

TEST_F(IntakeCommands, APackageFileOfManyMegabytesIsRefused) {
    MakeFile(drive / "kelvash.cfg", "x");
    std::filesystem::resize_file(drive / "kelvash.cfg", 300U << 20); // a hole: it costs no disk
    const CliRun run = Json({"config", "C:\\kelvash.cfg"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(
        run.lines.front(),
        HasSubstr(R"("text":"Error: config file is too large to be one of a level: C:\\kelvash.cfg")"));
    EXPECT_EQ(run.lines.back(), R"({"event":"result","ok":false})");
}

TEST_F(IntakeCommands, TextsOfAPackageFileDoNotWorkOnTheTerminal) {
    std::string config(8710, ' ');
    config.replace(0, 16, "Maze\x1B[2J\r\n! hm!");
    config.replace(8706, 4, std::string(4, '\0'));
    MakeFile(drive / "kelvash.cfg", config);
    const CliRun plain = Plain({"config", "C:\\kelvash.cfg"});
    EXPECT_THAT(plain.lines, testing::Contains("levelName: Maze ! hm!"));
    EXPECT_EQ(plain.Output().find('\x1B'), std::string::npos);
    EXPECT_THAT(Json({"config", "C:\\kelvash.cfg"}).lines.back(),
                HasSubstr(R"("levelName":"Maze\u001b[2J\r\n! hm!")"));
}

} // namespace
} // namespace kelvash::test
