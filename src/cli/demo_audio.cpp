#include "cli/demo_audio.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "cli/demo_bytes.h"

namespace kelvash::cli {

namespace {

constexpr int kTrackRate = 44100;
constexpr int kSampleRate = 22050;
constexpr int kChannels = 2;
constexpr int kBlockSize = 2048;
constexpr int kFramesPerBlock = 2036;
constexpr int kAverageBytes = 44359; // a second, as the usual encoder states it
constexpr double kLoudness = 7000;

// Coefficients and step table of the format.
constexpr std::array<std::array<int, 2>, 7> kCoefficients = {
    {{256, 0}, {512, -256}, {0, 0}, {192, 64}, {240, 0}, {460, -208}, {392, -232}}};
constexpr int kPredictor = 1; // follows a slow tone best
constexpr std::array<int, 16> kAdaption = {230, 230, 230, 230, 307, 409, 512, 614,
                                           768, 614, 512, 409, 307, 230, 230, 230};
constexpr int kLeastStep = 16;

// A tone with a soft start and end; the channels are a fifth apart.
int ToneAt(int frame, int frames, int rate, double hertz) {
    const double fade = std::min({1.0, frame / 2000.0, (frames - frame) / 2000.0});
    const double angle = 2 * std::numbers::pi * hertz * frame / rate;
    return static_cast<int>(std::lround(kLoudness * std::max(0.0, fade) * std::sin(angle)));
}

struct Encoder {
    int step = kLeastStep;
    int last = 0;
    int before_last = 0;

    // The four bits that bring the decoder nearest to the sample.
    int Encode(int sample) {
        const auto [c1, c2] = kCoefficients[kPredictor];
        const int guess = (last * c1 + before_last * c2) >> 8;
        const int nibble =
            std::clamp(static_cast<int>(std::lround(static_cast<double>(sample - guess) / step)), -8, 7);
        before_last = last;
        last = std::clamp(guess + nibble * step, -32768, 32767);
        const int bits = nibble & 0xF;
        step = std::max(kLeastStep, (kAdaption[static_cast<std::size_t>(bits)] * step) >> 8);
        return bits;
    }
};

struct Stereo {
    std::array<Encoder, kChannels> encoders;
    double hertz = 0;
    int frames = 0;

    int Sample(std::size_t channel, int frame) const {
        return ToneAt(frame, frames, kTrackRate, channel == 0 ? hertz : hertz * 1.5);
    }

    void AppendBlock(int first_frame, std::string& bytes) {
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            encoders[channel].before_last = Sample(channel, first_frame);
            encoders[channel].last = Sample(channel, first_frame + 1);
            AppendByte(kPredictor, bytes);
        }
        for (const Encoder& encoder : encoders)
            AppendWord(encoder.step, bytes);
        for (const Encoder& encoder : encoders)
            AppendWord(encoder.last, bytes);
        for (const Encoder& encoder : encoders)
            AppendWord(encoder.before_last, bytes);
        for (int frame = first_frame + 2; frame < first_frame + kFramesPerBlock; ++frame) {
            const int left = encoders[0].Encode(Sample(0, frame));
            const int right = encoders[1].Encode(Sample(1, frame));
            AppendByte(left * 16 + right, bytes);
        }
    }
};

void AppendRiffHead(std::int64_t length, std::string& bytes) {
    bytes += "RIFF";
    AppendLong(length - 8, bytes);
    bytes += "WAVEfmt ";
}

} // namespace

std::string TrackWave(double hertz, double seconds) {
    constexpr int kHeadSize = 90;
    const int blocks = std::max(1, static_cast<int>(seconds * kTrackRate / kFramesPerBlock));
    const int frames = blocks * kFramesPerBlock;
    std::string bytes;
    AppendRiffHead(kHeadSize + std::int64_t{blocks} * kBlockSize, bytes);
    AppendLong(50, bytes);
    AppendWord(2, bytes); // Microsoft ADPCM
    AppendWord(kChannels, bytes);
    AppendLong(kTrackRate, bytes);
    AppendLong(kAverageBytes, bytes);
    AppendWord(kBlockSize, bytes);
    AppendWord(4, bytes); // bits
    AppendWord(32, bytes);
    AppendWord(kFramesPerBlock, bytes);
    AppendWord(static_cast<std::int64_t>(kCoefficients.size()), bytes);
    for (const auto& [c1, c2] : kCoefficients) {
        AppendWord(c1, bytes);
        AppendWord(c2, bytes);
    }
    bytes += "fact";
    AppendLong(4, bytes);
    AppendLong(frames, bytes);
    bytes += "data";
    AppendLong(std::int64_t{blocks} * kBlockSize, bytes);
    Stereo stereo{{}, hertz, frames};
    for (int block = 0; block < blocks; ++block)
        stereo.AppendBlock(block * kFramesPerBlock, bytes);
    return bytes;
}

std::string SampleWave(double hertz, double seconds) {
    constexpr int kHeadSize = 44;
    const int frames = static_cast<int>(seconds * kSampleRate);
    std::string bytes;
    AppendRiffHead(kHeadSize + 2 * std::int64_t{frames}, bytes);
    AppendLong(16, bytes);
    AppendWord(1, bytes); // PCM
    AppendWord(1, bytes);
    AppendLong(kSampleRate, bytes);
    AppendLong(2 * kSampleRate, bytes);
    AppendWord(2, bytes);
    AppendWord(16, bytes);
    bytes += "data";
    AppendLong(2 * std::int64_t{frames}, bytes);
    for (int frame = 0; frame < frames; ++frame)
        AppendWord(ToneAt(frame, frames, kSampleRate, hertz), bytes);
    return bytes;
}

} // namespace kelvash::cli
