// The help file as a text: its topics, its marks, and the search in it.
//
// In the file "[" and "]" enclose the title of a main topic, "{" and "}" that of a sub-topic, and a number
// between two "#" marks a place that a form's help button refers to. Nothing here knows of the file or of a
// window.
//
// Texts are UTF-8; positions and lengths count bytes. Who shows the text elsewhere than in bytes converts.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash::ui {

// The bytes of a text file as a text to show: UTF-8 if they are that throughout, else taken for Windows-1252,
// with LF as the only line end and without a byte order mark. A text that has been through this stays as it
// is.
std::string TextToShow(std::string_view bytes);

enum class TopicKind { Main, Sub };

struct HelpTopic {
    std::string title;    // as it stands in the text, line ends included
    std::size_t position; // of the opening character
};

// The topics of one kind in the order of the text. A title goes from the opening character to the first
// closing one: a further opening character within it is part of the title, a closing one outside of any title
// is text. So a title that is never closed takes in what follows up to the end of the next one of its kind,
// and is no topic if there is none. The two kinds don't see each other's characters.
std::vector<HelpTopic> HelpTopics(std::string_view text, TopicKind kind);

// A text of the help file as it is read: a line that is a title stands without its characters, one that holds
// nothing but marks is gone, and the marks beside a title with it. Whatever stands elsewhere is text.
struct ShownHelp {
    struct Title {
        std::size_t line; // of `text`, from 0
        TopicKind kind;
    };
    std::string text;
    std::vector<Title> titles; // in the order of the text

    // Where a position of the file's text is in the shown one; what is not shown is where the text behind it
    // is.
    std::size_t PositionOf(std::size_t in_file) const;

    // Bytes that are left out: where they stood in the file's text.
    struct Gap {
        std::size_t position;
        std::size_t length;
    };
    std::vector<Gap> gaps;
};
ShownHelp WithoutMarks(std::string_view text);

// Position of the first "#number#"; nothing if the text doesn't have it.
std::optional<std::size_t> FindMark(std::string_view text, int number);

enum class SearchDirection { Forward, Backward };
enum class SearchUnit { Anywhere, WholeWord };

struct TextMatch {
    std::size_t position;
    std::size_t length; // can differ from that of the sought text: case changes the length of some characters
};

// The first occurrence that begins at or behind `from`, or the last that ends at or before it, without regard
// to case. A whole word has at both sides one of the separators {}[] .=;:,() or an end of a line or of the
// text. Nothing for an empty `what`.
std::optional<TextMatch> FindText(std::string_view text, std::string_view what, std::size_t from,
                                  SearchDirection direction, SearchUnit unit);

} // namespace kelvash::ui
