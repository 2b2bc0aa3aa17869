#include "breaking/packages.h"

#include <zlib.h>

namespace kelvash::test {

namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

// A megabyte of zeros as deflated blocks that refer to nothing before them and end on a whole byte: such
// pieces may stand behind each other.
const std::string& DeflatedMegabyte() {
    static const std::string piece = [] {
        std::string zeros(kMegabyte, '\0');
        std::string bytes(1 << 16, '\0');
        z_stream stream{};
        deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, 8, Z_DEFAULT_STRATEGY);
        stream.next_in = reinterpret_cast<Bytef*>(zeros.data());
        stream.avail_in = static_cast<uInt>(zeros.size());
        stream.next_out = reinterpret_cast<Bytef*>(bytes.data());
        stream.avail_out = static_cast<uInt>(bytes.size());
        deflate(&stream, Z_FULL_FLUSH);
        bytes.resize(bytes.size() - stream.avail_out);
        deflateEnd(&stream);
        return bytes;
    }();
    return piece;
}

std::string DeflatedZeros(int megabytes) {
    std::string bytes;
    for (int i = 0; i < megabytes; ++i)
        bytes += DeflatedMegabyte();
    return bytes + std::string("\x03\x00", 2); // the last block, an empty one
}

// The checksum of so many megabytes of zeros from that of one.
uLong Checksum(int megabytes, uLong of_none, uLong of_one, uLong (*combine)(uLong, uLong, z_off_t)) {
    uLong sum = of_none;
    for (int i = 0; i < megabytes; ++i)
        sum = combine(sum, of_one, static_cast<z_off_t>(kMegabyte));
    return sum;
}

} // namespace

std::string NumberBytes(std::uint64_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i)
        text += static_cast<char>((value >> (8 * i)) & 0xFF);
    return text;
}

std::string TextField(const std::string& text, std::size_t width) {
    std::string field = text.substr(0, width);
    field.resize(width, ' ');
    return field;
}

std::string Items(const std::vector<std::string>& items) {
    std::string list;
    for (std::size_t i = 0; i < items.size(); ++i)
        list += (i == 0 ? std::string() : std::string(1, '\0')) + items[i];
    return list;
}

std::string ConfigBytes(const PackageConfig& config) {
    std::string bytes = TextField(config.name, 256) + TextField(config.note, 256) +
                        TextField(config.author, 80) + TextField(config.message, 256) +
                        TextField(config.emails, 256) + TextField(config.sites, 256) +
                        TextField(config.extern_waves, 4096) + TextField(config.import_wads, 2048) +
                        TextField(config.import_notes, 512) + TextField(config.duplications, 600) +
                        TextField(config.more_info, 80) + TextField(config.exe_kind, 10);
    const auto count = static_cast<std::int32_t>(config.files.size());
    bytes += NumberBytes(static_cast<std::uint32_t>(config.file_count.value_or(count)), 4);
    for (const auto& [name, size] : config.files)
        bytes += NumberBytes(name.size(), 2) + name + NumberBytes(static_cast<std::uint32_t>(size), 4);
    const auto length = static_cast<std::uint16_t>(config.use_wads.size());
    return bytes + NumberBytes(config.use_wads_length.value_or(length), 2) + config.use_wads;
}

std::string MediaBytes(const std::vector<std::string>& names, std::optional<std::uint32_t> count) {
    std::string bytes =
        NumberBytes(count.value_or(static_cast<std::uint32_t>(names.size())), 4) + std::string(16, 'k');
    for (const std::string& name : names) {
        const std::string field = TextField(name, 256);
        bytes += field + std::string(10, '\0') + std::string(4, '\xFF') + std::string(4, '\0') + field +
                 field + field + field + std::string(58, '\0');
    }
    return bytes;
}

std::string Tr4InfoBytes(const std::vector<std::pair<std::string, std::int32_t>>& records,
                         std::optional<std::uint32_t> count) {
    std::string bytes = NumberBytes(count.value_or(static_cast<std::uint32_t>(records.size())), 4);
    for (const auto& [name, size] : records)
        bytes +=
            TextField(name, 80) + std::string(8, '\0') + NumberBytes(static_cast<std::uint32_t>(size), 4);
    return bytes;
}

std::string MarkerBytes(const std::string& code, const std::string& name, const std::string& overwritten,
                        const std::string& copied) {
    return ": Don't remove this file!\r\n"
           ": It is necessary at Kelvash \r\n"
           ": to know current configuration in TRLE\r\n"
           " \r\n"
           "#LEVEL_CODE=" +
           code + "#\r\n#LEVEL_NAME=" + name + "#\r\n#OVERWROTEN_FILES=" + overwritten +
           "#\r\n#COPIED_FILES=" + copied + "#\r\n";
}

std::vector<ZipBytes> SoundLevel() {
    return {MakeEntry("maze.tr4", "TR4 of the maze"), MakeEntry("script.dat", "script of the maze"),
            MakeEntry("english.dat", "english of the maze"), MakeEntry("readme.txt", "Mind the maze.")};
}

std::string PackageWith(std::vector<ZipBytes> more) {
    std::vector<ZipBytes> entries = SoundLevel();
    entries.insert(entries.end(), more.begin(), more.end());
    return MakeZipBytes(entries);
}

ZipBytes ZerosEntry(const std::string& name, int megabytes) {
    const std::string zeros(kMegabyte, '\0');
    const auto size = static_cast<uInt>(zeros.size());
    ZipBytes entry{name, DeflatedZeros(megabytes)};
    entry.method = 8;
    entry.crc = static_cast<std::uint32_t>(
        Checksum(megabytes, 0, crc32(0, reinterpret_cast<const Bytef*>(zeros.data()), size), &crc32_combine));
    entry.declared = static_cast<std::uint32_t>(static_cast<std::size_t>(megabytes) * kMegabyte);
    return entry;
}

std::string ZerosStream(int megabytes) {
    const std::string zeros(kMegabyte, '\0');
    const auto size = static_cast<uInt>(zeros.size());
    const uLong sum = Checksum(megabytes, 1, adler32(1, reinterpret_cast<const Bytef*>(zeros.data()), size),
                               &adler32_combine);
    std::string stream = "\x78\xDA" + DeflatedZeros(megabytes);
    for (const int shift : {24, 16, 8, 0})
        stream += static_cast<char>((sum >> shift) & 0xFF);
    return stream;
}

} // namespace kelvash::test
