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

// A line as the format reads it: the characters of its title, or of nothing but marks.
struct FormatLine {
    std::size_t begin;
    std::size_t length;
    std::optional<TopicKind> title;
};

// The end of a "#number#" that begins at a position; the position itself if there is none.
std::size_t EndOfMark(std::string_view line, std::size_t at) {
    if (at >= line.size() || line[at] != '#') return at;
    const std::size_t end = line.find_first_not_of("0123456789", at + 1);
    return end == std::string_view::npos || end == at + 1 || line[end] != '#' ? at : end + 1;
}

// Passes over blanks and marks; counts the marks.
std::size_t PassMarks(std::string_view line, std::size_t at, int& marks) {
    for (;;) {
        while (at < line.size() && (line[at] == ' ' || line[at] == '\t'))
            ++at;
        const std::size_t end = EndOfMark(line, at);
        if (end == at) return at;
        ++marks;
        at = end;
    }
}

// Nothing for a line that is text.
std::optional<FormatLine> ReadFormatLine(std::string_view line) {
    int marks = 0;
    const std::size_t open = PassMarks(line, 0, marks);
    if (open == line.size()) return marks > 0 ? std::optional(FormatLine{0, 0, {}}) : std::nullopt;
    const bool main = line[open] == '[';
    if (!main && line[open] != '{') return std::nullopt;
    const std::size_t close = line.find(main ? ']' : '}', open);
    if (close == std::string_view::npos || PassMarks(line, close + 1, marks) != line.size())
        return std::nullopt;
    return FormatLine{open + 1, close - open - 1, main ? TopicKind::Main : TopicKind::Sub};
}

} // namespace

std::size_t ShownHelp::PositionOf(std::size_t in_file) const {
    std::size_t left_out = 0;
    for (const Gap& gap : gaps) {
        if (gap.position >= in_file) break;
        left_out += std::min(gap.length, in_file - gap.position);
    }
    return std::min(in_file - left_out, text.size());
}

ShownHelp WithoutMarks(std::string_view text) {
    ShownHelp shown;
    const auto leave_out = [&](std::size_t begin, std::size_t end) {
        if (end > begin) shown.gaps.push_back({begin, end - begin});
    };
    std::size_t lines = 0;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t break_at = std::min(text.find('\n', begin), text.size());
        const std::size_t next = std::min(break_at + 1, text.size());
        const std::string_view line = text.substr(begin, break_at - begin);
        const std::optional<FormatLine> format = ReadFormatLine(line);
        if (!format) {
            shown.text += text.substr(begin, next - begin);
            ++lines;
        } else if (format->title) {
            leave_out(begin, begin + format->begin);
            leave_out(begin + format->begin + format->length, break_at);
            shown.titles.push_back({lines++, *format->title});
            shown.text += line.substr(format->begin, format->length);
            shown.text += text.substr(break_at, next - break_at);
        } else {
            leave_out(begin, next);
        }
        begin = next;
    }
    return shown;
}

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
