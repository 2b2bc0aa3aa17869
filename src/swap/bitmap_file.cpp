#include "swap/bitmap_file.h"

#include <algorithm>
#include <array>
#include <bit>

#include "foundation/bitmap_head.h"
#include "foundation/bytes.h"

namespace kelvash::swap {

namespace {

constexpr std::size_t kFileHead = 14;
constexpr std::size_t kCoreHead = 12;
constexpr std::size_t kInfoHead = 40;
constexpr std::size_t kMasksInHead = 52;
constexpr std::size_t kOs2Head = 64;
constexpr std::array<std::size_t, 7> kHeadSizes = {kCoreHead, kInfoHead, kMasksInHead, 56,
                                                   kOs2Head,  108,       124};
constexpr std::size_t kPaletteEntry = 4;
// Bytes of heads that say nothing about the pixels.
constexpr std::size_t kFileSizeAndReserve = 8;
constexpr std::size_t kPlanes = 2;
constexpr std::size_t kPixelSizeAndResolution = 12;

enum class Packing : std::uint32_t { Rgb = 0, Rle8 = 1, Rle4 = 2, BitFields = 3, AlphaBitFields = 6 };

struct Head {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool top_down = false;
    unsigned bits = 0;
    Packing packing = Packing::Rgb;
    std::array<std::uint32_t, 3> masks{}; // red, green, blue
    std::size_t palette = 0;              // offsets in the file
    std::size_t pixels = 0;
    std::size_t palette_entry = kPaletteEntry;
    std::size_t palette_count = 0; // entries that are in the file
};

bool IsRunLength(const Head& head) {
    return head.packing == Packing::Rle8 || head.packing == Packing::Rle4;
}
bool HasMasks(const Head& head) {
    return head.packing == Packing::BitFields || head.packing == Packing::AlphaBitFields;
}

bool IsPossible(const Head& head, std::size_t head_size) {
    constexpr std::array<unsigned, 6> kDepths = {1, 4, 8, 16, 24, 32};
    if (std::find(kDepths.begin(), kDepths.end(), head.bits) == kDepths.end()) return false;
    if (head.width == 0 || head.width > kMaxPictureSide) return false;
    if (head.height == 0 || head.height > kMaxPictureSide) return false;
    if (std::uint64_t{head.width} * head.height > kMaxPicturePixels) return false;
    switch (head.packing) {
        case Packing::Rgb:
            return true;
        case Packing::Rle8:
            return head.bits == 8;
        case Packing::Rle4:
            return head.bits == 4;
        case Packing::BitFields: // in OS/2's own heads the numbers from 3 on mean other packings
        case Packing::AlphaBitFields:
            return (head.bits == 16 || head.bits == 32) && head_size != kOs2Head;
    }
    return false;
}

// The masks stand at the same place whether they are part of the head or follow it.
bool ReadMasks(std::string_view bytes, std::size_t head_size, Head& head) {
    const std::size_t count = head.packing == Packing::AlphaBitFields ? 4 : 3;
    const std::size_t end = kFileHead + kInfoHead + count * 4;
    if (end > bytes.size()) return false;
    ByteReader reader(bytes.substr(kFileHead + kInfoHead));
    for (std::uint32_t& mask : head.masks) {
        mask = reader.Get<std::uint32_t>();
        if (head.bits == 16) mask &= 0xFFFF;
    }
    if (head_size == kInfoHead) head.palette = end;
    return (head.masks[0] | head.masks[1] | head.masks[2]) != 0;
}

// Finds palette and pixels. Where the file doesn't say where the pixels begin they follow the palette;
// otherwise the palette ends there at the latest.
void FindPixels(std::size_t file_size, std::size_t stated_offset, std::size_t stated_colours, Head& head) {
    const std::size_t full = head.bits <= 8 ? std::size_t{1} << head.bits : 0;
    const std::size_t stated = stated_colours != 0 ? stated_colours : full;
    const std::size_t palette_end = head.palette + stated * head.palette_entry; // below 2^35
    const bool says_offset = stated_offset >= head.palette;
    head.pixels = std::min(says_offset ? stated_offset : palette_end, file_size);
    const std::size_t room = (head.pixels - std::min(head.palette, head.pixels)) / head.palette_entry;
    head.palette_count = std::min({stated, full, room});
}

bool PixelsAreThere(const Head& head, std::size_t file_size) {
    const std::size_t left = file_size - head.pixels;
    return IsRunLength(head) ? left > 0 : BitmapStride(head.width, head.bits) * head.height <= left;
}

// Sizes, depth and packing; gives the number of colours that the head states.
std::size_t ReadKind(ByteReader& reader, std::size_t head_size, Head& head) {
    if (head_size == kCoreHead) {
        head.width = reader.Get<std::uint16_t>();
        head.height = reader.Get<std::uint16_t>();
        reader.Skip(kPlanes);
        head.bits = reader.Get<std::uint16_t>();
        head.palette_entry = 3;
        return 0;
    }
    head.width = reader.Get<std::uint32_t>();
    head.height = reader.Get<std::uint32_t>();
    head.top_down = head.height > 0x7FFF'FFFF;
    if (head.top_down) head.height = 0U - head.height;
    reader.Skip(kPlanes);
    head.bits = reader.Get<std::uint16_t>();
    head.packing = Packing{reader.Get<std::uint32_t>()};
    reader.Skip(kPixelSizeAndResolution);
    return reader.Get<std::uint32_t>();
}

std::optional<Head> ReadHead(std::string_view bytes) {
    ByteReader reader(bytes);
    if (reader.Bytes(2) != "BM") return std::nullopt;
    reader.Skip(kFileSizeAndReserve);
    const std::size_t offset = reader.Get<std::uint32_t>();
    const std::size_t head_size = reader.Get<std::uint32_t>();
    if (std::find(kHeadSizes.begin(), kHeadSizes.end(), head_size) == kHeadSizes.end()) return std::nullopt;
    if (reader.Failed() || bytes.size() < kFileHead + head_size) return std::nullopt;
    Head head;
    head.palette = kFileHead + head_size;
    const std::size_t colours = ReadKind(reader, head_size, head);
    if (!IsPossible(head, head_size)) return std::nullopt;
    if (HasMasks(head) && !ReadMasks(bytes, head_size, head)) return std::nullopt;
    FindPixels(bytes.size(), offset, colours, head);
    if (!PixelsAreThere(head, bytes.size())) return std::nullopt;
    return head;
}

std::string NewHead(const Head& head, unsigned bits, Packing packing, std::size_t colours,
                    std::size_t pixel_bytes) {
    const BitmapShape shape{head.width, head.top_down ? 0U - head.height : head.height,
                            static_cast<std::uint16_t>(bits), static_cast<std::uint32_t>(packing), colours};
    return BitmapHead(shape, pixel_bytes);
}

// The palette at its full length, black where the file has none.
std::string FullPalette(std::string_view bytes, const Head& head) {
    std::string palette;
    for (std::size_t i = 0; i < head.palette_count; ++i) {
        palette += bytes.substr(head.palette + i * head.palette_entry, 3);
        palette.push_back('\0');
    }
    palette.resize((std::size_t{1} << head.bits) * kPaletteEntry);
    return palette;
}

char MaskedByte(std::uint32_t pixel, std::uint32_t mask) {
    if (mask == 0) return '\0';
    const int shift = std::countr_zero(mask);
    const std::uint64_t top = mask >> shift;
    return static_cast<char>(((pixel & mask) >> shift) * 255ULL / top);
}

// Adds pixels behind bit masks as 32 bits without.
void AddUnmasked(std::string_view bytes, const Head& head, std::string& plain) {
    const std::size_t stride = BitmapStride(head.width, head.bits);
    const std::size_t pixel_bytes = head.bits / 8;
    for (std::size_t y = 0; y < head.height; ++y) {
        ByteReader row(bytes.substr(head.pixels + y * stride));
        for (std::size_t x = 0; x < head.width; ++x) {
            const std::uint32_t pixel =
                pixel_bytes == 2 ? row.Get<std::uint16_t>() : row.Get<std::uint32_t>();
            for (const std::size_t channel : {2U, 1U, 0U})
                plain.push_back(MaskedByte(pixel, head.masks[channel]));
            plain.push_back('\0');
        }
    }
}

} // namespace

std::optional<std::string> PlainBitmap(std::string_view bytes) {
    if (bytes.size() > kMaxPictureBytes) return std::nullopt;
    const std::optional<Head> head = ReadHead(bytes);
    if (!head.has_value()) return std::nullopt;
    if (HasMasks(*head)) {
        const std::size_t pixel_bytes = BitmapStride(head->width, 32) * head->height;
        std::string plain = NewHead(*head, 32, Packing::Rgb, 0, pixel_bytes);
        plain.reserve(plain.size() + pixel_bytes);
        AddUnmasked(bytes, *head, plain);
        return plain;
    }
    const std::string palette = head->bits <= 8 ? FullPalette(bytes, *head) : std::string();
    std::string_view pixels = bytes.substr(head->pixels);
    if (!IsRunLength(*head)) pixels = pixels.substr(0, BitmapStride(head->width, head->bits) * head->height);
    std::string plain =
        NewHead(*head, head->bits, head->packing, palette.size() / kPaletteEntry, pixels.size());
    plain += palette;
    plain += pixels;
    return plain;
}

} // namespace kelvash::swap
