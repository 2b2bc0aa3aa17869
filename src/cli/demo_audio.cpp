#include "cli/demo_audio.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "foundation/bytes.h"

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
constexpr std::array<std::array<std::int16_t, 2>, 7> kCoefficients = {
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

    void PutBlock(int first_frame, ByteWriter& bytes) {
        for (std::size_t channel = 0; channel < kChannels; ++channel) {
            encoders[channel].before_last = Sample(channel, first_frame);
            encoders[channel].last = Sample(channel, first_frame + 1);
            bytes.Put<std::uint8_t>(kPredictor);
        }
        for (int Encoder::*const value : {&Encoder::step, &Encoder::last, &Encoder::before_last})
            for (const Encoder& encoder : encoders)
                bytes.Put<std::int16_t>(static_cast<std::int16_t>(encoder.*value));
        for (int frame = first_frame + 2; frame < first_frame + kFramesPerBlock; ++frame) {
            const int left = encoders[0].Encode(Sample(0, frame));
            const int right = encoders[1].Encode(Sample(1, frame));
            bytes.Put<std::uint8_t>(static_cast<std::uint8_t>(left * 16 + right));
        }
    }
};

void PutRiffHead(int length, ByteWriter& bytes) {
    bytes.Bytes("RIFF");
    bytes.Put<std::int32_t>(length - 8);
    bytes.Bytes("WAVEfmt ");
}

} // namespace

std::string TrackWave(double hertz, double seconds) {
    constexpr int kHeadSize = 90;
    const int blocks = std::max(1, static_cast<int>(seconds * kTrackRate / kFramesPerBlock));
    const int frames = blocks * kFramesPerBlock;
    ByteWriter bytes;
    PutRiffHead(kHeadSize + blocks * kBlockSize, bytes);
    bytes.Put<std::int32_t>(50);
    bytes.Put<std::int16_t>(2); // Microsoft ADPCM
    bytes.Put<std::int16_t>(kChannels);
    bytes.Put<std::int32_t>(kTrackRate);
    bytes.Put<std::int32_t>(kAverageBytes);
    bytes.Put<std::int16_t>(kBlockSize);
    bytes.Put<std::int16_t>(4); // bits
    bytes.Put<std::int16_t>(32);
    bytes.Put<std::int16_t>(kFramesPerBlock);
    bytes.Put<std::int16_t>(kCoefficients.size());
    for (const auto& [c1, c2] : kCoefficients) {
        bytes.Put<std::int16_t>(c1);
        bytes.Put<std::int16_t>(c2);
    }
    bytes.Bytes("fact");
    bytes.Put<std::int32_t>(4);
    bytes.Put<std::int32_t>(frames);
    bytes.Bytes("data");
    bytes.Put<std::int32_t>(blocks * kBlockSize);
    Stereo stereo{{}, hertz, frames};
    for (int block = 0; block < blocks; ++block)
        stereo.PutBlock(block * kFramesPerBlock, bytes);
    return bytes.Take();
}

std::string SampleWave(double hertz, double seconds) {
    constexpr int kHeadSize = 44;
    const int frames = static_cast<int>(seconds * kSampleRate);
    ByteWriter bytes;
    PutRiffHead(kHeadSize + 2 * frames, bytes);
    bytes.Put<std::int32_t>(16);
    bytes.Put<std::int16_t>(1); // PCM
    bytes.Put<std::int16_t>(1);
    bytes.Put<std::int32_t>(kSampleRate);
    bytes.Put<std::int32_t>(2 * kSampleRate);
    bytes.Put<std::int16_t>(2);
    bytes.Put<std::int16_t>(16);
    bytes.Bytes("data");
    bytes.Put<std::int32_t>(2 * frames);
    for (int frame = 0; frame < frames; ++frame)
        bytes.Put<std::int16_t>(static_cast<std::int16_t>(ToneAt(frame, frames, kSampleRate, hertz)));
    return bytes.Take();
}

} // namespace kelvash::cli
