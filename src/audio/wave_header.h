// What a wave file says of its format, and by which step another format comes of it.
//
// The head is read as one record with no look for chunks; neither its tags nor its lengths are verified. A
// missing or shorter file has zeros in what is missing, and nothing here tells of an error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/message_text.h"

namespace kelvash::audio {

inline constexpr std::size_t kWavHeaderSize = 36;
inline constexpr std::uint16_t kTagPcm = 1;
inline constexpr std::uint16_t kTagAdpcm = 2; // Microsoft's

// The first 36 bytes of a wave file.
struct WavHeader {
    std::string RiffTag;
    std::uint32_t RiffLength = 0;
    std::string WaveFmtTag;
    std::uint32_t FmtLength = 0;
    std::uint16_t FormatTag = 0;
    std::uint16_t Channels = 0;
    std::uint32_t SampleRate = 0; // Hz
    std::uint32_t ByteRate = 0;
    std::uint16_t BlockAlign = 0;
    std::uint16_t BitsPerSample = 0;
};

// From a file's first bytes, however few.
WavHeader DecodeWavHeader(std::string_view bytes);
// True exactly for PCM of 44100 Hz, stereo, 16 bits.
bool ReadWavHeader(std::string_view path, WavHeader& header);

// What a wave file is, or is to become. For the first three the format tag isn't looked at.
enum class AudioKind : std::int16_t {
    None = 0,
    Standard = 1,    // 44100 Hz, stereo, 16 bits
    TrleAudio = 2,   // 44100 Hz, stereo, 4 bits: the audio folder's
    TrleSamples = 3, // 22050 Hz, mono, 16 bits: sound\samples'
    OtherPcm = 4,
    Mp3 = 5, // a target only
    Unknown = 6
};
AudioKind KindOf(const WavHeader& header);

// "mono", "stereo"; a blank for none.
std::string ChannelWord(std::uint16_t channels);

// The steps by which one format becomes another; 1 to 4 are the modes of WavConverter.
inline constexpr std::int16_t kNoStep = -1; // no single step leads there
inline constexpr std::int16_t kStepNone = 0;
inline constexpr std::int16_t kStepFrom4Bits = 1;
inline constexpr std::int16_t kStepTo4Bits = 2;
inline constexpr std::int16_t kStepToStandard = 3;
inline constexpr std::int16_t kStepToSamples = 4;
inline constexpr std::int16_t kStepEncode = 5;
// The name of a step in messages; 0 is the decoding of an mp3.
MessageText StepName(std::int16_t step);

// Finds a file's kind, its description ("PCM 44100Hz stereo 16 bits") and the step to the wanted kind, which
// is the result.
std::int16_t AnalyseWavFormat(std::string_view path, AudioKind target, std::string& description,
                              AudioKind& kind);

// True for a name, without folder and extension, that has digits alone, or nothing.
bool IsTrackNumber(std::string_view path);
// True if a file of a level's sounds is something else than a numbered music track. A 4-bit wave whose name
// is no number is told, and `warned` says that it is to be passed over.
bool IsNotAudioTrack(std::string_view path, bool& warned);

} // namespace kelvash::audio
