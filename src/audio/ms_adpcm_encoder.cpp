// The search for the nibbles of a block.
//
// Taking the nearest nibble at each sample is not the best: it decides the next step too. So several ways are
// kept side by side, each sample tries the two nearest nibbles of each, and the best ways go on. A first pass
// that keeps one way alone says which coefficients are worth that.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "audio/adpcm_steps.h"
#include "audio/ms_adpcm.h"
#include "foundation/bytes.h"

namespace kelvash::audio {

namespace {

constexpr std::size_t kCodes = kTrackBlockFrames - 2;
constexpr std::size_t kWays = 3; // kept side by side
constexpr std::size_t kFinalists = 1;

using Samples = std::array<std::int32_t, kTrackBlockFrames>;

struct Start {
    std::size_t Predictor = 0;
    std::int32_t Step = kLeastAdpcmStep;
};

struct Encoding {
    Start From;
    std::array<std::uint8_t, kCodes> Codes{};
    double Error = std::numeric_limits<double>::max(); // sum of squares
};

// A nibble's code and its neighbour's on the other side of the wanted value.
struct Nibbles {
    std::int32_t Nearest, Second;
};

Nibbles NibblesFor(std::int32_t difference, std::int32_t step) {
    const float wanted = static_cast<float>(difference) / static_cast<float>(step);
    const float bounded = std::clamp(wanted, -8.0F, 7.0F);
    const auto nearest = static_cast<std::int32_t>(bounded + 8.5F) - 8;
    const bool above = bounded > static_cast<float>(nearest);
    return {nearest, std::clamp(above ? nearest + 1 : nearest - 1, -8, 7)};
}

float Square(std::int32_t difference) {
    const auto value = static_cast<float>(difference);
    return value * value;
}

// Mean of the first differences from what is predicted, of which steps of this size are near.
std::int32_t FirstStep(const Samples& samples, const AdpcmCoefficients& coefficients) {
    constexpr std::size_t kLooked = 24;
    std::int32_t sum = 0;
    for (std::size_t i = 2; i < 2 + kLooked; ++i)
        sum += std::abs(samples[i] - AdpcmPrediction(coefficients, samples[i - 1], samples[i - 2])) / 16;
    return std::clamp(sum * 16 / std::int32_t{kLooked} / 3, kLeastAdpcmStep, 32'767);
}

// The error of nearest nibbles, or one above `limit` as soon as it is passed.
float TryNearest(const Samples& samples, const Start& start, float limit) {
    const AdpcmCoefficients coefficients = kAdpcmCoefficients[start.Predictor];
    std::int32_t before = samples[1], before_that = samples[0], step = start.Step;
    float error = 0;
    for (std::size_t i = 2; i < samples.size() && error < limit; ++i) {
        const std::int32_t prediction = AdpcmPrediction(coefficients, before, before_that);
        const std::int32_t nibble = NibblesFor(samples[i] - prediction, step).Nearest;
        before_that = before;
        before = AdpcmSample(prediction, nibble, step);
        error += Square(samples[i] - before);
        step = NextAdpcmStep(step, static_cast<unsigned>(nibble) & 15);
    }
    return error;
}

struct Way {
    std::int32_t Before, BeforeThat, Step;
    float Error;
};

struct Candidate {
    std::int32_t Sample;
    float Error;
    std::uint8_t Trace; // way << 4 | code
};

// The best candidates, sorted, none of them twice with one sample.
class Best {
  public:
    std::size_t Count() const { return count_; }
    const Candidate& operator[](std::size_t i) const { return kept_[i]; }
    void Offer(const Candidate& offered) {
        if (count_ == kWays && offered.Error >= kept_[kWays - 1].Error) return;
        std::size_t same = 0;
        while (same < count_ && kept_[same].Sample != offered.Sample)
            ++same;
        if (same < count_) {
            if (kept_[same].Error <= offered.Error) return;
        } else if (count_ < kWays) {
            ++count_;
        } else {
            same = kWays - 1;
        }
        for (; same > 0 && kept_[same - 1].Error > offered.Error; --same)
            kept_[same] = kept_[same - 1];
        kept_[same] = offered;
    }

  private:
    std::array<Candidate, kWays> kept_{};
    std::size_t count_ = 0;
};

using Traces = std::array<std::array<std::uint8_t, kWays>, kCodes>;

void TakeBack(const Traces& traces, Encoding& encoding) {
    std::size_t way = 0;
    for (std::size_t i = kCodes; i-- > 0;) {
        const std::uint8_t trace = traces[i][way];
        encoding.Codes[i] = trace & 15;
        way = trace >> 4;
    }
}

Encoding Search(const Samples& samples, const Start& start) {
    const AdpcmCoefficients coefficients = kAdpcmCoefficients[start.Predictor];
    Traces traces;
    std::array<Way, kWays> ways{};
    ways[0] = {samples[1], samples[0], start.Step, 0};
    std::size_t count = 1;
    double passed = 0;
    for (std::size_t i = 0; i < kCodes; ++i) {
        const std::int32_t wanted = samples[i + 2];
        Best best;
        for (std::size_t w = 0; w < count; ++w) {
            const Way& way = ways[w];
            const std::int32_t prediction = AdpcmPrediction(coefficients, way.Before, way.BeforeThat);
            const Nibbles nibbles = NibblesFor(wanted - prediction, way.Step);
            for (const std::int32_t nibble : {nibbles.Nearest, nibbles.Second}) {
                const std::int32_t sample = AdpcmSample(prediction, nibble, way.Step);
                best.Offer({sample, way.Error + Square(wanted - sample),
                            static_cast<std::uint8_t>(w << 4 | (static_cast<unsigned>(nibble) & 15))});
            }
        }
        const std::array<Way, kWays> old = ways;
        const float least = best[0].Error;
        count = best.Count();
        passed += static_cast<double>(least);
        for (std::size_t w = 0; w < count; ++w) {
            const Candidate& chosen = best[w];
            const Way& from = old[chosen.Trace >> 4];
            traces[i][w] = chosen.Trace;
            // Only differences between the ways count: kept small, for a float.
            ways[w] = {chosen.Sample, from.Before, NextAdpcmStep(from.Step, chosen.Trace & 15),
                       chosen.Error - least};
        }
    }
    Encoding encoding{start, {}, passed};
    TakeBack(traces, encoding);
    return encoding;
}

Encoding EncodeChannel(const Samples& samples) {
    struct Tried {
        Start From;
        float Error;
    };
    std::array<Tried, kAdpcmCoefficients.size()> tried;
    float limit = std::numeric_limits<float>::max();
    for (std::size_t p = 0; p < tried.size(); ++p) {
        tried[p].From = {p, FirstStep(samples, kAdpcmCoefficients[p])};
        tried[p].Error = TryNearest(samples, tried[p].From, limit);
        limit = std::min(limit, tried[p].Error * 1.5F);
    }
    std::sort(tried.begin(), tried.end(), [](const Tried& a, const Tried& b) { return a.Error < b.Error; });
    Encoding best;
    for (std::size_t i = 0; i < kFinalists; ++i) {
        Encoding encoding = Search(samples, tried[i].From);
        if (encoding.Error < best.Error) best = encoding;
    }
    return best;
}

} // namespace

void EncodeTrackBlock(std::span<const std::int16_t> frames, std::span<char> block) {
    std::array<Encoding, kTrackChannels> encodings;
    std::array<Samples, kTrackChannels> samples;
    for (std::size_t c = 0; c < kTrackChannels; ++c) {
        for (std::size_t i = 0; i < kTrackBlockFrames; ++i)
            samples[c][i] = frames[i * kTrackChannels + c];
        encodings[c] = EncodeChannel(samples[c]);
    }
    ByteWriter writer;
    for (const Encoding& encoding : encodings)
        writer.Put<std::uint8_t>(static_cast<std::uint8_t>(encoding.From.Predictor));
    for (const Encoding& encoding : encodings)
        writer.Put<std::int16_t>(static_cast<std::int16_t>(encoding.From.Step));
    for (const std::size_t i : {std::size_t{1}, std::size_t{0}})
        for (const Samples& channel : samples)
            writer.Put<std::int16_t>(static_cast<std::int16_t>(channel[i]));
    const std::string preamble = writer.Take();
    char* out = std::copy(preamble.begin(), preamble.end(), block.data());
    for (std::size_t i = 0; i < kCodes; ++i)
        *out++ = static_cast<char>(encodings[0].Codes[i] << 4 | encodings[1].Codes[i]);
}

} // namespace kelvash::audio
