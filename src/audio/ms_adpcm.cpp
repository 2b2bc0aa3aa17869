#include "audio/ms_adpcm.h"

#include <algorithm>

#include "audio/adpcm_steps.h"
#include "foundation/bytes.h"

namespace kelvash::audio {

namespace {

constexpr std::size_t kMostChannels = 2;

struct Decoder {
    AdpcmCoefficients Coefficients;
    std::int32_t Step = 0;
    std::int32_t Before = 0; // the last sample
    std::int32_t BeforeThat = 0;

    std::int16_t Next(unsigned code) {
        const std::int32_t sample =
            AdpcmSample(AdpcmPrediction(Coefficients, Before, BeforeThat), NibbleOf(code), Step);
        BeforeThat = Before;
        Before = sample;
        Step = NextAdpcmStep(Step, code);
        return static_cast<std::int16_t>(sample);
    }
};

// Reads the preamble. False for coefficients that aren't there.
bool ReadPreamble(const AdpcmFormat& format, ByteReader& reader,
                  std::array<Decoder, kMostChannels>& decoders) {
    bool known = true;
    for (std::size_t c = 0; c < format.Channels; ++c) {
        const std::size_t number = reader.Get<std::uint8_t>();
        known = known && number < format.Coefficients.size();
        if (known) decoders[c].Coefficients = format.Coefficients[number];
    }
    for (const auto member : {&Decoder::Step, &Decoder::Before, &Decoder::BeforeThat})
        for (std::size_t c = 0; c < format.Channels; ++c)
            decoders[c].*member = reader.Get<std::int16_t>();
    return known && !reader.Failed();
}

void DecodeStereo(Decoder left, Decoder right, std::string_view bytes, std::int16_t* frame) {
    for (const char pair : bytes) {
        const unsigned codes = static_cast<unsigned char>(pair);
        frame[0] = left.Next(codes >> 4);
        frame[1] = right.Next(codes & 15);
        frame += 2;
    }
}

void DecodeMono(Decoder decoder, std::string_view bytes, std::span<std::int16_t> samples) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const unsigned codes = static_cast<unsigned char>(bytes[i / 2]);
        samples[i] = decoder.Next(i % 2 == 0 ? codes >> 4 : codes & 15);
    }
}

} // namespace

std::size_t AdpcmFramesIn(std::size_t block_bytes, std::size_t channels) {
    const std::size_t preamble = kAdpcmPreamble * channels;
    return block_bytes < preamble ? 0 : 2 + (block_bytes - preamble) * 2 / channels;
}

bool DecodeAdpcmBlock(const AdpcmFormat& format, std::string_view block, std::span<std::int16_t> frames) {
    ByteReader reader(block);
    std::array<Decoder, kMostChannels> decoders;
    if (!ReadPreamble(format, reader, decoders)) {
        std::fill(frames.begin(), frames.end(), std::int16_t{0});
        return false;
    }
    const std::size_t channels = format.Channels, head = std::min(2 * channels, frames.size());
    for (std::size_t i = 0; i < head; ++i) {
        const Decoder& decoder = decoders[i % channels];
        frames[i] = static_cast<std::int16_t>(i < channels ? decoder.BeforeThat : decoder.Before);
    }
    const std::span<std::int16_t> rest = frames.subspan(head);
    if (channels == 1)
        DecodeMono(decoders[0], block.substr(kAdpcmPreamble), rest);
    else
        DecodeStereo(decoders[0], decoders[1], block.substr(2 * kAdpcmPreamble, rest.size() / 2),
                     rest.data());
    return true;
}

std::string TrackHeader(std::int64_t frames) {
    constexpr std::uint16_t kAdpcmTag = 2, kBits = 4;
    constexpr std::uint32_t kFormatBytes = 50, kFactBytes = 4, kRiffHead = 8;
    constexpr std::uint32_t kByteRate = 44'359; // what encoders write here
    constexpr std::uint16_t kExtraBytes = 4 + 4 * kAdpcmCoefficients.size();
    const std::int64_t blocks =
        (frames + std::int64_t{kTrackBlockFrames} - 1) / std::int64_t{kTrackBlockFrames};
    const std::int64_t data = blocks * std::int64_t{kTrackBlockBytes};
    ByteWriter writer;
    writer.Bytes("RIFF");
    writer.Put<std::uint32_t>(static_cast<std::uint32_t>(data) + kTrackHeaderBytes - kRiffHead);
    writer.Bytes("WAVEfmt ");
    writer.Put<std::uint32_t>(kFormatBytes);
    writer.Put<std::uint16_t>(kAdpcmTag);
    writer.Put<std::uint16_t>(kTrackChannels);
    writer.Put<std::uint32_t>(kTrackRate);
    writer.Put<std::uint32_t>(kByteRate);
    writer.Put<std::uint16_t>(kTrackBlockBytes);
    writer.Put<std::uint16_t>(kBits);
    writer.Put<std::uint16_t>(kExtraBytes);
    writer.Put<std::uint16_t>(kTrackBlockFrames);
    writer.Put<std::uint16_t>(kAdpcmCoefficients.size());
    for (const AdpcmCoefficients& pair : kAdpcmCoefficients) {
        writer.Put<std::int16_t>(pair.First);
        writer.Put<std::int16_t>(pair.Second);
    }
    writer.Bytes("fact");
    writer.Put<std::uint32_t>(kFactBytes);
    writer.Put<std::uint32_t>(static_cast<std::uint32_t>(frames));
    writer.Bytes("data");
    writer.Put<std::uint32_t>(static_cast<std::uint32_t>(data));
    return writer.Take();
}

} // namespace kelvash::audio
