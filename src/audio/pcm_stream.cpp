#include "audio/pcm_stream.h"

#include <soxr.h>

#include <algorithm>
#include <cmath>
#include <vector>

#include "foundation/pumping.h"

namespace kelvash::audio {

namespace {

constexpr std::size_t kPieceFrames = 8192;
constexpr float kFullScale = 32'768;
// Beyond any wave of use; libsoxr would spread what is infinite over all that follows.
constexpr float kLoudest = 64;

float Tame(float value) {
    return std::isnan(value) ? 0 : std::clamp(value, -kLoudest, kLoudest);
}

struct SoxrDeleter {
    void operator()(soxr* resampler) const { soxr_delete(resampler); }
};
using Resampler = std::unique_ptr<soxr, SoxrDeleter>;

} // namespace

float Rounding::Noise() {
    constexpr std::uint32_t kFactor = 1'664'525, kSummand = 1'013'904'223; // Numerical Recipes' generator
    constexpr float kUnit = 1.0F / 65'536;
    const auto next = [this] {
        seed_ = seed_ * kFactor + kSummand;
        return static_cast<float>(seed_ >> 16) * kUnit;
    };
    const float first = next();
    return first - next();
}

std::int16_t Rounding::Round(float value) {
    constexpr float kExact = 1.0F / 1024; // what a long silence is away from 0 behind the filter
    const float scaled = value * kFullScale;
    float nearest = std::floor(scaled + 0.5F);
    if (std::fabs(scaled - nearest) > kExact) nearest = std::floor(scaled + Noise() + 0.5F);
    return static_cast<std::int16_t>(std::clamp(nearest, -kFullScale, kFullScale - 1));
}

// What stands between the source and 16 bits. All of it works on `Channels` of the mix, one or two.
struct PcmStream::Work {
    Work(WaveSource& source, std::size_t channels)
        : Source(source),
          Channels(std::min(source.Channels, channels)),
          Left(source.Frames),
          Direct(source.FitsSixteenBits && source.Channels == Channels) {}

    // The next frames of the source, mixed: as many as there are, at most kPieceFrames.
    std::span<const float> ReadMixed(std::size_t most) {
        const auto count =
            static_cast<std::size_t>(std::min<std::int64_t>(Left, static_cast<std::int64_t>(most)));
        Mixed.resize(count * Source.Channels);
        if (!Source.Read(Mixed)) {
            Failed = true;
            Left = 0;
            return {};
        }
        Left -= static_cast<std::int64_t>(count);
        for (float& value : Mixed)
            value = Tame(value);
        if (Source.Channels > Channels)
            for (std::size_t i = 0; i < count; ++i)
                Mixed[i] = (Mixed[2 * i] + Mixed[2 * i + 1]) / 2;
        return std::span(Mixed).first(count * Channels);
    }

    bool StartResampler(std::int32_t rate) {
        const soxr_quality_spec_t quality = soxr_quality_spec(SOXR_HQ, 0);
        const soxr_io_spec_t io = soxr_io_spec(SOXR_FLOAT32_I, SOXR_FLOAT32_I);
        const soxr_runtime_spec_t runtime = soxr_runtime_spec(1);
        soxr_error_t error = nullptr;
        Resampling.reset(soxr_create(static_cast<double>(Source.Rate), static_cast<double>(rate),
                                     static_cast<unsigned>(Channels), &error, &io, &quality, &runtime));
        if (Resampling && error == nullptr)
            error = soxr_set_input_fn(Resampling.get(), &Work::Feed, this, kPieceFrames);
        return Resampling && error == nullptr;
    }

    static std::size_t Feed(void* work, soxr_in_t* data, std::size_t wanted) {
        Work& self = *static_cast<Work*>(work);
        PumpNowAndThen();
        const std::span<const float> frames = self.ReadMixed(std::min(wanted, kPieceFrames));
        *data = frames.data();
        return frames.size() / self.Channels;
    }

    // The next frames at the wanted rate; silence behind the filter's last.
    bool ReadFloats(std::span<float> samples) {
        if (!Resampling) {
            const std::span<const float> mixed = ReadMixed(samples.size() / Channels);
            std::copy(mixed.begin(), mixed.end(), samples.begin());
            return !Failed;
        }
        const std::size_t frames = samples.size() / Channels;
        const std::size_t made = soxr_output(Resampling.get(), samples.data(), frames);
        std::fill(samples.begin() + static_cast<std::ptrdiff_t>(made * Channels), samples.end(), 0.0F);
        return !Failed && soxr_error(Resampling.get()) == nullptr;
    }

    bool Read(std::span<std::int16_t> samples) {
        if (Direct) return Source.Read(samples);
        Floats.resize(samples.size());
        if (!ReadFloats(Floats)) return false;
        for (std::size_t i = 0; i < samples.size(); ++i)
            samples[i] = Rounder.Round(Floats[i]);
        return true;
    }

    WaveSource& Source;
    std::size_t Channels;
    std::int64_t Left; // frames of the source
    bool Direct;       // no float comes between
    bool Failed = false;
    Resampler Resampling;
    Rounding Rounder;
    std::vector<float> Mixed, Floats;
};

PcmStream::PcmStream(WaveSource& source, std::size_t channels, std::int32_t rate)
    : channels_(channels), frames_(source.Frames), work_(std::make_unique<Work>(source, channels)) {
    if (rate == source.Rate) return;
    frames_ = std::max<std::int64_t>(1, (source.Frames * rate + source.Rate / 2) / source.Rate);
    work_->Direct = false;
    if (!work_->StartResampler(rate)) work_.reset();
}

PcmStream::~PcmStream() = default;

bool PcmStream::IsGood() const {
    return work_ != nullptr;
}

bool PcmStream::Read(std::span<std::int16_t> samples) {
    while (!samples.empty()) {
        PumpNowAndThen();
        const std::size_t frames = std::min(samples.size() / channels_, kPieceFrames);
        const std::span<std::int16_t> piece = samples.first(frames * channels_);
        const std::span<std::int16_t> narrow = piece.first(frames * work_->Channels);
        if (!work_->Read(narrow)) return false;
        if (work_->Channels < channels_)
            for (std::size_t i = frames; i-- > 0;)
                piece[2 * i] = piece[2 * i + 1] = narrow[i];
        samples = samples.subspan(piece.size());
    }
    return true;
}

} // namespace kelvash::audio
