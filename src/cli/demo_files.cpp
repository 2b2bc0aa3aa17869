#include "cli/demo_files.h"

#include <zlib.h>

#include <numeric>

#include "cli/demo_audio.h"
#include "foundation/bytes.h"

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

void PutSize(std::size_t size, ByteWriter& bytes) {
    bytes.Put<std::uint32_t>(static_cast<std::uint32_t>(size));
}

void PutShortSize(std::size_t size, ByteWriter& bytes) {
    bytes.Put<std::uint16_t>(static_cast<std::uint16_t>(size));
}

void PutPacked(const std::string& content, ByteWriter& bytes) {
    const std::string packed = Packed(content);
    PutSize(content.size(), bytes);
    PutSize(packed.size(), bytes);
    bytes.Bytes(packed);
}

// A text that NULs fill up to its width.
void PutFixed(std::string_view text, std::size_t width, ByteWriter& bytes) {
    text = text.substr(0, width);
    bytes.Bytes(text);
    bytes.Zeros(width - text.size());
}

// A list of texts that end in NUL, as offsets and as one run of bytes.
struct TextRun {
    std::string offsets;
    std::string bytes;

    explicit TextRun(const std::vector<std::string>& texts) {
        ByteWriter starts;
        for (const std::string& text : texts) {
            PutShortSize(bytes.size(), starts);
            bytes += text + '\0';
        }
        offsets = starts.Take();
    }
};

} // namespace

std::string LevelData(unsigned seed) {
    ByteWriter bytes;
    bytes.Bytes({"TR4\0", 4});
    bytes.Put<std::int16_t>(1); // texture pages of rooms, objects and bump maps
    bytes.Zeros(4);
    PutPacked(Squares(kPageSize, seed), bytes);
    PutPacked(Squares(kPageSize / 2, seed), bytes);
    PutPacked(Squares(kMiscSize, seed + 1), bytes);
    PutPacked("A level that nobody can walk in, number " + std::to_string(seed), bytes);
    const std::string sample = SampleWave(200 + 10.0 * seed, 0.1);
    bytes.Put<std::int32_t>(1);
    PutSize(sample.size(), bytes);
    PutSize(sample.size(), bytes);
    bytes.Bytes(sample);
    return bytes.Take();
}

std::string LogoData(unsigned seed) {
    ByteWriter bytes;
    PutSize(kLogoSize, bytes);
    bytes.Bytes(Packed(Squares(kLogoSize, seed)));
    return bytes.Take();
}

namespace {

// The script's commands of its levels, and where those of each begin.
struct LevelCode {
    std::string offsets;
    std::string bytes;

    explicit LevelCode(const std::vector<ScriptLevel>& levels) {
        constexpr std::uint8_t kLevelCommand = 0x81;
        constexpr std::uint8_t kEndOfLevel = 0x83;
        ByteWriter starts;
        ByteWriter code;
        for (std::size_t i = 0; i < levels.size(); ++i) {
            PutShortSize(code.Size(), starts);
            code.Put<std::uint8_t>(kLevelCommand);
            code.Put<std::uint8_t>(static_cast<std::uint8_t>(i)); // string: the title
            code.Put<std::int16_t>(0);                            // options
            code.Put<std::uint8_t>(static_cast<std::uint8_t>(i)); // file
            code.Put<std::uint8_t>(static_cast<std::uint8_t>(levels[i].track));
            code.Put<std::uint8_t>(kEndOfLevel);
        }
        offsets = starts.Take();
        bytes = code.Take();
    }
};

} // namespace

std::string ScriptData(const std::vector<ScriptLevel>& levels, const std::vector<std::string>& languages) {
    constexpr std::size_t kExtensionsSize = 40;
    std::vector<std::string> names;
    names.reserve(levels.size());
    for (const ScriptLevel& level : levels)
        names.push_back("DATA\\" + level.file);
    const TextRun files(names);
    const LevelCode code(levels);
    ByteWriter bytes;
    bytes.Put<std::int32_t>(1); // options: any level may be played
    bytes.Put<std::int32_t>(0); // time-out
    bytes.Put<std::uint8_t>(0); // security
    bytes.Put<std::uint8_t>(static_cast<std::uint8_t>(levels.size()));
    PutShortSize(names.size(), bytes);
    PutShortSize(files.bytes.size(), bytes);
    PutShortSize(code.bytes.size(), bytes);
    std::string extensions;
    for (int i = 0; i < 8; ++i)
        extensions += std::string(".TR4\0", 5);
    PutFixed(extensions, kExtensionsSize, bytes);
    for (const std::string& part :
         {files.offsets, files.bytes, code.offsets, code.bytes, TextRun(languages).bytes})
        bytes.Bytes(part);
    return bytes.Take();
}

std::string LanguageData(const std::vector<std::string>& strings) {
    constexpr char kMask = '\xA5';
    TextRun run(strings);
    ByteWriter bytes;
    PutShortSize(strings.size(), bytes); // common, console and PC strings
    bytes.Zeros(4);
    PutShortSize(run.bytes.size(), bytes);
    bytes.Zeros(4);
    bytes.Bytes(run.offsets);
    for (char& c : run.bytes)
        c = static_cast<char>(c ^ kMask);
    bytes.Bytes(run.bytes);
    return bytes.Take();
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
    ByteWriter bytes;
    PutFixed(title, kTitleSize, bytes);
    bytes.Put<std::int32_t>(number);
    bytes.Put<std::int16_t>(0); // days
    bytes.Put<std::int16_t>(static_cast<std::int16_t>(minutes / 60));
    bytes.Put<std::int16_t>(static_cast<std::int16_t>(minutes % 60));
    bytes.Put<std::int16_t>(0); // seconds
    std::string state;
    for (std::size_t i = bytes.Size(); i + 1 < kSize; ++i)
        state += static_cast<char>((i / 61 * static_cast<std::size_t>(number)) & 0x3F);
    bytes.Bytes(state);
    bytes.Put<std::uint8_t>(static_cast<std::uint8_t>(-std::accumulate(state.begin(), state.end(), 0)));
    return bytes.Take();
}

} // namespace kelvash::cli
