// Commands on savegames with words that are missing, too many or wrong: nothing goes by them, and each says
// why.
#include <gmock/gmock.h>

#include "breaking/breaking_home.h"
#include "support/savegame_bytes.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class WrongWordsAboutSavegames : public BreakingHome {
  protected:
    void SetUp() override {
        BreakingHome::SetUp();
        code = Succeed({"add", (zips / "Clockwork Pass.zip").string()}).result.value("code", 0);
        ASSERT_GT(code, 0);
        std::filesystem::remove_all(Level(code) / "BACKUP_SAVEGAMES");
        for (int slot = 0; slot < 3; ++slot)
            MakeFile(Slots() / ("savegame." + std::to_string(slot)), SaveBytes("Gate", slot + 1));
        MakeFile(Slots() / "note1.txt", "the lever\r\n");
        MakeFile(Level(code) / "SAVEGAMES/slot1/savegame.0", SaveBytes("Gate", 1, "another"));
    }
    std::filesystem::path Slots() const { return Level(code) / "BACKUP_SAVEGAMES"; }
    int code = 0;
};

TEST_F(WrongWordsAboutSavegames, LoseNothing) {
    const std::string number = std::to_string(code);
    const std::string file = "backup_savegames\\savegame.1";
    const Snapshot before = SnapshotOf(Level(code));
    for (const Words& words : {Words{"note", number, file},
                               {"note", number, file, "two", "words"},
                               {"delete", number, file, number},
                               {"delete", number, file, "backup_savegames\\savegame.2"},
                               {"archive", number, "2", "3"},
                               {"restore-last", number, "1"},
                               {"to-slots", number, "savegames\\slot1\\savegame.0", number},
                               {"delete", "99", file},
                               {"export", "--delete", number, file, Slots().string()},
                               {"export", "--delete", number, file, (Slots() / "savegame.2").string()},
                               {"delete", number, "backup_savegames\\note1.txt"},
                               {"delete", number, "..\\LEVEL_0001\\backup_savegames\\savegame.1"}}) {
        Words all = {"saves"};
        all.insert(all.end(), words.begin(), words.end());
        const Told told = Run(all, Answers::Yes);
        if (told.status() != 2) ExpectSane(told); // that of a wrong command line tells no result
        EXPECT_NE(told.status(), 0) << told.Story();
        EXPECT_TRUE(told.Spoke()) << told.Story();
        EXPECT_THAT(told.Story(), Not(HasSubstr("Internal error")));
        EXPECT_EQ(Differences(before, SnapshotOf(Level(code)), [](const std::string&) { return false; }), "")
            << told.Story();
        figures.Count("wrong commands on savegames");
    }
}

TEST_F(WrongWordsAboutSavegames, NoCodeIsAnInternalError) {
    for (const Words& words : {Words{"install", "99"},
                               {"play", "99"},
                               {"remove", "99"},
                               {"export", "99", Dos(drive / "a.zip")},
                               {"level", "set", "99", "--name", "x"},
                               {"saves", "99"},
                               {"saves", "archive", "none"}}) {
        const Told told = Run(words, Answers::Yes);
        ExpectSane(told);
        EXPECT_EQ(told.status(), 1) << told.Story();
        EXPECT_THAT(told.Story(),
                    HasSubstr("The open Archive has no level with this code: " +
                              std::string(words[1] == "set" || words[1] == "archive" ? words[2] : words[1])));
        EXPECT_THAT(told.Story(), Not(HasSubstr("Internal error")));
    }
}

TEST_F(WrongWordsAboutSavegames, WhatARestorePutsAsideIsTold) {
    const Told told = Succeed({"saves", "restore-last", std::to_string(code)});
    EXPECT_THAT(told.Story(),
                HasSubstr("These have been put aside, because the slots hold others of the same"));
    EXPECT_EQ(BytesOf(Level(code) / "REPEATED/savegame.0"), SaveBytes("Gate", 1, "another"));
}

} // namespace
} // namespace kelvash::test
