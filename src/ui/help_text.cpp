#include "ui/help_text.h"

#include <algorithm>

#include "foundation/text.h"

namespace kelvash::ui {

namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// A text in upper case that still knows where its characters come from.
struct FoldedText {
    std::string text;
    // For each byte of `text` the position of its character in the original; at the end the original's size.
    std::vector<std::size_t> origin;
};

bool BeginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0) != 0x80;
}

FoldedText Fold(std::string_view text) {
    FoldedText folded{FoldCase(text), {}};
    folded.origin.reserve(folded.text.size() + 1);
    // Folding goes character by character, so both texts have the same number of them.
    std::size_t at = 0;
    for (std::size_t i = 0; i < folded.text.size(); ++i) {
        if (i > 0 && BeginsCharacter(folded.text[i])) {
            ++at;
            while (at < text.size() && !BeginsCharacter(text[at]))
                ++at;
        }
        folded.origin.push_back(std::min(at, text.size()));
    }
    folded.origin.push_back(text.size());
    return folded;
}

bool IsSeparator(char c) {
    return std::string_view("{}[] .=;:,()\r\n").find(c) != std::string_view::npos;
}

bool IsWholeWord(std::string_view text, std::size_t position, std::size_t length) {
    const std::size_t end = position + length;
    return (position == 0 || IsSeparator(text[position - 1])) &&
           (end == text.size() || IsSeparator(text[end]));
}

} // namespace

std::string TextToShow(std::string_view bytes) {
    const bool is_utf8 = IsUtf8(bytes);
    if (is_utf8)
        while (bytes.starts_with(kByteOrderMark))
            bytes.remove_prefix(kByteOrderMark.size());
    const std::string text = is_utf8 ? std::string(bytes) : Utf8FromAnsi(bytes);
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r')
            shown += text[i];
        else if (i + 1 == text.size() || text[i + 1] != '\n')
            shown += '\n';
    }
    return shown;
}

std::vector<HelpTopic> HelpTopics(std::string_view text, TopicKind kind) {
    const char opening = kind == TopicKind::Main ? '[' : '{';
    const char closing = kind == TopicKind::Main ? ']' : '}';
    std::vector<HelpTopic> topics;
    std::optional<std::size_t> begin;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (!begin && text[i] == opening) {
            begin = i;
        } else if (begin && text[i] == closing) {
            topics.push_back({std::string(text.substr(*begin + 1, i - *begin - 1)), *begin});
            begin.reset();
        }
    }
    return topics;
}

std::optional<std::size_t> FindMark(std::string_view text, int number) {
    const std::size_t found = text.find("#" + std::to_string(number) + "#");
    return found == std::string_view::npos ? std::nullopt : std::optional(found);
}

std::optional<TextMatch> FindText(std::string_view text, std::string_view what, std::size_t from,
                                  SearchDirection direction, SearchUnit unit) {
    const std::string sought = FoldCase(what);
    const FoldedText folded = Fold(text);
    if (sought.empty() || sought.size() > folded.text.size()) return std::nullopt;
    const auto is_hit = [&](std::size_t at) {
        return unit == SearchUnit::Anywhere || IsWholeWord(folded.text, at, sought.size());
    };
    const auto match = [&](std::size_t at) {
        const std::size_t begin = folded.origin[at];
        return TextMatch{begin, folded.origin[at + sought.size()] - begin};
    };
    const auto& origin = folded.origin;
    if (direction == SearchDirection::Forward) {
        const auto start = std::lower_bound(origin.begin(), origin.end(), from) - origin.begin();
        for (std::size_t at = static_cast<std::size_t>(start);
             (at = folded.text.find(sought, at)) != std::string::npos; ++at)
            if (is_hit(at)) return match(at);
        return std::nullopt;
    }
    // The last byte at which a match may end.
    const auto end =
        static_cast<std::size_t>(std::upper_bound(origin.begin(), origin.end(), from) - origin.begin());
    if (end == 0 || end - 1 < sought.size()) return std::nullopt;
    for (std::size_t at = end - 1 - sought.size(); (at = folded.text.rfind(sought, at)) != std::string::npos;
         --at) {
        if (is_hit(at)) return match(at);
        if (at == 0) break;
    }
    return std::nullopt;
}

} // namespace kelvash::ui
