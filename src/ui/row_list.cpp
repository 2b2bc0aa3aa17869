#include "ui/row_list.h"

#include <algorithm>

#include "ui/look.h"

namespace kelvash::ui {

namespace {

constexpr int kFewestRows = 3;
constexpr int kFewestLetters = 20;

} // namespace

RowList::RowList(QWidget* parent) : QListWidget(parent) {
    setUniformItemSizes(true);
    setVerticalScrollMode(QAbstractItemView::ScrollPerItem);
    setHorizontalScrollBarPolicy(
        Qt::ScrollBarAlwaysOff); // a line that is too long says so and has a tool tip
}

QSize RowList::minimumSizeHint() const {
    const int edges = 2 * frameWidth();
    return {fontMetrics().averageCharWidth() * kFewestLetters + edges, RowHeight() * kFewestRows + edges};
}

// An empty list has no row to ask.
int RowList::RowHeight() const {
    return count() > 0 ? std::max(1, sizeHintForRow(0)) : fontMetrics().height() + space::kTight;
}

// After every change of the size or of the rows.
void RowList::updateGeometries() {
    QListWidget::updateGeometries();
    const int rest = std::max(0, height() - 2 * frameWidth()) % RowHeight();
    if (viewportMargins().bottom() != rest) setViewportMargins(0, 0, 0, rest);
}

} // namespace kelvash::ui
