// Any bytes as a wave and as an mp3: what is told of them is within their size, and nothing takes long.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include "audio/audio_facts.h"
#include "audio/mp3_frames.h"
#include "audio/wave_chunks.h"
#include "foundation/drives.h"

namespace {

namespace fs = std::filesystem;

fs::path MakeDrive() {
    std::string name = fs::exists("/dev/shm") ? "/dev/shm/kelvash-fuzz-XXXXXX" : "/tmp/kelvash-fuzz-XXXXXX";
    if (mkdtemp(name.data()) == nullptr) std::abort();
    if (!kelvash::SetAppFolder(name) || !kelvash::SetDrive('C', name, kelvash::DriveType::Fixed))
        std::abort();
    return name;
}

void Require(bool truth) {
    if (!truth) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kelvash::audio;
    static const fs::path drive = MakeDrive();
    for (const char* name : {"a.wav", "a.mp3"}) {
        std::ofstream file(drive / name, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    }
    const AudioFacts wave = FactsOf("C:\\a.wav");
    Require(wave.Seconds >= 0 && wave.Kind != AudioKind::None);
    if (const auto chunks = ReadWaveChunks("C:\\a.wav"))
        Require(chunks->DataOffset + chunks->DataSize <= static_cast<std::int64_t>(size));
    const AudioFacts mp3 = FactsOf("C:\\a.mp3");
    Require(mp3.Estimate >= -1 && mp3.Estimate != 0);
    // The smallest frame has 24 bytes and 1152 samples at most, of 4 bytes each.
    Require(Mp3DecodedSize("C:\\a.mp3") <= 44 + static_cast<std::int64_t>(size / 24) * 1152 * 4);
    return 0;
}
