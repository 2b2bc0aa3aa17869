#include "swap/picture.h"

#include <turbojpeg.h>

#include <memory>

#include "foundation/files.h"
#include "foundation/platform/sdl.h"
#include "swap/bitmap_file.h"

namespace kelvash::swap {

namespace {

constexpr int kQuality = 90;

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

bool ConvertFile(std::string_view source, std::string_view target,
                 std::optional<std::string> (*convert)(std::string_view bytes)) {
    if (FileSize(source) > static_cast<std::int64_t>(kMaxPictureBytes)) return false;
    const std::optional<std::string> bytes = ReadFileBytes(source);
    if (!bytes.has_value()) return false;
    const std::optional<std::string> converted = convert(*bytes);
    return converted.has_value() && ReplaceFileBytes(target, *converted, Flush::No);
}

} // namespace

std::optional<std::string> JpegFromBitmap(std::string_view bytes) {
    const std::optional<std::string> plain = PlainBitmap(bytes);
    const platform::Sdl* sdl = plain.has_value() ? platform::LoadSdl() : nullptr;
    if (sdl == nullptr) return std::nullopt;
    const Surface surface = ReadBitmap(*sdl, *plain);
    const JpegCodec codec(tjInitCompress());
    if (!surface || !codec) return std::nullopt;
    unsigned char* data = nullptr;
    unsigned long size = 0;
    const int status =
        tjCompress2(codec.get(), static_cast<const unsigned char*>(surface->pixels), surface->w,
                    surface->pitch, surface->h, TJPF_RGB, &data, &size, TJSAMP_420, kQuality, 0);
    const JpegBytes owner(data);
    if (status != 0) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(data), size);
}

std::optional<std::string> BitmapFromJpeg(std::string_view bytes) {
    if (bytes.size() > kMaxPictureBytes) return std::nullopt;
    const auto size =
        static_cast<unsigned long>(bytes.size()); // the library's type of a size, 32 bits on Windows
    const JpegCodec codec(tjInitDecompress());
    int width = 0, height = 0, subsampling = 0, colours = 0;
    if (!codec ||
        tjDecompressHeader3(codec.get(), Unsigned(bytes), size, &width, &height, &subsampling, &colours) != 0)
        return std::nullopt;
    if (colours != TJCS_YCbCr && colours != TJCS_RGB && colours != TJCS_GRAY) return std::nullopt;
    const auto columns = static_cast<std::uint32_t>(width);
    const auto rows = static_cast<std::uint32_t>(height);
    if (columns > kMaxPictureSide || rows > kMaxPictureSide) return std::nullopt;
    if (std::uint64_t{columns} * rows > kMaxPicturePixels) return std::nullopt;
    std::string bitmap = BitmapHead24(columns, rows);
    const std::size_t head = bitmap.size();
    const std::size_t stride = BitmapStride(columns, 24);
    bitmap.resize(head + stride * rows);
    // A progressive picture may hold scans without end for the same few pixels.
    const int status = tjDecompress2(
        codec.get(), Unsigned(bytes), size, reinterpret_cast<unsigned char*>(bitmap.data() + head), width,
        static_cast<int>(stride), height, TJPF_BGR, TJFLAG_BOTTOMUP | TJFLAG_LIMITSCANS);
    if (status != 0) return std::nullopt;
    return bitmap;
}

bool BitmapToJpeg(std::string_view bitmap, std::string_view jpeg) {
    return ConvertFile(bitmap, jpeg, JpegFromBitmap);
}

bool JpegToBitmap(std::string_view jpeg, std::string_view bitmap) {
    return ConvertFile(jpeg, bitmap, BitmapFromJpeg);
}

} // namespace kelvash::swap
