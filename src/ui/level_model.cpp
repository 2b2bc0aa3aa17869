#include "ui/level_model.h"

#include <algorithm>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/text.h"
#include "trle_state/trle_state.h"
#include "ui/form_support.h"

namespace kelvash::ui {

LevelModel::LevelModel(QObject* parent) : QAbstractListModel(parent), cards_(this) {
    connect(&cards_, &LevelCards::Loaded, this, &LevelModel::ShowCard);
}

void LevelModel::Refresh() {
    beginResetModel();
    // Another Archive has other levels under the same codes.
    if (archive_ != core::profile.LastArchive) cards_.ForgetAll();
    archive_ = core::profile.LastArchive;
    in_trle_ = trle_state::CurrentLevelCode();
    const auto& items = core::level_list.Items;
    folded_.clear();
    folded_.reserve(items.size());
    for (const core::LevelListItem& item : items)
        folded_.push_back(FoldCase(item.Text));
    TakeFilter();
    endResetModel();
}

void LevelModel::SetFilter(const QString& text) {
    std::string filter = FoldCase(Trim(ToUtf8(text)));
    typed_ = text.trimmed();
    if (filter == filter_) return;
    beginResetModel();
    filter_ = std::move(filter);
    TakeFilter();
    endResetModel();
}

void LevelModel::RenewAll() {
    cards_.RenewAll();
    if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void LevelModel::TakeFilter() {
    shown_.clear();
    for (std::size_t i = 0; i < folded_.size(); ++i)
        if (folded_[i].find(filter_) != std::string::npos) shown_.push_back(static_cast<std::int32_t>(i));
}

int LevelModel::RowOf(std::int32_t index) const {
    const auto found = std::lower_bound(shown_.begin(), shown_.end(), index);
    return found == shown_.end() || *found != index ? -1 : static_cast<int>(found - shown_.begin());
}

std::int32_t LevelModel::IndexAt(int row) const {
    return row < 0 || row >= rowCount() ? -1 : shown_[static_cast<std::size_t>(row)];
}

int LevelModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant LevelModel::data(const QModelIndex& index, int role) const {
    const std::int32_t place = IndexAt(index.row());
    if (place < 0) return {};
    const core::LevelListItem& item = core::level_list.Items[static_cast<std::size_t>(place)];
    switch (role) {
        case Qt::DisplayRole:
            return ShownLine(item.Text);
        case Qt::ToolTipRole:
            return ToolTipText(ShownLine(item.Text) + QLatin1Char('\n') + LineOf(Row(index.row())));
        case Qt::AccessibleDescriptionRole:
            return SpokenOf(Row(index.row()));
        case Qt::UserRole:
            return item.Code;
        default:
            return {};
    }
}

LevelRow LevelModel::Row(int row) const {
    const std::int32_t place = IndexAt(row);
    if (place < 0) return {};
    const core::LevelListItem& item = core::level_list.Items[static_cast<std::size_t>(place)];
    const core::LevelRecord& level = core::archive.Table.ByCode(item.Code);
    const LevelCard* const card = cards_.Of(item.Code);
    LevelRow shown;
    shown.code = item.Code;
    shown.name = ShownLine(item.Text);
    shown.line = ShownLine(program::LevelLine(level, card == nullptr ? nullptr : &card->facts));
    shown.in_trle = item.Code == in_trle_;
    shown.cd = level.CdNumber;
    if (card == nullptr) return shown;
    shown.picture = card->picture;
    shown.packed = card->facts.Packed;
    return shown;
}

void LevelModel::ShowCard(std::int32_t code) {
    const auto& items = core::level_list.Items;
    for (int row = 0; row < rowCount(); ++row) {
        if (items[static_cast<std::size_t>(IndexAt(row))].Code != code) continue;
        const QModelIndex changed = index(row);
        Q_EMIT dataChanged(changed, changed);
        return;
    }
}

} // namespace kelvash::ui
