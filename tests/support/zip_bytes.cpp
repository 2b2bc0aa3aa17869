#include "support/zip_bytes.h"

#include <zlib.h>

namespace kelvash::test {

namespace {

std::string Number(std::uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>(value >> (8 * i));
    return text;
}

// What both heads of an entry share, from the flags to the length of the extra field.
std::string Common(const ZipBytes& entry) {
    return Number(entry.flags, 2) + Number(entry.method, 2) + Number(0x6000, 2) + Number(0x5A21, 2) +
           Number(entry.crc, 4) + Number(entry.content.size(), 4) + Number(entry.declared, 4) +
           Number(entry.name.size(), 2) + Number(entry.extra.size(), 2);
}

} // namespace

ZipBytes MakeEntry(const std::string& name, const std::string& content) {
    ZipBytes entry{name, content};
    entry.crc = static_cast<std::uint32_t>(
        crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size())));
    entry.declared = static_cast<std::uint32_t>(content.size());
    return entry;
}

std::string MakeZipBytes(const std::vector<ZipBytes>& entries) {
    std::string bytes;
    std::string directory;
    for (const ZipBytes& entry : entries) {
        directory += "PK\1\2" + Number(entry.made_by, 2) + Number(20, 2) + Common(entry) + Number(0, 2) +
                     Number(0, 2) + Number(0, 2) + Number(entry.attributes, 4) + Number(bytes.size(), 4) +
                     entry.name + entry.extra;
        bytes += "PK\3\4" + Number(20, 2) + Common(entry) + entry.name + entry.extra + entry.content;
    }
    return bytes + directory + "PK\5\6" + Number(0, 4) + Number(entries.size() & 0xFFFF, 2) +
           Number(entries.size() & 0xFFFF, 2) + Number(directory.size(), 4) + Number(bytes.size(), 4) +
           Number(0, 2);
}

} // namespace kelvash::test
