// Zip files written by hand, byte for byte: what no zip program would make.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::test {

// A stored entry. Fields that lie are set after MakeEntry.
struct ZipBytes {
    std::string name;
    std::string content;
    std::uint16_t method = 0;
    std::uint16_t flags = 0;
    std::uint32_t crc = 0;
    std::uint32_t declared = 0;   // size in both heads
    std::uint16_t made_by = 20;   // 0x0300 and more: a Unix
    std::uint32_t attributes = 0; // external ones
    std::string extra{};          // extra field, in both heads
};

// A sound entry of that name and content.
ZipBytes MakeEntry(const std::string& name, const std::string& content);
// The bytes of a zip with these entries.
std::string MakeZipBytes(const std::vector<ZipBytes>& entries);

} // namespace kelvash::test
