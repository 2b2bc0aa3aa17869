// Draws the levels of the library: a row with a small picture, or a tile with a large one.
#pragma once

#include <QStyledItemDelegate>

namespace kelvash::ui {

class LevelModel;

enum class LibraryView { List, Tiles };

class LevelDelegate final : public QStyledItemDelegate {
    Q_OBJECT

  public:
    explicit LevelDelegate(const LevelModel& levels, QObject* parent);

    void SetView(LibraryView view) { view_ = view; }
    LibraryView View() const { return view_; }
    // Of a level's picture, in pixels that don't depend on the screen; 4:3.
    static QSize PictureSize(LibraryView view);

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

  private:
    const LevelModel& levels_;
    LibraryView view_ = LibraryView::List;
};

} // namespace kelvash::ui
