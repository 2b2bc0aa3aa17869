// Any bytes as a wave file: what can be opened gives as many frames as it says, of both kinds of samples, or
// fails, and its conversion stays within its length.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "audio/pcm_stream.h"
#include "audio/wave_source.h"

namespace {

using namespace kelvash;
using namespace kelvash::audio;

// Longer ones take time and nothing else.
constexpr std::int64_t kMostFrames = 1 << 18;

void Require(bool truth) {
    if (!truth) std::abort();
}

std::unique_ptr<WaveSource> Open(const std::string& bytes) {
    MessageText why;
    auto source = OpenWave(std::make_unique<std::istringstream>(bytes), why);
    Require((source == nullptr) != why.text.empty());
    return source;
}

template <class Sample>
void ReadAll(WaveSource& source) {
    std::vector<Sample> samples(1000 * source.Channels);
    for (std::int64_t left = source.Frames; left > 0; left -= 1000) {
        if (left < 1000) samples.resize(static_cast<std::size_t>(left) * source.Channels);
        if (!source.Read(std::span<Sample>(samples))) return;
    }
}

void Convert(const std::string& bytes, std::size_t channels, std::int32_t rate) {
    const std::unique_ptr<WaveSource> source = Open(bytes);
    PcmStream stream(*source, channels, rate);
    if (!stream.IsGood() || stream.Frames() > kMostFrames) return;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(stream.Frames()) * channels);
    static_cast<void>(stream.Read(samples));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::unique_ptr<WaveSource> source = Open(bytes);
    if (!source) return 0;
    Require(source->Channels == 1 || source->Channels == 2);
    Require(source->Rate >= kLeastRate && source->Rate <= kMostRate && source->Frames > 0);
    if (source->Frames > kMostFrames) return 0;
    ReadAll<std::int16_t>(*source);
    ReadAll<float>(*Open(bytes));
    Convert(bytes, 2, 44'100);
    Convert(bytes, 1, 22'050);
    return 0;
}
