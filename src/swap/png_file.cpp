#include "swap/png_file.h"

#include <libdeflate.h>

#include <cstdlib>
#include <memory>

#include "swap/bitmap_file.h"

namespace kelvash::swap {

namespace {

constexpr std::string_view kSignature("\x89PNG\r\n\x1A\n", 8);
constexpr std::size_t kHeadSize = 13;
constexpr std::size_t kChunkRest = 12; // bytes of a chunk beside its contents
// Deflate makes no more than this of a byte: who claims more lies.
constexpr std::size_t kMostOfAByte = 1032;

enum class Kind : std::uint8_t { Grey = 0, Colour = 2, Palette = 3, GreyAlpha = 4, ColourAlpha = 6 };

struct Png {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    Kind kind = Kind::Grey;
    std::string_view palette;
    std::string packed;

    std::size_t Channels() const {
        switch (kind) {
            case Kind::GreyAlpha:
                return 2;
            case Kind::Colour:
                return 3;
            case Kind::ColourAlpha:
                return 4;
            default:
                return 1;
        }
    }
    std::size_t RowSize() const { return width * Channels(); }
};

std::uint8_t ByteAt(std::string_view bytes, std::size_t at) {
    return static_cast<std::uint8_t>(bytes[at]);
}

std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 0; i < 4; ++i)
        number = number << 8 | ByteAt(bytes, at + i);
    return number;
}

bool ReadHead(std::string_view head, Png& png) {
    if (head.size() != kHeadSize) return false;
    png.width = NumberAt(head, 0);
    png.height = NumberAt(head, 4);
    png.kind = Kind{ByteAt(head, 9)};
    constexpr std::string_view kKinds("\0\2\3\4\6", 5);
    const bool plain = head[8] == 8 && head[10] == 0 && head[11] == 0 && head[12] == 0;
    return plain && kKinds.find(head[9]) != std::string_view::npos && png.width > 0 && png.height > 0 &&
           png.width <= kMaxPictureSide && png.height <= kMaxPictureSide &&
           std::uint64_t{png.width} * png.height <= kMaxPicturePixels;
}

// Takes one chunk off the front. False for one that isn't whole.
bool TakeChunk(std::string_view& bytes, std::string_view& type, std::string_view& contents) {
    if (bytes.size() < kChunkRest) return false;
    const std::size_t size = NumberAt(bytes, 0);
    if (size > bytes.size() - kChunkRest) return false;
    type = bytes.substr(4, 4);
    contents = bytes.substr(8, size);
    const std::uint32_t sum = libdeflate_crc32(0, type.data(), size + 4);
    if (sum != NumberAt(bytes, 8 + size)) return false;
    bytes.remove_prefix(size + kChunkRest);
    return true;
}

std::optional<Png> ReadChunks(std::string_view bytes) {
    if (bytes.size() > kMaxPictureBytes || !bytes.starts_with(kSignature)) return std::nullopt;
    bytes.remove_prefix(kSignature.size());
    Png png;
    std::string_view type, contents;
    while (TakeChunk(bytes, type, contents)) {
        if (type == "IEND") return png;
        if ((png.width == 0) != (type == "IHDR")) return std::nullopt; // it is the first, and once
        if (type == "IHDR" && !ReadHead(contents, png)) return std::nullopt;
        if (type == "PLTE") png.palette = contents;
        if (type == "IDAT") png.packed += contents;
    }
    return std::nullopt;
}

// Rows of a byte that says how they are filtered, and their pixels.
std::optional<std::string> Unpack(const Png& png) {
    const std::size_t size = (png.RowSize() + 1) * png.height;
    if (size / kMostOfAByte > png.packed.size()) return std::nullopt;
    const std::unique_ptr<libdeflate_decompressor, decltype(&libdeflate_free_decompressor)> unpacker(
        libdeflate_alloc_decompressor(), libdeflate_free_decompressor);
    std::string rows(size, '\0');
    if (!unpacker || libdeflate_zlib_decompress(unpacker.get(), png.packed.data(), png.packed.size(),
                                                rows.data(), size, nullptr) != LIBDEFLATE_SUCCESS)
        return std::nullopt;
    return rows;
}

// The neighbour that left plus above minus corner is nearest to.
int Nearest(int left, int above, int corner) {
    const int to_left = std::abs(above - corner);
    const int to_above = std::abs(left - corner);
    const int to_corner = std::abs(left + above - 2 * corner);
    if (to_left <= to_above && to_left <= to_corner) return left;
    return to_above <= to_corner ? above : corner;
}

int Predicted(int filter, int left, int above, int corner) {
    switch (filter) {
        case 1:
            return left;
        case 2:
            return above;
        case 3:
            return (left + above) / 2;
        case 4:
            return Nearest(left, above, corner);
        default:
            return 0;
    }
}

// Makes values of the differences that a row holds. False for a filter that there isn't.
bool Unfilter(unsigned char* row, const unsigned char* above, std::size_t size, std::size_t channels,
              int filter) {
    if (filter > 4) return false;
    for (std::size_t i = 0; i < size; ++i) {
        const bool first = i < channels;
        const int value =
            row[i] + Predicted(filter, first ? 0 : row[i - channels], above == nullptr ? 0 : above[i],
                               first || above == nullptr ? 0 : above[i - channels]);
        row[i] = static_cast<unsigned char>(value);
    }
    return true;
}

// False for a colour that the palette hasn't.
bool AddPixel(const Png& png, const unsigned char* pixel, std::string& pixels) {
    const auto* const values = reinterpret_cast<const char*>(pixel);
    if (png.kind == Kind::Palette) {
        if (std::size_t{*pixel} * 3 + 3 > png.palette.size()) return false;
        pixels += png.palette.substr(std::size_t{*pixel} * 3, 3);
    } else if (png.Channels() < 3) {
        pixels.append(3, *values);
    } else {
        pixels.append(values, 3);
    }
    return true;
}

} // namespace

std::optional<Picture> PictureFromPng(std::string_view bytes) {
    const std::optional<Png> png = ReadChunks(bytes);
    std::optional<std::string> rows = png ? Unpack(*png) : std::nullopt;
    if (!rows) return std::nullopt;
    Picture picture{png->width, png->height, {}};
    picture.Pixels.reserve(std::size_t{png->width} * png->height * 3);
    const std::size_t size = png->RowSize();
    auto* row = reinterpret_cast<unsigned char*>(rows->data());
    const unsigned char* above = nullptr;
    for (std::uint32_t y = 0; y < png->height; ++y, row += size + 1) {
        if (!Unfilter(row + 1, above, size, png->Channels(), *row)) return std::nullopt;
        for (std::size_t x = 0; x < size; x += png->Channels())
            if (!AddPixel(*png, row + 1 + x, picture.Pixels)) return std::nullopt;
        above = row + 1;
    }
    return picture;
}

} // namespace kelvash::swap
