// A line that shows a path: what doesn't fit is left out of its middle, and the tool tip has all of it.
#pragma once

#include <QLabel>

namespace kelvash::ui {

class PathLabel final : public QLabel {
    Q_OBJECT

  public:
    explicit PathLabel(QWidget* parent);
    // An empty path shows the other text, without a tool tip.
    void SetPath(const QString& path, const QString& when_empty);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace kelvash::ui
