#include "audio/wave_layout.h"

#include <algorithm>
#include <limits>

#include "foundation/bytes.h"

namespace kelvash::audio {

namespace {

constexpr std::size_t kRiffHead = 12, kChunkHead = 8;
constexpr std::size_t kMostFormatBytes = 2048; // what is read of a format chunk; coefficients take 4 a pair
constexpr int kMostChunks = 1000;
// What programs state that write to a pipe and can't go back.
constexpr std::int64_t kLengthUnknown = 0x7FFF'0000;

std::string ReadBytes(std::istream& file, std::int64_t start, std::size_t count) {
    std::string bytes(count, '\0');
    file.clear();
    file.seekg(start);
    file.read(bytes.data(), static_cast<std::streamsize>(count));
    bytes.resize(static_cast<std::size_t>(std::max<std::streamsize>(file.gcount(), 0)));
    return bytes;
}

bool TakeFormat(std::string_view bytes, WaveLayout& layout) {
    ByteReader reader(bytes);
    layout.Tag = reader.Get<std::uint16_t>();
    layout.Channels = reader.Get<std::uint16_t>();
    layout.Rate = reader.Get<std::uint32_t>();
    reader.Skip(4); // bytes a second
    layout.BlockBytes = reader.Get<std::uint16_t>();
    reader.Skip(2); // bits a sample
    const bool whole = !reader.Failed();
    layout.Extra = std::string(reader.Bytes(reader.Left()));
    return whole;
}

void TakeData(std::int64_t start, std::int64_t stated, std::int64_t end, WaveLayout& layout) {
    layout.DataStart = start;
    layout.DataBytes = std::min(stated, end - start);
    layout.CutOff = stated > layout.DataBytes && stated < kLengthUnknown;
}

std::int64_t EndOf(std::istream& file) {
    file.clear();
    file.seekg(0, std::ios::end);
    return std::max<std::int64_t>(file.tellg(), 0);
}

} // namespace

std::optional<WaveLayout> ReadWaveLayout(std::istream& file) {
    const std::int64_t end = EndOf(file);
    const std::string riff = ReadBytes(file, 0, kRiffHead);
    if (riff.size() < kRiffHead || !riff.starts_with("RIFF") || riff.substr(8) != "WAVE") return std::nullopt;
    WaveLayout layout;
    bool has_format = false;
    std::int64_t at = kRiffHead;
    for (int i = 0; i < kMostChunks && at + std::int64_t{kChunkHead} <= end; ++i) {
        const std::string head = ReadBytes(file, at, kChunkHead);
        ByteReader reader(head);
        const std::string_view name = reader.Bytes(4);
        const std::int64_t size = reader.Get<std::uint32_t>();
        at += kChunkHead;
        if (name == "data") {
            TakeData(at, size, end, layout);
            return has_format ? std::optional(layout) : std::nullopt;
        }
        const auto read = static_cast<std::size_t>(std::min<std::int64_t>(size, kMostFormatBytes));
        if (name == "fmt ") has_format = TakeFormat(ReadBytes(file, at, read), layout);
        if (name == "fact" && size >= 4)
            layout.Fact = ByteReader(ReadBytes(file, at, 4)).Get<std::uint32_t>();
        at += size + size % 2;
    }
    return std::nullopt;
}

} // namespace kelvash::audio
