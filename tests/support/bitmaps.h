// Bitmap files of every kind, made byte by byte.
//
// All show one picture: four blocks of flat colour that meet at (kEdge, kEdge), which is a border of JPEG's
// blocks, so that the colours come through that format unblurred. Width and height are chosen so that rows
// need padding.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::test {

struct Colour {
    int red, green, blue;
};

inline constexpr int kWidth = 37;
inline constexpr int kHeight = 35;
inline constexpr int kEdge = 16;
// Left above, right above, left below, right below.
inline constexpr std::array<Colour, 4> kBlocks = {
    {{248, 16, 24}, {24, 200, 32}, {32, 48, 232}, {240, 224, 16}}};
// What a bitmap of two colours shows: the first and the third block's colour in chequers.
inline constexpr std::array<Colour, 4> kTwoColourBlocks = {{kBlocks[0], kBlocks[1], kBlocks[1], kBlocks[0]}};

enum class BitmapHead { Core = 12, Info = 40, Info2 = 52, Info3 = 56, Os2 = 64, V4 = 108, V5 = 124 };
enum class Packing { Rgb = 0, Rle8 = 1, Rle4 = 2, BitFields = 3, AlphaBitFields = 6 };

struct BitmapKind {
    BitmapHead head = BitmapHead::Info;
    int bits = 24;
    Packing packing = Packing::Rgb;
    bool top_down = false;
    std::uint32_t red_mask = 0, green_mask = 0, blue_mask = 0; // BitFields
    unsigned colours = 0;                                      // palette entries in the file; 0: all
    bool states_colours = true;                                // false: the header says 0, which means all
    std::uint8_t fourth = 0;                                   // the byte that 32 bits leave over
    std::size_t gap = 0;                                       // bytes between head and pixels
    std::size_t tail = 0;                                      // bytes behind the pixels
    bool states_offset = true;                                 // false: the file's head says 0
    bool rle_skips = false; // leave the first colour's pixels out by deltas
};

class Bytes {
  public:
    Bytes& U8(unsigned value) {
        text_.push_back(static_cast<char>(value & 0xFF));
        return *this;
    }
    Bytes& U16(unsigned value) { return U8(value).U8(value >> 8); }
    Bytes& U32(std::uint32_t value) { return U16(value & 0xFFFF).U16(value >> 16); }
    Bytes& Text(const std::string& text) {
        text_ += text;
        return *this;
    }
    std::size_t size() const { return text_.size(); }
    void Pad(std::size_t multiple) {
        while (text_.size() % multiple != 0)
            text_.push_back('\0');
    }
    const std::string& text() const { return text_; }

  private:
    std::string text_;
};

// The block of a pixel, counted from the upper left.
inline int BlockAt(int x, int y) {
    return (y >= kEdge ? 2 : 0) + (x >= kEdge ? 1 : 0);
}

inline unsigned IndexAt(const BitmapKind& kind, int x, int y) {
    const int block = BlockAt(x, y);
    return kind.bits == 1 ? static_cast<unsigned>(block == 1 || block == 2) : static_cast<unsigned>(block);
}

// An 8-bit value put into the bits of a mask.
inline std::uint32_t IntoMask(int value, std::uint32_t mask) {
    if (mask == 0) return 0;
    unsigned shift = 0;
    while (((mask >> shift) & 1) == 0)
        ++shift;
    const std::uint64_t top = mask >> shift;
    return static_cast<std::uint32_t>((static_cast<std::uint64_t>(value) * top + 127) / 255) << shift;
}

inline std::string PlainRow(const BitmapKind& kind, int y) {
    Bytes row;
    unsigned gathered = 0;
    int held = 0;
    for (int x = 0; x < kWidth; ++x) {
        const Colour colour = kBlocks[static_cast<std::size_t>(BlockAt(x, y))];
        if (kind.bits <= 8) {
            gathered = gathered << kind.bits | IndexAt(kind, x, y);
            held += kind.bits;
            if (held == 8) row.U8(gathered), held = 0, gathered = 0;
        } else if (kind.packing == Packing::BitFields || kind.packing == Packing::AlphaBitFields) {
            const std::uint32_t value = IntoMask(colour.red, kind.red_mask) |
                                        IntoMask(colour.green, kind.green_mask) |
                                        IntoMask(colour.blue, kind.blue_mask);
            row.U16(value & 0xFFFF);
            if (kind.bits == 32) row.U16(value >> 16);
        } else if (kind.bits == 16) {
            row.U16(static_cast<unsigned>(colour.red >> 3 << 10 | colour.green >> 3 << 5 | colour.blue >> 3));
        } else {
            row.U8(static_cast<unsigned>(colour.blue));
            row.U8(static_cast<unsigned>(colour.green));
            row.U8(static_cast<unsigned>(colour.red));
            if (kind.bits == 32) row.U8(kind.fourth);
        }
    }
    if (held > 0) row.U8(gathered << (8 - held));
    row.Pad(4);
    return row.text();
}

