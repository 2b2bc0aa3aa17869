// Two programs at once: every pair of changing commands, started at the same instant on one sandbox.
#include <unistd.h>

#include <algorithm>
#include <array>
#include <set>

#include "breaking/breaking_home.h"
#include "support/built.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

// What a command makes impossible for another: words that name what it takes away or makes once only.
struct Changing {
    std::string name;
    Words words;
    // True if a second command may find what it is about gone, or not to be had twice.
    bool excludes = false;
    // True if it makes another Archive file of the levels that it knows: what becomes of them afterwards
    // stands in the first.
    bool makes_file = false;
};

// What the commands of a pair did besides their own work.
struct Meanwhile {
    bool removed = false;    // level 3 may be gone
    bool other_file = false; // a second Archive file may have been made, which is the last one then
};

class Pairs : public BreakingHome {
  protected:
    std::vector<Changing> Commands() const {
        return {{"init", {"init", "--trle", Dos(trle), "--archive-folder", "C:\\Fresh"}, true},
                {"add", {"add", (zips / "Clockwork Pass.zip").string()}},
                {"add another", {"add", (zips / "The Lantern Caves.zip").string()}},
                {"level set", {"level", "set", "4", "--note", "set by one of two"}},
                {"remove", {"remove", "3"}, true},
                {"install", {"install", "1"}},
                {"install another", {"install", "2"}},
                {"play", {"play", "2"}, true}, // while its game runs nothing swaps
                {"restore fast", {"restore", "fast"}},
                {"restore full", {"restore", "full"}},
                {"move", {"move", "C:\\Moved"}, true},
                {"recover", {"recover", "C:\\Levels"}, true, true},
                {"save-as", {"save-as", "C:\\Kelvash\\Copy.kva"}, true, true},
                {"prefs", {"prefs", "--compress", "on"}},
                {"export", {"export", "4", "C:\\out.zip"}},
                {"profile", {"profile", "SavegamesToKeep", "77"}},
                {"equal", {"equal"}},
                {"sizes", {"sizes"}}};
    }
    // Starts both at one instant.
    std::array<Told, 2> RunBoth(Words first, Words second, int wait);
    // The command beside a window in which a hand works; see standins/hand.
    Told RunBeside(const Hand& hand, const Words& words, int round);
    void CheckAfter(const std::vector<Told>& told, const Meanwhile& meanwhile);
    void Check(const Changing& first, const Changing& second, const std::array<Told, 2>& told, bool waited);
    std::map<int, fs::path> WholeLevels(const Meanwhile& meanwhile);
    void CheckLevels(const std::vector<Told>& told, const Meanwhile& meanwhile);
    void CheckSaves();
    void Try(const Changing& first, const Changing& second, int wait);
    void Prepare();

    FileMap saves_;
};

// Level 1 is in and has been played; every level has a save.
void Pairs::Prepare() {
    Renew();
    fs::create_directories(drive / "Moved");
    ASSERT_EQ(Succeed({"install", "1"}).status(), 0);
    saves_.clear();
    const auto save = [&](const fs::path& file, const std::string& bytes) {
        fs::remove(file);
        MakeFile(file, bytes);
        saves_[bytes] = file.filename().string();
    };
    save(trle / "savegame.0", "save of level 1");
    for (const int code : {2, 4})
        save(Level(code) / "BACKUP_SAVEGAMES/savegame.9", "save of level " + std::to_string(code));
    save(home / "LEVEL_0000/BACKUP_SAVEGAMES/savegame.9", "save of the original");
}

std::array<Told, 2> Pairs::RunBoth(Words first, Words second, int wait) {
    int gate[2];
    EXPECT_EQ(pipe(gate), 0);
    if (wait > 0)
        for (Words* words : {&first, &second})
            words->insert(words->begin(), {"--wait", std::to_string(wait)});
    std::array<ProgramStart, 2> starts = {Command(first, Answers::Yes, "0"),
                                          Command(second, Answers::Yes, "1")};
    for (ProgramStart& start : starts)
        start.prepare = [&gate] {
            char go = 0;
            return read(gate[0], &go, 1) == 1 && close(gate[0]) == 0 && close(gate[1]) == 0;
        };
    RunningProgram one(starts[0]);
    RunningProgram other(starts[1]);
    EXPECT_EQ(write(gate[1], "go", 2), 2);
    const ProgramEnd end = one.Wait();
    const ProgramEnd other_end = other.Wait();
    close(gate[0]);
    close(gate[1]);
    WaitForGame();
    figures.Count("runs", 2);
    return {Tell(starts[0], end), Tell(starts[1], other_end)};
}

