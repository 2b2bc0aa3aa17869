#include "audio/wave_chunks.h"

#include <algorithm>
#include <fstream>

#include "foundation/bytes.h"
#include "foundation/drives.h"
#include "foundation/files.h"

namespace kelvash::audio {

namespace {

constexpr std::int64_t kRiffHead = 12;
constexpr std::int64_t kChunkHead = 8;
constexpr std::size_t kFormatValues = 16; // bytes of a format chunk that every wave has

std::string ReadAt(std::ifstream& file, std::int64_t at, std::size_t count) {
    std::string bytes(count, '\0');
    file.clear();
    file.seekg(at);
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return bytes;
}

void TakeFormat(const std::string& bytes, WaveChunks& chunks) {
    WavHeader& format = chunks.Format;
    ByteReader reader(bytes);
    format.FmtLength = static_cast<std::uint32_t>(bytes.size());
    format.FormatTag = reader.Get<std::uint16_t>();
    format.Channels = reader.Get<std::uint16_t>();
    format.SampleRate = reader.Get<std::uint32_t>();
    format.ByteRate = reader.Get<std::uint32_t>();
    format.BlockAlign = reader.Get<std::uint16_t>();
    format.BitsPerSample = reader.Get<std::uint16_t>();
    chunks.More = bytes.size() > kFormatValues ? bytes.substr(kFormatValues) : std::string();
}

// Samples that a block of Microsoft ADPCM holds of each channel.
std::int64_t SamplesInBlock(const WavHeader& format) {
    constexpr int kBlockHead = 7; // bytes a channel, two samples in them
    const int bytes = format.BlockAlign - kBlockHead * format.Channels;
    return format.Channels == 0 || bytes < 0 ? 0 : std::int64_t{bytes} * 2 / format.Channels + 2;
}

std::int64_t SamplesOf(const WaveChunks& chunks) {
    const WavHeader& format = chunks.Format;
    if (format.BlockAlign == 0) return 0;
    if (format.FormatTag != kTagAdpcm) return chunks.DataSize / format.BlockAlign;
    const std::int64_t blocks = (chunks.DataSize + format.BlockAlign - 1) / format.BlockAlign;
    const std::int64_t most = blocks * SamplesInBlock(format);
    // The last block may be filled up: the count says where the sound ends in it.
    const bool plausible = chunks.FactSamples && *chunks.FactSamples <= most &&
                           *chunks.FactSamples > most - SamplesInBlock(format);
    return plausible ? *chunks.FactSamples : most;
}

} // namespace

std::optional<WaveChunks> ReadWaveChunks(std::string_view path) {
    constexpr std::int64_t kMostChunks = 10000;
    constexpr std::size_t kLongestFormat = 1024;
    if (!FileExists(path)) return std::nullopt;
    std::ifstream file(NativePath(path), std::ios::binary);
    const std::string riff = ReadAt(file, 0, kRiffHead);
    if (riff.substr(0, 4) != "RIFF" || riff.size() < kRiffHead || riff.substr(8) != "WAVE")
        return std::nullopt;
    const std::int64_t end = FileSize(path);
    WaveChunks chunks;
    std::int64_t at = kRiffHead;
    for (std::int64_t i = 0; i < kMostChunks && at + kChunkHead <= end; ++i) {
        const std::string head = ReadAt(file, at, kChunkHead);
        ByteReader reader(head);
        const std::string_view tag = reader.Bytes(4);
        const std::int64_t stated = reader.Get<std::uint32_t>();
        const std::int64_t size = std::min(stated, end - at - kChunkHead);
        if (tag == "fmt ") {
            TakeFormat(ReadAt(file, at + kChunkHead,
                              std::min<std::size_t>(static_cast<std::size_t>(size), kLongestFormat)),
                       chunks);
            chunks.FormatOffset = at;
        } else if (tag == "fact" && size >= 4) {
            const std::string fact = ReadAt(file, at + kChunkHead, 4);
            chunks.FactSamples = ByteReader(fact).Get<std::uint32_t>();
            chunks.FactOffset = at;
        } else if (tag == "data") {
            chunks.DataOffset = at + kChunkHead;
            chunks.DataSize = size;
            break;
        }
        at += kChunkHead + stated + stated % 2;
    }
    const bool whole = chunks.FormatOffset != 0 && chunks.DataOffset != 0;
    return whole ? std::optional(chunks) : std::nullopt;
}

double WaveSeconds(std::string_view path) {
    const std::optional<WaveChunks> chunks = ReadWaveChunks(path);
    if (!chunks || chunks->Format.SampleRate == 0) return 0;
    return static_cast<double>(SamplesOf(*chunks)) / chunks->Format.SampleRate;
}

bool PlaysInGame(std::string_view path) {
    constexpr std::int64_t kGameHead = 90;
    constexpr std::uint16_t kGameBlock = 2048;
    // Behind the four values: extra size, samples of a block, the seven pairs of coefficients.
    constexpr std::string_view kGameFormat(
        "\x20\x00\xF4\x07\x07\x00\x00\x01\x00\x00\x00\x02\x00\xFF\x00\x00\x00\x00\xC0\x00\x40\x00\xF0\x00\x00"
        "\x00\xCC\x01\x30\xFF\x88\x01\x18\xFF",
        34);
    const std::optional<WaveChunks> chunks = ReadWaveChunks(path);
    return chunks && chunks->Format.FormatTag == kTagAdpcm &&
           KindOf(chunks->Format) == AudioKind::TrleAudio && chunks->Format.BlockAlign == kGameBlock &&
           chunks->More == kGameFormat && chunks->DataOffset == kGameHead;
}

} // namespace kelvash::audio
