// A picture as large as it is wanted, to be scrolled over.
#pragma once

#include <QPixmap>
#include <QWidget>

namespace kelvash::ui {

class ZoomView final : public QWidget {
    Q_OBJECT

  public:
    static constexpr double kSmallest = 0.1;
    static constexpr double kLargest = 8;

    explicit ZoomView(QWidget* parent);

    void ShowPicture(const QImage& picture);
    // How large a pixel of the picture is on the screen; the nearest that is allowed.
    void SetZoom(double zoom);
    double Zoom() const { return zoom_; }
    // The zoom at which the whole picture is seen in a room; never above full size.
    double ZoomFor(const QSize& room) const;
    QSize sizeHint() const override;

  private:
    void paintEvent(QPaintEvent* event) override;

    QPixmap picture_;
    double zoom_ = 1;
};

} // namespace kelvash::ui
