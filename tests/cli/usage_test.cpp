#include <gmock/gmock.h>

#include <algorithm>
#include <array>

#include "cli/cli_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

constexpr std::array kCommands = {"init",    "status",  "profile", "new",    "load",    "save",
                                  "save-as", "levels",  "install", "play",   "restore", "demo",
                                  "add",     "level",   "export",  "config", "remove",  "sizes",
                                  "equal",   "recover", "move",    "prefs"};

class Usage : public CliHome {};

TEST_F(Usage, HelpNamesEveryCommandThatIsThere) {
    const CliRun run = Bare({"--help"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.errors, IsEmpty());
    for (const char* command : kCommands)
        EXPECT_THAT(run.Output(), HasSubstr(std::string("\n  ") + command + " "));
    for (const char* option : {"--home DIR", "--drive L=DIR[,cdrom]", "--answers FILE", "--json", "--yes",
                               "--no-input", "--quiet", "--version"})
        EXPECT_THAT(run.Output(), HasSubstr(option));
}

TEST_F(Usage, TellsItsVersion) {
    const CliRun run = Bare({"--version"});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.lines, testing::ElementsAre("kelvash-cli 1.4"));
}

TEST_F(Usage, EveryCommandHasHelpOfItsOwn) {
    for (const char* command : kCommands) {
        const CliRun run = Bare({command, "--help"});
        EXPECT_EQ(run.status, 0) << command;
        EXPECT_THAT(run.Output(), HasSubstr(std::string("Usage: kelvash-cli ") + command));
    }
    EXPECT_THAT(Bare({"init", "--help"}).Output(), HasSubstr("--archive-folder DIR"));
    EXPECT_THAT(Bare({"restore", "--help"}).Output(), HasSubstr("fast|full"));
}

TEST_F(Usage, AnUnknownCommandIsNamedOnStderr) {
    const CliRun run = Bare({"frobnicate"});
    EXPECT_EQ(run.status, 2);
    EXPECT_THAT(run.lines, IsEmpty());
    EXPECT_EQ(run.errors, "Unknown command: frobnicate\nRun with --help for more information.\n");
}

TEST_F(Usage, ACommandThatThereIsNotIsUnknown) {
    EXPECT_THAT(Bare({"burn", "1"}).errors, HasSubstr("Unknown command: burn\n"));
}

TEST_F(Usage, AnUnknownOptionIsNamedOnStderr) {
    for (const std::vector<std::string>& words :
         {std::vector<std::string>{"--loud", "status"}, {"status", "--loud"}}) {
        const CliRun run = Bare(words);
        EXPECT_EQ(run.status, 2);
        EXPECT_THAT(run.lines, IsEmpty());
        EXPECT_THAT(run.errors, HasSubstr("--loud"));
    }
}

TEST_F(Usage, MissingAndSuperfluousWordsAreRefused) {
    const std::vector<std::vector<std::string>> wrong = {
        {},
        {"install"},
        {"play"},
        {"load"},
        {"new"},
        {"save-as"},
        {"demo"},
        {"restore"},
        {"restore", "half"},
        {"status", "now"},
        {"install", "1", "2"},
        {"remove", "1", "2"},
        {"export", "1", "a.zip", "b.zip"},
        {"level", "set", "1", "Name"},
        {"kept", "list", "more"},
        {"kept", "take", "LEVEL_0004", "more"},
        {"messages", "check", "a.txt", "b.txt"},
        {"saves", "delete", "1", "savegame.0", "2"},
        {"init"},
        {"init", "--trle", "/x"},
        {"init", "--trle", "/x", "--archive-folder", "/y", "--backup", "half"},
        {"profile", "NoSuchField"},
        {"--home"}};
    for (const auto& words : wrong) {
        const CliRun run = Bare(words);
        EXPECT_EQ(run.status, 2) << testing::PrintToString(words);
        EXPECT_THAT(run.lines, IsEmpty()) << testing::PrintToString(words);
        EXPECT_THAT(run.errors, Not(IsEmpty())) << testing::PrintToString(words);
    }
}

TEST_F(Usage, ADriveNeedsALetterAndAFolder) {
    for (const char* letter : {"C", "C=", "C:/x", "7=/", "CD=/", "C=/no/such/folder"}) {
        const CliRun run = Bare({"--drive", letter, "status"});
        EXPECT_EQ(run.status, 2) << letter;
        EXPECT_EQ(run.errors, std::string("kelvash-cli: --drive ") + letter +
                                  ": a letter, '=' and an existing folder are needed\n");
    }
}

