// Sets the titles of topics off from the text around them.
#pragma once

#include <QPalette>
#include <QSyntaxHighlighter>
#include <QTextCharFormat>
#include <vector>

#include "ui/help_text.h"

namespace kelvash::ui {

class TopicHighlighter final : public QSyntaxHighlighter {
  public:
    explicit TopicHighlighter(QTextDocument* document);
    // The lines that are titles; what was set off before isn't any more.
    void SetTitles(std::vector<ShownHelp::Title> titles);
    // Takes the colours of a theme and paints anew.
    void SetColours(const QPalette& palette);

  private:
    void highlightBlock(const QString& text) override;

    QTextCharFormat main_;
    QTextCharFormat sub_;
    std::vector<ShownHelp::Title> titles_;
};

} // namespace kelvash::ui
