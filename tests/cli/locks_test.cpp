// Several programs at once on one home: who waits, who is told, and that nothing is lost.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "cli/cli_home.h"
#include "core/archive_file.h"
#include "foundation/lock.h"
#include "support/built.h"
#include "support/swap_world.h"
#include "support/zip_bytes.h"
#include "trle_state/swap_record.h"

namespace kelvash::test {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

namespace fs = std::filesystem;

constexpr int kRounds = 20;

class Locks : public CliHome {
  protected:
    // A run that goes on while the test does.
    struct Background {
        pid_t process = 0;
        fs::path output;
    };

    Locks() {
        SetUpHome();
        for (const char* name : {"maze", "gate"})
            MakeFile(drive / "in" / (std::string(name) + ".zip"),
                     MakeZipBytes({MakeEntry(std::string(name) + ".tr4", name), MakeEntry("script.dat", "s"),
                                   MakeEntry("english.dat", "e")}));
    }

    Background Start(std::vector<std::string> words) {
        const std::string program = Built("bin/kelvash-cli").string();
        words.insert(words.begin(),
                     {program, "--home", home.string(), "--drive", "C=" + drive.string(), "--json"});
        std::vector<char*> arguments;
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        Background run{0, root / ("run" + std::to_string(++started_))};
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        posix_spawn_file_actions_addopen(&actions, 0, "/dev/null", O_RDONLY, 0);
        posix_spawn_file_actions_addopen(&actions, 1, run.output.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
        EXPECT_EQ(posix_spawn(&run.process, program.c_str(), &actions, nullptr, arguments.data(), environ),
                  0);
        posix_spawn_file_actions_destroy(&actions);
        return run;
    }
    static int StatusOf(const Background& run) {
        int status = 0;
        return waitpid(run.process, &status, 0) == run.process && WIFEXITED(status) ? WEXITSTATUS(status)
                                                                                    : -1;
    }
    void Hold(const std::string& folder, const std::string& doing) {
        LockHolder holder;
        ASSERT_EQ(lock.Take(folder, LockKind::Change, doing, holder), LockResult::Taken);
    }
    core::ArchiveContents Archive() const {
        core::ArchiveContents contents;
        EXPECT_TRUE(core::ReadArchiveFile("C:\\Kelvash\\LevelArchive.kva", contents));
        return contents;
    }
    fs::path Level(int code) const {
        const std::string digits = std::to_string(code);
        return (code == 0 ? home : drive / "Levels") /
               ("LEVEL_" + std::string(4 - digits.size(), '0') + digits);
    }
    CliRun Add(const std::string& name) { return Json({"add", "C:\\in\\" + name + ".zip"}); }

    FolderLock lock;

  private:
    int started_ = 0;
};

TEST_F(Locks, NameTheirHolderAndEndTheCommand) {
    Hold("C:\\Kelvash", "adding a level");
    const CliRun run = Add("maze");
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.Output(), HasSubstr("Another Kelvash (cli_tests, process " + std::to_string(getpid()) +
                                        ") is using this application's folder: adding a level"));
    EXPECT_FALSE(Exists(Level(1)));
    EXPECT_EQ(Archive().Table.Size(), 1);
}

TEST_F(Locks, OfTrleAndOfTheArchiveDoSoToo) {
    ASSERT_EQ(Add("maze").status, 0);
    Hold("C:\\trle", "restoring");
    const CliRun swap = Json({"install", "1"});
    EXPECT_EQ(swap.status, 4);
    EXPECT_THAT(swap.Output(), HasSubstr("is using this TRLE folder: restoring"));
    EXPECT_FALSE(Exists(drive / "trle/Kelvash.txt"));
    lock.Release();
    Hold("C:\\Levels", "moving the Archive");
    const CliRun remove = Json({"remove", "1"});
    EXPECT_EQ(remove.status, 4);
    EXPECT_THAT(remove.Output(), HasSubstr("is using this Archive: moving the Archive"));
    EXPECT_EQ(Json({"sizes"}).status, 4);
}

// What another program is at isn't cut short.
TEST_F(Locks, LetAStartGoPastASwapUnderWay) {
    ASSERT_EQ(Add("maze").status, 0);
    ASSERT_EQ(Json({"install", "1"}).status, 0);
    fs::path file;
    for (const fs::directory_entry& entry : fs::directory_iterator(home))
        if (entry.path().extension() == ".rec") file = entry.path();
    std::optional<trle_state::SwapRecord> record = trle_state::DecodeSwapRecord(BytesOf(file));
    ASSERT_TRUE(record.has_value());
    record->Step = trle_state::SwapStep::Leaving;
    const std::string under_way = trle_state::EncodeSwapRecord(*record, "C:\\trle");
    MakeFile(file, under_way);
    Hold("C:\\Kelvash", "installing a level");
    const CliRun run = Json({"equal"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_THAT(run.Output(), Not(HasSubstr("Another Kelvash")));
    EXPECT_EQ(BytesOf(file), under_way);
    lock.Release();
    EXPECT_THAT(Json({"equal"}).Output(), HasSubstr("had been cut short"));
}

TEST_F(Locks, KeepNoReaderOut) {
    ASSERT_EQ(Add("maze").status, 0);
    Hold("C:\\Kelvash", "adding a level");
    FolderLock trle;
    FolderLock levels;
    LockHolder holder;
    ASSERT_EQ(trle.Take("C:\\trle", LockKind::Change, "", holder), LockResult::Taken);
    ASSERT_EQ(levels.Take("C:\\Levels", LockKind::Change, "", holder), LockResult::Taken);
    for (const char* command : {"status", "levels", "profile", "equal"}) {
        const CliRun run = Json({command});
        EXPECT_EQ(run.status, 0) << command << ": " << run.Output();
        EXPECT_EQ(run.lines.size(), command == std::string("equal") ? 3U : 1U) << run.Output();
    }
    EXPECT_EQ(Json({"profile", "SavegamesToKeep", "7"}).status, 0) << "a setting waits for nobody";
}

TEST_F(Locks, AreAwaited) {
    Hold("C:\\Kelvash", "adding a level");
    EXPECT_EQ(Json({"add", "C:\\in\\maze.zip", "--wait", "0.2"}).status, 4);
    const Background run = Start({"add", "C:\\in\\maze.zip", "--wait", "60"});
    usleep(500000);
    EXPECT_EQ(Archive().Table.Size(), 1);
    lock.Release();
    EXPECT_EQ(StatusOf(run), 0) << BytesOf(run.output);
    EXPECT_EQ(Archive().Table.Size(), 2);
    EXPECT_EQ(Json({"status", "--wait", "long"}).status, 2);
}

TEST_F(Locks, EndWithAKilledCommand) {
    Hold("C:\\Levels", "");
    const Background run =
        Start({"add", "C:\\in\\maze.zip", "--wait", "60"}); // holds two, waits for the third
    usleep(500000);
    EXPECT_EQ(Add("gate").status, 4);
    kill(run.process, SIGKILL);
    EXPECT_EQ(StatusOf(run), -1);
    lock.Release();
    EXPECT_EQ(Add("gate").status, 0);
}

TEST_F(Locks, GiveTwoAddsAtOnceALevelEach) {
    for (int i = 0; i < kRounds; ++i) {
        const Background maze = Start({"add", "C:\\in\\maze.zip", "--wait", "60", "--answers",
                                       Answers(R"([{"when":"","answer":"yes","times":0}])")});
        const Background gate =
            Start({"add", "C:\\in\\gate.zip", "--wait", "60", "--answers", (root / "answers.json").string()});
        EXPECT_EQ(StatusOf(maze), 0) << BytesOf(maze.output);
        EXPECT_EQ(StatusOf(gate), 0) << BytesOf(gate.output);
    }
    const core::ArchiveContents contents = Archive();
    ASSERT_EQ(contents.Table.Size(), 1 + 2 * kRounds);
    int mazes = 0;
    for (int i = 1; i <= 2 * kRounds; ++i) {
        const core::LevelRecord& level = contents.Table[i];
        EXPECT_EQ(level.Code, i) << "two levels with one code";
        const fs::path files = Level(i) / "FILES";
        mazes += level.Name == "maze" ? 1 : 0;
        EXPECT_TRUE(Exists(files / (level.Name + ".tr4"))) << i;
        EXPECT_FALSE(Exists(files / (level.Name == "maze" ? "gate.tr4" : "maze.tr4"))) << i;
    }
    EXPECT_EQ(mazes, kRounds);
}

TEST_F(Locks, LetTwoInstallsAtOnceLoseNoSave) {
    ASSERT_EQ(Add("maze").status, 0);
    ASSERT_EQ(Add("gate").status, 0);
    const auto root_save = [&] { return drive / "trle" / "savegame.0"; };
    const auto stash = [&](int code) { return Level(code) / "BACKUP_SAVEGAMES" / "savegame.0"; };
    MakeFile(root_save(), "save of 0");
    for (const int code : {1, 2})
        MakeFile(stash(code), "save of " + std::to_string(code));
    for (int i = 0; i < kRounds; ++i) {
        const Background one = Start({"install", i % 3 == 0 ? "0" : "1", "--wait", "60"});
        const Background two = Start({"install", "2", "--wait", "60"});
        EXPECT_EQ(StatusOf(one), 0) << BytesOf(one.output);
        EXPECT_EQ(StatusOf(two), 0) << BytesOf(two.output);
        const std::string in = BytesOf(root_save());
        for (const int code : {0, 1, 2}) {
            const std::string save = "save of " + std::to_string(code);
            EXPECT_EQ(in == save ? in : BytesOf(stash(code)), save) << "round " << i;
        }
    }
}

TEST_F(Locks, LetOneOfTwoInstallsGoFirst) {
    ASSERT_EQ(Add("maze").status, 0);
    ASSERT_EQ(Add("gate").status, 0);
    for (int i = 0; i < kRounds; ++i) {
        const Background one = Start({"install", "1"});
        const Background two = Start({"install", "2"});
        const int first = StatusOf(one);
        const int second = StatusOf(two);
        EXPECT_THAT(first, AnyOf(0, 4)) << BytesOf(one.output);
        EXPECT_THAT(second, AnyOf(0, 4)) << BytesOf(two.output);
        EXPECT_TRUE(first == 0 || second == 0);
    }
}

TEST_F(Locks, LetTwoSettingsAtOnceBothStand) {
    for (int i = 1; i <= kRounds; ++i) {
        const std::string number = std::to_string(i);
        const Background one = Start({"profile", "SavegamesToKeep", number});
        const Background two = Start({"profile", "ScreenshotMinutes", number});
        EXPECT_EQ(StatusOf(one), 0);
        EXPECT_EQ(StatusOf(two), 0);
        const CliRun run = Json({"profile"});
        EXPECT_THAT(run.Output(), HasSubstr("\"SavegamesToKeep\":" + number + ","));
        EXPECT_THAT(run.Output(), HasSubstr("\"ScreenshotMinutes\":" + number + ","));
    }
}

TEST_F(Locks, LetOneOfTwoFirstStartsSetTheHomeUp) {
    for (const char* name : {"Kelvash.prf", "LevelArchive.kva"})
        fs::remove(home / name);
    fs::remove_all(home / "backup_trle");
    fs::remove_all(drive / "Levels");
    const std::vector<std::string> init = {"init",   "--trle", "C:\\trle", "--archive-folder",
                                           "C:\\In", "--wait", "60"};
    const Background one = Start(init);
    const Background two = Start(init);
    const int sum = StatusOf(one) + StatusOf(two);
    EXPECT_EQ(sum, 1) << "one of them finds the home set up: " << BytesOf(one.output) << BytesOf(two.output);
    EXPECT_FALSE(Exists(home / "LevelArchive2.kva"));
}

// --- a game that runs ---

// A game of a TRLE folder, which sleeps.
class Game {
  public:
    explicit Game(const fs::path& trle) {
        fs::copy_file("/bin/sleep", trle / "tomb4.exe", fs::copy_options::overwrite_existing);
        process_ = fork();
        if (process_ == 0) {
            if (chdir(trle.c_str()) == 0) execl("./tomb4.exe", "tomb4.exe", "60", nullptr);
            _exit(127);
        }
        std::error_code error;
        while (!fs::equivalent("/proc/" + std::to_string(process_) + "/exe", trle / "tomb4.exe", error))
            usleep(1000);
    }
    ~Game() { End(); }
    Game(const Game&) = delete;
    Game& operator=(const Game&) = delete;

    void End() {
        if (process_ <= 0) return;
        kill(process_, SIGKILL);
        waitpid(process_, nullptr, 0);
        process_ = -1;
    }

  private:
    pid_t process_ = -1;
};

TEST_F(Locks, ARunningGameKeepsSwapsOut) {
    ASSERT_EQ(Add("maze").status, 0);
    ASSERT_EQ(Json({"install", "1"}).status, 0);
    Game game(drive / "trle");
    const std::string marker = BytesOf(drive / "trle" / "Kelvash.txt");
    for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
             {"install", "0"}, {"install", "1"}, {"play", "1"}, {"restore", "fast"}, {"restore", "full"}}) {
        const CliRun run = Json(words);
        EXPECT_EQ(run.status, 1) << words.front();
        EXPECT_THAT(run.lines.front(), HasSubstr("The game is running: end it first")) << words.front();
        EXPECT_EQ(run.lines.size(), 2U) << run.Output();
    }
    EXPECT_EQ(Json({"remove", "1", "--answers", Answers(R"([{"when":"","answer":"yes","times":0}])")}).status,
              1);
    EXPECT_EQ(BytesOf(drive / "trle" / "Kelvash.txt"), marker);
    EXPECT_TRUE(Exists(Level(1) / "FILES" / "maze.tr4"));
    EXPECT_EQ(Json({"status"}).status, 0);
    EXPECT_EQ(Json({"sizes"}).status, 0) << "what swaps nothing goes on";
    game.End();
    EXPECT_EQ(Json({"install", "0"}).status, 0);
}

TEST_F(Locks, AFolderChosenAtTheDoorHasItsOwnGameAndItsOwnLock) {
    ASSERT_EQ(Add("maze").status, 0);
    fs::copy(drive / "trle", drive / "other", fs::copy_options::recursive);
    MakeFile(home / "backup_trle.txt", "#TRLE_FOLDER=C:\\other\r\n#TOMB4=00000000 1\r\n#KIND=full\r\n");
    const std::string choice = Answers(
        R"([{"id":3504,"answer":"no","times":0},{"when":"Dialog_TrovaTrle","answer":"C:\\other","times":0}])");
    const auto choose = [&](std::vector<std::string> words) {
        EXPECT_EQ(Json({"profile", "TrleFolder", "C:\\trle"}).status, 0);
        words.insert(words.end(), {"--answers", choice});
        return Json(words);
    };
    const FileMap before = TreeOf(drive / "other" / "data");
    {
        const Game game(drive / "other");
        for (const std::vector<std::string>& words :
             std::vector<std::vector<std::string>>{{"install", "1"}, {"play", "1"}, {"restore", "full"}}) {
            const CliRun run = choose(words);
            EXPECT_EQ(run.status, 1) << words.front();
            EXPECT_THAT(run.Output(), HasSubstr("The game is running: end it first")) << words.front();
            EXPECT_EQ(TreeOf(drive / "other" / "data"), before) << words.front();
        }
    }
    Hold("C:\\other", "installing a level");
    EXPECT_EQ(choose({"install", "1"}).status, 4);
    EXPECT_EQ(TreeOf(drive / "other" / "data"), before);
    EXPECT_FALSE(Exists(drive / "trle" / "Kelvash.txt"));
}

// The backup is of C:\other, which is chosen at its door while another program works there.
class LocksOfTwoFolders : public Locks {
  protected:
    LocksOfTwoFolders() {
        EXPECT_EQ(Add("maze").status, 0);
        fs::copy(drive / "trle", drive / "other", fs::copy_options::recursive);
        MakeFile(home / "backup_trle.txt", "#TRLE_FOLDER=C:\\other\r\n#TOMB4=00000000 1\r\n#KIND=full\r\n");
        Hold("C:\\other", "installing a level");
    }
    // A run that has chosen the other folder and waits for it.
    Background StartAndChoose(std::vector<std::string> words) {
        words.insert(words.end(), {"--wait", "60", "--answers", Answers(R"([{"id":3033,"answer":"yes"},
            {"id":3504,"answer":"no"},{"when":"Dialog_TrovaTrle","answer":"C:\\other","times":0}])")});
        const Background run = Start(words);
        for (int i = 0; i < 1000 && BytesOf(run.output).find("Dialog_TrovaTrle") == std::string::npos; ++i)
            usleep(10000);
        usleep(500000);
        return run;
    }
    static LockResult Taken(const std::string& folder) {
        FolderLock lock;
        LockHolder holder;
        return lock.Take(folder, LockKind::Change, "", holder);
    }
};

TEST_F(LocksOfTwoFolders, OfTheFormerOneAreGivenBackByAnInstall) {
    const Background run = StartAndChoose({"install", "1"});
    EXPECT_EQ(Taken("C:\\trle"), LockResult::Taken);
    EXPECT_EQ(Taken("C:\\Levels"), LockResult::Taken);
    lock.Release();
    EXPECT_EQ(StatusOf(run), 0) << BytesOf(run.output);
    EXPECT_TRUE(Exists(drive / "other" / "data" / "maze.tr4"));
}

TEST_F(LocksOfTwoFolders, OfTheFormerOneAreGivenBackByTheRestoreAtAStart) {
    fs::remove_all(drive / "trle" / "audio");
    const Background run = StartAndChoose({"equal"});
    EXPECT_EQ(Taken("C:\\trle"), LockResult::Taken);
    lock.Release();
    EXPECT_EQ(StatusOf(run), 0) << BytesOf(run.output);
    EXPECT_FALSE(Exists(drive / "trle" / "audio"));
}

TEST_F(Locks, ARestoreThatWasKeptOutIsNotDone) {
    Hold("C:\\trle", "installing a level");
    const CliRun run = Json({"restore", "full"}); // the original configuration is in already
    EXPECT_EQ(run.status, 4);
    EXPECT_THAT(run.lines.back(), HasSubstr("\"ok\":false"));
}

// --- a home of one's own ---

class OwnHome : public CliHome {
  protected:
    // A native program's entries lie in the user's data folder.
    bool IsRegistered() const { return Exists(root / "data"); }
    std::vector<std::string> Init() {
        MakeTrle(drive / "trle");
        return {"init", "--trle", "C:\\trle", "--archive-folder", "C:\\Levels"};
    }
};

TEST_F(OwnHome, IsRegisteredNowhere) {
    ASSERT_EQ(Json(Init()).status, 0);
    ASSERT_EQ(Json({"save"}).status, 0);
    EXPECT_FALSE(IsRegistered());
}

TEST_F(OwnHome, IsRegisteredWhenAskedFor) {
    std::vector<std::string> words = Init();
    words.insert(words.begin(), "--register");
    ASSERT_EQ(Json(words).status, 0);
    EXPECT_TRUE(IsRegistered());
}

TEST_F(OwnHome, OfTheUserIsRegisteredAsEver) {
    std::vector<std::string> words = Init();
    words.insert(words.begin(), {"--drive", "C=" + drive.string(), "--json"});
    ASSERT_EQ(Bare(words).status, 0);
    EXPECT_TRUE(Exists(root / "data" / "kelvash" / "Kelvash.prf"));
    EXPECT_TRUE(Exists(root / "data" / "mime"));
}

TEST_F(OwnHome, WithSettingsThatCannotBeReadIsLeftAlone) {
    ASSERT_EQ(Json(Init()).status, 0);
    fs::remove(home / "Kelvash.prf");
    fs::create_directory(home / "Kelvash.prf");
    for (const std::vector<std::string>& words :
         std::vector<std::vector<std::string>>{{"status"},
                                               {"levels"},
                                               {"profile"},
                                               {"profile", "AutoSave", "false"},
                                               {"save"},
                                               {"load", "C:\\Kelvash\\LevelArchive.kva"},
                                               {"new", "C:\\New"},
                                               {"init", "--trle", "C:\\trle", "--archive-folder", "C:\\New"},
                                               {"restore", "full"}}) {
        const CliRun run = Json(words);
        EXPECT_EQ(run.status, 1) << words.front();
        EXPECT_THAT(run.lines.front(), HasSubstr("The settings can't be read")) << words.front();
        EXPECT_EQ(run.lines.size(), 2U) << run.Output();
    }
    EXPECT_TRUE(fs::is_directory(home / "Kelvash.prf"));
    EXPECT_FALSE(Exists(drive / "New"));
}

} // namespace
} // namespace kelvash::test
