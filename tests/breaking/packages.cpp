#include "breaking/packages.h"

#include <zlib.h>

#include <array>

namespace kelvash::test {

namespace {

constexpr std::size_t kMegabyte = std::size_t{1} << 20;

// Deflates with the window bits that choose the form: the same megabyte again and again, each a block of its
// own that refers to nothing before it.
std::string DeflateZeros(int megabytes, bool raw) {
    const std::string zeros(kMegabyte, '\0');
    std::string bytes;
    z_stream stream{};
    deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, raw ? -MAX_WBITS : MAX_WBITS, 8,
                 Z_DEFAULT_STRATEGY);
    std::array<Bytef, 1 << 16> piece{};
    for (int i = 0; i < megabytes; ++i) {
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(zeros.data()));
        stream.avail_in = static_cast<uInt>(zeros.size());
        do {
            stream.next_out = piece.data();
            stream.avail_out = static_cast<uInt>(piece.size());
            deflate(&stream, i + 1 == megabytes ? Z_FINISH : Z_NO_FLUSH);
            bytes.append(reinterpret_cast<const char*>(piece.data()), piece.size() - stream.avail_out);
        } while (stream.avail_out == 0);
    }
    deflateEnd(&stream);
    return bytes;
}

std::uint32_t ZerosCrc(int megabytes) {
    const std::string zeros(kMegabyte, '\0');
    uLong crc = crc32(0, nullptr, 0);
    for (int i = 0; i < megabytes; ++i)
        crc = crc32(crc, reinterpret_cast<const Bytef*>(zeros.data()), static_cast<uInt>(zeros.size()));
    return static_cast<std::uint32_t>(crc);
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
    ZipBytes entry{name, DeflateZeros(megabytes, true)};
    entry.method = 8;
    entry.crc = ZerosCrc(megabytes);
    entry.declared = static_cast<std::uint32_t>(static_cast<std::size_t>(megabytes) * kMegabyte);
    return entry;
}

std::string ZerosStream(int megabytes) {
    return DeflateZeros(megabytes, false);
}

} // namespace kelvash::test
