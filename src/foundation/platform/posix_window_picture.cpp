#include <algorithm>
#include <bit>
#include <cstdint>
#include <memory>
#include <string>

#include "foundation/bitmap_head.h"
#include "foundation/platform/posix_x11.h"

// Behind X11's own.
#include <X11/Xutil.h>

namespace kelvash::platform {

namespace {

struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

// The part of a window that is on the screen, in its own coordinates: the server refuses any other.
bool ShownArea(Display* display, ::Window window, Area& area) {
    XWindowAttributes own{}, screen{};
    if (XGetWindowAttributes(display, window, &own) == 0 || own.map_state != IsViewable ||
        XGetWindowAttributes(display, own.root, &screen) == 0)
        return false;
    int left = 0, top = 0;
    ::Window child = 0;
    if (XTranslateCoordinates(display, window, own.root, 0, 0, &left, &top, &child) == False) return false;
    area.x = std::max(0, -left);
    area.y = std::max(0, -top);
    area.width = std::min(own.width, screen.width - left) - area.x;
    area.height = std::min(own.height, screen.height - top) - area.y;
    return area.width > 0 && area.height > 0;
}

// A colour of a pixel, widened or cut to eight bits.
struct Channel {
    unsigned long mask;
    int shift;
    int bits;
    explicit Channel(unsigned long of) : mask(of), shift(std::countr_zero(of)), bits(std::popcount(of)) {}
    char Of(unsigned long pixel) const {
        const unsigned long value = (pixel & mask) >> shift;
        return static_cast<char>(bits == 8 ? value : value * 255 / ((1UL << bits) - 1));
    }
};

// Rows from the bottom up, each to a multiple of four bytes.
std::string BitmapOf(XImage& image) {
    const Channel red(image.red_mask), green(image.green_mask), blue(image.blue_mask);
    if (red.mask == 0 || green.mask == 0 || blue.mask == 0) return {}; // a palette: no game's any more
    const auto width = static_cast<std::uint32_t>(image.width);
    const auto height = static_cast<std::uint32_t>(image.height);
    const std::size_t row = BitmapStride(width, 24);
    std::string bitmap = BitmapHead24(width, height);
    bitmap.reserve(bitmap.size() + row * height);
    for (int y = image.height - 1; y >= 0; --y) {
        for (int x = 0; x < image.width; ++x) {
            const unsigned long pixel = XGetPixel(&image, x, y);
            bitmap += {blue.Of(pixel), green.Of(pixel), red.Of(pixel)};
        }
        bitmap.append(row - std::size_t{width} * 3, '\0');
    }
    return bitmap;
}

} // namespace

std::string PictureOfWindow(Display* display, ::Window window) {
    Area area;
    if (!ShownArea(display, window, area)) return {};
    const std::unique_ptr<XImage, int (*)(XImage*)> image(
        XGetImage(display, window, area.x, area.y, static_cast<unsigned>(area.width),
                  static_cast<unsigned>(area.height), AllPlanes, ZPixmap),
        [](XImage* taken) { return XDestroyImage(taken); });
    return image == nullptr ? std::string() : BitmapOf(*image);
}

} // namespace kelvash::platform
