#include "foundation/clipboard_bitmap.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "foundation/bytes.h"

namespace kelvash {

namespace {

constexpr std::size_t kFileHead = 14;
constexpr std::size_t kInfoHead = 40; // the first of those with packing and palette
// How pixels are packed: by masks of three colours, or of four.
constexpr std::uint32_t kThreeMasks = 3;
constexpr std::uint32_t kFourMasks = 6;
constexpr std::size_t kMostColours = 256;

// Bytes of head, masks and palette.
std::optional<std::size_t> HeadOf(std::string_view dib) {
    ByteReader reader(dib);
    const std::size_t head = reader.Get<std::uint32_t>();
    reader.Skip(10); // width, height, planes
    const unsigned bits = reader.Get<std::uint16_t>();
    const auto packing = reader.Get<std::uint32_t>();
    reader.Skip(12); // size of the pixels, resolution
    const std::size_t stated = reader.Get<std::uint32_t>();
    if (dib.size() < kInfoHead || head < kInfoHead) return std::nullopt;
    // A larger head has the masks in it.
    std::size_t masks = 0;
    if (head == kInfoHead && packing == kThreeMasks) masks = 12;
    if (head == kInfoHead && packing == kFourMasks) masks = 16;
    const std::size_t most = bits <= 8 ? std::size_t{1} << bits : kMostColours;
    const std::size_t colours = stated == 0 && bits <= 8 ? most : std::min(stated, most);
    const std::size_t size = head + masks + colours * 4;
    return size < dib.size() ? std::optional(size) : std::nullopt;
}

} // namespace

std::optional<std::string> FileOfDib(std::string_view dib) {
    const std::optional<std::size_t> head = HeadOf(dib);
    if (!head) return std::nullopt;
    ByteWriter file;
    file.Bytes("BM");
    file.Put<std::uint32_t>(static_cast<std::uint32_t>(kFileHead + dib.size()));
    file.Zeros(4);
    file.Put<std::uint32_t>(static_cast<std::uint32_t>(kFileHead + *head));
    file.Bytes(dib);
    return file.Take();
}

std::optional<std::string> DibOfFile(std::string_view file) {
    if (file.size() <= kFileHead || !file.starts_with("BM")) return std::nullopt;
    const std::string_view dib = file.substr(kFileHead);
    const std::optional<std::size_t> head = HeadOf(dib);
    const std::size_t pixels = ByteReader(file.substr(10)).Get<std::uint32_t>();
    if (!head || pixels < kFileHead + *head || pixels >= file.size()) return std::nullopt;
    return std::string(dib.substr(0, *head)).append(file.substr(pixels));
}

} // namespace kelvash
