// saves: the lists of a level's savegames, and what moves them.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "cli/cli_home.h"
#include "foundation/lock.h"
#include "support/savegame_bytes.h"
#include "support/zip_bytes.h"

namespace kelvash::test {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;

class SavesCommands : public CliHome {
  protected:
    SavesCommands() {
        SetUpHome();
        MakeFile(drive / "in/maze.zip",
                 MakeZipBytes({MakeEntry("maze.tr4", "level data"), MakeEntry("script.dat", "s"),
                               MakeEntry("english.dat", "e")}));
        EXPECT_EQ(Json({"add", (drive / "in/maze.zip").string(), "--name", "The Maze"}).status, 0);
        for (int slot = 0; slot < 3; ++slot)
            MakeFile(Slots() / ("savegame." + std::to_string(slot)), SaveBytes("Maze", slot + 5));
        MakeFile(Slots() / "note1.txt", "Caff\xE8\r\n");
    }
    std::filesystem::path Level() const { return drive / "Levels/LEVEL_0001"; }
    std::filesystem::path Slots() const { return Level() / "BACKUP_SAVEGAMES"; }
    std::filesystem::path Archived() const { return Level() / "SAVEGAMES"; }

    static json Result(const CliRun& run) { return json::parse(run.lines.back()); }
    // "file number" of a list.
    static std::vector<std::string> Short(const json& list) {
        std::vector<std::string> shown;
        for (const json& record : list)
            shown.push_back(record["file"].get<std::string>() + " " + record["number"].dump());
        return shown;
    }
};

TEST_F(SavesCommands, ListsWhatIsKnownOfEachSavegame) {
    const CliRun run = Json({"saves", "1"});
    EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
    const json result = Result(run);
    EXPECT_EQ(result["ok"], true);
    ASSERT_EQ(result["slots"].size(), 3U);
    json second = result["slots"][1];
    EXPECT_EQ(second["date"].get<std::string>().size(), 19U);
    second.erase("date");
    EXPECT_EQ(second.dump(),
              R"({"file":"backup_savegames\\savegame.1","image":null,"note":"Caffè","number":6,)"
              R"("slot":1,"title":"Maze"})");
    EXPECT_EQ(result["slots"][0]["note"], nullptr);
    EXPECT_EQ(result["archived"], json::array());
    EXPECT_EQ(result["kept"], json::array());
}

TEST_F(SavesCommands, ListsForAPerson) {
    const CliRun run = Plain({"saves", "1"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.Output(), HasSubstr("In the slots: 3\n  backup_savegames\\savegame.0  5  Maze  "));
    EXPECT_THAT(run.Output(), HasSubstr("  Caffè\n"));
    EXPECT_THAT(run.Output(), HasSubstr("Archived: 0\n"));
}

TEST_F(SavesCommands, ArchiveAndRestore) {
    CliRun run = Json({"saves", "archive", "1", "2"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(Short(Result(run)["slots"]), ElementsAre("backup_savegames\\savegame.0 7"));
    EXPECT_THAT(Short(Result(run)["archived"]),
                ElementsAre("savegames\\slot1\\savegame.0 5", "savegames\\slot1\\savegame.1 6"));
    EXPECT_EQ(BytesOf(Archived() / "slot1/note1.txt"), "Caff\xE8\r\n");
    run = Json({"saves", "restore-last", "1"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(Result(run)["slots"].size(), 3U);
    EXPECT_EQ(BytesOf(Slots() / "note1.txt"), "Caff\xE8\r\n");
}

TEST_F(SavesCommands, ArchiveTakesFifteenUnlessTold) {
    EXPECT_EQ(Json({"saves", "archive", "1"}).status, 0);
    EXPECT_TRUE(Exists(Archived() / "slot1/savegame.2"));
    EXPECT_TRUE(Exists(Slots() / "savegame.0"));
    const CliRun nothing = Json({"saves", "archive", "1"});
    EXPECT_EQ(nothing.status, 0);
    EXPECT_THAT(nothing.Output(), HasSubstr(R"("id":4574,"style":"plain","text":"There was nothing to do")"));
    for (const char* count : {"0", "many"}) {
        const CliRun wrong = Json({"saves", "archive", "1", count});
        EXPECT_EQ(wrong.status, 1);
        EXPECT_THAT(wrong.Output(), HasSubstr("COUNT is a whole number from 1 on: "));
    }
}

TEST_F(SavesCommands, ToSlotsCopiesAnArchivedOne) {
    MakeFile(Archived() / "slot1/savegame.4", SaveBytes("Maze", 2));
    const CliRun run = Json({"saves", "to-slots", "1", "savegames/slot1/SAVEGAME.4"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(Short(Result(run)["slots"]).front(), "backup_savegames\\savegame.0 2");
    EXPECT_TRUE(Exists(Archived() / "slot1/savegame.4"));
    const CliRun none = Json({"saves", "to-slots", "1", "savegame.9"});
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.Output(), HasSubstr("The level has no such savegame: savegame.9"));
}

TEST_F(SavesCommands, ToSlotsTellsThatTheyAreNotInOrder) {
    MakeFile(Archived() / "slot1/savegame.4", SaveBytes("Maze", 2));
    MakeFile(home / "_temp_savegame", "in the way");
    const CliRun run = Json({"saves", "to-slots", "1", "savegames\\slot1\\savegame.4"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.Output(),
                HasSubstr("The savegame has been copied into the slots, but they could not be put "
                          "in order."));
    EXPECT_EQ(Result(run)["slots"].size(), 4U);
}

TEST_F(SavesCommands, DeleteNeedsNoAnswer) {
    const CliRun run = Json({"saves", "delete", "1", "backup_savegames\\savegame.1"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(Short(Result(run)["slots"]),
                ElementsAre("backup_savegames\\savegame.0 5", "backup_savegames\\savegame.1 7"));
    EXPECT_FALSE(Exists(Slots() / "note1.txt"));
}

TEST_F(SavesCommands, NoteIsWrittenAndTakenAway) {
    CliRun run = Json({"saves", "note", "1", "backup_savegames\\savegame.0", "Before the \xE2\x99\xA5"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(BytesOf(Slots() / "note0.txt"),
              "\xEF\xBB\xBF"
              "Before the \xE2\x99\xA5\r\n");
    EXPECT_EQ(Result(run)["slots"][0]["note"], "Before the \xE2\x99\xA5");
    run = Json({"saves", "note", "1", "backup_savegames\\savegame.0", ""});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_FALSE(Exists(Slots() / "note0.txt"));
}

TEST_F(SavesCommands, NoteWithoutATextIsRefused) {
    const CliRun run = Json({"saves", "note", "1", "backup_savegames\\savegame.1"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.errors, HasSubstr("TEXT is required"));
    EXPECT_EQ(BytesOf(Slots() / "note1.txt"), "Caff\xE8\r\n");
}

TEST_F(SavesCommands, WordsTooManyAreRefused) {
    const std::string file = "backup_savegames\\savegame.1";
    for (const std::vector<std::string>& words : {std::vector<std::string>{"archive", "1", "2", "3"},
                                                  {"restore-last", "1", "2"},
                                                  {"to-slots", "1", file, "2"},
                                                  {"delete", "1", file, "2"},
                                                  {"note", "1", file, "two", "words"},
                                                  {"export", "1", file, "C:\\", "2"},
                                                  {"rescued", "2"}}) {
        std::vector<std::string> all = {"saves"};
        all.insert(all.end(), words.begin(), words.end());
        const CliRun run = Json(all);
        EXPECT_EQ(run.status, 2) << words.front();
        EXPECT_THAT(run.errors, HasSubstr("The following argument was not expected: " + words.back()));
    }
    EXPECT_EQ(Json({"saves", "1", "delete", "1", file}).status, 2);
    EXPECT_EQ(Json({"saves", "1", "2"}).status, 2);
    EXPECT_EQ(BytesOf(Slots() / "savegame.1"), SaveBytes("Maze", 6));
    EXPECT_EQ(BytesOf(Slots() / "note1.txt"), "Caff\xE8\r\n");
}

TEST_F(SavesCommands, ImportTakesOneWithItsNoteAndSeveralWithout) {
    MakeFile(drive / "friend/savegame.9", SaveBytes("Maze", 1));
    MakeFile(drive / "friend/note9.txt", "from a friend");
    MakeFile(drive / "friend/savegame.8", SaveBytes("Maze", 90));
    CliRun run = Json({"saves", "import", "1", (drive / "friend/savegame.9").string()});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(BytesOf(Slots() / "note0.txt"), "from a friend");
    run = Json({"saves", "import", "1", "C:\\friend\\savegame.9", "C:\\friend\\savegame.8"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(Result(run)["slots"].size(), 6U);
    run = Json({"saves", "import", "1", "C:\\friend\\savegame.7"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.Output(), HasSubstr("There is no such file: C:\\\\friend\\\\savegame.7"));
}

TEST_F(SavesCommands, WhatIsKeptIsListedAndComesBack) {
    MakeFile(Archived() / "slot1/savegame.0", SaveBytes("Maze", 6, "another"));
    CliRun run = Json({"saves", "restore-last", "1"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(Short(Result(run)["kept"]), ElementsAre("REPEATED\\savegame.0 6"));
    EXPECT_THAT(run.Output(),
                HasSubstr("These have been put aside, because the slots hold others of the same number:\\r\\n"
                          "C:\\\\Levels\\\\LEVEL_0001\\\\REPEATED\\\\savegame.0\\r\\n"
                          "They can be imported again."));
    run = Json({"saves", "import", "1", "REPEATED\\savegame.0"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(Result(run)["slots"].size(), 4U);
    EXPECT_TRUE(Exists(Level() / "REPEATED/savegame.0"));
}

TEST_F(SavesCommands, ExportAsksBeforeItReplaces) {
    std::filesystem::create_directories(drive / "out");
    EXPECT_EQ(Json({"saves", "export", "1", "backup_savegames\\savegame.1", "C:\\out"}).status, 0);
    EXPECT_EQ(BytesOf(drive / "out/savegame.1"), SaveBytes("Maze", 6));
    EXPECT_FALSE(Exists(drive / "out/note1.txt"));
    MakeFile(drive / "out/savegame.1", "somebody's own");
    EXPECT_EQ(Json({"saves", "export", "1", "backup_savegames\\savegame.1", "C:\\out"}).status, 3);
    const std::string no = Answers(R"([{"when":"Replace file","answer":"no"}])");
    EXPECT_EQ(
        Json({"saves", "export", "1", "backup_savegames\\savegame.1", "C:\\out", "--answers", no}).status, 3);
    EXPECT_EQ(BytesOf(drive / "out/savegame.1"), "somebody's own");
    EXPECT_EQ(Json({"saves", "export", "--force", "1", "backup_savegames\\savegame.1", "C:\\out"}).status, 0);
    EXPECT_EQ(BytesOf(drive / "out/savegame.1"), SaveBytes("Maze", 6));
}

TEST_F(SavesCommands, ExportTakesTheSavegameOutWhereThatIsWanted) {
    std::filesystem::create_directories(drive / "out");
    const CliRun run = Json({"saves", "export", "--delete", "1", "backup_savegames\\savegame.1", "C:\\out"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(BytesOf(drive / "out/savegame.1"), SaveBytes("Maze", 6));
    EXPECT_EQ(BytesOf(drive / "out/note1.txt"), "Caff\xE8\r\n");
    EXPECT_THAT(Short(Result(run)["slots"]),
                ElementsAre("backup_savegames\\savegame.0 5", "backup_savegames\\savegame.2 7"));
}

TEST_F(SavesCommands, ExportTellsWhyNot) {
    const std::string file = "backup_savegames\\savegame.1";
    const CliRun own = Json({"saves", "export", "--delete", "1", file, Slots().string()});
    EXPECT_EQ(own.status, 1);
    EXPECT_THAT(own.Output(), HasSubstr("These savegames have not been exported, because they lie in "
                                        "C:\\\\Levels\\\\LEVEL_0001\\\\BACKUP_SAVEGAMES themselves:"));
    EXPECT_EQ(BytesOf(Slots() / "savegame.1"), SaveBytes("Maze", 6));
    MakeFile(drive / "file", "no folder");
    const CliRun none = Json({"saves", "export", "1", file, "C:\\file"});
    EXPECT_EQ(none.status, 1);
    EXPECT_THAT(none.Output(), HasSubstr("These savegames have not been exported to C:\\\\file:"));
}

TEST_F(SavesCommands, ADeclinedArchivingOfFullSlotsGivesThree) {
    for (int slot = 3; slot < 15; ++slot)
        MakeFile(Slots() / ("savegame." + std::to_string(slot)), SaveBytes("Maze", slot + 5));
    MakeFile(drive / "in/savegame.0", SaveBytes("Maze", 90));
    const std::string no = Answers(R"([{"when":"slots are full","answer":"no"}])");
    const CliRun declined = Json({"saves", "import", "1", "C:\\in\\savegame.0", "--answers", no});
    EXPECT_EQ(declined.status, 3) << declined.Output();
    EXPECT_FALSE(Exists(Archived() / "slot1"));
    const CliRun yes = Json({"saves", "import", "1", "C:\\in\\savegame.0", "--yes"});
    EXPECT_EQ(yes.status, 0) << yes.Output();
    EXPECT_THAT(Short(Result(yes)["slots"]),
                ElementsAre("backup_savegames\\savegame.0 19", "backup_savegames\\savegame.1 90"));
}

TEST_F(SavesCommands, OnlySavegamesAreImportedAndNoneOfTheSlots) {
    MakeFile(drive / "in/picture.bmp", "a picture");
    CliRun run = Json({"saves", "import", "1", "C:\\in\\picture.bmp"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.Output(),
                HasSubstr("Only a file called savegame.N can be imported: C:\\\\in\\\\picture.bmp"));
    run = Json({"saves", "import", "1", "backup_savegames\\savegame.1"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.Output(), HasSubstr("Nothing has been copied. This savegame is in the slots already: "));
    run = Json({"saves", "to-slots", "1", "backup_savegames\\savegame.1"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(Result(run)["slots"].size(), 3U);
}

TEST_F(SavesCommands, WaitForNobodyAndSayWhoIsAtWork) {
    FolderLock lock;
    LockHolder holder;
    ASSERT_EQ(lock.Take("C:\\Levels", LockKind::Change, "moving the Archive", holder), LockResult::Taken);
    const std::string file = "backup_savegames\\savegame.1";
    for (const std::vector<std::string>& words : {std::vector<std::string>{"archive", "1"},
                                                  {"restore-last", "1"},
                                                  {"to-slots", "1", file},
                                                  {"delete", "1", file},
                                                  {"note", "1", file, "text"},
                                                  {"import", "1", "C:\\Levels\\LEVEL_0001\\" + file},
                                                  {"export", "1", file, "C:\\"}}) {
        std::vector<std::string> all = {"saves"};
        all.insert(all.end(), words.begin(), words.end());
        const CliRun run = Json(all);
        EXPECT_EQ(run.status, 4) << words.front() << run.Output();
        EXPECT_THAT(run.Output(), HasSubstr("is using this Archive: moving the Archive"));
    }
    EXPECT_EQ(Json({"saves", "1"}).status, 0);
    EXPECT_EQ(BytesOf(Slots() / "savegame.1"), SaveBytes("Maze", 6));
}

TEST_F(SavesCommands, NeedTheirArguments) {
    for (const char* part : {"archive", "restore-last", "to-slots", "delete", "note", "import", "export"}) {
        const CliRun run = Json({"saves", part});
        EXPECT_EQ(run.status, 2) << part;
        EXPECT_THAT(run.errors, HasSubstr("CODE is required")) << part;
    }
    EXPECT_EQ(Json({"saves", "delete", "1"}).status, 2);
    EXPECT_EQ(Json({"saves", "export", "1", "savegame.0"}).status, 2);
}

TEST_F(SavesCommands, ActOnTrleWhileTheLevelIsIn) {
    ASSERT_EQ(Json({"install", "1"}).status, 0);
    const CliRun run = Json({"saves", "archive", "1", "1"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(Short(Result(run)["slots"]), ElementsAre("savegame.0 6", "savegame.1 7"));
    EXPECT_EQ(BytesOf(drive / "trle/note0.txt"), "Caff\xE8\r\n");
}

TEST_F(SavesCommands, WrongUseIsTold) {
    EXPECT_EQ(Json({"saves"}).status, 2);
    EXPECT_THAT(Json({"saves"}).errors, HasSubstr("CODE is required"));
    EXPECT_EQ(Json({"saves", "archive"}).status, 2);
    const CliRun unknown = Json({"saves", "7"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_THAT(unknown.Output(), HasSubstr("The open Archive has no level with this code: 7"));
    EXPECT_EQ(Json({"saves", "rescued"}).lines.back(), R"({"event":"result","ok":true,"rescued":[]})");
}

} // namespace
} // namespace kelvash::test
