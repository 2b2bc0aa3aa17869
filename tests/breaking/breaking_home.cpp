#include "breaking/breaking_home.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <sstream>
#include <thread>

#include "support/built.h"
#include "support/linked_tree.h"
#include "support/platform.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

// The marker, the game's own log, and level folders of an Archive that lies in TRLE.
bool IsVolatile(const std::string& name) {
    return name == "kelvash.txt" || name.ends_with(".log") || name.starts_with("level_");
}

// A huge file, which only a bomb makes, stands for itself by its beginning and size.
std::string ReadWhole(const fs::path& file) {
    constexpr std::uintmax_t kHuge = std::uintmax_t{64} << 20;
    std::error_code error;
    const std::uintmax_t size = fs::file_size(file, error);
    std::string bytes = size > kHuge ? std::to_string(size) + " bytes of " : std::string();
    std::FILE* stream = std::fopen(file.c_str(), "rb");
    if (stream == nullptr) return "(can't be read)";
    std::array<char, 1 << 16> piece{};
    while (const std::size_t count = std::fread(piece.data(), 1, piece.size(), stream)) {
        bytes.append(piece.data(), count);
        if (size > kHuge) break;
    }
    std::fclose(stream);
    return bytes;
}

std::string Shown(const std::string& bytes) {
    constexpr std::size_t kShown = 60;
    std::string text;
    for (const char c : bytes.substr(0, kShown))
        text += c >= ' ' && c < 127 ? c : '.';
    return text + (bytes.size() > kShown ? "..." : "");
}

bool IsSanitizerText(const std::string& errors) {
    for (const char* sign : {"Sanitizer", "runtime error:", "terminate called", "std::bad_alloc"})
        if (errors.find(sign) != std::string::npos) return true;
    return false;
}

} // namespace

bool Told::Spoke() const {
    return !end.errors.empty() || std::any_of(events.begin(), events.end(), [](const Json& event) {
        const std::string kind = event.value("event", "");
        return kind == "message" || kind == "ask";
    });
}

bool Told::Warned() const {
    return std::any_of(events.begin(), events.end(), [](const Json& event) {
        const std::string style = event.value("style", "");
        return event.value("event", "") == "message" && (style == "exclamation" || style == "critical");
    });
}

std::string Told::Story() const {
    std::string text = command + "\n  status " + std::to_string(end.status);
    if (end.signal != 0) text += ", ended by signal " + std::to_string(end.signal);
    return text + "\n" + end.output.substr(0, 4000) + end.errors.substr(0, 4000);
}

Snapshot SnapshotOf(const fs::path& folder) {
    Snapshot entries;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder, error)) {
        std::string& content = entries[entry.path().lexically_relative(folder).generic_string()];
        if (entry.is_symlink())
            content = "link to " + fs::read_symlink(entry.path()).string();
        else if (entry.is_regular_file())
            content = "file " + ReadWhole(entry.path());
        else
            content = entry.is_directory() ? "folder" : "something else";
    }
    return entries;
}

std::string Differences(const Snapshot& before, const Snapshot& after,
                        const std::function<bool(const std::string&)>& allowed) {
    std::string text;
    for (const auto& [path, content] : before) {
        if (allowed(path)) continue;
        const auto now = after.find(path);
        if (now == after.end())
            text += "gone: " + path + "\n";
        else if (now->second != content)
            text += "changed: " + path + " is now " + Shown(now->second) + "\n";
    }
    for (const auto& [path, content] : after)
        if (before.count(path) == 0 && !allowed(path)) text += "new: " + path + ", " + Shown(content) + "\n";
    return text;
}

BreakingHome::BreakingHome()
    : place(FastFolder(MakeTemporaryFolder())),
      ground(place / "ground"),
      user(ground / "user"),
      outside(ground / "outside"),
      runtime(ground / "runtime"),
      tmp(ground / "tmp"),
      drive(ground / "box/drive_c"),
      home(drive / "Kelvash"),
      trle(drive / "Program Files/Core Design/trle"),
      levels(drive / "Levels"),
      zips(drive / "zips"),
      pristine_(place / "pristine"),
      streams_(place / "streams") {}

