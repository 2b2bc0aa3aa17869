#include "ui/level_model.h"

#include <algorithm>

#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/text.h"
#include "ui/form_support.h"

namespace kelvash::ui {

LevelModel::LevelModel(QObject* parent) : QAbstractListModel(parent), thumbnails_(this) {
    connect(&thumbnails_, &Thumbnails::Loaded, this, &LevelModel::ShowThumbnail);
}

void LevelModel::Refresh() {
    beginResetModel();
    // Another Archive has other levels under the same codes.
    if (archive_ != core::profile.LastArchive) thumbnails_.ForgetAll();
    archive_ = core::profile.LastArchive;
    const auto& items = core::level_list.Items;
    folded_.clear();
    folded_.reserve(items.size());
    for (const core::LevelListItem& item : items)
        folded_.push_back(FoldCase(item.Text));
    Filter();
    endResetModel();
}

void LevelModel::SetFilter(const QString& text) {
    std::string filter = FoldCase(Trim(ToUtf8(text)));
    if (filter == filter_) return;
    beginResetModel();
    filter_ = std::move(filter);
    Filter();
    endResetModel();
}

void LevelModel::Filter() {
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
            return FromUtf8(item.Text);
        case Qt::ToolTipRole:
            return AsToolTip(FromUtf8(item.Text));
        case Qt::DecorationRole:
            return thumbnails_.Of(item.Code);
        case Qt::UserRole:
            return item.Code;
        default:
            return {};
    }
}

void LevelModel::ShowThumbnail(std::int32_t code) {
    const auto& items = core::level_list.Items;
    for (int row = 0; row < rowCount(); ++row) {
        if (items[static_cast<std::size_t>(IndexAt(row))].Code != code) continue;
        const QModelIndex changed = index(row);
        Q_EMIT dataChanged(changed, changed, {Qt::DecorationRole});
        return;
    }
}

} // namespace kelvash::ui
