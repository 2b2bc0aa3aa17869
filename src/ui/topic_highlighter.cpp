#include "ui/topic_highlighter.h"

#include <algorithm>
#include <utility>

namespace kelvash::ui {

TopicHighlighter::TopicHighlighter(QTextDocument* document) : QSyntaxHighlighter(document) {
    main_.setFontWeight(QFont::Bold);
    sub_.setFontWeight(QFont::Bold);
}

void TopicHighlighter::SetTitles(std::vector<ShownHelp::Title> titles) {
    titles_ = std::move(titles);
    rehighlight();
}

void TopicHighlighter::SetColours(const QPalette& palette) {
    main_.setForeground(palette.color(QPalette::Active, QPalette::Link));
    rehighlight();
}

void TopicHighlighter::highlightBlock(const QString& text) {
    const auto line = static_cast<std::size_t>(currentBlock().blockNumber());
    const auto title =
        std::lower_bound(titles_.begin(), titles_.end(), line,
                         [](const ShownHelp::Title& one, std::size_t sought) { return one.line < sought; });
    if (title == titles_.end() || title->line != line) return;
    setFormat(0, static_cast<int>(text.size()), title->kind == TopicKind::Main ? main_ : sub_);
}

} // namespace kelvash::ui
