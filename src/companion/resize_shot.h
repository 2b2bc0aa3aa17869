// Pictures in handier sizes, for sites and mails: the logic of Dialog_Resize.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "companion/shot_commands.h"
#include "foundation/message_text.h"
#include "swap/picture_codec.h"

namespace kelvash::companion {

struct ShotSize {
    std::uint32_t Width;
    std::uint32_t Height;
};
inline constexpr std::array<ShotSize, 8> kShotSizes = {
    {{480, 360}, {440, 330}, {400, 300}, {360, 270}, {320, 240}, {240, 180}, {200, 150}, {160, 120}}};
// How a list shows a size: "   480 X 360".
std::string ShotSizeText(const ShotSize& size);

struct ShotQuality {
    MessageId Name;
    int Value; // of JPEG
};
// "Highest" to "Least".
std::array<ShotQuality, 5> ShotQualities();

// False, after a message, for the default picture and for one that can't be read.
[[nodiscard]] bool BeginResize(const std::string& path, swap::Picture& picture);

// Asks where to, saves the resized picture there with the date of the one it comes from, puts the path on the
// clipboard and tells so. False if the user gives up, or after a message.
[[nodiscard]] bool SaveResized(std::int32_t code, const std::string& path, const swap::Picture& resized,
                               int quality, const CopyText& copy);

} // namespace kelvash::companion
