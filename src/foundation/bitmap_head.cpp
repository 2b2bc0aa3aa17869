#include "foundation/bitmap_head.h"

#include "foundation/bytes.h"

namespace kelvash {

std::string BitmapHead(const BitmapShape& shape, std::size_t pixel_bytes) {
    constexpr std::size_t kFileHead = 14, kInfoHead = 40, kPaletteEntry = 4;
    const std::size_t offset = kFileHead + kInfoHead + shape.Colours * kPaletteEntry;
    ByteWriter bytes;
    bytes.Bytes("BM");
    bytes.Put<std::uint32_t>(static_cast<std::uint32_t>(offset + pixel_bytes));
    bytes.Zeros(4);
    bytes.Put<std::uint32_t>(static_cast<std::uint32_t>(offset));
    bytes.Put<std::uint32_t>(kInfoHead);
    bytes.Put<std::uint32_t>(shape.Width);
    bytes.Put<std::uint32_t>(shape.Height);
    bytes.Put<std::uint16_t>(1); // planes
    bytes.Put<std::uint16_t>(shape.Bits);
    bytes.Put<std::uint32_t>(shape.Packing);
    bytes.Put<std::uint32_t>(static_cast<std::uint32_t>(pixel_bytes));
    bytes.Zeros(16); // resolution and numbers of colours: not stated
    return bytes.Take();
}

std::string BitmapHead24(std::uint32_t width, std::uint32_t height) {
    return BitmapHead({width, height}, BitmapStride(width, 24) * height);
}

std::size_t BitmapStride(std::uint32_t width, unsigned bits) {
    return (std::size_t{width} * bits + 31) / 32 * 4;
}

} // namespace kelvash
