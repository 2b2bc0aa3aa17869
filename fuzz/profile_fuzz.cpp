// Any bytes as a profile: the length alone says whether it is of this version, an old one keeps the newer
// defaults, and what is read writes the same record again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/profile.h"

namespace {

void Require(bool truth) {
    if (!truth) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kelvash::core::ProfileRecord;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    ProfileRecord record;
    const bool current = kelvash::core::DecodeProfile(bytes, record);
    Require(current == (size == 1588));
    if (!current) {
        Require(record.SavegamesToKeep == 5 && record.TimerTenths == 5 && record.ArchiveSavegames);
        Require(record.GraphicsProgram.empty());
    }
    const std::string written = kelvash::core::EncodeProfile(record);
    Require(written.size() == 1588);
    ProfileRecord again;
    Require(kelvash::core::DecodeProfile(written, again));
    Require(kelvash::core::EncodeProfile(again) == written);
    return 0;
}