BreakingHome::~BreakingHome() {
    std::error_code error;
    for (fs::recursive_directory_iterator at(place, error), end; !error && at != end; at.increment(error))
        if (at->is_directory() && !at->is_symlink())
            fs::permissions(at->path(), fs::perms::owner_all, fs::perm_options::add, error);
    fs::remove_all(place, error);
}

void BreakingHome::MakeDecoys() const {
    for (const char* name :
         {".bashrc", ".profile", ".config/autostart/other.desktop", "Documents/letter.txt"})
        MakeFile(user / name, std::string("the user's ") + name);
    for (const char* name : {"target.txt", "secret.wav", "secret.txt"})
        MakeFile(outside / name, std::string("outside ") + name);
    MakeFile(drive / "Other/savegame.0", "of another program");
    fs::create_directories(runtime);
    fs::permissions(runtime, fs::perms::owner_all);
    fs::create_directories(tmp);
}

void BreakingHome::SetUp() {
    MakeDecoys();
    fs::remove_all(ground / "box");
    const ProgramStart start = {
        Built("bin/kelvash-cli"), {"--json", "demo", (ground / "box").string()}, {}, streams_};
    const Told told = Tell(start, RunProgram(start));
    ASSERT_EQ(told.status(), 0) << told.Story();
    MakeFile(drive / "Other/savegame.0", "of another program");
    original = OriginalFiles();
    ASSERT_GT(original.size(), 60U);
    Keep();
}

void BreakingHome::Renew() {
    WaitForGame();
    fs::remove_all(ground);
    LinkTree(pristine_, ground);
    fs::permissions(runtime, fs::perms::owner_all);
}

void BreakingHome::Keep() {
    WaitForGame();
    fs::remove_all(pristine_);
    LinkTree(ground, pristine_);
}

ProgramStart BreakingHome::Command(const Words& words, Answers answers, const std::string& stream) {
    ProgramStart start;
    start.program = Built("bin/kelvash-cli");
    start.folder = streams_ / stream;
    start.words = {"--home", home.string(), "--json"};
    if (answers == Answers::Yes) {
        MakeFile(streams_ / "answers.json", R"([{"when": "", "answer": "yes", "times": 0}])");
        start.words.insert(start.words.end(), {"--answers", (streams_ / "answers.json").string()});
    }
    start.words.insert(start.words.end(), words.begin(), words.end());
    start.environment = {{"HOME", user.string()},
                         {"XDG_DATA_HOME", (user / ".local/share").string()},
                         {"XDG_RUNTIME_DIR", runtime.string()},
                         {"TMPDIR", tmp.string()},
                         {"WINEPREFIX", (user / "no-prefix").string()},
                         {"DISPLAY", ""},
                         {"KELVASH_GAME_MS", "30"}};
    return start;
}

ProgramStart BreakingHome::Window(const Hand& hand) {
    ProgramStart window = Command({}, Answers::None, "window");
    window.program = Built("bin/kelvash");
    window.words = {"--home", home.string()};
    window.environment.insert({{"QT_QPA_PLATFORM", "offscreen"},
                               {"QT_QPA_GENERIC_PLUGINS", "hand"},
                               {"QT_PLUGIN_PATH", Built("tests/plugins").string()},
                               {"DBUS_SESSION_BUS_ADDRESS", "disabled:"},
                               {"HAND_READY", Ready().string()},
                               {"HAND_GO", Go().string()},
                               {"HAND_DOES", hand.does},
                               {"HAND_FORMS", hand.forms}});
    return window;
}

