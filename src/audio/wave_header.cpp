#include "audio/wave_header.h"

#include <algorithm>
#include <array>

#include "audio/fragments.h"
#include "audio/messages.h"
#include "foundation/bytes.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::audio {

namespace {

constexpr std::uint32_t kMusicRate = 44100;
constexpr std::uint32_t kEffectRate = 22050;

bool IsFormat(const WavHeader& header, std::uint32_t rate, std::uint16_t channels, std::uint16_t bits) {
    return header.SampleRate == rate && header.Channels == channels && header.BitsPerSample == bits;
}

std::string TypeWord(const WavHeader& header) {
    constexpr std::uint16_t kAdpcmBits = 4;
    if (header.BitsPerSample == kAdpcmBits) return LoadMessage(msg::kTypeAdpcm);
    return LoadMessage(header.FormatTag == kTagPcm ? msg::kTypePcm : msg::kTypeUnknown);
}

std::string Describe(const WavHeader& header) {
    return TypeWord(header) + " " + std::to_string(header.SampleRate) + LoadMessage(msg::kWaveHertz) +
           ChannelWord(header.Channels) + " " + std::to_string(header.BitsPerSample) +
           LoadMessage(msg::kWaveBits);
}

// The holes are meant: nothing goes from 4 bits straight to an effect, nor from other PCM than the standard
// one straight to 4 bits.
std::int16_t StepTo(AudioKind kind, AudioKind target) {
    constexpr std::array<std::array<std::int16_t, 3>, 4> kSteps = {
        {{kStepNone, kStepTo4Bits, kStepToSamples},
         {kStepFrom4Bits, kStepNone, kNoStep},
         {kStepToStandard, kNoStep, kStepNone},
         {kStepToStandard, kNoStep, kStepToSamples}}};
    const auto row = static_cast<std::size_t>(kind) - 1;
    const auto column = static_cast<std::size_t>(target) - 1;
    return row < kSteps.size() && column < kSteps[row].size() ? kSteps[row][column] : kNoStep;
}

} // namespace

WavHeader DecodeWavHeader(std::string_view bytes) {
    std::string whole(bytes.substr(0, kWavHeaderSize));
    whole.resize(kWavHeaderSize, '\0');
    ByteReader reader(whole);
    WavHeader header;
    header.RiffTag = reader.Text(4);
    header.RiffLength = reader.Get<std::uint32_t>();
    header.WaveFmtTag = reader.Text(8);
    header.FmtLength = reader.Get<std::uint32_t>();
    header.FormatTag = reader.Get<std::uint16_t>();
    header.Channels = reader.Get<std::uint16_t>();
    header.SampleRate = reader.Get<std::uint32_t>();
    header.ByteRate = reader.Get<std::uint32_t>();
    header.BlockAlign = reader.Get<std::uint16_t>();
    header.BitsPerSample = reader.Get<std::uint16_t>();
    return header;
}

bool ReadWavHeader(std::string_view path, WavHeader& header) {
    header = DecodeWavHeader(ReadFileStart(path, kWavHeaderSize).value_or(std::string()));
    return KindOf(header) == AudioKind::Standard && header.FormatTag == kTagPcm;
}

AudioKind KindOf(const WavHeader& header) {
    if (IsFormat(header, kMusicRate, 2, 4)) return AudioKind::TrleAudio;
    if (IsFormat(header, kEffectRate, 1, 16)) return AudioKind::TrleSamples;
    if (IsFormat(header, kMusicRate, 2, 16)) return AudioKind::Standard;
    return header.FormatTag == kTagPcm ? AudioKind::OtherPcm : AudioKind::Unknown;
}

std::string ChannelWord(std::uint16_t channels) {
    switch (channels) {
        case 0:
            return " ";
        case 1:
            return LoadMessage(msg::kWaveMono);
        case 2:
            return LoadMessage(msg::kWaveStereo);
        default:
            return LoadMessage(msg::kWaveChannelCount, {std::to_string(channels)});
    }
}

MessageText StepName(std::int16_t step) {
    switch (step) {
        case kStepFrom4Bits:
            return LoadMessage(msg::kStepFrom4Bits);
        case kStepTo4Bits:
            return LoadMessage(msg::kStepTo4Bits);
        case kStepToStandard:
            return LoadMessage(msg::kStepStandard);
        case kStepToSamples:
            return LoadMessage(msg::kStepSamples);
        case kStepEncode:
            return LoadMessage(msg::kStepEncode);
        default:
            return LoadMessage(msg::kStepDecode);
    }
}

std::int16_t AnalyseWavFormat(std::string_view path, AudioKind target, std::string& description,
                              AudioKind& kind) {
    WavHeader header;
    static_cast<void>(ReadWavHeader(path, header));
    kind = KindOf(header);
    description = Describe(header);
    if (kind == AudioKind::Unknown) return kNoStep;
    if (kind == target) return kStepNone;
    return target == AudioKind::Mp3 ? kStepEncode : StepTo(kind, target);
}

bool IsTrackNumber(std::string_view path) {
    const std::string name = BaseNameOf(path);
    return std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool IsNotAudioTrack(std::string_view path, bool& warned) {
    warned = false;
    const bool numeric = IsTrackNumber(path);
    if (!EndsWithNoCase(path, LoadFragment(fragment::kTrackExtension))) return !numeric;
    WavHeader header;
    static_cast<void>(ReadWavHeader(path, header));
    constexpr std::uint16_t kTrackBits = 4;
    if (header.BitsPerSample != kTrackBits) return true;
    if (!numeric) {
        TellCritical(LoadMessage(msg::kTrackNotNumeric, {FileNameOf(path), kLineBreak, kLineBreak}));
        warned = true;
    }
    return false;
}

} // namespace kelvash::audio
