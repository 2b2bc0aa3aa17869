#include "companion/picture_scaling.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace kelvash::companion {

namespace {

constexpr std::size_t kPixel = 3; // bytes

// How much each old place gives to a new one.
struct Share {
    std::size_t first = 0;
    std::vector<float> parts; // their sum is 1
};

// A triangle around the middle of the new place, as wide as what it stands for, two old places at least.
std::vector<Share> SharesOf(std::uint32_t before, std::uint32_t after) {
    const double scale = static_cast<double>(before) / after;
    const double reach = std::max(scale, 1.0);
    std::vector<Share> shares(after);
    for (std::uint32_t at = 0; at < after; ++at) {
        const double middle = (at + 0.5) * scale - 0.5;
        const auto first = static_cast<std::int64_t>(std::ceil(middle - reach));
        const auto last = static_cast<std::int64_t>(std::floor(middle + reach));
        Share& share = shares[at];
        share.first = static_cast<std::size_t>(std::max<std::int64_t>(first, 0));
        const auto end = std::min<std::int64_t>(last, std::int64_t{before} - 1);
        double sum = 0;
        for (auto i = static_cast<std::int64_t>(share.first); i <= end; ++i) {
            const double part = std::max(0.0, 1 - std::abs(static_cast<double>(i) - middle) / reach);
            share.parts.push_back(static_cast<float>(part));
            sum += part;
        }
        for (float& part : share.parts)
            part /= static_cast<float>(sum);
    }
    return shares;
}

// One colour of a row or a column: `step` bytes lie between two places.
char Mixed(const char* values, std::size_t step, const Share& share) {
    float sum = 0.5F;
    const char* at = values + share.first * step;
    for (const float part : share.parts) {
        sum += part * static_cast<float>(static_cast<unsigned char>(*at));
        at += step;
    }
    return static_cast<char>(static_cast<unsigned char>(std::min(sum, 255.0F)));
}

swap::Picture Widened(const swap::Picture& picture, std::uint32_t width) {
    swap::Picture result{width, picture.Height, {}};
    result.Pixels.reserve(std::size_t{width} * picture.Height * kPixel);
    const std::vector<Share> shares = SharesOf(picture.Width, width);
    for (std::uint32_t y = 0; y < picture.Height; ++y) {
        const char* const row = picture.Row(y).data();
        for (const Share& share : shares)
            for (std::size_t colour = 0; colour < kPixel; ++colour)
                result.Pixels.push_back(Mixed(row + colour, kPixel, share));
    }
    return result;
}

} // namespace

swap::Picture Stretched(const swap::Picture& picture, std::uint32_t width, std::uint32_t height) {
    const swap::Picture wide = Widened(picture, width);
    swap::Picture result{width, height, {}};
    const std::size_t row = std::size_t{width} * kPixel;
    result.Pixels.reserve(row * height);
    for (const Share& share : SharesOf(wide.Height, height))
        for (std::size_t x = 0; x < row; ++x)
            result.Pixels.push_back(Mixed(wide.Pixels.data() + x, row, share));
    return result;
}

} // namespace kelvash::companion
