// Any bytes as an Archive file: what is read of them can be written, and reads the same again.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "core/archive_file.h"

namespace {

using kelvash::core::ArchiveContents;

void Require(bool truth) {
    if (!truth) std::abort();
}

ArchiveContents Decode(std::string_view bytes, std::size_t& largest) {
    return kelvash::core::DecodeArchive([&](std::size_t size) {
        largest = std::max(largest, size);
        const std::string_view piece = bytes.substr(0, size);
        bytes.remove_prefix(piece.size());
        return piece;
    });
}

std::string Encode(const ArchiveContents& contents) {
    std::string bytes;
    Require(kelvash::core::EncodeArchive(contents, [&](std::string_view piece) {
        bytes += piece;
        return true;
    }));
    return bytes;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::size_t largest = 0;
    const ArchiveContents contents = Decode(bytes, largest);
    // No memory is spent on a count that only the file states.
    Require(largest <= 128 * kelvash::core::kLevelSize);
    Require(contents.Table.Size() >= 0);
    const auto count = static_cast<std::size_t>(contents.Table.Size());
    Require(count * kelvash::core::kLevelSize < size + kelvash::core::kLevelSize);
    const std::string written = Encode(contents);
    Require(Encode(Decode(written, largest)) == written);
    return 0;
}