bool BreakingHome::IsReady() const {
    constexpr int kLongestStart = 2000; // of 10 ms each
    for (int i = 0; i < kLongestStart && !Exists(Ready()); ++i)
        usleep(10'000);
    return Exists(Ready());
}

Told BreakingHome::Tell(const ProgramStart& start, ProgramEnd end) {
    Told told;
    for (const std::string& word : start.words)
        told.command += (told.command.empty() ? "kelvash-cli " : " ") + word;
    told.result = Json::object();
    std::istringstream output(end.output);
    for (std::string line; std::getline(output, line);) {
        Json event = Json::parse(line, nullptr, false);
        if (event.is_object())
            told.events.push_back(std::move(event));
        else
            told.clean = false;
    }
    if (!told.events.empty() && told.events.back().value("event", "") == "result")
        told.result = told.events.back();
    told.end = std::move(end);
    return told;
}

Told BreakingHome::Run(const Words& words, Answers answers) {
    const ProgramStart start = Command(words, answers);
    figures.Count("runs");
    return Tell(start, RunProgram(start));
}

Told BreakingHome::RunWith(const Words& words, FaultPlan plan, TracedRun& run, Answers answers) {
    plan.in_program = true;
    const ProgramStart start = Command(words, answers);
    figures.Count("runs");
    MakeFile(start.folder / "stdin", start.input);
    run = RunTraced([&] { return BecomeProgram(start); }, plan);
    ProgramEnd end;
    end.status = run.exit_code;
    end.signal = run.signal;
    ReadStreams(start, end);
    return Tell(start, std::move(end));
}

Told BreakingHome::Succeed(const Words& words, Answers answers) {
    Told told = Run(words, answers);
    EXPECT_EQ(told.status(), 0) << told.Story();
    return told;
}

void BreakingHome::ExpectSane(const Told& told, double seconds) const {
    const std::int64_t most_memory = Slowness() * (std::int64_t{400} << 20);
    EXPECT_EQ(told.end.signal, 0) << told.Story();
    EXPECT_FALSE(IsSanitizerText(told.end.errors)) << told.Story();
    EXPECT_TRUE(told.status() == 0 || told.status() == 1 || told.status() == 3 || told.status() == 4)
        << told.Story();
    EXPECT_LT(told.end.seconds, Slowness() * seconds) << told.Story();
    EXPECT_LT(told.end.memory, most_memory) << told.Story();
    EXPECT_TRUE(told.clean) << "a line isn't JSON\n" << told.Story();
    if (told.status() != 0) {
        EXPECT_TRUE(told.Spoke()) << "failed without a word\n" << told.Story();
        EXPECT_FALSE(told.result.value("ok", false)) << told.Story();
    } else {
        EXPECT_TRUE(told.result.value("ok", false)) << told.Story();
    }
}

std::string BreakingHome::Dos(const fs::path& path) const {
    std::string text = path.lexically_relative(drive).generic_string();
    std::replace(text.begin(), text.end(), '/', '\\');
    return "C:\\" + text;
}

std::string BreakingHome::LevelName(int code) {
    const std::string digits = std::to_string(code);
    return "LEVEL_" + std::string(4 - std::min<std::size_t>(4, digits.size()), '0') + digits;
}

std::map<int, Json> BreakingHome::Levels() {
    const Told told = Run({"levels"});
    EXPECT_EQ(told.status(), 0) << told.Story();
    std::map<int, Json> found;
    for (const Json& level : told.result.value("levels", Json::array()))
        found[level.value("code", -1)] = level;
    return found;
}

FileMap BreakingHome::OriginalFiles() const {
    FileMap files = TreeOf(trle);
    std::erase_if(files, [](const auto& file) { return IsSaveName(file.first) || IsVolatile(file.first); });
    return files;
}

void BreakingHome::WaitForGame() const {
    const std::string game = (trle / "tomb4.exe").string();
    const auto runs = [&] {
        std::error_code error;
        for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error))
            if (fs::read_symlink(entry.path() / "exe", error).string().starts_with(game)) return true;
        return false;
    };
    for (int i = 0; i < 500 && runs(); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
}

} // namespace kelvash::test
