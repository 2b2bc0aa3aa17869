#include "ui/picture_view.h"

#include <QFileInfo>
#include <QPainter>

#include "ui/form_support.h"
#include "ui/icons.h"
#include "ui/look.h"
#include "ui/messages.h"
#include "ui/picture_reading.h"

namespace kelvash::ui {

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
    setMinimumSize(fontMetrics().averageCharWidth() * 20, fontMetrics().height() * 6);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureView::ShowFile(const QString& native_path, const QString& text) {
    path_ = native_path;
    text_ = text;
    ++reading_;
    whole_ = {};
    picture_ = {};
    reads_ = false;
    setAccessibleName(path_.isEmpty() ? text_ : QFileInfo(path_).fileName());
    update();
    ReadLater();
}

// Those that the picture may take up on the screen.
QSize PictureView::Pixels() const {
    const bool fits =
        natural_ && !whole_.isNull() && whole_.width() <= width() && whole_.height() <= height();
    return (QSizeF(fits ? whole_.size() : size()) * devicePixelRatioF()).toSize();
}

void PictureView::ReadLater() {
    if ((path_.isEmpty() && whole_.isNull()) || pending_) return;
    pending_ = true;
    AfterPainting(this, [this] { Load(); });
}

void PictureView::ShowPicture(const QImage& picture, const QString& name) {
    path_.clear();
    text_ = name;
    ++reading_;
    whole_ = picture;
    picture_ = QPixmap::fromImage(picture);
    reads_ = false;
    setAccessibleName(name);
    update();
    ReadLater();
}

void PictureView::SetSelected(bool selected) {
    selected_ = selected;
    update();
}

// While the window is drawn larger one reading follows the other, not all of them at once.
void PictureView::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    if (!reads_) ReadLater();
}

void PictureView::Load() {
    pending_ = false;
    if (path_.isEmpty() && whole_.isNull()) return;
    reads_ = true;
    const QSize pixels = Pixels();
    const auto take = [this, pixels, reading = ++reading_](const QImage& picture) {
        if (reading != reading_) return;
        reads_ = false;
        Take(picture);
        if (pixels != Pixels()) ReadLater();
    };
    if (whole_.isNull())
        ReadWholeBeside(this, path_, pixels, take);
    else
        ScaleWholeBeside(this, whole_, pixels, take);
}

void PictureView::Take(const QImage& picture) {
    picture_ = QPixmap::fromImage(picture);
    if (picture_.isNull())
        text_ = Caption(msg::kMainBadImage) + QLatin1Char('\n') + QFileInfo(path_).fileName();
    update();
}

void PictureView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    FillRounded(painter, rect(), Mixed(palette().color(QPalette::WindowText), ColourOf(Role::Surface), 0.07));
    if (picture_.isNull())
        DrawEmpty(painter);
    else
        DrawPicture(painter);
    if (selected_ || hasFocus()) DrawSelection(painter);
}

// The one with the keyboard stands out from the one that is only chosen.
void PictureView::DrawSelection(QPainter& painter) const {
    const int line = space::kTight / 2;
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(ColourOf(hasFocus() ? Role::Accent : Role::MutedText), line));
    painter.drawRoundedRect(rect().adjusted(line, line, -line, -line), kCornerRadius, kCornerRadius);
}

// Until it has been read for another size it is drawn as coarse as it comes out.
void PictureView::DrawPicture(QPainter& painter) const {
    const QSize room = Pixels();
    QSizeF shown = QSizeF(picture_.size()) / devicePixelRatioF();
    if (picture_.size().scaled(room, Qt::KeepAspectRatio) != picture_.size())
        shown.scale(QSizeF(room) / devicePixelRatioF(), Qt::KeepAspectRatio);
    QRectF place(QPointF(), shown);
    place.moveCenter(QRectF(rect()).center());
    DrawCover(painter, place.toRect(), picture_);
}

// A drawing above the text, both in the middle.
void PictureView::DrawEmpty(QPainter& painter) const {
    const QRect room = rect().adjusted(space::kClose, space::kClose, -space::kClose, -space::kClose);
    const QColor colour = ColourOf(Role::MutedText);
    QRect words = painter.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, text_);
    const int side = std::min(space::kWide * 2, room.height() - words.height() - space::kClose);
    painter.setPen(colour);
    if (side >= space::kWide && !text_.isEmpty()) {
        words.translate(0, (side + space::kClose) / 2);
        const QRect drawing(room.center().x() - side / 2, words.top() - space::kClose - side, side, side);
        DrawGlyph(painter, drawing, Glyph::NoPicture, colour);
    }
    painter.drawText(words, Qt::AlignCenter | Qt::TextWordWrap, text_);
}

} // namespace kelvash::ui
