#include "ui/picture_view.h"

#include <QFileInfo>
#include <QImageReader>
#include <QPainter>

#include "ui/form_support.h"
#include "ui/messages.h"

namespace kelvash::ui {

PictureView::PictureView(QWidget* parent) : QWidget(parent) {
    setMinimumSize(120, 90);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PictureView::ShowFile(const QString& native_path, const QString& text) {
    path_ = native_path;
    text_ = text;
    picture_ = {};
    setAccessibleName(path_.isEmpty() ? text_ : QFileInfo(path_).fileName());
    update();
    if (path_.isEmpty() || pending_) return;
    pending_ = true;
    AfterPainting(this, [this] { Load(); });
}

void PictureView::Load() {
    pending_ = false;
    if (path_.isEmpty()) return;
    QImageReader reader(path_);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true); // captures come as .jpg whatever they are
    picture_ = QPixmap::fromImage(reader.read());
    if (picture_.isNull())
        text_ = Caption(msg::kMainBadImage) + QLatin1Char('\n') + QFileInfo(path_).fileName();
    update();
}

void PictureView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Dark));
    if (picture_.isNull()) {
        painter.setPen(palette().color(QPalette::BrightText));
        painter.drawText(rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap, text_);
        return;
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QRect place(QPoint(), picture_.size().scaled(size(), Qt::KeepAspectRatio));
    place.moveCenter(rect().center());
    painter.drawPixmap(place, picture_);
}

} // namespace kelvash::ui
