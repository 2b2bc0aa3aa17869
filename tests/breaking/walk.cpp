#include "breaking/walk.h"

#include <algorithm>
#include <thread>

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kFolderOffset = 260; // of an Archive's writable folder
constexpr std::size_t kFolderSize = 256;

std::string Trimmed(std::string text) {
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string Joined(const Words& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

} // namespace

void WalkHome::BeginWalk(unsigned seed) {
    Renew();
    random_.seed(seed);
    road_ = {"seed " + std::to_string(seed)};
    ledger_.emplace(drive, home, trle);
    in_ = SaveLedger::kOriginal;
    killed_ = marker_damaged_ = record_damaged_ = trle_damaged_ = false;
    known_files_.clear();
    for (const fs::directory_entry& entry : fs::directory_iterator(home))
        known_files_.insert(entry.path().filename().string());
    for (const fs::directory_entry& entry : fs::directory_iterator(levels)) {
        SaveLedger::Name(entry.path(), entry.path().filename().string());
        ledger_->TakeStash(entry.path());
    }
    for (const char* name : {"savegame.0", "savegame.4", "shot001.jpg"})
        ledger_->Write(trle / name, SaveLedger::kOriginal);
}

std::string WalkHome::Road() const {
    std::string text;
    constexpr std::size_t kShown = 40;
    for (std::size_t i = road_.size() > kShown ? road_.size() - kShown : 0; i < road_.size(); ++i)
        text += "  " + road_[i] + "\n";
    return road_.front() + ", its last steps:\n" + text;
}

fs::path WalkHome::CurrentFolder() {
    const Told told = Run({"status"});
    EXPECT_EQ(told.status(), 0) << told.Story();
    const auto native = [&](std::string dos) {
        std::replace(dos.begin(), dos.end(), '\\', '/');
        return dos.size() < 3 ? fs::path() : drive / dos.substr(3);
    };
    const fs::path archive = native(told.result.value("archive", ""));
    if (archive.empty() || !fs::exists(archive)) return levels;
    const std::string bytes = BytesOf(archive);
    if (bytes.size() < kFolderOffset + kFolderSize) return levels;
    return native(Trimmed(bytes.substr(kFolderOffset, kFolderSize)));
}

std::vector<int> WalkHome::Codes() {
    std::vector<int> codes;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(CurrentFolder(), error)) {
        const std::string name = entry.path().filename().string();
        if (name.starts_with("LEVEL_") && name.size() == 10) codes.push_back(std::atoi(name.c_str() + 6));
    }
    std::sort(codes.begin(), codes.end());
    return codes;
}

TracedRun WalkHome::RunToKill(const ProgramStart& start, const std::string& command) {
    static const bool can_trace = CanTrace();
    MakeFile(start.folder / "stdin", start.input);
    if (can_trace) {
        int& usual = usual_calls_[command];
        const int most = usual > 0 ? usual + usual / 10 : 40;
        const TracedRun run =
            RunTraced([&] { return BecomeProgram(start); }, {Fault::Kill, 1 + Below(most), 0, false, true});
        usual = std::max(usual, run.calls);
        return run;
    }
    RunningProgram program(start);
    std::this_thread::sleep_for(std::chrono::microseconds(Below(60000)));
    program.Kill();
    const ProgramEnd end = program.Wait();
    return {0, end.signal != 0, end.status, end.signal};
}

Told WalkHome::Do(const Words& words, Answers answers) {
    const ProgramStart start = Command(words, answers);
    ProgramEnd end;
    TracedRun run;
    const bool kill = Below(2) == 0;
    figures.Count("commands");
    if (kill) {
        run = RunToKill(start, words.front().starts_with("-") ? words.at(2) : words.front());
        end.status = run.exit_code;
        end.signal = run.killed ? 0 : run.signal;
        ReadStreams(start, end);
    } else {
        end = RunProgram(start);
    }
    killed_ = run.killed;
    WaitForGame();
    Log(Joined(words) +
        (killed_ ? " killed at call " + std::to_string(run.calls) : " -> " + std::to_string(end.status)));
    Told told = Tell(start, std::move(end));
    if (killed_)
        figures.Count("kills");
    else
        ExpectSane(told, 30);
    if (killed_) in_.reset();
    return told;
}

void WalkHome::SwapEnded(const Told& told, const std::string& owner) {
    if (killed_ || told.status() != 0) {
        in_.reset();
        return;
    }
    in_ = owner;
    marker_damaged_ = record_damaged_ = false;
}

void WalkHome::Install(int code) {
    const fs::path folder = CurrentFolder() / LevelName(code);
    const Told told = Do({"install", std::to_string(code)});
    SwapEnded(told, ledger_->OwnerOf(folder));
}

void WalkHome::Play(int code) {
    const fs::path folder = CurrentFolder() / LevelName(code);
    // The stand-in saves into the first slot that holds no whole savegame: to it none of these is one.
    ledger_->DropNamed(ledger_->OwnerOf(folder), "savegame.0");
    const Told told = Do({"play", std::to_string(code)});
    SwapEnded(told, ledger_->OwnerOf(folder));
}

