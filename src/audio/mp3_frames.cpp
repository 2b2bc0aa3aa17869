#include "audio/mp3_frames.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <fstream>
#include <optional>
#include <string>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/pumping.h"

namespace kelvash::audio {

namespace {

// The fields of a frame's head as its bits state them.
struct Frame {
    unsigned Version = 0; // 3: MPEG-1, 2: MPEG-2, 0: MPEG-2.5
    unsigned Layer = 0;   // 3: I, 2: II, 1: III
    unsigned BitrateIndex = 0;
    unsigned RateIndex = 0;
    bool Padded = false;
    bool Mono = false;
    bool HasChecksum = false;

    bool IsMpeg1() const { return Version == 3; }
    bool IsLayerOne() const { return Layer == 3; }
};

constexpr std::size_t kHeadSize = 4;

std::optional<Frame> DecodeHead(std::uint32_t head) {
    const Frame frame{head >> 19 & 3,       head >> 17 & 3,       head >> 12 & 15,      head >> 10 & 3,
                      (head >> 9 & 1) != 0, (head >> 6 & 3) == 3, (head >> 16 & 1) == 0};
    const bool is_frame = head >> 21 == 0x7FF && frame.Version != 1 && frame.Layer != 0 &&
                          frame.BitrateIndex != 15 && frame.RateIndex != 3;
    return is_frame ? std::optional(frame) : std::nullopt;
}

// kbit/s; 0 for free format.
int BitrateOf(const Frame& frame) {
    constexpr std::array<std::array<int, 15>, 5> kTables = {
        {{0, 32, 64, 96, 128, 160, 192, 224, 256, 288, 320, 352, 384, 416, 448},
         {0, 32, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 384},
         {0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320},
         {0, 32, 48, 56, 64, 80, 96, 112, 128, 144, 160, 176, 192, 224, 256},
         {0, 8, 16, 24, 32, 40, 48, 56, 64, 80, 96, 112, 128, 144, 160}}};
    const std::size_t table = frame.IsMpeg1() ? 3 - frame.Layer : frame.IsLayerOne() ? 3 : 4;
    return kTables[table][frame.BitrateIndex];
}

int SampleRateOf(const Frame& frame) {
    constexpr std::array<int, 3> kRates = {44100, 48000, 32000};
    return kRates[frame.RateIndex] / (frame.IsMpeg1() ? 1 : frame.Version == 2 ? 2 : 4);
}

int SamplesOf(const Frame& frame) {
    if (frame.IsLayerOne()) return 384;
    return frame.Layer == 1 && !frame.IsMpeg1() ? 576 : 1152;
}

// Bytes of a slot, by which padding goes.
std::int64_t SlotOf(const Frame& frame) {
    return frame.IsLayerOne() ? 4 : 1;
}

// Bytes of a frame that states its bit rate.
std::int64_t SizeOf(const Frame& frame) {
    const std::int64_t slot = SlotOf(frame);
    const std::int64_t bytes =
        std::int64_t{SamplesOf(frame)} / 8 * 1000 * BitrateOf(frame) / (SampleRateOf(frame) * slot);
    return (bytes + (frame.Padded ? 1 : 0)) * slot;
}

bool IsSameStream(const Frame& a, const Frame& b) {
    return a.Version == b.Version && a.Layer == b.Layer && a.RateIndex == b.RateIndex &&
           (a.BitrateIndex == 0) == (b.BitrateIndex == 0);
}

// A file's bytes anywhere, a block of them at a time in memory.
class Mp3Bytes {
  public:
    explicit Mp3Bytes(std::string_view path) : size_(FileSize(path)) {
        if (FileExists(path)) file_.open(NativePath(path), std::ios::binary);
    }

    std::int64_t Size() const { return size_; }
    // Four bytes from the highest to the lowest; nothing where not all of them are there.
    std::optional<std::uint32_t> Word(std::int64_t at) {
        if (!Holds(at, kHeadSize)) return std::nullopt;
        std::uint32_t word = 0;
        for (std::size_t i = 0; i < kHeadSize; ++i)
            word = word << 8 | static_cast<unsigned char>(block_[static_cast<std::size_t>(at - start_) + i]);
        return word;
    }
    std::optional<Frame> FrameAt(std::int64_t at) {
        const std::optional<std::uint32_t> word = Word(at);
        return word ? DecodeHead(*word) : std::nullopt;
    }

  private:
    bool Holds(std::int64_t at, std::size_t count) {
        if (at >= start_ && at + static_cast<std::int64_t>(count) <= start_ + Held()) return true;
        if (at < 0 || at + static_cast<std::int64_t>(count) > size_ || !file_.is_open()) return false;
        PumpNowAndThen();
        constexpr std::size_t kBlock = std::size_t{1} << 17;
        constexpr std::int64_t kBack = std::int64_t{1} << 15; // whoever looked ahead comes back
        block_.resize(kBlock);
        start_ = std::max<std::int64_t>(0, at - kBack);
        file_.clear();
        file_.seekg(start_);
        file_.read(block_.data(), static_cast<std::streamsize>(kBlock));
        block_.resize(static_cast<std::size_t>(std::max<std::streamsize>(file_.gcount(), 0)));
        return at + static_cast<std::int64_t>(count) <= start_ + Held();
    }
    std::int64_t Held() const { return static_cast<std::int64_t>(block_.size()); }

