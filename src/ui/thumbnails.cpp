#include "ui/thumbnails.h"

#include <QImageReader>
#include <QPainter>
#include <QTimer>
#include <algorithm>

#include "companion/screenshots.h"
#include "core/archive.h"
#include "foundation/drives.h"
#include "foundation/user.h"
#include "ui/form_support.h"

namespace kelvash::ui {

namespace {

constexpr int kKept = 2000;             // thumbnails in memory, 12 KB each
constexpr std::size_t kMostWanted = 64; // more rows than any window shows
constexpr int kAfterJobs = 100;         // milliseconds between looks whether a job still runs

// A canvas of the thumbnails' size with a picture in its middle.
QPixmap Framed(const QImage& picture) {
    QPixmap canvas(Thumbnails::kSize);
    canvas.fill(QColor(128, 128, 128, 80)); // between light and dark
    if (picture.isNull()) return canvas;
    const QImage small = picture.scaled(Thumbnails::kSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&canvas);
    painter.drawImage((canvas.width() - small.width()) / 2, (canvas.height() - small.height()) / 2, small);
    return canvas;
}

QImage ReadSmall(const std::string& path) {
    if (path.empty()) return {};
    QImageReader reader(QString::fromStdU16String(NativePath(path).u16string()));
    reader.setDecideFormatFromContent(true);
    // JPEG is decoded at a fraction of its size; twice the thumbnail's leaves the scaling smooth.
    const QSize size = reader.size();
    if (size.isValid() && size.width() > 2 * Thumbnails::kSize.width())
        reader.setScaledSize(size.scaled(2 * Thumbnails::kSize, Qt::KeepAspectRatio));
    return reader.read();
}

} // namespace

Thumbnails::Thumbnails(QObject* parent) : QObject(parent), frame_(Framed({})), ready_(kKept) {}

QPixmap Thumbnails::Of(std::int32_t code) {
    if (const QPixmap* const ready = ready_.object(code)) return *ready;
    Want(code);
    return frame_;
}

void Thumbnails::Renew(std::int32_t code) {
    if (ready_.contains(code)) Want(code);
}

void Thumbnails::ForgetAll() {
    ready_.clear();
    wanted_.clear();
}

void Thumbnails::Want(std::int32_t code) {
    if (std::find(wanted_.begin(), wanted_.end(), code) != wanted_.end()) return;
    wanted_.push_back(code);
    if (wanted_.size() > kMostWanted) wanted_.pop_front();
    if (waiting_) return;
    waiting_ = true;
    AfterPainting(this, [this] { LoadNext(); });
}

void Thumbnails::LoadNext() {
    if (JobDepth() > 0) { // it may be in the middle of a change of what would be read
        QTimer::singleShot(kAfterJobs, this, &Thumbnails::LoadNext);
        return;
    }
    waiting_ = false;
    if (wanted_.empty()) return;
    const std::int32_t code = wanted_.back();
    wanted_.pop_back();
    const QImage picture = ReadSmall(companion::NewestScreenshot(core::PlaceOf(code)));
    ready_.insert(code, new QPixmap(picture.isNull() ? frame_ : Framed(picture)));
    Q_EMIT Loaded(code);
    if (wanted_.empty()) return;
    waiting_ = true;
    QTimer::singleShot(0, this, &Thumbnails::LoadNext);
}

} // namespace kelvash::ui
