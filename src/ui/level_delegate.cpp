#include "ui/level_delegate.h"

#include <QApplication>
#include <QPainter>

#include "ui/icons.h"
#include "ui/level_model.h"
#include "ui/level_row.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

void DrawPicture(QPainter& painter, const QRect& place, const LevelRow& level) {
    if (!level.picture.isNull() && !IsOriginal(level)) {
        DrawCover(painter, place, level.picture);
        return;
    }
    const QColor text = ColourOf(Role::MutedText);
    FillRounded(painter, place, Mixed(text, ColourOf(Role::Surface), 0.15));
    const int side = place.height() * 2 / 5;
    QRect drawing(0, 0, side, side);
    drawing.moveCenter(place.center());
    DrawGlyph(painter, drawing, IsOriginal(level) ? Glyph::Original : Glyph::NoPicture, text);
}

// What the words of a row are written with: on a desktop's own chosen ground its own text can be read, no
// role.
struct Inks {
    QColor name = ColourOf(Role::Text);
    QColor line = ColourOf(Role::MutedText);
    QColor found; // ground
};
Inks InksOn(const QStyleOptionViewItem& item) {
    const bool chosen = item.state.testFlag(QStyle::State_Selected);
    const QPalette program = QApplication::palette();
    Inks inks{.found = FoundGround(program, chosen && !DesktopHasItsLook())};
    if (chosen && DesktopHasItsLook()) inks.name = inks.line = item.palette.color(QPalette::HighlightedText);
    return inks;
}

// A name with what is typed marked in it.
void DrawName(QPainter& painter, const QRect& place, const QString& name, const QString& typed,
              const Inks& inks) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QString shown = metrics.elidedText(name, Qt::ElideRight, place.width());
    const qsizetype at = typed.isEmpty() ? -1 : shown.indexOf(typed, 0, Qt::CaseInsensitive);
    if (at >= 0) {
        const int left = metrics.horizontalAdvance(shown.left(at));
        const int width = metrics.horizontalAdvance(shown.mid(at, typed.size()));
        FillRounded(painter, {place.left() + left - 1, place.top(), width + 2, place.height()}, inks.found);
    }
    painter.setPen(inks.name);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, shown);
}

QFont NameFont() {
    QFont font = FontOf(Type::Text);
    font.setWeight(QFont::DemiBold);
    return font;
}

int LineHeight(const QFont& font) {
    return QFontMetrics(font).height();
}

void DrawLine(QPainter& painter, const QRect& place, const QString& line, const QColor& ink) {
    painter.setFont(FontOf(Type::Caption));
    painter.setPen(ink);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(line, Qt::ElideRight, place.width()));
}

// The badges from the right end of a place on; gives what is left of it.
QRect DrawBadges(QPainter& painter, QRect place, const LevelRow& level) {
    for (const LevelBadge& badge : BadgesOf(level))
        place.setRight(place.right() - DrawBadge(painter, place, badge.word, badge.role) - space::kTight);
    return place;
}

void DrawListRow(QPainter& painter, const QRect& row, const LevelRow& level, const QString& typed,
                 const Inks& inks) {
    const QSize size = LevelDelegate::PictureSize(LibraryView::List);
    const QRect picture(row.left() + space::kTight, row.center().y() - size.height() / 2 + 1, size.width(),
                        size.height());
    DrawPicture(painter, picture, level);
    const int name_height = LineHeight(NameFont()), line_height = LineHeight(FontOf(Type::Caption));
    QRect words(picture.right() + space::kNear,
                row.center().y() - (name_height + space::kTight + line_height) / 2, 0, name_height);
    words.setRight(row.right() - space::kClose);
    const QRect name = DrawBadges(painter, words, level);
    painter.setFont(NameFont());
    DrawName(painter, name, level.name, typed, inks);
    words.translate(0, name_height + space::kTight);
    words.setHeight(line_height);
    DrawLine(painter, words, LineOf(level), inks.line);
}

void DrawTile(QPainter& painter, const QRect& tile, const LevelRow& level, const QString& typed,
              const Inks& inks) {
    const QSize size = LevelDelegate::PictureSize(LibraryView::Tiles);
    const QRect picture(tile.center().x() - size.width() / 2 + 1, tile.top() + space::kClose, size.width(),
                        size.height());
    DrawPicture(painter, picture, level);
    const int badge_height = LineHeight(FontOf(Type::Caption)) + space::kClose;
    DrawBadges(painter,
               {picture.left(), picture.top() + space::kTight, picture.width() - space::kClose, badge_height},
               level);
    QRect words(picture.left(), picture.bottom() + space::kTight, picture.width(), LineHeight(NameFont()));
    painter.setFont(NameFont());
    DrawName(painter, words, level.name, typed, inks);
    words.translate(0, words.height());
    DrawLine(painter, words, LineOf(level), inks.line);
}

} // namespace

LevelDelegate::LevelDelegate(const LevelModel& levels, QObject* parent)
    : QStyledItemDelegate(parent), levels_(levels) {}

QSize LevelDelegate::PictureSize(LibraryView view) {
    return view == LibraryView::List ? picture::kRow : picture::kTile;
}

void LevelDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const {
    QStyleOptionViewItem item = option;
    item.state &= ~QStyle::State_HasFocus;
    painter->save();
    QApplication::style()->drawPrimitive(QStyle::PE_PanelItemViewItem, &item, painter, option.widget);
    const LevelRow level = levels_.Row(index.row());
    const Inks inks = InksOn(option);
    if (view_ == LibraryView::List)
        DrawListRow(*painter, option.rect, level, levels_.Filter(), inks);
    else
        DrawTile(*painter, option.rect, level, levels_.Filter(), inks);
    if (option.state.testFlag(QStyle::State_HasFocus)) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.state |= QStyle::State_KeyboardFocusChange;
        QApplication::style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
    painter->restore();
}

QSize LevelDelegate::sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const {
    const QSize picture = PictureSize(view_);
    const int words = LineHeight(NameFont()) + space::kTight + LineHeight(FontOf(Type::Caption));
    if (view_ == LibraryView::List)
        return {picture.width(), std::max(picture.height(), words) + space::kClose};
    return {picture.width() + space::kApart, picture.height() + words + space::kApart};
}

} // namespace kelvash::ui
