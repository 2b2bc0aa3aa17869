// Bitmap files (.bmp) of any kind brought into one that every reader takes: the 40-byte head, a palette of
// full length, no bit masks.
//
// Taken are heads of 12 (OS/2 core), 40, 52, 56, 64 (OS/2 2), 108 and 124 bytes; 1, 4, 8, 16, 24 and 32 bits;
// any bit masks; RLE8 and RLE4; rows in both orders; palettes that are short, or say nothing of their length;
// a head that doesn't say where the pixels are; bytes behind the pixels.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvash::swap {

// Bounds of pictures, both ways. The pixels are enough for a screen of 7680 x 4320, and keep what a lying
// head can make the program reserve below 400 MB.
inline constexpr std::uint32_t kMaxPictureSide = 30'000;
inline constexpr std::uint64_t kMaxPicturePixels = 33'554'432;
inline constexpr std::size_t kMaxPictureBytes = std::size_t{160}
                                                << 20; // of a file; 32 bits a pixel and a palette

// The plain form of a bitmap file. Its pixels are complete, but run-length packed ones aren't checked.
// Nothing for a file that isn't a bitmap, lies about itself, is cut short or out of bounds.
std::optional<std::string> PlainBitmap(std::string_view bytes);

} // namespace kelvash::swap
