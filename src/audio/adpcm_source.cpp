#include "audio/adpcm_source.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>
#include <vector>

#include "audio/ms_adpcm.h"
#include "foundation/bytes.h"
#include "foundation/parallel.h"

namespace kelvash::audio {

namespace {

constexpr std::size_t kMostChannels = 2;
constexpr std::size_t kBatchBytes = std::size_t{1} << 20;
constexpr std::size_t kShares = 8; // of a batch, for the workers
constexpr float kFullScale = 32'768;

// The extra bytes of the format: frames of a block, number of pairs, pairs. Where they say nothing usable the
// usual ones hold.
bool TakeFormat(const WaveLayout& layout, AdpcmFormat& format) {
    format.Channels = layout.Channels;
    format.BlockBytes = layout.BlockBytes;
    if (format.Channels < 1 || format.Channels > kMostChannels) return false;
    const std::size_t most = AdpcmFramesIn(format.BlockBytes, format.Channels);
    ByteReader reader(layout.Extra);
    reader.Skip(2); // their number
    const std::size_t stated = reader.Get<std::uint16_t>();
    format.BlockFrames = stated >= 2 && stated < most ? stated : most;
    const std::uint16_t pairs = reader.Get<std::uint16_t>();
    format.Coefficients.assign(kAdpcmCoefficients.begin(), kAdpcmCoefficients.end());
    if (pairs > 0 && reader.Holds(pairs, 4)) {
        format.Coefficients.resize(pairs);
        for (AdpcmCoefficients& pair : format.Coefficients) {
            pair.First = reader.Get<std::int16_t>();
            pair.Second = reader.Get<std::int16_t>();
        }
    }
    return most > 0;
}

// The frames of the data, or those that `fact` gives: a number that ends in the last block or, as some
// encoders add one, in the one before it.
std::int64_t FramesOf(const WaveLayout& layout, const AdpcmFormat& format) {
    const auto block_bytes = static_cast<std::int64_t>(format.BlockBytes);
    const auto block_frames = static_cast<std::int64_t>(format.BlockFrames);
    const auto rest = static_cast<std::size_t>(layout.DataBytes % block_bytes);
    const std::int64_t frames =
        layout.DataBytes / block_bytes * block_frames +
        std::min(block_frames, static_cast<std::int64_t>(AdpcmFramesIn(rest, format.Channels)));
    if (!layout.Fact) return frames;
    const std::int64_t fact = *layout.Fact;
    return fact > 0 && fact <= frames && frames - fact < 2 * block_frames ? fact : frames;
}

class AdpcmSource final : public WaveSource {
  public:
    AdpcmSource(std::unique_ptr<std::istream> stream, const WaveLayout& layout, AdpcmFormat format)
        : stream_(std::move(stream)), format_(std::move(format)), bytes_left_(layout.DataBytes) {
        Channels = format_.Channels;
        Rate = static_cast<std::int32_t>(std::min<std::uint32_t>(layout.Rate, kMostRate + 1));
        Frames = FramesOf(layout, format_);
        FitsSixteenBits = true;
        stream_->clear();
        stream_->seekg(layout.DataStart);
    }

    bool Read(std::span<std::int16_t> samples) override {
        while (!samples.empty()) {
            if (taken_ == decoded_.size() && !DecodeBatch()) return false;
            const std::size_t count = std::min(samples.size(), decoded_.size() - taken_);
            const auto from = decoded_.begin() + static_cast<std::ptrdiff_t>(taken_);
            std::copy_n(from, count, samples.begin());
            taken_ += count;
            samples = samples.subspan(count);
        }
        return true;
    }
    bool Read(std::span<float> samples) override {
        std::vector<std::int16_t> narrow(samples.size());
        if (!Read(narrow)) return false;
        std::transform(narrow.begin(), narrow.end(), samples.begin(),
                       [](std::int16_t sample) { return static_cast<float>(sample) / kFullScale; });
        return true;
    }

  private:
    bool DecodeBatch() {
        const std::size_t blocks = std::max<std::size_t>(1, kBatchBytes / format_.BlockBytes);
        const auto wanted = static_cast<std::int64_t>(blocks * format_.BlockBytes);
        bytes_.resize(static_cast<std::size_t>(std::min(wanted, bytes_left_)));
        if (bytes_.empty() || !stream_->read(bytes_.data(), static_cast<std::streamsize>(bytes_.size())))
            return false;
        bytes_left_ -= static_cast<std::int64_t>(bytes_.size());
        taken_ = 0;
        decoded_.resize(SamplesIn(bytes_.size()));
        if (decoded_.empty()) return false;
        const std::size_t share = (blocks + kShares - 1) / kShares * format_.BlockBytes;
        std::atomic<bool> good = true;
        ParallelFor(
            {.Count = (bytes_.size() + share - 1) / share,
             .InFlight = kShares,
             .Expected = bytes_.size() > kBatchBytes / 4 ? Effort::Heavy : Effort::Little,
             .CanStop = false},
            [&](std::size_t item) {
                if (!DecodeBlocks(item * share, std::min(share, bytes_.size() - item * share))) good = false;
            },
            [](std::size_t, bool) { return true; });
        return good;
    }

    std::size_t SamplesIn(std::size_t bytes) const {
        const std::size_t rest = bytes % format_.BlockBytes;
        return (bytes / format_.BlockBytes * format_.BlockFrames +
                std::min(format_.BlockFrames, AdpcmFramesIn(rest, Channels))) *
               Channels;
    }

    bool DecodeBlocks(std::size_t start, std::size_t size) {
        bool good = true;
        for (std::size_t at = start; at < start + size; at += format_.BlockBytes) {
            const auto block =
                std::string_view(bytes_).substr(at, std::min(format_.BlockBytes, start + size - at));
            const std::size_t samples = SamplesIn(block.size());
            const auto target = std::span(decoded_).subspan(SamplesIn(at), samples);
            good = (target.empty() || DecodeAdpcmBlock(format_, block, target)) && good;
        }
        return good;
    }

    std::unique_ptr<std::istream> stream_;
    AdpcmFormat format_;
    std::int64_t bytes_left_; // of the data
    std::string bytes_;       // of a batch of blocks
    std::vector<std::int16_t> decoded_;
    std::size_t taken_ = 0; // of these
};

} // namespace

std::unique_ptr<WaveSource> OpenAdpcm(std::unique_ptr<std::istream> file, const WaveLayout& layout) {
    AdpcmFormat format;
    if (!TakeFormat(layout, format)) return nullptr;
    return std::make_unique<AdpcmSource>(std::move(file), layout, std::move(format));
}

} // namespace kelvash::audio
