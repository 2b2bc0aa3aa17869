// A button that shows its icon alone. Its caption is what it is called: the tool tip and screen readers say
// it.
#pragma once

#include <QPushButton>

namespace kelvash::ui {

class IconButton final : public QPushButton {
    Q_OBJECT

  public:
    using QPushButton::QPushButton;
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  private:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;
};

} // namespace kelvash::ui
