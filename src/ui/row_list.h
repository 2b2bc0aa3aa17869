// A list that shows whole rows only: what is left of its height stays empty.
#pragma once

#include <QListWidget>

namespace kelvash::ui {

class RowList final : public QListWidget {
    Q_OBJECT

  public:
    explicit RowList(QWidget* parent);
    QSize minimumSizeHint() const override;

  protected:
    void updateGeometries() override;

  private:
    int RowHeight() const;
};

} // namespace kelvash::ui