// The levels of the open Archive whose folders hold what a game needs, by code.
std::map<int, fs::path> Pairs::WholeLevels(const Meanwhile& meanwhile) {
    std::map<int, fs::path> whole;
    std::set<int> codes;
    const Told list = Run({"levels"});
    EXPECT_EQ(list.status(), 0) << list.Story();
    for (const Json& level : list.result.value("levels", Json::array())) {
        const int code = level.value("code", -1);
        EXPECT_TRUE(codes.insert(code).second) << "level " << code << " stands twice in the Archive";
        std::string folder = level.value("folder", "");
        std::replace(folder.begin(), folder.end(), '\\', '/');
        const fs::path native = drive / folder.substr(std::min<std::size_t>(3, folder.size()));
        bool plays = code == 0 && Exists(native / "FILES");
        for (const auto& [name, bytes] : FilesIn(native / "FILES"))
            plays = plays || name.find(".tr4") != std::string::npos;
        if (plays) whole.emplace(code, native);
        EXPECT_TRUE(plays || meanwhile.other_file) << "level " << code << " has lost its files in " << native;
    }
    return whole;
}

// Each record has its folder, each folder its record, and what both held stands. Of two Archive files each
// tells what held when it was written, and together they tell all.
void Pairs::CheckLevels(const std::vector<Told>& told, const Meanwhile& meanwhile) {
    std::map<int, fs::path> codes = WholeLevels(meanwhile);
    if (meanwhile.other_file) {
        Succeed({"load", "C:\\Kelvash\\LevelArchive.kva"});
        codes.merge(WholeLevels(meanwhile));
    }
    std::set<fs::path> parents;
    for (const auto& [code, folder] : codes)
        if (code != 0) parents.insert(folder.parent_path());
    for (const int code : {1, 2, 4})
        EXPECT_EQ(codes.count(code), 1U) << "level " << code << " is gone from the Archive";
    if (!meanwhile.removed) {
        EXPECT_EQ(codes.count(3), 1U) << "level 3 is gone, though nobody removed it";
    }
    for (const Told& run : told)
        if (run.status() == 0 && run.result.contains("code") && run.result.value("code", 0) > 4) {
            EXPECT_EQ(codes.count(run.result.value("code", 0)), 1U) << "an added level is gone\n"
                                                                    << run.Story();
        }
    for (const fs::path& parent : parents)
        for (const fs::directory_entry& entry : fs::directory_iterator(parent)) {
            const std::string name = entry.path().filename().string();
            if (!name.starts_with("LEVEL_")) continue;
            EXPECT_EQ(codes.count(std::atoi(name.c_str() + 6)), 1U) << entry.path() << " has no record";
        }
}

void Pairs::CheckSaves() {
    std::map<std::string, std::set<std::string>> places;
    for (const auto& [path, bytes] : TreeOf(drive))
        places[bytes].insert(path);
    for (const auto& [bytes, name] : saves_) {
        EXPECT_FALSE(places[bytes].empty()) << "lost: " << bytes;
        for (const std::string& path : places[bytes]) {
            const bool stash = path.find("/backup_savegames/") != std::string::npos;
            if (!stash) continue;
            const std::string folder =
                bytes == "save of the original" ? "level_0000" : "level_000" + bytes.substr(bytes.size() - 1);
            EXPECT_NE(path.find(folder), std::string::npos) << bytes << " lies in " << path;
        }
    }
}

