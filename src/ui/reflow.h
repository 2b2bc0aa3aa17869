// Controls in one row, which go on in further rows where there is no room for all of them side by side.
#pragma once

#include <QGridLayout>
#include <initializer_list>
#include <vector>

namespace kelvash::ui {

class Reflow final : public QGridLayout {
    Q_OBJECT

  public:
    // So many columns at most, and at least.
    struct Columns {
        int most;
        int least;
    };
    Reflow(std::initializer_list<QWidget*> controls, Columns columns);

    QSize minimumSize() const override;
    void setGeometry(const QRect& place) override;

  private:
    int WidthOf(int columns) const;
    void Place();

    std::vector<QWidget*> controls_;
    Columns limits_;
    int columns_; // now
};

} // namespace kelvash::ui
