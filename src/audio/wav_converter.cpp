#include "audio/wav_converter.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <limits>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "audio/ms_adpcm.h"
#include "audio/pcm_stream.h"
#include "audio/wave_messages.h"
#include "audio/wave_source.h"
#include "foundation/bytes.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/parallel.h"
#include "foundation/text.h"

namespace kelvash::audio {

namespace {

constexpr std::size_t kSampleBytes = 2;
constexpr std::size_t kPcmHeaderBytes = 44;
constexpr std::size_t kPieceFrames = std::size_t{1} << 17;
// Blocks that are encoded side by side, in shares that are worth a thread's while.
constexpr std::size_t kShareBlocks = 8, kShares = 16;
constexpr std::size_t kShareSamples = kShareBlocks * kTrackBlockFrames * kTrackChannels;

// What a mode makes.
struct Target {
    std::int16_t Mode;
    std::size_t Channels;
    std::int32_t Rate;
    bool FourBits;
};
constexpr std::array<Target, 4> kTargets = {{{kFrom4Bits, 2, 44'100, false},
                                             {kTo4Bits, kTrackChannels, kTrackRate, true},
                                             {kToStandard, 2, 44'100, false},
                                             {kTo22050Mono, 1, 22'050, false}}};

std::string PcmHeader(const Target& target, std::int64_t frames) {
    constexpr std::uint16_t kPcmTag = 1, kBits = 16;
    constexpr std::uint32_t kFormatBytes = 16, kRiffHead = 8;
    const std::size_t frame_bytes = target.Channels * kSampleBytes;
    const std::int64_t data = frames * static_cast<std::int64_t>(frame_bytes);
    ByteWriter writer;
    writer.Bytes("RIFF");
    writer.Put<std::uint32_t>(static_cast<std::uint32_t>(data) + kPcmHeaderBytes - kRiffHead);
    writer.Bytes("WAVEfmt ");
    writer.Put<std::uint32_t>(kFormatBytes);
    writer.Put<std::uint16_t>(kPcmTag);
    writer.Put<std::uint16_t>(static_cast<std::uint16_t>(target.Channels));
    writer.Put<std::uint32_t>(static_cast<std::uint32_t>(target.Rate));
    writer.Put<std::uint32_t>(static_cast<std::uint32_t>(target.Rate) *
                              static_cast<std::uint32_t>(frame_bytes));
    writer.Put<std::uint16_t>(static_cast<std::uint16_t>(frame_bytes));
    writer.Put<std::uint16_t>(kBits);
    writer.Bytes("data");
    writer.Put<std::uint32_t>(static_cast<std::uint32_t>(data));
    return writer.Take();
}

std::int64_t ResultBytes(const Target& target, std::int64_t frames) {
    if (!target.FourBits)
        return static_cast<std::int64_t>(kPcmHeaderBytes) +
               frames * static_cast<std::int64_t>(target.Channels * kSampleBytes);
    const auto block_frames = static_cast<std::int64_t>(kTrackBlockFrames);
    return static_cast<std::int64_t>(kTrackHeaderBytes) +
           (frames + block_frames - 1) / block_frames * static_cast<std::int64_t>(kTrackBlockBytes);
}

std::string_view BytesOf(std::span<const std::int16_t> samples) {
    return {reinterpret_cast<const char*>(samples.data()), samples.size_bytes()};
}

enum class Written { All, NotRead, NotWritten };

Written WritePcm(PcmStream& stream, const Target& target, const WritePiece& write) {
    if (!write(PcmHeader(target, stream.Frames()))) return Written::NotWritten;
    std::vector<std::int16_t> samples;
    for (std::int64_t left = stream.Frames(); left > 0;) {
        const auto frames = std::min(left, static_cast<std::int64_t>(kPieceFrames));
        samples.resize(static_cast<std::size_t>(frames) * target.Channels);
        if (!stream.Read(samples)) return Written::NotRead;
        if (!write(BytesOf(samples))) return Written::NotWritten;
        left -= frames;
    }
    return Written::All;
}

bool WriteBlocks(std::span<const std::int16_t> samples, const WritePiece& write) {
    const std::size_t shares = (samples.size() + kShareSamples - 1) / kShareSamples;
    const ParallelJob job{.Count = shares,
                          .InFlight = kShares,
                          .Expected = shares > 1 ? Effort::Heavy : Effort::Little,
                          .CanStop = false};
    const auto encode = [samples](std::size_t item) {
        const std::span<const std::int16_t> rest = samples.subspan(item * kShareSamples);
        return EncodeTrackBlocks(rest.first(std::min(kShareSamples, rest.size())));
    };
    return ParallelMap(job, encode, [&](std::size_t, const std::optional<std::string>& blocks) {
               return blocks && write(*blocks);
           }) == ParallelEnd::Done;
}

// The game plays the last block to its end: what there is fades into silence behind it.
void FadeBehind(std::span<std::int16_t> samples, std::size_t frames) {
    constexpr std::size_t kFade = 256;
    for (std::size_t i = frames * kTrackChannels; i < samples.size(); ++i) {
        const std::size_t past = std::min(i / kTrackChannels - frames, kFade);
        const std::int16_t last = samples[(frames - 1) * kTrackChannels + i % kTrackChannels];
        samples[i] = static_cast<std::int16_t>(last * static_cast<int>(kFade - past) / int{kFade});
    }
}

Written WriteTrack(PcmStream& stream, const WritePiece& write) {
    if (!write(TrackHeader(stream.Frames()))) return Written::NotWritten;
    const auto batch = static_cast<std::int64_t>(kShares * kShareBlocks * kTrackBlockFrames);
    std::vector<std::int16_t> samples;
    for (std::int64_t left = stream.Frames(); left > 0;) {
        const auto frames = static_cast<std::size_t>(std::min(left, batch));
        const std::size_t blocks = (frames + kTrackBlockFrames - 1) / kTrackBlockFrames;
        samples.resize(blocks * kTrackBlockFrames * kTrackChannels);
        if (!stream.Read(std::span(samples).first(frames * kTrackChannels))) return Written::NotRead;
        FadeBehind(samples, frames);
        if (!WriteBlocks(samples, write)) return Written::NotWritten;
        left -= static_cast<std::int64_t>(frames);
    }
    return Written::All;
}

bool Refused(MessageText& why, MessageId message, const MessageArgs& args = {}) {
    why = LoadMessage(message, args);
    return false;
}

bool HasRoom(const std::string& target, std::int64_t bytes, MessageText& why) {
    if (bytes > std::int64_t{std::numeric_limits<std::uint32_t>::max()})
        return Refused(why, msg::kWaveTooLong);
    const std::int64_t free = FreeSpace(target);
    return free < 0 || bytes <= free || Refused(why, msg::kWaveNoRoom, {FormatSize(bytes), FormatSize(free)});
}

std::unique_ptr<WaveSource> OpenSource(const std::string& path, MessageText& why) {
    if (!FileExists(path)) {
        why = LoadMessage(msg::kWaveMissing);
        return nullptr;
    }
    auto file = std::make_unique<std::ifstream>(NativePath(path), std::ios::binary);
    if (!*file) {
        why = LoadMessage(msg::kWaveUnreadable);
        return nullptr;
    }
    return OpenWave(std::move(file), why);
}

bool Convert(std::unique_ptr<WaveSource> source, const std::string& path, const Target& target,
             MessageText& why) {
    auto stream = std::make_unique<PcmStream>(*source, target.Channels, target.Rate);
    if (!stream->IsGood()) return Refused(why, msg::kWaveNoResampler);
    if (!HasRoom(path, ResultBytes(target, stream->Frames()), why)) return false;
    Written written = Written::NotWritten;
    const auto produce = [&](const WritePiece& write) {
        written = target.FourBits ? WriteTrack(*stream, write) : WritePcm(*stream, target, write);
        stream.reset();
        source.reset(); // closed, as it may be the file that is replaced
        return written == Written::All;
    };
    if (ReplaceFileBytes(path, produce, Flush::No)) return true;
    return written == Written::NotRead ? Refused(why, msg::kWaveDamaged) : Refused(why, msg::kWaveNotWritten);
}

} // namespace

bool WavConverter(const std::string& source, const std::string& target, std::int16_t mode,
                  std::string& errorText) {
    MessageText why;
    const auto* const wanted = std::find_if(kTargets.begin(), kTargets.end(),
                                            [mode](const Target& known) { return known.Mode == mode; });
    bool done = false;
    if (wanted == kTargets.end()) {
        why = LoadMessage(msg::kWaveModeUnknown, {std::to_string(mode)});
    } else if (std::unique_ptr<WaveSource> wave = OpenSource(source, why)) {
        done = Convert(std::move(wave), target, *wanted, why);
    }
    errorText = Trim(why.text);
    return done;
}

} // namespace kelvash::audio
