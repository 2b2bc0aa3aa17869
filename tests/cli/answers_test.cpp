// Which entry of an answers file answers which box, and who answers without one.
#include <gmock/gmock.h>

#include "cli/cli_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

constexpr const char* kFormCancelled = R"({"event":"form","name":"Dialog_TrovaTrle","answer":null})";
constexpr const char* kFormAnswered = R"({"event":"form","name":"Dialog_TrovaTrle","answer":"C:\\none"})";
constexpr const char* kNoFolder =
    R"({"event":"message","id":323,"style":"critical","text":"Not right folder: Missing file 'tomb4.exe' in folder: C:\\none"})";
constexpr const char* kNoTrle =
    R"({"event":"message","id":322,"style":"critical","text":"This program cann't run without Tomb Raider Level Editor\r\nNow, Kelvash ends"})";
constexpr const char* kSaveFailed = R"({"event":"result","ok":false,"archive":""})";

class AnswersFile : public CliHome {
  protected:
    // A home without TRLE asks the same form again until it is given up.
    CliRun SaveWith(const std::string& answers) { return Json({"save", "--answers", Answers(answers)}); }
    // A home with a missing Archive asks a question with Yes and No.
    CliRun SaveWithoutArchive(const std::string& answers) {
        SetUpHome();
        fs::remove(home / "LevelArchive.kva");
        return SaveWith(answers);
    }
};

TEST_F(AnswersFile, WithNoEntryLeftTheHarmlessWayIsTaken) {
    EXPECT_THAT(SaveWith("[]").lines, ElementsAre(kFormCancelled, kNoTrle, kSaveFailed));
}

TEST_F(AnswersFile, AnEntryServesOnce) {
    EXPECT_THAT(SaveWith(R"([{"when":"Dialog_TrovaTrle","answer":"C:\\none"}])").lines,
                ElementsAre(kFormAnswered, kNoFolder, kFormCancelled, kNoTrle, kSaveFailed));
}

TEST_F(AnswersFile, AnEntryServesAsOftenAsItSays) {
    EXPECT_THAT(SaveWith(R"([{"when":"Dialog_TrovaTrle","answer":"C:\\none","times":2}])").lines,
                ElementsAre(kFormAnswered, kNoFolder, kFormAnswered, kNoFolder, kFormCancelled, kNoTrle,
                            kSaveFailed));
}

TEST_F(AnswersFile, ZeroTimesIsForEver) {
    // The second entry never has its turn; the third box is not reached.
    MakeTrle(drive / "trle");
    EXPECT_THAT(
        SaveWith(R"([{"when":"i","answer":"cancel","times":0},{"when":"i","answer":"C:\\trle"}])").lines,
        ElementsAre(kFormCancelled, kNoTrle, kSaveFailed));
}

