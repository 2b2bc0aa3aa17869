// Pictures in memory, and the files that hold them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace kelvash::swap {

// Sizes are within the bounds of bitmap_file.h.
struct Picture {
    std::uint32_t Width = 0;
    std::uint32_t Height = 0;
    std::string Pixels; // red, green, blue; rows from top to bottom, without padding

    std::string_view Row(std::uint32_t y) const {
        return std::string_view(Pixels).substr(std::size_t{y} * Width * 3, std::size_t{Width} * 3);
    }
};

// The best of the JPEG qualities that the program offers, and the one of what it makes by itself.
inline constexpr int kBestQuality = 90;

// Every bitmap that PlainBitmap takes. Nothing for bytes that are none.
std::optional<Picture> PictureFromBitmap(std::string_view bytes);
// Colour and grey pictures, no CMYK. A picture that is cut short or needs repair is refused.
std::optional<Picture> PictureFromJpeg(std::string_view bytes);
// Any of them, PNG too (png_file.h), by what the bytes begin with.
std::optional<Picture> DecodePicture(std::string_view bytes);

// 24 bits, the 40-byte head, rows from bottom to top.
std::string BitmapFromPicture(const Picture& picture);
// 4:2:0 subsampling; the quality is one from 1 to 100. Nothing if there is no memory for it.
std::optional<std::string> JpegFromPicture(const Picture& picture, int quality);

} // namespace kelvash::swap
