#include "foundation/clipboard_bitmap.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace kelvash {

namespace {

constexpr std::size_t kFileHead = 14;
constexpr std::size_t kInfoHead = 40; // the first of those with packing and palette
// How pixels are packed: by masks of three colours, or of four.
constexpr std::uint32_t kThreeMasks = 3;
constexpr std::uint32_t kFourMasks = 6;
constexpr std::size_t kMostColours = 256;

std::uint32_t NumberAt(std::string_view bytes, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = 4; i-- > 0;)
        number = number << 8 | static_cast<unsigned char>(bytes[at + i]);
    return number;
}

void Append(std::string& bytes, std::size_t number) {
    for (int shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<char>(number >> shift & 0xFF));
}

// Bytes of head, masks and palette.
std::optional<std::size_t> HeadOf(std::string_view dib) {
    if (dib.size() < kInfoHead) return std::nullopt;
    const std::size_t head = NumberAt(dib, 0);
    if (head < kInfoHead) return std::nullopt;
    const std::uint32_t bits = NumberAt(dib, 14) & 0xFFFF;
    const std::uint32_t packing = NumberAt(dib, 16);
    // A larger head has the masks in it.
    std::size_t masks = 0;
    if (head == kInfoHead && packing == kThreeMasks) masks = 12;
    if (head == kInfoHead && packing == kFourMasks) masks = 16;
    const std::size_t most = bits <= 8 ? std::size_t{1} << bits : kMostColours;
    std::size_t colours = std::min<std::size_t>(NumberAt(dib, 32), most);
    if (colours == 0 && bits <= 8) colours = most;
    const std::size_t size = head + masks + colours * 4;
    return size < dib.size() ? std::optional(size) : std::nullopt;
}

} // namespace

std::optional<std::string> FileOfDib(std::string_view dib) {
    const std::optional<std::size_t> head = HeadOf(dib);
    if (!head) return std::nullopt;
    std::string file = "BM";
    Append(file, kFileHead + dib.size());
    Append(file, 0);
    Append(file, kFileHead + *head);
    return file.append(dib);
}

std::optional<std::string> DibOfFile(std::string_view file) {
    if (file.size() <= kFileHead || !file.starts_with("BM")) return std::nullopt;
    const std::string_view dib = file.substr(kFileHead);
    const std::optional<std::size_t> head = HeadOf(dib);
    const std::size_t pixels = NumberAt(file, 10);
    if (!head || pixels < kFileHead + *head || pixels >= file.size()) return std::nullopt;
    return std::string(dib.substr(0, *head)).append(file.substr(pixels));
}

} // namespace kelvash