TEST_F(AnswersFile, ForEverEndsWhereTheSameBoxComesAgainAndAgain) {
    const CliRun run = SaveWith(R"([{"when":"Dialog_TrovaTrle","answer":"C:\\none","times":0}])");
    ASSERT_EQ(run.lines.size(), 2 * 10'000U + 3);
    EXPECT_EQ(run.lines[19'998], kFormAnswered);
    EXPECT_EQ(run.lines[20'000], kFormCancelled);
    EXPECT_EQ(run.lines.back(), kSaveFailed);
}

TEST_F(AnswersFile, TheFirstEntryThatFitsIsTakenWhateverStandsBehind) {
    MakeTrle(drive / "trle");
    const CliRun run = SaveWith(R"([{"when":"nothing has this","answer":"C:\\wrong"},
                                    {"when":"Folder of Tomb Raider","answer":"C:\\none"},
                                    {"when":"TrovaTrle","answer":"C:\\trle"},
                                    {"when":"is original?","answer":"no"}])");
    EXPECT_EQ(run.lines.at(0), kFormAnswered);
    EXPECT_EQ(run.lines.at(1), kNoFolder);
    EXPECT_EQ(run.lines.at(2), R"({"event":"form","name":"Dialog_TrovaTrle","answer":"C:\\trle"})");
    EXPECT_THAT(run.lines.at(3), EndsWith(R"("answer":"no"})"));
    EXPECT_THAT(
        run.lines.at(4),
        R"({"event":"message","id":443,"style":"critical","text":"Tips: \r\n* If there are savegames of custom level you played in trle forlder, save them in new folder and then, when you add that level to archive, add also that savegames folder in 'about file' for that level"})");
}

TEST_F(AnswersFile, CancelIsAnAnswerOfItsOwn) {
    EXPECT_THAT(
        SaveWith(R"([{"when":"TrovaTrle","answer":"cancel"},{"when":"TrovaTrle","answer":"C:\\none"}])")
            .lines,
        ElementsAre(kFormCancelled, kNoTrle, kSaveFailed));
}

TEST_F(AnswersFile, AnAnswerThatTheBoxDoesNotOfferIsToldAndHarmless) {
    const CliRun run = SaveWithoutArchive(R"([{"when":"different archive","answer":"retry"}])");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.at(1),
        R"({"event":"ask","id":290,"buttons":"yesno","style":"question","text":"Do you want load a different archive?","answer":"no"})");
    EXPECT_EQ(run.errors, "'retry' is no answer here: [yes/no] \n");
}

TEST_F(AnswersFile, AnEntryNamesItsBoxByTheIdInAnyLanguage) {
    SetUpHome();
    fs::rename(home / "LevelArchive.kva", drive / "away.kva");
    MakeFile(home / "messages.txt", "290\tAltro archivio?\r\n203\tApri\r\n");
    const CliRun run = SaveWith(R"([{"id":290,"answer":"yes"},{"id":203,"answer":"C:\\away.kva"}])");
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(
        run.lines.at(1),
        R"({"event":"ask","id":290,"buttons":"yesno","style":"question","text":"Altro archivio?","answer":"yes"})");
    EXPECT_THAT(run.lines.at(2), StartsWith(R"({"event":"openfile","id":203,"title":"Apri",)"));
}

TEST_F(AnswersFile, AnIdIsNoPartOfAText) {
    const CliRun run = SaveWithoutArchive(R"([{"id":29,"answer":"yes"}])");
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.lines.at(1), EndsWith(R"("answer":"no"})"));
}

TEST_F(AnswersFile, NativePathsAreTakenInDialogs) {
    SetUpHome();
    fs::rename(home / "LevelArchive.kva", drive / "away.kva");
    const CliRun run = SaveWith(R"([{"when":"different archive","answer":"yes"},
                                    {"when":"Load Tomb Raider Level Archive","answer":")" +
                                (drive / "away.kva").string() + R"("}])");
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(run.lines.at(2), EndsWith(R"("answer":"C:\\away.kva"})"));
}

TEST_F(AnswersFile, WithoutAnAnswerAQuestionThatCanLoseEitherWayEndsTheCommand) {
    MakeTrle(drive / "trle");
    for (const char* yes : {"--no-input", "--yes"}) {
        const CliRun run =
            Json({yes, "save", "--answers", Answers(R"([{"when":"Dialog_TrovaTrle","answer":"C:\\trle"}])")});
        EXPECT_EQ(run.status, 3) << run.Output();
        EXPECT_THAT(run.lines, testing::Contains(testing::AllOf(StartsWith(R"({"event":"ask","id":440,)"),
                                                                EndsWith(R"("answer":null})"))));
        EXPECT_THAT(run.errors, HasSubstr("This question needs an answer, and none was given: "));
    }
    EXPECT_FALSE(Exists(home / "backup_trle"));
}

TEST_F(AnswersFile, JsonModeNeverReadsWhatIsTyped) {
    const CliRun run = Bare({"--json", "--home", home.string(), "--drive", "C=" + drive.string(), "save"},
                            "C:\\none\nC:\\none\n");
    EXPECT_THAT(run.lines, ElementsAre(kFormCancelled, kNoTrle, kSaveFailed));
}

constexpr const char* kNoTrleErrors =
    "! This program cann't run without Tomb Raider Level Editor\nNow, Kelvash ends\nFailed\n";

class PlainMode : public CliHome {};

TEST_F(PlainMode, AsksInTheTerminal) {
    SetUpHome();
    fs::rename(home / "LevelArchive.kva", drive / "away.kva");
    const CliRun run = Plain({"save"}, "what?\nYES\nC:\\away.kva\n");
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(run.lines, ElementsAre("Do you want load a different archive?",
                                       "[yes/no] Do you want load a different archive?",
                                       "[yes/no] Load Tomb Raider Level Archive [] Archive: C:\\away.kva"));
    EXPECT_EQ(run.errors,
              "! Last archive not found: C:\\Kelvash\\LevelArchive.kva\n"
              "'what?' is no answer here: [yes/no] \n");
}

TEST_F(PlainMode, TakesTheHarmlessWayAtTheEndOfTheInput) {
    const CliRun run = Plain({"save"});
    EXPECT_EQ(run.status, 1);
    EXPECT_THAT(run.lines, ElementsAre("Folder of Tomb Raider Level Editor (Dialog_TrovaTrle)",
                                       "[Pul_Ok/Pul_Cancel]  ", "Archive: "));
    EXPECT_EQ(run.errors, kNoTrleErrors);
}

TEST_F(PlainMode, WithAnAnswersFileNothingIsAsked) {
    const CliRun run = Plain({"save", "--answers", Answers("[]")}, "C:\\none\n");
    EXPECT_THAT(run.lines, ElementsAre("Folder of Tomb Raider Level Editor (Dialog_TrovaTrle)",
                                       "[Pul_Ok/Pul_Cancel]  -", "Archive: "));
    EXPECT_EQ(run.errors, kNoTrleErrors);
}

TEST_F(PlainMode, WithoutInputNothingIsAsked) {
    const CliRun run = Plain({"--no-input", "save"}, "C:\\none\n");
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.errors, kNoTrleErrors);
}

TEST_F(PlainMode, QuietTellsFailuresAndTheResult) {
    const CliRun run = Plain({"--quiet", "--no-input", "save"});
    EXPECT_THAT(run.lines, ElementsAre("Archive: "));
    EXPECT_EQ(run.errors, kNoTrleErrors);
    EXPECT_THAT(Json({"--quiet", "save"}).lines, ElementsAre(kSaveFailed));
}

TEST_F(PlainMode, StatusIsAListForAPerson) {
    SetUpHome();
    const CliRun run = Plain({"status"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines, ElementsAre("TRLE folder: C:\\trle", "Archive: C:\\Kelvash\\LevelArchive.kva",
                                       "Levels: 1", "Installed level: 0", "Folder of the level in TRLE: ",
                                       "Full backup: yes", "Valid backup: yes"));
    EXPECT_THAT(run.errors, IsEmpty());
}

} // namespace
} // namespace kelvash::test