TEST_F(Usage, GlobalOptionsMayFollowTheCommand) {
    SetUpHome();
    const CliRun run = Bare({"status", "--json", "--home", home.string(), "--drive", "C=" + drive.string()});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(
        run.lines,
        ElementsAre(
            R"({"event":"result","ok":true,"trle":"C:\\trle","archive":"C:\\Kelvash\\LevelArchive.kva","levels":1,"installed":0,"owner":"","fullBackup":true,"backupValid":true,"cutShort":null})"));
}

TEST_F(Usage, TheHomeMayBeADosPath) {
    SetUpHome();
    const std::string on_drive = "C:\\Kelvash";
    const std::string letter = "C=" + drive.string();
    EXPECT_EQ(Bare({"--home", on_drive, "--drive", letter, "status"}).lines.at(0), "TRLE folder: C:\\trle");
    std::string on_root = "Z:" + home.string();
    std::replace(on_root.begin(), on_root.end(), '/', '\\');
    EXPECT_EQ(Bare({"--home", on_root, "--drive", letter, "status"}).lines.at(0), "TRLE folder: C:\\trle");
    const CliRun unknown = Bare({"--home", "Q:\\Kelvash", "status"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.errors, "kelvash-cli: --home Q:\\Kelvash: no such drive\n");
}

TEST_F(Usage, TheHomeMayComeFromTheEnvironment) {
    SetUpHome();
    setenv("KELVASH_HOME", home.c_str(), 1);
    const CliRun run = Bare({"--drive", "C=" + drive.string(), "status"});
    unsetenv("KELVASH_HOME");
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.lines.at(0), "TRLE folder: C:\\trle");
}

TEST_F(Usage, ABadAnswersFileIsRefusedBeforeAnythingIsDone) {
    const std::vector<std::pair<std::string, std::string>> faults = {
        {"", " is no JSON"},
        {"{", " is no JSON"},
        {"{}", " is no JSON array"},
        {"[1]", ": entry 1 is no object"},
        {R"([{"when":"a","answer":"yes"},{"when":"a"}])",
         ": entry 2 lacks \"when\" or \"id\", or \"answer\""},
        {R"([{"when":1,"answer":"yes"}])", ": entry 1 has a bad or unknown \"when\""},
        {R"([{"when":"a","answer":true}])", ": entry 1 has a bad or unknown \"answer\""},
        {R"([{"when":"a","answer":"yes","times":-1}])", ": entry 1 has a bad or unknown \"times\""},
        {R"([{"when":"a","answer":"yes","time":2}])", ": entry 1 has a bad or unknown \"time\""}};
    for (const auto& [json, fault] : faults) {
        const CliRun run = Json({"--answers", Answers(json), "save"});
        EXPECT_EQ(run.status, 2) << json;
        EXPECT_THAT(run.lines, IsEmpty());
        EXPECT_EQ(run.errors, "kelvash-cli: answers file " + (root / "answers.json").string() + fault + "\n");
    }
    EXPECT_FALSE(Exists(home / "Kelvash.prf"));
}

TEST_F(Usage, AnAnswersFileThatCannotBeReadIsRefused) {
    for (const std::filesystem::path& path : {root / "none.json", root}) {
        const CliRun run = Json({"--answers", path.string(), "status"});
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.errors, "kelvash-cli: answers file " + path.string() + " can't be read\n");
    }
}

TEST_F(Usage, AMessageTableInTheHomeIsTaken) {
    SetUpHome();
    MakeFile(home / "messages.txt", "# a translation\n2920\tCartella TRLE\n");
    EXPECT_EQ(Plain({"status"}).lines.at(0), "Cartella TRLE: C:\\trle");
    MakeFile(home / "messages.txt", "nonsense\n");
    const CliRun run = Plain({"status"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.lines.at(0), "TRLE folder: C:\\trle");
    EXPECT_EQ(run.errors,
              "The message table can't be used: " + (home / "messages.txt").string() + " (line 1)\n");
}

TEST_F(Usage, AMessageTableChangesNoFileNames) {
    SetUpHome();
    MakeFile(home / "messages.txt", "1201\t\n2920\tCartella TRLE\n280\t\\x.prf\n");
    const CliRun run = Plain({"status"});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.lines.at(0), "Cartella TRLE: C:\\trle");
    EXPECT_EQ(run.errors,
              "Lines of message table " + (home / "messages.txt").string() +
                  " have been ignored, because they change what is no message, or because they lose or "
                  "add marks (2): 1, 3\n");
    EXPECT_FALSE(Exists(home / "x.prf"));
}

} // namespace
} // namespace kelvash::test
