// A page beside others that scrolls by itself where it has too little room in height. It never gets narrower
// than its controls, and stands still as long as they can be made to fit.
#pragma once

#include <QScrollArea>

namespace kelvash::ui {

class PageArea final : public QScrollArea {
    Q_OBJECT

  public:
    explicit PageArea(QWidget* parent);
    // The page has a layout; the area owns it.
    void SetPage(QWidget* page);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  private:
    bool event(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void Fit();

    int least_width_ = 0; // of the page, as it was told to the window
};

} // namespace kelvash::ui
