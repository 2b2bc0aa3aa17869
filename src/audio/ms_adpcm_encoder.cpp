// The search for the nibbles of a block.
//
// Taking the nearest nibble at each sample is not the best: it decides the next step too. So four ways are
// kept side by side, each sample tries the two nearest nibbles of each, and the best ways go on, of those
// that come to one sample only the better. The ways begin with different steps. A first pass with the nearest
// nibbles alone says which coefficients that is done with.
//
// Four such searches, for the two channels of two blocks, run in the four lanes of a vector. All of it is
// exact in floats: coefficients are multiples of 4, sums below 2^26.
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdlib>
#include <type_traits>

#include "audio/adpcm_steps.h"
#include "audio/ms_adpcm.h"
#include "foundation/bytes.h"

namespace kelvash::audio {

namespace {

constexpr std::size_t kCodes = kTrackBlockFrames - 2;
constexpr std::size_t kLanes = 4;
constexpr std::size_t kBlocks = kLanes / kTrackChannels; // at a time
constexpr std::size_t kPredictors = kAdpcmCoefficients.size();
constexpr std::size_t kWays = 4;
constexpr std::size_t kTries = 2 * kWays; // two nibbles each
constexpr float kHopeless = 1e30F;        // an error that no way is taken with

using Floats [[gnu::vector_size(16)]] = float;
using Ints [[gnu::vector_size(16)]] = std::int32_t;

Floats AsFloats(Ints values) {
    return __builtin_convertvector(values, Floats);
}
Ints Truncated(Floats values) {
    return __builtin_convertvector(values, Ints);
}
Floats All(float value) {
    return Floats{} + value;
}
Floats Least(Floats a, Floats b) {
    return a < b ? a : b;
}
Floats Most(Floats a, Floats b) {
    return a > b ? a : b;
}

// What the lanes encode: samples, coefficients, and the steps that the ways begin with.
struct Lanes {
    const Floats* Samples = nullptr; // kTrackBlockFrames of them
    Floats First{}, Second{};
    std::array<Ints, kWays> Steps{};
};

Floats Predicted(const Lanes& lanes, Floats before, Floats before_that) {
    // Any prediction is positive with it, so that truncating is rounding down.
    constexpr float kAbove = 131'072;
    const Floats sum = (before * lanes.First + before_that * lanes.Second) * (1.0F / 256);
    return AsFloats(Truncated(sum + kAbove)) - kAbove;
}

Floats NearestNibble(Floats wanted) {
    return AsFloats(Truncated(wanted + 8.5F)) - 8.0F;
}

Floats WantedNibble(Floats difference, Floats step) {
    return Least(Most(difference / step, All(-8)), All(7));
}

Floats Sample(Floats prediction, Floats nibble, Floats step) {
    return Least(Most(prediction + nibble * step, All(-32'768)), All(32'767));
}

// NextAdpcmStep without its table: from 4 on it grows by 102.4 each, but for -8.
Ints NextStep(Ints step, Floats nibble) {
    const Floats size = Most(nibble, -nibble);
    Ints growth = Truncated((size - 1.0F) * 102.4F);
    growth = growth > 230 ? growth : Ints{} + 230;
    growth = nibble < -7.5F ? Ints{} + 768 : growth;
    const Ints next = (step * growth) >> 8;
    return next > kLeastAdpcmStep ? next : Ints{} + kLeastAdpcmStep;
}

using AllLanes = std::array<Lanes, kPredictors>;

// The errors of nearest nibbles, from the first of the steps on. The divisions of all go on side by side.
std::array<Floats, kPredictors> TryNearest(const AllLanes& all) {
    std::array<Floats, kPredictors> before, before_that, errors{};
    std::array<Ints, kPredictors> step;
    for (std::size_t p = 0; p < kPredictors; ++p) {
        before[p] = all[p].Samples[1];
        before_that[p] = all[p].Samples[0];
        step[p] = all[p].Steps[0];
    }
    for (std::size_t i = 2; i < kTrackBlockFrames; ++i) {
        const Floats wanted = all[0].Samples[i];
#pragma GCC unroll 7
        for (std::size_t p = 0; p < kPredictors; ++p) {
            const Floats width = AsFloats(step[p]);
            const Floats prediction = Predicted(all[p], before[p], before_that[p]);
            const Floats nibble = NearestNibble(WantedNibble(wanted - prediction, width));
            before_that[p] = before[p];
            before[p] = Sample(prediction, nibble, width);
            const Floats off = wanted - before[p];
            errors[p] += off * off;
            step[p] = NextStep(step[p], nibble);
        }
    }
    return errors;
}

struct Way {
    Floats Before, BeforeThat, Error;
    Ints Step;
};
using Ways = std::array<Way, kWays>;

// What the ways could do at one sample: the nearest nibble of each, then the one beyond the wanted value.
struct Tries {
    std::array<Floats, kTries> Samples, Nibbles, Errors;
};

Tries TryTwo(const Lanes& lanes, const Ways& ways, Floats wanted) {
    Tries tries;
#pragma GCC unroll 8
    for (std::size_t w = 0; w < kWays; ++w) {
        const Floats prediction = Predicted(lanes, ways[w].Before, ways[w].BeforeThat);
        const Floats width = AsFloats(ways[w].Step);
        const Floats nibble = WantedNibble(wanted - prediction, width), nearest = NearestNibble(nibble);
        const auto up = (nibble > nearest) | (nearest < -7.5F);
        tries.Nibbles[w] = nearest;
        tries.Nibbles[w + kWays] = up ? nearest + 1.0F : nearest - 1.0F;
#pragma GCC unroll 2
        for (std::size_t i = w; i < kTries; i += kWays) {
            tries.Samples[i] = Sample(prediction, tries.Nibbles[i], width);
            const Floats off = wanted - tries.Samples[i];
            tries.Errors[i] = ways[w].Error + off * off;
        }
    }
    return tries;
}

// Of two that come to one sample the worse has no future that the other hasn't. Two second choices seldom do.
void DropTwins(Tries& tries) {
#pragma GCC unroll 4
    for (std::size_t i = 0; i < kWays; ++i)
#pragma GCC unroll 8
        for (std::size_t j = i + 1; j < kTries; ++j) {
            if (j == i + kWays) continue; // of one way
            const auto same = tries.Samples[i] == tries.Samples[j];
            const auto worse = tries.Errors[i] > tries.Errors[j];
            tries.Errors[i] = (same & worse) ? All(kHopeless) : tries.Errors[i];
            tries.Errors[j] = (same & ~worse) ? All(kHopeless) : tries.Errors[j];
        }
}

void Order(Floats& a, Floats& b) {
    const Floats least = Least(a, b);
    b = Most(a, b);
    a = least;
}

// The best four in any order: their errors, with the number of the try in the last three bits.
std::array<Floats, kWays> BestTries(const Tries& tries) {
    std::array<Floats, kTries> keys;
#pragma GCC unroll 8
    for (std::size_t i = 0; i < kTries; ++i)
        keys[i] = std::bit_cast<Floats>((std::bit_cast<Ints>(tries.Errors[i]) & ~7) | static_cast<int>(i));
    for (const std::size_t half : {std::size_t{0}, kWays}) {
        Order(keys[half], keys[half + 1]);
        Order(keys[half + 2], keys[half + 3]);
        Order(keys[half], keys[half + 2]);
        Order(keys[half + 1], keys[half + 3]);
        Order(keys[half + 1], keys[half + 2]);
    }
    return {Least(keys[0], keys[7]), Least(keys[1], keys[6]), Least(keys[2], keys[5]),
            Least(keys[3], keys[4])};
}

// Six bits for each way of a lane: whence it came, and the code.
using Traces = std::array<Ints, kCodes>;
constexpr int kTraceBits = 6, kCodeBits = 4;

Floats Of(const std::array<Floats, kTries>& values, const Ints& which) {
    const auto at = [&](std::size_t lane) { return values[static_cast<std::size_t>(which[lane])][lane]; };
    return Floats{at(0), at(1), at(2), at(3)};
}

// Goes on with the best, and gives what they did.
Ints GoOn(const Tries& tries, Ways& ways) {
    const std::array<Floats, kWays> best = BestTries(tries);
    const Floats least = Least(Least(best[0], best[1]), Least(best[2], best[3]));
    const Ways old = ways;
    const auto of_old = [&old](const auto member, const Ints& which) {
        const auto at = [&](std::size_t lane) {
            return (old[static_cast<std::size_t>(which[lane])].*member)[lane];
        };
        return std::remove_reference_t<decltype(old[0].*member)>{at(0), at(1), at(2), at(3)};
    };
    Ints trace{};
#pragma GCC unroll 4
    for (std::size_t w = 0; w < kWays; ++w) {
        const Ints number = std::bit_cast<Ints>(best[w]) & 7, from = number & 3;
        const Floats nibble = Of(tries.Nibbles, number);
        // Only differences between the ways count: kept small, for a float.
        ways[w] = {Of(tries.Samples, number), of_old(&Way::Before, from), best[w] - least,
                   NextStep(of_old(&Way::Step, from), nibble)};
        trace |= ((from << kCodeBits) | (Truncated(nibble) & 15)) << (kTraceBits * static_cast<int>(w));
    }
    return trace;
}

// The number of the best way at the end.
Ints Search(const Lanes& lanes, Traces& traces) {
    Ways ways;
    for (std::size_t w = 0; w < kWays; ++w)
        ways[w] = Way{lanes.Samples[1], lanes.Samples[0], Floats{}, lanes.Steps[w]};
    for (std::size_t i = 0; i < kCodes; ++i) {
        Tries tries = TryTwo(lanes, ways, lanes.Samples[i + 2]);
        DropTwins(tries);
        traces[i] = GoOn(tries, ways);
    }
    Ints best{};
    Floats least = ways[0].Error;
    for (std::size_t w = 1; w < kWays; ++w) {
        const auto better = ways[w].Error < least;
        best = better ? Ints{} + static_cast<int>(w) : best;
        least = better ? ways[w].Error : least;
    }
    return best;
}

// --- two blocks ---

using Frames = std::span<const std::int16_t>; // of a block

// Mean of the first differences from what is predicted, of which steps of a third are near.
std::int32_t FirstStep(Frames frames, std::size_t channel, const AdpcmCoefficients& coefficients) {
    constexpr std::size_t kLooked = 24;
    const auto sample = [&](std::size_t i) { return std::int32_t{frames[i * kTrackChannels + channel]}; };
    std::int64_t sum = 0;
    for (std::size_t i = 2; i < 2 + kLooked; ++i)
        sum += std::abs(sample(i) - AdpcmPrediction(coefficients, sample(i - 1), sample(i - 2)));
    return static_cast<std::int32_t>(sum / std::int64_t{3 * kLooked});
}

class PairEncoder {
  public:
    explicit PairEncoder(const std::array<Frames, kBlocks>& blocks) : blocks_(blocks) {
        for (std::size_t i = 0; i < kTrackBlockFrames; ++i)
            for (std::size_t lane = 0; lane < kLanes; ++lane)
                samples_[i][lane] = blocks[lane / kTrackChannels][i * kTrackChannels + lane % kTrackChannels];
        for (std::size_t p = 0; p < kPredictors; ++p) {
            all_[p].Samples = samples_.data();
            for (std::size_t lane = 0; lane < kLanes; ++lane)
                SetLane(all_[p], lane, p);
        }
        Choose(TryNearest(all_));
        best_ = Search(chosen_, traces_);
    }

    void Write(std::size_t number, std::span<char> block) const {
        const std::size_t lane = number * kTrackChannels;
        std::array<std::uint8_t, kCodes> left, right;
        const std::array<std::int32_t, kTrackChannels> steps = {TakeBack(lane, left),
                                                                TakeBack(lane + 1, right)};
        ByteWriter writer;
        for (std::size_t c = 0; c < kTrackChannels; ++c)
            writer.Put<std::uint8_t>(static_cast<std::uint8_t>(predictors_[lane + c]));
        for (const std::int32_t step : steps)
            writer.Put<std::int16_t>(static_cast<std::int16_t>(step));
        for (const std::size_t frame : {std::size_t{1}, std::size_t{0}})
            for (std::size_t c = 0; c < kTrackChannels; ++c)
                writer.Put<std::int16_t>(blocks_[number][frame * kTrackChannels + c]);
        const std::string preamble = writer.Take();
        char* out = std::copy(preamble.begin(), preamble.end(), block.data());
        for (std::size_t i = 0; i < kCodes; ++i)
            *out++ = static_cast<char>(left[i] << 4 | right[i]);
    }

  private:
    void SetLane(Lanes& lanes, std::size_t lane, std::size_t predictor) const {
        const AdpcmCoefficients& pair = kAdpcmCoefficients[predictor];
        lanes.First[lane] = pair.First;
        lanes.Second[lane] = pair.Second;
        const std::int32_t step = FirstStep(blocks_[lane / kTrackChannels], lane % kTrackChannels, pair);
        const std::array<std::int32_t, kWays> steps = {step, step / 2, step * 2, step / 4};
        for (std::size_t w = 0; w < kWays; ++w)
            lanes.Steps[w][lane] = std::clamp(steps[w], kLeastAdpcmStep, 32'767);
    }

    void Choose(const std::array<Floats, kPredictors>& errors) {
        chosen_.Samples = samples_.data();
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            for (std::size_t p = 1; p < kPredictors; ++p)
                if (errors[p][lane] < errors[predictors_[lane]][lane]) predictors_[lane] = p;
            SetLane(chosen_, lane, predictors_[lane]);
        }
    }

    // The codes of a lane, and its first step.
    std::int32_t TakeBack(std::size_t lane, std::array<std::uint8_t, kCodes>& codes) const {
        auto way = static_cast<unsigned>(best_[lane]);
        for (std::size_t i = kCodes; i-- > 0;) {
            const unsigned trace = static_cast<unsigned>(traces_[i][lane]) >> (kTraceBits * way);
            codes[i] = static_cast<std::uint8_t>(trace & 15);
            way = trace >> kCodeBits & 3;
        }
        return chosen_.Steps[way][lane];
    }

    std::array<Frames, kBlocks> blocks_;
    std::array<Floats, kTrackBlockFrames> samples_;
    AllLanes all_;
    std::array<std::size_t, kLanes> predictors_{};
    Lanes chosen_;
    Traces traces_;
    Ints best_{};
};

} // namespace

std::string EncodeTrackBlocks(std::span<const std::int16_t> frames) {
    constexpr std::size_t kSamples = kTrackBlockFrames * kTrackChannels;
    const std::size_t count = frames.size() / kSamples;
    std::string bytes(count * kTrackBlockBytes, '\0');
    for (std::size_t i = 0; i < count; i += kBlocks) {
        const std::size_t last = std::min(i + 1, count - 1);
        const PairEncoder encoder(
            {frames.subspan(i * kSamples, kSamples), frames.subspan(last * kSamples, kSamples)});
        for (const std::size_t block : {i, last})
            encoder.Write(block - i, std::span(bytes).subspan(block * kTrackBlockBytes, kTrackBlockBytes));
    }
    return bytes;
}

} // namespace kelvash::audio
