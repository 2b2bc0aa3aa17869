// Any bytes as a bitmap, as a JPEG and as a PNG: what is taken converts on, and back to a picture of the same
// size.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "swap/bitmap_file.h"
#include "swap/picture.h"
#include "swap/picture_codec.h"

namespace {

using kelvash::swap::BitmapFromJpeg;
using kelvash::swap::BitmapFromPicture;
using kelvash::swap::DecodePicture;
using kelvash::swap::JpegFromBitmap;
using kelvash::swap::Picture;
using kelvash::swap::PictureFromBitmap;
using kelvash::swap::PlainBitmap;

void Require(bool truth) {
    if (!truth) std::abort();
}

// Width and height in the head of a plain bitmap.
std::string SizeOf(const std::string& bitmap) {
    return bitmap.substr(18, 8);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    if (const std::optional<std::string> plain = PlainBitmap(bytes)) {
        const std::optional<std::string> again = PlainBitmap(*plain);
        Require(again.has_value() && *again == *plain);
    }
    if (const std::optional<std::string> jpeg = JpegFromBitmap(bytes))
        Require(BitmapFromJpeg(*jpeg).has_value());
    if (const std::optional<std::string> bitmap = BitmapFromJpeg(bytes)) {
        const std::optional<std::string> jpeg = JpegFromBitmap(*bitmap);
        Require(jpeg.has_value());
        const std::optional<std::string> back = BitmapFromJpeg(*jpeg);
        Require(back.has_value() && SizeOf(*back) == SizeOf(*bitmap));
    }
    if (const std::optional<Picture> picture = DecodePicture(bytes)) {
        Require(picture->Pixels.size() == std::size_t{picture->Width} * picture->Height * 3);
        Require(PictureFromBitmap(BitmapFromPicture(*picture))->Pixels == picture->Pixels);
    }
    return 0;
}