    std::ifstream file_;
    std::int64_t size_;
    std::string block_;
    std::int64_t start_ = 0;
};

// The position of the first frame's head at or behind `at`; nothing if there is none.
std::optional<std::int64_t> FindHead(Mp3Bytes& bytes, std::int64_t at) {
    for (; bytes.Word(at); ++at)
        if (bytes.FrameAt(at)) return at;
    return std::nullopt;
}

// Where the sound begins: behind a tag in front, whose pictures may look like frames.
std::int64_t BehindTag(Mp3Bytes& bytes) {
    constexpr std::uint32_t kTag = 0x494433; // "ID3"
    constexpr std::int64_t kTagHead = 10;
    std::int64_t at = 0;
    for (std::optional<std::uint32_t> word; (word = bytes.Word(at)) && *word >> 8 == kTag;) {
        const std::optional<std::uint32_t> size = bytes.Word(at + 6);
        if (!size) break;
        std::int64_t length = 0;
        for (int shift = 24; shift >= 0; shift -= 8)
            length = length << 7 | (*size >> shift & 0x7F);
        at += kTagHead + length;
    }
    return at < bytes.Size() ? at : 0; // a tag that states more than is there is none
}

// Bytes of a frame of free format: what lies between its head and the next of the same stream.
std::int64_t FreeSize(Mp3Bytes& bytes, std::int64_t at, const Frame& frame) {
    constexpr std::int64_t kLongest = 16384;
    for (std::int64_t next = at + 24; next < at + kLongest; ++next) {
        const std::optional<Frame> other = bytes.FrameAt(next);
        if (other && IsSameStream(frame, *other)) return next - at - (frame.Padded ? SlotOf(frame) : 0);
    }
    return 0;
}

// True for the frame in front of the sound that holds an encoder's table.
bool HoldsTable(Mp3Bytes& bytes, std::int64_t at, const Frame& frame) {
    constexpr std::uint32_t kXing = 0x58696E67, kInfo = 0x496E666F, kVbri = 0x56425249;
    constexpr std::int64_t kVbriPlace = 36;
    if (frame.Layer != 1) return false;
    const std::int64_t side = frame.IsMpeg1() ? (frame.Mono ? 17 : 32) : (frame.Mono ? 9 : 17);
    const std::uint32_t word =
        bytes.Word(at + static_cast<std::int64_t>(kHeadSize) + side + (frame.HasChecksum ? 2 : 0))
            .value_or(0);
    return word == kXing || word == kInfo || bytes.Word(at + kVbriPlace).value_or(0) == kVbri;
}

// Walks from frame to frame.
class FrameWalk {
  public:
    explicit FrameWalk(Mp3Bytes& bytes) : bytes_(bytes), at_(BehindTag(bytes)) {}

    // Hands on each frame that is sound.
    template <class Taken>
    void Walk(const Taken& taken) {
        bool first = true;
        while (const std::optional<Frame> frame = Next()) {
            if (!first || !HoldsTable(bytes_, at_, *frame)) taken(*frame);
            first = false;
            at_ += size_;
        }
    }

  private:
    // The next whole frame. What isn't followed by another of its stream, or by the file's end, is none:
    // bytes of other things look like heads.
    std::optional<Frame> Next() {
        for (std::optional<std::int64_t> head; (head = FindHead(bytes_, at_)); at_ = *head + 1) {
            at_ = *head;
            const std::optional<Frame> frame = bytes_.FrameAt(at_);
            if (Measure(*frame) && FitsBehind(*frame)) return frame;
        }
        return std::nullopt;
    }

    bool Measure(const Frame& frame) {
        size_ = SizeOf(frame);
        if (frame.BitrateIndex == 0) {
            if (!stream_ && free_searches_ > 0) {
                --free_searches_;
                free_size_ = FreeSize(bytes_, at_, frame);
            }
            size_ = free_size_ == 0 ? 0 : free_size_ + (frame.Padded ? SlotOf(frame) : 0);
        }
        return size_ > 0 && at_ + size_ <= bytes_.Size();
    }

    bool FitsBehind(const Frame& frame) {
        if (stream_ && IsSameStream(*stream_, frame)) return true;
        const std::optional<Frame> next = bytes_.FrameAt(at_ + size_);
        const bool fits = next ? IsSameStream(frame, *next) : at_ + size_ == bytes_.Size();
        if (fits && !stream_) stream_ = frame;
        return fits;
    }

    Mp3Bytes& bytes_;
    std::int64_t at_;
    std::int64_t size_ = 0;
    std::int64_t free_size_ = 0;
    int free_searches_ = 100;     // what looks like free format but isn't costs much to find out
    std::optional<Frame> stream_; // the first frame, with which all others agree
};

} // namespace

std::int32_t Mp3DurationSeconds(std::string_view path) {
    Mp3Bytes bytes(path);
    const std::optional<std::int64_t> head = FindHead(bytes, 0);
    const int bitrate = head ? BitrateOf(*bytes.FrameAt(*head)) : 0;
    if (bitrate == 0) return 1;
    // Halves go to the even number. Less than half a second comes to -1, which is meant: only 0 becomes 1.
    constexpr double kMost = 2147483647;
    const double seconds = std::nearbyint(static_cast<double>(bytes.Size()) * 8 / 1000 / bitrate - 1);
    return seconds == 0 ? 1 : static_cast<std::int32_t>(std::min(seconds, kMost));
}

double Mp3TrueSeconds(std::string_view path) {
    Mp3Bytes bytes(path);
    double seconds = 0;
    FrameWalk(bytes).Walk(
        [&](const Frame& frame) { seconds += static_cast<double>(SamplesOf(frame)) / SampleRateOf(frame); });
    return seconds;
}

std::int64_t Mp3DecodedSize(std::string_view path) {
    constexpr std::int64_t kHead = 44, kSampleBytes = 4;
    Mp3Bytes bytes(path);
    std::int64_t size = kHead;
    FrameWalk(bytes).Walk([&](const Frame& frame) { size += SamplesOf(frame) * kSampleBytes; });
    return size;
}

} // namespace kelvash::audio
