// The list of levels as Combo_Livelli shows it: sorted texts, thumbnails, and only the names that hold what
// is typed.
#pragma once

#include <QAbstractListModel>
#include <cstdint>
#include <string>
#include <vector>

#include "ui/thumbnails.h"

namespace kelvash::ui {

class LevelModel final : public QAbstractListModel {
    Q_OBJECT

  public:
    explicit LevelModel(QObject* parent);

    // Takes core::level_list anew.
    void Refresh();
    // Shows only the items that hold the text, without regard to case; blanks at its ends don't count.
    void SetFilter(const QString& text);

    // Between rows of the view and places in core::level_list; -1 for an item that the filter hides.
    int RowOf(std::int32_t index) const;
    std::int32_t IndexAt(int row) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    // The text, the thumbnail, and the level's code under Qt::UserRole.
    QVariant data(const QModelIndex& index, int role) const override;

    // Reads a level's thumbnail anew.
    void RenewThumbnail(std::int32_t code) { thumbnails_.Renew(code); }

  private:
    void Filter();
    void ShowThumbnail(std::int32_t code);

    std::vector<std::string> folded_; // texts of all items, ready for comparison
    std::vector<std::int32_t> shown_; // places in core::level_list, in order
    std::string filter_;              // folded
    std::string archive_;             // path of the Archive whose thumbnails are kept
    mutable Thumbnails thumbnails_;   // asking for one starts its reading
};

} // namespace kelvash::ui