void WalkHome::Restore(const char* kind) {
    SwapEnded(Do({"restore", kind}), SaveLedger::kOriginal);
}

void WalkHome::AddLevel() {
    const char* zip = Below(2) == 0 ? "Clockwork Pass.zip" : "The Lantern Caves.zip";
    const fs::path folder = CurrentFolder();
    const Told told = Do({"add", (zips / zip).string()}, Answers::Yes);
    if (killed_ || told.status() != 0) return;
    const fs::path level = folder / LevelName(told.result.value("code", 0));
    SaveLedger::Name(level, "added " + std::to_string(++serial_));
    ledger_->Write(level / "BACKUP_SAVEGAMES/savegame.2", ledger_->OwnerOf(level));
}

void WalkHome::RemoveLevel(int code) {
    const fs::path folder = CurrentFolder() / LevelName(code);
    const std::string owner = ledger_->OwnerOf(folder);
    const bool all = Below(2) == 0;
    if (all) ledger_->DropAllOf(owner);
    MakeFile(place / "once.json", R"([{"when": "Are you sure to want remove level", "answer": "yes"}])");
    if (all)
        static_cast<void>(Do({"remove", std::to_string(code)}, Answers::Yes));
    else
        static_cast<void>(Do({"--answers", (place / "once.json").string(), "remove", std::to_string(code)}));
    in_.reset();
}

void WalkHome::ChangeLevel(int code) {
    const std::string number = std::to_string(code);
    if (Below(2) == 0)
        Do({"level", "set", number, "--note", "note " + std::to_string(++serial_)});
    else
        Do({"export", number, Dos(drive / ("out" + std::to_string(++serial_) + ".zip"))});
}

void WalkHome::ChangeArchive() {
    const std::string number = std::to_string(++serial_);
    std::vector<fs::path> archives;
    for (const fs::directory_entry& entry : fs::directory_iterator(home))
        if (entry.path().extension() == ".kva") archives.push_back(entry.path());
    std::sort(archives.begin(), archives.end());
    switch (Below(8)) {
        case 0:
            Do({"prefs", "--compress", Below(2) == 0 ? "on" : "off"}, Answers::Yes);
            break;
        case 1:
            Do({"save-as", Dos(home / ("Copy" + number + ".kva"))});
            break;
        case 2:
            fs::create_directories(drive / ("Moved" + number));
            Do({"move", Dos(drive / ("Moved" + number))});
            break;
        case 3:
            Do({"recover", Dos(CurrentFolder())});
            break;
        case 4:
            fs::create_directories(drive / ("New" + number));
            Do({"new", Dos(drive / ("New" + number))});
            break;
        case 5:
            Do({"profile", "SavegamesToKeep", number});
            break;
        case 6:
            Do({Below(2) == 0 ? "equal" : "sizes"});
            break;
        default:
            if (!archives.empty()) Do({"load", Dos(AnyOf(archives))});
    }
}

void WalkHome::DoCommand() {
    const std::vector<int> codes = Codes();
    const int choice = Below(100);
    if (choice < 8 || codes.empty())
        AddLevel();
    else if (choice < 40)
        Install(AnyOf(codes));
    else if (choice < 52)
        Play(AnyOf(codes));
    else if (choice < 62)
        Restore("fast");
    else if (choice < 67)
        Restore("full");
    else if (choice < 72)
        RemoveLevel(AnyOf(codes));
    else if (choice < 80)
        ChangeLevel(AnyOf(codes));
    else
        ChangeArchive();
    TakeGameSaves();
}

bool WalkHome::Step() {
    const int choice = Below(100);
    if (choice < 60)
        DoCommand();
    else if (choice < 88)
        Player();
    else
        Bungler();
    figures.Count("operations");
    const std::string faults = ledger_->Faults();
    EXPECT_EQ(faults, "");
    if (!faults.empty()) figures.Count("walks with losses");
    return !HasFailure();
}

void WalkHome::EndWalk() {
    // A level whose folder somebody has taken away leaves with a complaint, once.
    Told fast = Run({"restore", "fast"}, Answers::Yes);
    if (fast.status() != 0 && fast.Warned()) fast = Run({"restore", "fast"}, Answers::Yes);
    EXPECT_EQ(fast.status(), 0) << fast.Story();
    EXPECT_EQ(ledger_->Faults(), "") << "after the last fast restore";
    EXPECT_EQ(ledger_->FaultsOfRoot(), "") << "after the last fast restore";
    const auto expect_original = [&](const char* after) {
        const FileMap now = OriginalFiles();
        for (const auto& [name, bytes] : original) {
            const auto found = now.find(name);
            EXPECT_TRUE(found != now.end() && found->second == bytes)
                << name << " isn't back after " << after;
        }
    };
    if (!trle_damaged_) expect_original("a fast restore");
    const Told full = Run({"restore", "full"}, Answers::Yes);
    EXPECT_EQ(full.status(), 0) << full.Story();
    EXPECT_EQ(ledger_->Faults(), "") << "after the last full restore";
    expect_original("a full restore");
    figures.Count("saves", ledger_->Count());
    figures.Count("walks");
}

} // namespace kelvash::test
