// Lines of which is left out what doesn't fit; then the tool tip has all of them. However long the text, they
// leave the room of the window as it is.
#pragma once

#include <QLabel>

namespace kelvash::ui {

class ElidedLabel : public QLabel {
    Q_OBJECT

  public:
    ElidedLabel(QWidget* parent, Qt::TextElideMode left_out);
    void SetLine(const QString& line);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

  private:
    QRect Room() const;
    Qt::TextElideMode left_out_;
};

// A path in a frame, its middle left out first.
class PathLabel final : public ElidedLabel {
    Q_OBJECT

  public:
    explicit PathLabel(QWidget* parent);
    // An empty path shows the other text, without a tool tip.
    void SetPath(const QString& path, const QString& when_empty);
};

} // namespace kelvash::ui