// A row as one absolute run and one repeated run, so that both kinds are in the file.
inline std::string RleRow(const BitmapKind& kind, int y) {
    Bytes row;
    const bool nibbles = kind.packing == Packing::Rle4;
    const unsigned left = IndexAt(kind, 0, y);
    const unsigned right = IndexAt(kind, kEdge, y);
    if (kind.rle_skips && left == 0) {
        row.U8(0).U8(2).U8(kEdge).U8(0);
    } else {
        row.U8(0).U8(5);
        for (int i = 0; i < (nibbles ? 3 : 5); ++i)
            row.U8(nibbles ? left * 17 : left);
        row.U8(0); // absolute runs end on a border of 16 bits
        row.U8(kEdge - 5).U8(nibbles ? left * 17 : left);
    }
    row.U8(kWidth - kEdge).U8(nibbles ? right * 17 : right);
    return row.text();
}

inline std::string Pixels(const BitmapKind& kind) {
    const bool rle = kind.packing == Packing::Rle8 || kind.packing == Packing::Rle4;
    Bytes pixels;
    for (int i = 0; i < kHeight; ++i) {
        const int y = kind.top_down ? i : kHeight - 1 - i;
        pixels.Text(rle ? RleRow(kind, y) : PlainRow(kind, y));
        if (rle) pixels.U8(0).U8(i + 1 == kHeight ? 1 : 0);
    }
    return pixels.text();
}

inline std::string Palette(const BitmapKind& kind) {
    Bytes palette;
    if (kind.bits > 8) return {};
    const unsigned entries = kind.colours != 0 ? kind.colours : 1U << kind.bits;
    for (unsigned i = 0; i < entries; ++i) {
        const Colour colour = i < kBlocks.size() ? kBlocks[i] : Colour{128, 128, 128};
        palette.U8(static_cast<unsigned>(colour.blue));
        palette.U8(static_cast<unsigned>(colour.green));
        palette.U8(static_cast<unsigned>(colour.red));
        if (kind.head != BitmapHead::Core) palette.U8(0);
    }
    return palette.text();
}

// The head with the masks that belong to it or stand behind it.
inline std::string Head(const BitmapKind& kind, std::size_t pixel_bytes) {
    const unsigned size = static_cast<unsigned>(kind.head);
    Bytes head;
    head.U32(size);
    if (kind.head == BitmapHead::Core) {
        head.U16(kWidth).U16(kHeight).U16(1).U16(static_cast<unsigned>(kind.bits));
        return head.text();
    }
    head.U32(kWidth);
    head.U32(static_cast<std::uint32_t>(kind.top_down ? -kHeight : kHeight));
    head.U16(1).U16(static_cast<unsigned>(kind.bits)).U32(static_cast<std::uint32_t>(kind.packing));
    head.U32(static_cast<std::uint32_t>(pixel_bytes)).U32(2835).U32(2835);
    head.U32(kind.states_colours ? kind.colours : 0).U32(0);
    const bool masks = kind.packing == Packing::BitFields || kind.packing == Packing::AlphaBitFields;
    if (masks || size >= 52) {
        if (kind.head != BitmapHead::Os2) head.U32(kind.red_mask).U32(kind.green_mask).U32(kind.blue_mask);
        if (kind.packing == Packing::AlphaBitFields && size < 56) head.U32(0);
    }
    while (head.size() < size)
        head.U8(0);
    return head.text();
}

inline std::string MakeBitmap(const BitmapKind& kind) {
    const std::string pixels = Pixels(kind);
    const std::string head = Head(kind, pixels.size());
    const std::string palette = Palette(kind);
    const std::size_t offset = 14 + head.size() + palette.size() + kind.gap;
    Bytes file;
    file.Text("BM").U32(static_cast<std::uint32_t>(offset + pixels.size()));
    file.U32(0).U32(kind.states_offset ? static_cast<std::uint32_t>(offset) : 0);
    file.Text(head).Text(palette).Text(std::string(kind.gap, '\x55')).Text(pixels);
    file.Text(std::string(kind.tail, '\xAA'));
    return file.text();
}

} // namespace kelvash::test
