#include "audio/sndfile_source.h"

#include <sndfile.h>

#include <algorithm>
#include <array>
#include <utility>

namespace kelvash::audio {

namespace {

std::istream& StreamOf(void* user) {
    return *static_cast<std::istream*>(user);
}

sf_count_t Tell(void* user) {
    StreamOf(user).clear(); // at the end there is a place too
    return StreamOf(user).tellg();
}

sf_count_t Seek(sf_count_t offset, int whence, void* user) {
    std::istream& file = StreamOf(user);
    file.clear();
    file.seekg(offset, whence == SEEK_SET   ? std::ios::beg
                       : whence == SEEK_CUR ? std::ios::cur
                                            : std::ios::end);
    return Tell(user);
}

sf_count_t Length(void* user) {
    const sf_count_t here = Tell(user);
    const sf_count_t length = Seek(0, SEEK_END, user);
    Seek(here, SEEK_SET, user);
    return length;
}

sf_count_t ReadBytes(void* target, sf_count_t count, void* user) {
    std::istream& file = StreamOf(user);
    file.clear();
    file.read(static_cast<char*>(target), count);
    return file.gcount();
}

sf_count_t WriteNothing(const void*, sf_count_t, void*) {
    return 0;
}

bool IsWave(int format) {
    constexpr std::array kWaves = {SF_FORMAT_WAV, SF_FORMAT_WAVEX};
    return std::find(kWaves.begin(), kWaves.end(), format & SF_FORMAT_TYPEMASK) != kWaves.end();
}

// What libsndfile decodes from these has no more than 16 bits.
bool IsNarrow(int format) {
    constexpr std::array kNarrow = {SF_FORMAT_PCM_U8, SF_FORMAT_PCM_16,    SF_FORMAT_ULAW,
                                    SF_FORMAT_ALAW,   SF_FORMAT_IMA_ADPCM, SF_FORMAT_MS_ADPCM};
    return std::find(kNarrow.begin(), kNarrow.end(), format & SF_FORMAT_SUBMASK) != kNarrow.end();
}

class SndfileSource final : public WaveSource {
  public:
    explicit SndfileSource(std::unique_ptr<std::istream> stream) : stream_(std::move(stream)) {
        SF_VIRTUAL_IO calls{Length, Seek, ReadBytes, WriteNothing, Tell};
        SF_INFO info{};
        Seek(0, SEEK_SET, stream_.get());
        file_.reset(sf_open_virtual(&calls, SFM_READ, &info, stream_.get()));
        if (!file_ || !IsWave(info.format)) return;
        Channels = static_cast<std::size_t>(std::max(info.channels, 0));
        Rate = info.samplerate;
        Frames = info.frames;
        FitsSixteenBits = IsNarrow(info.format);
        is_wave_ = true;
    }
    bool IsOpen() const { return is_wave_; }

    bool Read(std::span<std::int16_t> samples) override {
        const auto count = static_cast<sf_count_t>(samples.size());
        return sf_read_short(file_.get(), samples.data(), count) == count;
    }
    bool Read(std::span<float> samples) override {
        const auto count = static_cast<sf_count_t>(samples.size());
        return sf_read_float(file_.get(), samples.data(), count) == count;
    }

  private:
    struct Closer {
        void operator()(SNDFILE* file) const { sf_close(file); }
    };
    std::unique_ptr<std::istream> stream_;
    std::unique_ptr<SNDFILE, Closer> file_; // reads the stream: closed before it
    bool is_wave_ = false;
};

} // namespace

std::unique_ptr<WaveSource> OpenBySndfile(std::unique_ptr<std::istream> file) {
    auto source = std::make_unique<SndfileSource>(std::move(file));
    if (!source->IsOpen()) return nullptr;
    return source;
}

} // namespace kelvash::audio
