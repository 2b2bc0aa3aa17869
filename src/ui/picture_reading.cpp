#include "ui/picture_reading.h"

#include <QImageReader>

namespace kelvash::ui {

QImage ReadPicture(const QString& native_path) {
    QImageReader reader(native_path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    return reader.read();
}

QImage ReadCover(const QString& native_path, const QSize& size) {
    if (native_path.isEmpty()) return {};
    QImageReader reader(native_path);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    // JPEG is decoded at a fraction of its size; twice what is wanted leaves the scaling smooth.
    const QSize whole = reader.size();
    const QSize twice = whole.scaled(2 * size, Qt::KeepAspectRatioByExpanding);
    if (whole.isValid() && whole.width() > twice.width()) reader.setScaledSize(twice);
    const QImage picture = reader.read();
    if (picture.isNull()) return {};
    return picture.scaled(size, Qt::KeepAspectRatioByExpanding, Qt::SmoothTransformation);
}

} // namespace kelvash::ui