void Pairs::Check(const Changing& first, const Changing& second, const std::array<Told, 2>& told,
                  bool waited) {
    const bool both_can = !first.excludes && !second.excludes && first.name != second.name;
    for (const Told& run : told) {
        ExpectSane(run, 40);
        if (waited && both_can) {
            EXPECT_EQ(run.status(), 0) << run.Story();
        }
    }
    EXPECT_TRUE(told[0].status() == 0 || told[1].status() == 0 || first.name == "init" ||
                second.name == "init")
        << "neither went through\n"
        << told[0].Story() << told[1].Story();
    const bool removed = (first.name == "remove" && told[0].status() == 0) ||
                         (second.name == "remove" && told[1].status() == 0);
    const bool profiled = (first.name == "profile" && told[0].status() == 0) ||
                          (second.name == "profile" && told[1].status() == 0);
    if (profiled) {
        const Told field = Run({"profile", "SavegamesToKeep"});
        EXPECT_EQ(field.result.value("SavegamesToKeep", 0), 77) << "a setting is lost\n" << field.Story();
    }
    CheckAfter({told[0], told[1]}, {removed, first.makes_file || second.makes_file});
}

void Pairs::CheckAfter(const std::vector<Told>& told, const Meanwhile& meanwhile) {
    const Told status = Run({"status"});
    EXPECT_EQ(status.status(), 0) << status.Story();
    CheckLevels(told, meanwhile);
    CheckSaves();
    Succeed({"restore", "fast"});
    CheckSaves();
    const FileMap now = OriginalFiles();
    for (const auto& [name, bytes] : original) {
        const auto found = now.find(name);
        EXPECT_TRUE(found != now.end() && found->second == bytes) << name << " of TRLE isn't back";
    }
    for (const auto& [name, bytes] : now)
        EXPECT_EQ(original.count(name), 1U) << name << " is left in TRLE";
}

