#include "audio/audio_facts.h"

#include "audio/fragments.h"
#include "audio/messages.h"
#include "audio/mp3_frames.h"
#include "audio/wave_chunks.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/text.h"

namespace kelvash::audio {

namespace {

bool IsMp3(const std::string& path) {
    return EndsWithNoCase(path, LoadFragment(fragment::kFactsMp3));
}

} // namespace

AudioFacts FactsOf(const std::string& path) {
    AudioFacts facts;
    facts.IsMp3 = IsMp3(path);
    if (facts.IsMp3) {
        facts.Format = LoadMessage(msg::kFactsMp3Format);
        facts.Seconds = Mp3TrueSeconds(path);
        facts.Estimate = Mp3DurationSeconds(path);
        facts.IsTrack = IsTrackNumber(path);
        return facts;
    }
    static_cast<void>(ReadWavHeader(path, facts.Header));
    static_cast<void>(AnalyseWavFormat(path, AudioKind::Standard, facts.Format, facts.Kind));
    facts.Seconds = WaveSeconds(path);
    facts.IsTrack = facts.Kind == AudioKind::TrleAudio && IsTrackNumber(path);
    facts.IsNoise = facts.Kind == AudioKind::TrleAudio && !PlaysInGame(path);
    return facts;
}

std::string ListLine(const std::string& path) {
    const std::string name = FileNameOf(path) + "    ";
    if (IsMp3(path)) return name + LoadMessage(msg::kListMp3);
    WavHeader header;
    static_cast<void>(ReadWavHeader(path, header));
    return name + std::to_string(header.SampleRate) +
           LoadMessage(msg::kListWave,
                       {ChannelWord(header.Channels) + " " + std::to_string(header.BitsPerSample)});
}

} // namespace kelvash::audio
