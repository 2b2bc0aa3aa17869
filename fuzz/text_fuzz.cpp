// Any bytes as texts, names and masks: folding twice is folding once, the ANSI code page gives every byte
// back, a mask made of a name finds that name, and what is cleaned for showing is clean.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "foundation/bytes.h"
#include "foundation/path.h"
#include "foundation/plain_name.h"
#include "foundation/text.h"

namespace {

using namespace kelvash;

void Require(bool truth) {
    if (!truth) std::abort();
}

void CheckNames(const std::string& a, const std::string& b) {
    const std::string folded = FoldCase(a);
    Require(FoldCase(folded) == folded);
    Require(EqualNoCase(a, folded));
    Require((CompareNoCase(a, b) < 0) == (CompareNoCase(b, a) > 0));
    Require(EqualNoCase(a, b) == (CompareNoCase(a, b) == 0));
    Require(MatchesMask(a, "*"));
    // A "?" of the mask takes stray bytes behind the name's own "?" along.
    if (a.find('?') == std::string::npos) Require(MatchesMask(a, a + "*"));
    if (a.find_first_of("*?") == std::string::npos) Require(MatchesMask(a, a));
    static_cast<void>(MatchesMask(a, b));
}

void CheckAnsi(const std::string& bytes) {
    Require(AnsiFromUtf8(Utf8FromAnsi(bytes)) == bytes);
    for (const std::size_t width : {0U, 1U, 7U, 256U}) {
        ByteWriter writer;
        writer.Text(Utf8FromAnsi(bytes), width);
        const std::string field = writer.Take();
        Require(field.size() == width);
        Require(ByteReader(field).Text(width) == FitText(Utf8FromAnsi(bytes), width));
    }
}

void CheckLists(const std::string& text) {
    const auto pieces = Split(text, '|');
    Require(pieces.size() ==
            (text.empty() ? 0U : 1U + static_cast<std::size_t>(std::count(text.begin(), text.end(), '|'))));
    Require(Join(pieces, "|") == text);
    std::size_t position = 0;
    while (!NextNumberIn(text, position).empty())
        Require(position <= text.size());
    for (position = 0; position < text.size();) {
        const std::size_t before = position;
        NextLineIn(text, position);
        Require(position > before);
    }
    const std::string safe = SafeFileName(text);
    Require(safe.find_first_of("/\\<>:?|\"") == std::string::npos && safe.size() == text.size());
    static_cast<void>(LeadingNumber(text));
    static_cast<void>(WholeNumber(text));
}

// What is shown holds nothing that works on a terminal, and showing it again changes nothing.
void CheckShown(const std::string& bytes) {
    const std::string text = CleanText(bytes);
    const std::string line = CleanLine(bytes);
    Require(IsUtf8(text) && CleanText(text) == text && text.find('\x1B') == std::string::npos);
    Require(!HoldsControls(line) && CleanLine(line) == line);
}

void CheckPlainName(const std::string& bytes) {
    const std::optional<PlainName> name = PlainName::From(bytes);
    Require(!name ||
            (name->Text() == bytes && FileNameOf(bytes) == bytes && CleanText(bytes).size() <= bytes.size()));
    Require(StaysInside("\\" + bytes) || !name);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Masks take the time of name by mask: long ones only cost.
    const std::string bytes(reinterpret_cast<const char*>(data), std::min<std::size_t>(size, 2000));
    const std::size_t half = bytes.size() / 2;
    CheckNames(bytes.substr(0, half), bytes.substr(half));
    CheckAnsi(bytes);
    CheckLists(bytes);
    CheckShown(bytes);
    CheckPlainName(bytes);
    return 0;
}
