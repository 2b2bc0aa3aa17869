#include "swap/picture_codec.h"

#include <turbojpeg.h>

#include <memory>

#include "foundation/bitmap_head.h"
#include "foundation/platform/sdl.h"
#include "swap/bitmap_file.h"
#include "swap/png_file.h"

namespace kelvash::swap {

namespace {

constexpr std::size_t kPixel = 3; // bytes

template <auto Free>
struct Freer {
    template <class Thing>
    void operator()(Thing* thing) const {
        Free(thing);
    }
};
using JpegCodec = std::unique_ptr<void, Freer<tjDestroy>>;
using JpegBytes = std::unique_ptr<unsigned char, Freer<tjFree>>;

struct SurfaceFreer {
    const platform::Sdl* sdl;
    void operator()(SDL_Surface* surface) const { sdl->FreeSurface(surface); }
};
using Surface = std::unique_ptr<SDL_Surface, SurfaceFreer>;

const unsigned char* Unsigned(std::string_view bytes) {
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

// The pixels of a bitmap as red, green, blue; null if they can't be unpacked.
Surface ReadBitmap(const platform::Sdl& sdl, const std::string& bitmap) {
    SDL_RWops* bytes = sdl.RWFromConstMem(bitmap.data(), static_cast<int>(bitmap.size()));
    const Surface loaded(sdl.LoadBMP_RW(bytes, 1), {&sdl});
    if (!loaded) return Surface(nullptr, {&sdl});
    return Surface(sdl.ConvertSurfaceFormat(loaded.get(), SDL_PIXELFORMAT_RGB24, 0), {&sdl});
}

Picture PictureOf(const SDL_Surface& surface) {
    Picture picture{static_cast<std::uint32_t>(surface.w), static_cast<std::uint32_t>(surface.h), {}};
    const std::size_t row = picture.Width * kPixel;
    picture.Pixels.reserve(row * picture.Height);
    const char* pixels = static_cast<const char*>(surface.pixels);
    for (std::uint32_t y = 0; y < picture.Height; ++y, pixels += surface.pitch)
        picture.Pixels.append(pixels, row);
    return picture;
}

} // namespace

std::optional<Picture> PictureFromBitmap(std::string_view bytes) {
    const std::optional<std::string> plain = PlainBitmap(bytes);
    const platform::Sdl* const sdl = plain.has_value() ? platform::LoadSdl() : nullptr;
    if (sdl == nullptr) return std::nullopt;
    const Surface surface = ReadBitmap(*sdl, *plain);
    if (!surface) return std::nullopt;
    return PictureOf(*surface);
}

std::optional<Picture> PictureFromJpeg(std::string_view bytes) {
    if (bytes.size() > kMaxPictureBytes) return std::nullopt;
    const auto size =
        static_cast<unsigned long>(bytes.size()); // the library's type of a size, 32 bits on Windows
    const JpegCodec codec(tjInitDecompress());
    int width = 0, height = 0, subsampling = 0, colours = 0;
    if (!codec ||
        tjDecompressHeader3(codec.get(), Unsigned(bytes), size, &width, &height, &subsampling, &colours) != 0)
        return std::nullopt;
    if (colours != TJCS_YCbCr && colours != TJCS_RGB && colours != TJCS_GRAY) return std::nullopt;
    Picture picture{static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), {}};
    if (picture.Width > kMaxPictureSide || picture.Height > kMaxPictureSide) return std::nullopt;
    if (std::uint64_t{picture.Width} * picture.Height > kMaxPicturePixels) return std::nullopt;
    picture.Pixels.resize(picture.Width * kPixel * picture.Height);
    // A progressive picture may hold scans without end for the same few pixels.
    const int status = tjDecompress2(codec.get(), Unsigned(bytes), size,
                                     reinterpret_cast<unsigned char*>(picture.Pixels.data()), width, 0,
                                     height, TJPF_RGB, TJFLAG_LIMITSCANS);
    if (status != 0) return std::nullopt;
    return picture;
}

std::optional<Picture> DecodePicture(std::string_view bytes) {
    if (bytes.starts_with("\x89PNG")) return PictureFromPng(bytes);
    return bytes.starts_with("BM") ? PictureFromBitmap(bytes) : PictureFromJpeg(bytes);
}

std::string BitmapFromPicture(const Picture& picture) {
    std::string bitmap = BitmapHead24(picture.Width, picture.Height);
    const std::size_t stride = BitmapStride(picture.Width, 24);
    bitmap.reserve(bitmap.size() + stride * picture.Height);
    for (std::uint32_t y = picture.Height; y-- > 0;) {
        const std::string_view row = picture.Row(y);
        for (std::size_t x = 0; x < row.size(); x += kPixel) {
            bitmap.push_back(row[x + 2]);
            bitmap.push_back(row[x + 1]);
            bitmap.push_back(row[x]);
        }
        bitmap.append(stride - row.size(), '\0');
    }
    return bitmap;
}

std::optional<std::string> JpegFromPicture(const Picture& picture, int quality) {
    const JpegCodec codec(tjInitCompress());
    if (!codec) return std::nullopt;
    unsigned char* data = nullptr;
    unsigned long size = 0;
    const int status =
        tjCompress2(codec.get(), Unsigned(picture.Pixels), static_cast<int>(picture.Width), 0,
                    static_cast<int>(picture.Height), TJPF_RGB, &data, &size, TJSAMP_420, quality, 0);
    const JpegBytes owner(data);
    if (status != 0) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(data), size);
}

} // namespace kelvash::swap