Told Pairs::RunBeside(const Hand& hand, const Words& words, int round) {
    for (const fs::path& sign : {Ready(), Go()})
        fs::remove(sign);
    RunningProgram shown(Window(hand));
    EXPECT_TRUE(IsReady()) << "no window";
    const ProgramStart start = Command(words, Answers::Yes, "1");
    RunningProgram other(start);
    usleep(static_cast<useconds_t>(round % 5 * 10'000)); // the command needs some time to begin
    MakeFile(Go(), "");
    const ProgramEnd end = other.Wait();
    const ProgramEnd closed = shown.Wait();
    EXPECT_EQ(closed.status, 0) << "the window: signal " << closed.signal << "\n" << closed.errors;
    WaitForGame();
    figures.Count("runs", 2);
    return Tell(start, end);
}

void Pairs::Try(const Changing& first, const Changing& second, int wait) {
    Prepare();
    const std::array<Told, 2> told = RunBoth(first.words, second.words, wait);
    SCOPED_TRACE(first.name + " and " + second.name + (wait > 0 ? " with --wait\n" : "\n") + told[0].Story() +
                 told[1].Story());
    Check(first, second, told, wait > 0);
    figures.Count("pairs");
}

TEST_F(Pairs, OfChangingCommandsLoseNothing) {
    constexpr int kEach = 14; // the short form takes only some pairs
    const std::vector<Changing> commands = Commands();
    int number = 0;
    for (std::size_t i = 0; i < commands.size(); ++i)
        for (std::size_t k = i; k < commands.size(); ++k)
            for (int round = 0; round < BreakingRounds(); ++round)
                if (LongForm() || number++ % kEach == 0) Try(commands[i], commands[k], 0);
    EXPECT_GT(figures.Of("pairs"), 10);
}

TEST_F(Pairs, ThatWaitForEachOtherBothSucceed) {
    constexpr int kEach = 40;
    const std::vector<Changing> commands = Commands();
    int number = 4;
    for (std::size_t i = 0; i < commands.size(); ++i)
        for (std::size_t k = i; k < commands.size(); ++k)
            if (LongForm() || number++ % kEach == 0) Try(commands[i], commands[k], 20);
    EXPECT_GT(figures.Of("pairs"), 3);
}

// The rows are sorted by name: the original, levels 2, 3, 4 and 1.
const std::vector<Hand> kHands = {{"play", "1 Pul_Play"},
                                  {"properties", "3 mnu_Property"},
                                  {"delete", "2 mnu_RemoveLevel"},
                                  {"restore fast", "mnu_SetOriginale", "Dialog_Restore=Pul_Fast"},
                                  {"restore full", "mnu_SetOriginale", "Dialog_Restore=Pul_Full"}};

TEST_F(Pairs, AHandInTheWindowDoesItsWork) {
    for (const Hand& hand : kHands) {
        SCOPED_TRACE(hand.name);
        Prepare();
        RunBeside(hand, {"levels"}, 0);
        const int in = Run({"status"}).result.value("installed", -1);
        EXPECT_EQ(in, hand.name == "play" ? 2 : hand.name.starts_with("restore") ? 0 : 1);
        EXPECT_EQ(Levels().contains(3), hand.name != "delete");
    }
}

TEST_F(Pairs, OfAWindowAndACommandLoseNothing) {
    constexpr int kEach = 11;
    int number = 0;
    for (const Hand& hand : kHands)
        for (const Changing& command : Commands())
            for (int round = 0; round < BreakingRounds(); ++round) {
                if (command.name == "init" || (!LongForm() && number++ % kEach != 0)) continue;
                Prepare();
                const Told told = RunBeside(hand, command.words, round);
                SCOPED_TRACE(hand.name + " beside " + told.Story());
                ExpectSane(told, 40);
                const bool removed = hand.name == "delete" || command.name == "remove";
                CheckAfter({told}, {removed, command.makes_file});
                figures.Count("pairs with a window");
            }
    EXPECT_GT(figures.Of("pairs with a window"), 5);
}

// Half of all pairs of installs lost a save of the level that was in.
TEST_F(Pairs, OfInstallsKeepEverySave) {
    constexpr int kRounds = 3;
    const std::vector<Changing> commands = Commands();
    for (int round = 0; round < kRounds * BreakingRounds() && !HasFailure(); ++round)
        Try(commands[5], commands[6], 0);
    EXPECT_GT(figures.Of("pairs"), 0);
}

TEST_F(Pairs, OfAddsMakeTwoWholeLevels) {
    constexpr int kRounds = 2;
    for (int round = 0; round < kRounds * BreakingRounds() && !HasFailure(); ++round) {
        Prepare();
        const std::array<Told, 2> told = RunBoth({"add", (zips / "Clockwork Pass.zip").string()},
                                                 {"add", (zips / "The Lantern Caves.zip").string()}, 0);
        SCOPED_TRACE(told[0].Story() + told[1].Story());
        for (const Told& run : told)
            ExpectSane(run, 40);
        if (told[0].status() == 0 && told[1].status() == 0) {
            EXPECT_NE(told[0].result.value("code", 0), told[1].result.value("code", 0));
        }
        const std::array<std::pair<const char*, const char*>, 2> own = {
            {{"pass.tr4", "caves.tr4"}, {"caves.tr4", "pass.tr4"}}};
        for (std::size_t i = 0; i < 2; ++i) {
            if (told[i].status() != 0) continue;
            const fs::path files = Level(told[i].result.value("code", 0)) / "FILES";
            EXPECT_TRUE(Exists(files / own[i].first)) << files;
            EXPECT_FALSE(Exists(files / own[i].second)) << "two levels in " << files;
        }
        figures.Count("pairs");
    }
}

TEST_F(Pairs, OfFirstStartsMakeOneHome) {
    constexpr int kRounds = 2;
    for (int round = 0; round < kRounds * BreakingRounds() && !HasFailure(); ++round) {
        Renew();
        for (const char* name : {"Kelvash.prf", "LevelArchive.kva"})
            fs::remove(home / name);
        fs::remove_all(home / "backup_trle");
        fs::remove_all(home / "LEVEL_0000");
        const Words words = {"init", "--trle", Dos(trle), "--archive-folder", "C:\\Fresh"};
        const std::array<Told, 2> told = RunBoth(words, words, 0);
        SCOPED_TRACE(told[0].Story() + told[1].Story());
        for (const Told& run : told)
            ExpectSane(run, 40);
        EXPECT_TRUE((told[0].status() == 0) != (told[1].status() == 0)) << "not exactly one went through";
        Succeed({"status"});
        for (const auto& [name, bytes] : original)
            EXPECT_EQ(TreeOf(home / "backup_trle").count(name), 1U) << name << " isn't in the backup";
        figures.Count("pairs");
    }
}

} // namespace
} // namespace kelvash::test
