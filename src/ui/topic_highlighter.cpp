#include "ui/topic_highlighter.h"

#include <QRegularExpression>

namespace kelvash::ui {

TopicHighlighter::TopicHighlighter(QTextDocument* document) : QSyntaxHighlighter(document) {
    main_.setFontWeight(QFont::Bold);
    sub_.setFontWeight(QFont::Bold);
}

void TopicHighlighter::SetColours(const QPalette& palette) {
    main_.setForeground(palette.color(QPalette::Active, QPalette::Link));
    marker_.setForeground(palette.color(QPalette::Active, QPalette::PlaceholderText));
    rehighlight();
}

void TopicHighlighter::highlightBlock(const QString& text) {
    static const QRegularExpression kTitle(QStringLiteral(R"(\[[^\]]*\]|\{[^}]*\})"));
    static const QRegularExpression kMark(QStringLiteral(R"(^#\d+#\s*$)"));
    if (kMark.match(text).hasMatch()) {
        setFormat(0, static_cast<int>(text.size()), marker_);
        return;
    }
    for (const QRegularExpressionMatch& title : kTitle.globalMatch(text)) {
        const int start = static_cast<int>(title.capturedStart());
        const int length = static_cast<int>(title.capturedLength());
        setFormat(start, length, text.at(start) == QLatin1Char('[') ? main_ : sub_);
        setFormat(start, 1, marker_);
        setFormat(start + length - 1, 1, marker_);
    }
}

} // namespace kelvash::ui
