#include "audio/wave_source.h"

#include <string>
#include <utility>

#include "audio/adpcm_source.h"
#include "audio/sndfile_source.h"
#include "audio/wave_layout.h"
#include "audio/wave_messages.h"

namespace kelvash::audio {

namespace {

std::unique_ptr<WaveSource> Refused(MessageText& why, MessageId message, const MessageArgs& args = {}) {
    why = LoadMessage(message, args);
    return nullptr;
}

} // namespace

std::unique_ptr<WaveSource> OpenWave(std::unique_ptr<std::istream> file, MessageText& why) {
    const std::optional<WaveLayout> layout = ReadWaveLayout(*file);
    if (!layout) return Refused(why, msg::kWaveUnknown);
    if (layout->Channels < 1 || layout->Channels > 2)
        return Refused(why, msg::kWaveChannels, {std::to_string(layout->Channels)});
    if (layout->Rate < kLeastRate || layout->Rate > kMostRate)
        return Refused(why, msg::kWaveRate, {std::to_string(layout->Rate)});
    if (layout->CutOff) return Refused(why, msg::kWaveCutOff);
    std::unique_ptr<WaveSource> source =
        layout->Tag == kMsAdpcmTag ? OpenAdpcm(std::move(file), *layout) : OpenBySndfile(std::move(file));
    if (layout->DataBytes == 0 || (source && source->Frames <= 0)) return Refused(why, msg::kWaveEmpty);
    if (!source || source->Channels != layout->Channels ||
        source->Rate != static_cast<std::int32_t>(layout->Rate))
        return Refused(why, msg::kWaveUnknown);
    return source;
}

} // namespace kelvash::audio
