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
    picture_ = scaled_ = {};
    setAccessibleName(path_.isEmpty() ? text_ : QFileInfo(path_).fileName());
    update();
    if (path_.isEmpty() || pending_) return;
    pending_ = true;
    AfterPainting(this, [this] { Load(); });
}

void PictureView::ShowPicture(const QImage& picture, const QString& name) {
    path_.clear();
    text_ = name;
    ++reading_;
    picture_ = QPixmap::fromImage(picture);
    scaled_ = {};
    setAccessibleName(name);
    update();
}

void PictureView::SetSelected(bool selected) {
    selected_ = selected;
    update();
}

void PictureView::Load() {
    pending_ = false;
    if (path_.isEmpty()) return;
    ReadPictureBeside(this, path_, [this, reading = reading_](const QImage& picture) {
        if (reading == reading_) Take(picture);
    });
}

void PictureView::Take(const QImage& picture) {
    picture_ = QPixmap::fromImage(picture);
    scaled_ = {};
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

// Scaling takes longer than all else here: only another size has it done anew.
void PictureView::DrawPicture(QPainter& painter) {
    const QSize whole = picture_.size().scaled(size(), Qt::KeepAspectRatio).expandedTo({1, 1});
    const bool fits = natural_ && picture_.width() <= width() && picture_.height() <= height();
    QRect place(QPoint(), fits ? picture_.size() : whole);
    place.moveCenter(rect().center());
    const QSize pixels = place.size() * devicePixelRatio();
    if (scaled_.size() != pixels)
        scaled_ = picture_.scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    painter.drawPixmap(place, scaled_);
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
