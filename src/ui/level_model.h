// The list of levels as Combo_Livelli shows it: sorted texts, what is known of each level, and only the names
// that hold what is typed.
#pragma once

#include <QAbstractListModel>
#include <cstdint>
#include <string>
#include <vector>

#include "ui/level_cards.h"
#include "ui/level_row.h"

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
    // The text, what a screen reader says behind it, and the level's code under Qt::UserRole.
    QVariant data(const QModelIndex& index, int role) const override;
    LevelRow Row(int row) const;
    // What is typed, trimmed.
    const QString& Filter() const { return typed_; }

    // Reads what a level's folder tells anew.
    void Renew(std::int32_t code) { cards_.Renew(code); }
    // The same for all levels, those that are seen at once.
    void RenewAll();
    void SetPictureSize(QSize size) { cards_.SetPictureSize(size); }

  private:
    void TakeFilter();
    void ShowCard(std::int32_t code);

    std::vector<std::string> folded_; // texts of all items, ready for comparison
    std::vector<std::int32_t> shown_; // places in core::level_list, in order
    QString typed_;
    std::string filter_;        // folded
    std::string archive_;       // path of the Archive whose cards are kept
    std::int32_t in_trle_ = -1; // code of the level that is in TRLE
    mutable LevelCards cards_;  // asking for one starts its reading
};

} // namespace kelvash::ui
