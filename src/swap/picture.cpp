#include "swap/picture.h"

#include "foundation/files.h"
#include "swap/bitmap_file.h"
#include "swap/picture_codec.h"

namespace kelvash::swap {

namespace {

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
    const std::optional<Picture> picture = PictureFromBitmap(bytes);
    return picture ? JpegFromPicture(*picture, kBestQuality) : std::nullopt;
}

std::optional<std::string> BitmapFromJpeg(std::string_view bytes) {
    const std::optional<Picture> picture = PictureFromJpeg(bytes);
    if (!picture) return std::nullopt;
    return BitmapFromPicture(*picture);
}

bool BitmapToJpeg(std::string_view bitmap, std::string_view jpeg) {
    return ConvertFile(bitmap, jpeg, JpegFromBitmap);
}

bool JpegToBitmap(std::string_view jpeg, std::string_view bitmap) {
    return ConvertFile(jpeg, bitmap, BitmapFromJpeg);
}

} // namespace kelvash::swap
