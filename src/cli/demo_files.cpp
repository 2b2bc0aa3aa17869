#include "cli/demo_files.h"

#include <zlib.h>

#include <algorithm>
#include <numeric>

#include "cli/demo_audio.h"
#include "cli/demo_bytes.h"

namespace kelvash::cli {

namespace {

constexpr std::size_t kPageSize = std::size_t{256} * 256 * 4; // bytes of a texture page at 32 bits
constexpr std::size_t kMiscSize = 524288;
constexpr std::size_t kLogoSize = std::size_t{512} * 256 * 3;

// Coloured squares, which pack well.
std::string Squares(std::size_t size, unsigned seed) {
    std::string bytes(size, '\0');
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(((i >> 7) * seed + (i >> 14) * 40) & 0xE0);
    return bytes;
}

std::string Packed(const std::string& bytes) {
    uLongf length = compressBound(static_cast<uLong>(bytes.size()));
    std::string packed(length, '\0');
    // NOLINTNEXTLINE: zlib's bytes are unsigned
    const auto* source = reinterpret_cast<const Bytef*>(bytes.data());
    auto* target = reinterpret_cast<Bytef*>(packed.data()); // NOLINT
    if (compress2(target, &length, source, static_cast<uLong>(bytes.size()), Z_BEST_COMPRESSION) != Z_OK)
        return {};
    packed.resize(length);
    return packed;
}

void AppendBlock(const std::string& content, std::string& bytes) {
    const std::string packed = Packed(content);
    AppendLong(static_cast<std::int64_t>(content.size()), bytes);
    AppendLong(static_cast<std::int64_t>(packed.size()), bytes);
    bytes += packed;
}

// A list of texts that end in NUL, as offsets and as one run of bytes.
struct TextRun {
    std::string offsets;
    std::string bytes;

    explicit TextRun(const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            AppendWord(static_cast<std::int64_t>(bytes.size()), offsets);
            bytes += text + '\0';
        }
    }
};

void AppendFixed(std::string_view text, std::size_t width, std::string& bytes) {
    bytes += text.substr(0, width);
    bytes.append(width - std::min(width, text.size()), '\0');
}

} // namespace

std::string LevelData(unsigned seed) {
    std::string bytes("TR4\0", 4);
    AppendWord(1, bytes); // texture pages of rooms, objects and bump maps
    AppendWord(0, bytes);
    AppendWord(0, bytes);
    AppendBlock(Squares(kPageSize, seed), bytes);
    AppendBlock(Squares(kPageSize / 2, seed), bytes);
    AppendBlock(Squares(kMiscSize, seed + 1), bytes);
    AppendBlock("A level that nobody can walk in, number " + std::to_string(seed), bytes);
    const std::string sample = SampleWave(200 + 10.0 * seed, 0.1);
    AppendLong(1, bytes);
    AppendLong(static_cast<std::int64_t>(sample.size()), bytes);
    AppendLong(static_cast<std::int64_t>(sample.size()), bytes);
    return bytes + sample;
}

std::string LogoData(unsigned seed) {
    std::string bytes;
    AppendLong(static_cast<std::int64_t>(kLogoSize), bytes);
    return bytes + Packed(Squares(kLogoSize, seed));
}

std::string ScriptData(const std::vector<ScriptLevel>& levels, const std::vector<std::string>& languages) {
    constexpr int kLevelCommand = 0x81;
    constexpr int kEndOfLevel = 0x83;
    constexpr std::size_t kExtensionsSize = 40;
    std::vector<std::string> names;
    std::string offsets;
    std::string code;
    for (std::size_t i = 0; i < levels.size(); ++i) {
        names.push_back("DATA\\" + levels[i].file);
        AppendWord(static_cast<std::int64_t>(code.size()), offsets);
        AppendByte(kLevelCommand, code);
        AppendByte(static_cast<std::int64_t>(i), code); // string: the title
        AppendWord(0, code);                            // options
        AppendByte(static_cast<std::int64_t>(i), code); // file
        AppendByte(levels[i].track, code);
        AppendByte(kEndOfLevel, code);
    }
    const TextRun files(names);
    std::string bytes;
    AppendLong(1, bytes); // options: any level may be played
    AppendLong(0, bytes); // time-out
    AppendByte(0, bytes); // security
    AppendByte(static_cast<std::int64_t>(levels.size()), bytes);
    AppendWord(static_cast<std::int64_t>(names.size()), bytes);
    AppendWord(static_cast<std::int64_t>(files.bytes.size()), bytes);
    AppendWord(static_cast<std::int64_t>(code.size()), bytes);
    std::string extensions;
    for (int i = 0; i < 8; ++i)
        extensions += std::string(".TR4\0", 5);
    AppendFixed(extensions, kExtensionsSize, bytes);
    return bytes + files.offsets + files.bytes + offsets + code + TextRun(languages).bytes;
}

std::string LanguageData(const std::vector<std::string>& strings) {
    constexpr char kMask = '\xA5';
    const TextRun run(strings);
    std::string bytes;
    AppendWord(static_cast<std::int64_t>(strings.size()), bytes); // common, console and PC strings
    AppendWord(0, bytes);
    AppendWord(0, bytes);
    AppendWord(static_cast<std::int64_t>(run.bytes.size()), bytes);
    AppendWord(0, bytes);
    AppendWord(0, bytes);
    bytes += run.offsets;
    for (const char c : run.bytes)
        bytes += static_cast<char>(c ^ kMask);
    return bytes;
}

std::vector<std::string> StringsOf(const std::vector<ScriptLevel>& levels,
                                   const std::vector<std::string>& words) {
    std::vector<std::string> strings;
    strings.reserve(levels.size() + words.size());
    for (const ScriptLevel& level : levels)
        strings.push_back(level.title);
    strings.insert(strings.end(), words.begin(), words.end());
    return strings;
}

std::string ScriptText(const std::vector<ScriptLevel>& levels) {
    std::string text =
        "[PCExtensions]\r\nLevel=\t.TR4\r\n\r\n[Language]\r\nFile=\t0,ENGLISH.TXT\r\n\r\n"
        "[Options]\r\nPlayAnyLevel=\tENABLED\r\n";
    for (const ScriptLevel& level : levels)
        text += "\r\n[Level]\r\nName=\t" + level.title + "\r\nLevel=\tDATA\\" + level.file + "," +
                std::to_string(level.track) + "\r\n";
    return text;
}

std::string LanguageText(const std::vector<std::string>& strings) {
    return std::accumulate(
        strings.begin(), strings.end(), std::string("[Strings]\r\n"),
        [](std::string text, const std::string& line) { return std::move(text) + line + "\r\n"; });
}

std::string SavegameData(std::string_view title, std::int32_t number, int minutes) {
    constexpr std::size_t kTitleSize = 75;
    constexpr std::size_t kSize = 15954;
    std::string bytes;
    AppendFixed(title, kTitleSize, bytes);
    AppendLong(number, bytes);
    AppendWord(0, bytes); // days
    AppendWord(minutes / 60, bytes);
    AppendWord(minutes % 60, bytes);
    AppendWord(0, bytes); // seconds
    const std::size_t state = bytes.size();
    for (std::size_t i = state; i + 1 < kSize; ++i)
        bytes += static_cast<char>((i / 61 * static_cast<std::size_t>(number)) & 0x3F);
    const int sum = std::accumulate(bytes.begin() + static_cast<std::ptrdiff_t>(state), bytes.end(), 0);
    AppendByte(-sum, bytes);
    return bytes;
}

} // namespace kelvash::cli
