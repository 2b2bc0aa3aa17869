#include "foundation/collation.h"

#include <cstddef>

#include "foundation/text.h"

namespace kelvash {

namespace {

// What the letters from U+00C0 to U+017F are sorted as; digits stand for the pairs, a blank for itself.
constexpr std::string_view kBases =
    "AAAAAA1CEEEEIIII"
    "DNOOOOO OUUUUY23"
    "AAAAAA1CEEEEIIII"
    "DNOOOOO OUUUUY2Y"
    "AAAAAACCCCCCCCDD"
    "DDEEEEEEEEEEGGGG"
    "GGGGHHHHIIIIIIII"
    "II44JJKKKLLLLLLL"
    "LLLNNNNNNNNNOOOO"
    "OO55RRRRRRSSSSSS"
    "SSTTTTTTUUUUUUUU"
    "UUUUWWYYYZZZZZZS";
constexpr std::string_view kPairs[] = {"AE", "TH", "SS", "IJ", "OE"};
constexpr unsigned kFirst = 0xC0;
static_assert(kBases.size() == 0x180 - kFirst);

// What a character of two bytes is sorted as; itself where nothing else is known.
std::string_view BaseOf(std::string_view character, unsigned code) {
    constexpr unsigned kMarks = 0x300, kBehindMarks = 0x370; // those that combine with the letter before
    if (code >= kMarks && code < kBehindMarks) return {};
    if (code < kFirst || code - kFirst >= kBases.size()) return character;
    const std::string_view base = kBases.substr(code - kFirst, 1);
    if (base == " ") return character;
    return base[0] >= '1' && base[0] <= '5' ? kPairs[base[0] - '1'] : base;
}

} // namespace

std::string CollationKey(std::string_view text) {
    const std::string folded = FoldCase(text);
    std::string key;
    key.reserve(2 * folded.size() + 1);
    for (std::size_t i = 0; i < folded.size();) {
        const auto lead = static_cast<unsigned char>(folded[i]);
        const bool is_pair = lead >= 0xC3 && lead <= 0xCD && i + 1 < folded.size();
        const std::string_view character = std::string_view(folded).substr(i, is_pair ? 2 : 1);
        key += is_pair ? BaseOf(character,
                                (lead & 0x1Fu) << 6 | (static_cast<unsigned char>(folded[i + 1]) & 0x3Fu))
                       : character;
        i += character.size();
    }
    // Behind what sorts before any character: texts that differ no further.
    if (key != folded) key += '\0' + folded;
    return key;
}

} // namespace kelvash
