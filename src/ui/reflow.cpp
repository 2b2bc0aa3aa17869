#include "ui/reflow.h"

#include <QWidget>
#include <algorithm>

namespace kelvash::ui {

Reflow::Reflow(std::initializer_list<QWidget*> controls, Columns columns)
    : controls_(controls), limits_(columns), columns_(columns.most) {
    Place();
}

// As narrow as it may become; as high as it is.
QSize Reflow::minimumSize() const {
    return {WidthOf(limits_.least), QGridLayout::minimumSize().height()};
}

// Who gives the width asks for the height again.
void Reflow::setGeometry(const QRect& place) {
    int columns = limits_.most;
    while (columns > limits_.least && WidthOf(columns) > place.width())
        --columns;
    if (columns != columns_) {
        columns_ = columns;
        Place();
    }
    QGridLayout::setGeometry(place);
}

int Reflow::WidthOf(int columns) const {
    std::vector<int> widths(static_cast<std::size_t>(columns));
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        int& width = widths[i % widths.size()];
        width = std::max(width, QWidgetItem(controls_[i]).minimumSize().width());
    }
    int whole = (columns - 1) * std::max(0, horizontalSpacing());
    for (const int width : widths)
        whole += width;
    return whole;
}

void Reflow::Place() {
    for (QWidget* control : controls_)
        removeWidget(control);
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        const int at = static_cast<int>(i);
        addWidget(controls_[i], at / columns_, at % columns_);
    }
    update();
}

} // namespace kelvash::ui
