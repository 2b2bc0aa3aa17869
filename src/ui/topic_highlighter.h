// Sets the titles of topics off from the text around them and lets the markers recede.
#pragma once

#include <QPalette>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>

namespace kelvash::ui {

class TopicHighlighter final : public QSyntaxHighlighter {
  public:
    explicit TopicHighlighter(QTextDocument* document);
    // Takes the colours of a theme and paints anew.
    void SetColours(const QPalette& palette);

  private:
    void highlightBlock(const QString& text) override;

    QTextCharFormat main_;
    QTextCharFormat sub_;
    QTextCharFormat marker_;
};

} // namespace kelvash::ui
