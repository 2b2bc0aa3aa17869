#include "companion/black_test.h"

#include <algorithm>

namespace kelvash::companion {

namespace {

bool HasLight(std::string_view pixels) {
    return std::any_of(pixels.begin(), pixels.end(), [](char value) { return value != '\0'; });
}

} // namespace

bool IsImageNotBlack(const swap::Picture& picture) {
    constexpr std::size_t kPixel = 3; // bytes
    if (picture.Pixels.empty()) return false;
    if (HasLight(picture.Row(picture.Height / 2))) return true;
    for (std::uint32_t y = 0; y < picture.Height; ++y)
        if (HasLight(picture.Row(y).substr(picture.Width / 2 * kPixel, kPixel))) return true;
    return false;
}

} // namespace kelvash::companion
