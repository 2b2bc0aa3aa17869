#include "audio/mp3_settings.h"

#include "audio/messages.h"
#include "foundation/messages.h"
#include "foundation/state.h"
#include "foundation/text.h"

namespace kelvash::audio {

constinit Mp3Settings& mp3_settings = State<Mp3Settings>::Get();

std::string FrequencyText(std::int32_t frequency) {
    if (frequency == 0) return LoadMessage(msg::kFrequencyAutomatic);
    return std::to_string(frequency);
}

std::string ChannelsText(std::int16_t channels) {
    return LoadMessage(channels == 1 ? msg::kChannelsMono : msg::kChannelsStereo);
}

std::string Mp3EstimateText(std::int32_t bitrate) {
    constexpr std::int64_t kWholeBitrate = 128; // takes kWholeShare of the wave
    constexpr std::int64_t kWholeShare = 36;
    const std::int64_t hundredths = (bitrate * kWholeShare * 100 + kWholeBitrate / 2) / kWholeBitrate;
    return std::to_string(hundredths / 100) + "." + ZeroPadded(hundredths % 100, 2) +
           LoadMessage(msg::kEstimatePercent);
}

std::string TargetText(AudioKind kind, const Mp3Settings& settings) {
    switch (kind) {
        case AudioKind::Standard:
            return LoadMessage(msg::kKindStandard);
        case AudioKind::TrleAudio:
            return LoadMessage(msg::kKindTrleAudio);
        case AudioKind::TrleSamples:
            return LoadMessage(msg::kKindTrleSamples);
        case AudioKind::Mp3:
            break;
        default:
            return {};
    }
    std::string text = LoadMessage(msg::kKindMp3);
    if (settings.Mp3Frequency != 0) text += " " + std::to_string(settings.Mp3Frequency) + " ";
    return text + std::to_string(settings.Mp3Bitrate) + LoadMessage(msg::kKindKbps) +
           LoadMessage(settings.Mp3Channels == 1 ? msg::kKindMono : msg::kKindStereo);
}

} // namespace kelvash::audio
