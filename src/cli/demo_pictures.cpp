#include <algorithm>
#include <array>
#include <cmath>

#include "cli/demo_files.h"
#include "foundation/bitmap_head.h"
#include "foundation/bytes.h"

namespace kelvash::cli {

namespace {

constexpr int kWidth = 320;
constexpr int kHeight = 240;

struct Colour {
    int red, green, blue;
};

Colour Mixed(Colour a, Colour b, double share) {
    const auto mix = [share](int from, int to) { return static_cast<int>(from + (to - from) * share); };
    return {mix(a.red, b.red), mix(a.green, b.green), mix(a.blue, b.blue)};
}

// Heights of three rows of hills, the farthest first.
double HillTop(int row, int x, unsigned seed) {
    const double phase = 1.3 * row + 0.7 * seed;
    return 90 - 28.0 * row + 18 * std::sin(x / (38.0 - 7 * row) + phase) + 7 * std::sin(x / 11.0 + 2 * phase);
}

Colour PointOf(int x, int y, unsigned seed) {
    constexpr std::array<Colour, 4> kEvenings = {
        {{250, 190, 110}, {240, 150, 150}, {170, 210, 240}, {200, 230, 170}}};
    constexpr Colour kNight{30, 40, 90};
    constexpr Colour kGround{24, 34, 30};
    const Colour evening = kEvenings[seed % kEvenings.size()];
    Colour colour = Mixed(evening, kNight, static_cast<double>(y) / kHeight);
    const double sun = std::hypot(x - 60 - 50.0 * (seed % 5), y - 110.0);
    if (sun < 24) colour = {255, 244, 214};
    for (int row = 0; row < 3; ++row)
        if (y < HillTop(row, x, seed)) colour = Mixed(evening, kGround, 0.45 + 0.25 * row);
    return colour;
}

} // namespace

std::string LandscapeBitmap(unsigned seed) {
    std::string bytes = BitmapHead24(kWidth, kHeight);
    for (int y = 0; y < kHeight; ++y) // rows from bottom to top, of a width that needs no padding
        for (int x = 0; x < kWidth; ++x) {
            const Colour colour = PointOf(x, y, seed);
            for (const int value : {colour.blue, colour.green, colour.red})
                bytes += static_cast<char>(value);
        }
    return bytes;
}

std::string GridPcx() {
    constexpr std::int16_t kSide = 32;
    constexpr std::uint8_t kRunMark = 0xC0; // with the length of a run in its low bits
    constexpr std::size_t kHeadSize = 128;
    ByteWriter bytes;
    bytes.Bytes("\x0A\x05\x01\x08"); // maker, version, run-length packed, bits
    for (const std::int16_t value : std::array<std::int16_t, 6>{0, 0, kSide - 1, kSide - 1, 72, 72})
        bytes.Put<std::int16_t>(value);
    bytes.Zeros(48 + 1);
    bytes.Put<std::uint8_t>(1); // planes
    bytes.Put<std::int16_t>(kSide);
    bytes.Put<std::int16_t>(1);
    bytes.Zeros(kHeadSize - bytes.Size());
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; x += 8) {
            bytes.Put<std::uint8_t>(kRunMark + 8);
            bytes.Put<std::uint8_t>((x / 8 + y / 8) % 2 == 0 ? 0 : 1);
        }
    bytes.Put<std::uint8_t>(12); // a palette follows
    bytes.Bytes(std::string(3, '\x20') + std::string(3, '\xE0'));
    bytes.Zeros(std::size_t{254} * 3);
    return bytes.Take();
}

std::string PagePdf(const std::vector<std::string>& lines) {
    std::string page = "BT /F1 14 Tf 72 740 Td 20 TL\n";
    for (const std::string& line : lines)
        page += "(" + line + ") Tj T*\n";
    page += "ET";
    const std::array<std::string, 5> objects = {
        "<< /Type /Catalog /Pages 2 0 R >>", "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
        "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R "
        "/Resources << /Font << /F1 5 0 R >> >> >>",
        "<< /Length " + std::to_string(page.size()) + " >>\nstream\n" + page + "\nendstream",
        "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica >>"};
    std::string bytes = "%PDF-1.4\n";
    std::string table = "xref\n0 6\n0000000000 65535 f \n";
    for (std::size_t i = 0; i < objects.size(); ++i) {
        const std::string offset = std::to_string(bytes.size());
        table += std::string(10 - offset.size(), '0') + offset + " 00000 n \n";
        bytes += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::size_t start = bytes.size();
    return bytes + table + "trailer\n<< /Size 6 /Root 1 0 R >>\nstartxref\n" + std::to_string(start) +
           "\n%%EOF\n";
}

} // namespace kelvash::cli
