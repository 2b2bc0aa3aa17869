// The 40-byte head of a bitmap file, with the file's own before it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace kelvash {

struct BitmapShape {
    std::uint32_t Width = 0;
    std::uint32_t Height = 0; // rows from bottom to top; below 0, as 32 bits, from top to bottom
    std::uint16_t Bits = 24;
    std::uint32_t Packing = 0;
    std::size_t Colours = 0; // entries of the palette
};
// All that stands in front of the palette, or without one of the pixels.
std::string BitmapHead(const BitmapShape& shape, std::size_t pixel_bytes);
// That of plain pixels of 24 bits, rows from bottom to top, each padded to a multiple of 4 bytes.
std::string BitmapHead24(std::uint32_t width, std::uint32_t height);
// Bytes of a row.
std::size_t BitmapStride(std::uint32_t width, unsigned bits);

} // namespace kelvash
