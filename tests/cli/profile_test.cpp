#include <gmock/gmock.h>

#include "cli/cli_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class ProfileCommand : public CliHome {};

TEST_F(ProfileCommand, ShowsAllFieldsInTheirOrder) {
    SetUpHome();
    const CliRun run = Json({"profile"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"result","ok":true,"ShowScreenShots":true,"PromptCapture":false,"NoAutoCompile":false,"CheckEqualLevels":true,"LastArchive":"C:\\Kelvash\\LevelArchive.kva","TrleFolder":"C:\\trle","ConverterName":"tom2pc.exe","GameExeName":"tomb4.exe","DownloadFolder":"c:\\","NoDecompress":true,"FullBackup":true,"AutoSave":true,"ArchiveSavegames":true,"SavegamesToKeep":5,"UrlUpdateReminder":true,"ScreenshotMinutes":5,"GraphicsProgram":"","TimerTenths":5,"VerifyImage":true,"EnableJoystick":false,"JoyButtonA":0,"JoyFlagA":false,"JoyButtonB":0,"JoyFlagB":false,"JoystickId":0})"));
}

TEST_F(ProfileCommand, ShowsTheDefaultsOfAnEmptyHome) {
    const CliRun run = Json({"profile", "downloadfolder"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines, ElementsAre(R"({"event":"result","ok":true,"DownloadFolder":"c:\\"})"));
    EXPECT_FALSE(Exists(home / "Kelvash.prf"));
}

TEST_F(ProfileCommand, SetsAFieldOfEachType) {
    SetUpHome();
    EXPECT_THAT(Json({"profile", "PromptCapture", "true"}).lines,
                ElementsAre(R"({"event":"result","ok":true,"PromptCapture":true})"));
    EXPECT_THAT(Json({"profile", "SavegamesToKeep", "9"}).lines,
                ElementsAre(R"({"event":"result","ok":true,"SavegamesToKeep":9})"));
    EXPECT_THAT(Json({"profile", "JoystickId", "-1"}).lines,
                ElementsAre(R"({"event":"result","ok":true,"JoystickId":-1})"));
    EXPECT_THAT(Json({"profile", "GraphicsProgram", "C:\\Malerei\\Täfel.exe"}).lines,
                ElementsAre(R"({"event":"result","ok":true,"GraphicsProgram":"C:\\Malerei\\Täfel.exe"})"));
    const std::string bytes = BytesOf(home / "Kelvash.prf");
    EXPECT_EQ(bytes.size(), 1588U);
    EXPECT_EQ(bytes.substr(2, 2), "\xFF\xFF");
    EXPECT_EQ(bytes.substr(1298, 4), std::string("\x09\0\0\0", 4));
    EXPECT_EQ(bytes.substr(1584, 2), "\xFF\xFF");
    EXPECT_EQ(bytes.substr(1308, 22),
              "C:\\Malerei\\T\xE4"
              "fel.exe  ");
    EXPECT_THAT(Json({"profile", "SavegamesToKeep"}).lines,
                ElementsAre(R"({"event":"result","ok":true,"SavegamesToKeep":9})"));
}

TEST_F(ProfileCommand, RefusesWhatAFieldCannotHold) {
    SetUpHome();
    const std::string before = BytesOf(home / "Kelvash.prf");
    const std::vector<std::vector<std::string>> refused = {
        {"AutoSave", "maybe", "2905", "AutoSave is true or false"},
        {"AutoSave", "1", "2905", "AutoSave is true or false"},
        {"TimerTenths", "ten", "2906", "TimerTenths is a whole number from -2147483648 to 2147483647"},
        {"TimerTenths", "2147483648", "2906", "TimerTenths is a whole number from -2147483648 to 2147483647"},
        {"JoystickId", "32768", "2906", "JoystickId is a whole number from -32768 to 32767"},
        {"GraphicsProgram", std::string(257, 'x'), "2907",
         "GraphicsProgram holds at most 256 characters of Windows-1252, with no blank at either end"},
        {"GraphicsProgram", "日", "2907",
         "GraphicsProgram holds at most 256 characters of Windows-1252, with no blank at either end"}};
    for (const auto& words : refused) {
        const CliRun run = Json({"profile", words[0], words[1]});
        EXPECT_EQ(run.status, 1) << words[1];
        EXPECT_EQ(run.lines.at(0), R"({"event":"message","id":)" + words[2] +
                                       R"(,"style":"critical","text":")" + words[3] + "\"}");
        EXPECT_THAT(run.lines.at(1), HasSubstr(R"({"event":"result","ok":false,")" + words[0] + "\":"));
    }
    EXPECT_EQ(BytesOf(home / "Kelvash.prf"), before);
}

TEST_F(ProfileCommand, TakesATextAsLongAsTheField) {
    SetUpHome();
    EXPECT_EQ(Json({"profile", "GraphicsProgram", std::string(256, 'x')}).status, 0);
    EXPECT_EQ(Json({"profile", "GraphicsProgram", ""}).status, 0);
    EXPECT_EQ(Json({"profile", "GraphicsProgram"}).lines.at(0),
              R"({"event":"result","ok":true,"GraphicsProgram":""})");
}

TEST_F(ProfileCommand, TellsOfAHomeThatCannotBeWritten) {
    SetUpHome();
    std::filesystem::permissions(home,
                                 std::filesystem::perms::owner_read | std::filesystem::perms::owner_exec);
    const OrdinaryUser ordinary;
    const CliRun run = Json({"profile", "TimerTenths", "7"});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(
        run.lines.at(0),
        R"({"event":"message","id":2904,"style":"critical","text":"Error while saving profile: C:\\Kelvash\\Kelvash.prf"})");
}

TEST_F(ProfileCommand, BringsAnOlderProfileUpToDateBeforeItSets) {
    SetUpHome();
    std::filesystem::resize_file(home / "Kelvash.prf", 1300);
    const CliRun run = Json({"profile", "TimerTenths", "7"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"ask","id":292,"buttons":"yesno","style":"question","text":"Warning: in previous version 1.3, there was a bug in remove level files phase. Now, it should be necessary perform a full restore in trle folder to remove multiple files\r\nExecute now a full restore?","answer":"no"})",
            R"({"event":"result","ok":true,"TimerTenths":7})"));
    EXPECT_EQ(std::filesystem::file_size(home / "Kelvash.prf"), 1588U);
}

TEST_F(ProfileCommand, PlainModeNamesFieldsAndValues) {
    SetUpHome();
    EXPECT_THAT(Plain({"profile", "AutoSave"}).lines, ElementsAre("AutoSave: true"));
    EXPECT_THAT(Plain({"profile", "TrleFolder"}).lines, ElementsAre("TrleFolder: C:\\trle"));
}

} // namespace
} // namespace kelvash::test
