// A stand-in for the game: a native program that does to its folder what the game does.
//
// It reads which level the script names and what the language file calls it, keeps the level's track open for
// the length of its run, and saves: on the key S in its window, where there is a display, else at its end. In
// the window Escape ends it. KELVASH_GAME_MS is the length of the run in milliseconds, at whose end it saves:
// without a display 1500, with one for ever. Ends with 0, or with 1 if the folder holds no level that could
// be played.
#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <numeric>
#include <string>
#include <thread>
#include <vector>

#include "game_window.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kTitleSize = 75;
constexpr std::size_t kStateOffset = 87;
constexpr std::size_t kSavegameSize = 15954;
constexpr int kSlots = 15;

std::string Lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::tolower(c); });
    return text;
}

// The file of a folder that has the name in any case; empty if there is none.
fs::path Find(const fs::path& folder, const std::string& name) {
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        if (Lower(entry.path().filename().string()) == Lower(name)) return entry.path();
    return {};
}

std::string BytesOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::size_t NumberAt(const std::string& bytes, std::size_t offset, std::size_t width) {
    std::size_t value = 0;
    for (std::size_t i = 0; i < width && offset + i < bytes.size(); ++i)
        value |= static_cast<std::size_t>(static_cast<unsigned char>(bytes[offset + i])) << (8 * i);
    return value;
}

// What the script says: each level's file and track, and the language files in the order of their trial.
struct Script {
    struct Level {
        std::size_t title = 0;
        std::string file;
        std::size_t track = 0;
    };
    std::vector<Level> levels;
    std::vector<std::string> languages;
};

Script ReadScript(const std::string& bytes) {
    constexpr std::size_t kHead = 56;
    constexpr std::size_t kCommands = 7; // bytes of a level's code
    const std::size_t sections = NumberAt(bytes, 9, 1);
    const std::size_t files = NumberAt(bytes, 10, 2);
    const std::size_t names = kHead + 2 * files;
    const std::size_t code = names + NumberAt(bytes, 12, 2) + 2 * sections;
    Script script;
    for (std::size_t i = 0; i < sections && code + (i + 1) * kCommands <= bytes.size(); ++i) {
        const std::size_t at = code + i * kCommands;
        const std::size_t name = names + NumberAt(bytes, kHead + 2 * NumberAt(bytes, at + 4, 1), 2);
        if (name < bytes.size())
            script.levels.push_back(
                {NumberAt(bytes, at + 1, 1), bytes.c_str() + name, NumberAt(bytes, at + 5, 1)});
    }
    for (std::size_t at = code + NumberAt(bytes, 14, 2); at < bytes.size();) {
        script.languages.emplace_back(bytes.c_str() + at);
        at += script.languages.back().size() + 1;
    }
    return script;
}

std::string StringOf(const std::string& language, std::size_t index) {
    constexpr std::size_t kHead = 12;
    constexpr char kMask = '\xA5';
    const std::size_t count = NumberAt(language, 0, 2) + NumberAt(language, 2, 2) + NumberAt(language, 4, 2);
    std::string text;
    for (std::size_t at = kHead + 2 * count + NumberAt(language, kHead + 2 * index, 2);
         index < count && at < language.size() && language[at] != kMask; ++at)
        text += static_cast<char>(language[at] ^ kMask);
    return text;
}

std::string TitleOf(const Script& script, const Script::Level& level) {
    for (const std::string& name : script.languages)
        if (const fs::path file = Find(".", name); !file.empty()) return StringOf(BytesOf(file), level.title);
    return {};
}

bool IsSavegame(const std::string& bytes) {
    const int sum =
        std::accumulate(bytes.begin(), bytes.end(), 0) -
        std::accumulate(bytes.begin(),
                        bytes.begin() + static_cast<std::ptrdiff_t>(std::min(bytes.size(), kStateOffset)), 0);
    return bytes.size() >= kSavegameSize && (sum & 0xFF) == 0;
}

std::string Savegame(const std::string& title, std::size_t number, std::size_t seconds) {
    std::string bytes = title.substr(0, kTitleSize);
    bytes.resize(kSavegameSize);
    for (std::size_t i = 0; i < 4; ++i)
        bytes[kTitleSize + i] = static_cast<char>((number >> (8 * i)) & 0xFF);
    bytes[kStateOffset - 2] = static_cast<char>(seconds % 60);
    char sum = 0;
    for (std::size_t i = kStateOffset; i + 1 < kSavegameSize; ++i) {
        bytes[i] = static_cast<char>((i * 7 + number) & 0xFF);
        sum = static_cast<char>(sum + bytes[i]);
    }
    bytes.back() = static_cast<char>(-sum);
    return bytes;
}

// The next number goes to the first empty slot, or over the first when none is empty.
bool Save(const std::string& title, std::size_t seconds) {
    std::size_t highest = 0;
    std::string target = "savegame.0";
    for (int slot = kSlots - 1; slot >= 0; --slot) {
        const std::string name = "savegame." + std::to_string(slot);
        const fs::path file = Find(".", name);
        const std::string bytes = file.empty() ? std::string() : BytesOf(file);
        if (IsSavegame(bytes))
            highest = std::max(highest, NumberAt(bytes, kTitleSize, 4));
        else
            target = name;
    }
    std::ofstream file(target, std::ios::binary);
    const std::string bytes = Savegame(title, highest + 1, seconds);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file.good();
}

// Below 0 if it isn't said.
int Milliseconds() {
    const char* value = std::getenv("KELVASH_GAME_MS");
    return value == nullptr ? -1 : std::atoi(value);
}

// In the window, else asleep. True if the run has had its time.
bool Play(const std::string& title, const std::function<bool()>& save) {
    constexpr int kUsual = 1500;
    const int milliseconds = Milliseconds();
    if (standin::RunWindow({"Tomb Raider (stand-in)", title, milliseconds, save})) return milliseconds >= 0;
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds < 0 ? kUsual : milliseconds));
    return true;
}

} // namespace

int main() {
    const Script script = ReadScript(BytesOf(Find(".", "script.dat")));
    if (script.levels.empty()) return 1;
    // The last section: a level of its own, or the last of the original ones.
    const Script::Level& level = script.levels.back();
    const std::string file = level.file.substr(level.file.find('\\') + 1) + ".tr4";
    if (BytesOf(Find("data", file)).compare(0, 3, "TR4") != 0) return 1;

    constexpr std::size_t kHead = 90;
    constexpr std::size_t kRead = 22528;
    const std::string track = std::to_string(1000 + level.track).substr(1) + ".wav";
    std::ifstream audio(Find("audio", track), std::ios::binary);
    std::string piece(kRead, '\0');
    audio.seekg(kHead);
    audio.read(piece.data(), static_cast<std::streamsize>(piece.size()));
    const std::string title = TitleOf(script, level);
    const auto start = std::chrono::steady_clock::now();
    const auto save = [&] {
        const std::chrono::duration<double> played = std::chrono::steady_clock::now() - start;
        return Save(title, static_cast<std::size_t>(played.count()));
    };
    return !Play(title, save) || save() ? 0 : 1;
}
