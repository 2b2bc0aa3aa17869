#include "ui/picture_reading.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImageReader>
#include <QPointer>
#include <QThreadPool>
#include <utility>

#include "ui/cover_cache.h"

namespace kelvash::ui {

namespace {

constexpr qint64 kLargest = 256 << 20; // bytes; no picture of a game comes near

QByteArray BytesOf(const QString& native_path) {
    QFile file(native_path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kLargest) return {};
    return file.readAll();
}

// Decodes on another thread; the interface's takes what has come of it.
void Beside(QObject* receiver, const std::function<QImage()>& decode, const TakePicture& take) {
    QCoreApplication* const program = QCoreApplication::instance();
    const QPointer<QObject> waiting(receiver);
    QThreadPool::globalInstance()->start([program, waiting, decode, take] {
        QImage picture = decode();
        QMetaObject::invokeMethod(
            program,
            [waiting, take, picture = std::move(picture)] {
                if (!waiting.isNull()) take(picture);
            },
            Qt::QueuedConnection);
    });
}

} // namespace

QImage DecodePicture(const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
    reader.setAutoTransform(true);
    reader.setDecideFormatFromContent(true);
    return reader.read();
}

QImage DecodeCover(const QByteArray& bytes, const QSize& size) {
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer);
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

void ReadPictureBeside(QObject* receiver, const QString& native_path, const TakePicture& take) {
    Beside(
        receiver, [bytes = BytesOf(native_path)] { return DecodePicture(bytes); }, take);
}

void ReadCoverBeside(QObject* receiver, const QString& native_path, const QSize& size,
                     const std::shared_ptr<CoverCache>& cache, const TakePicture& take) {
    if (!cache) {
        Beside(
            receiver, [bytes = BytesOf(native_path), size] { return DecodeCover(bytes, size); }, take);
        return;
    }
    const QByteArray key = CoverCache::KeyOf(QFileInfo(native_path), size);
    const QByteArray kept = cache->Read(key);
    const QByteArray bytes = kept.isEmpty() ? BytesOf(native_path) : QByteArray();
    const auto decode = [=] {
        QImage cover = CoverCache::Decode(key, kept);
        if (!cover.isNull()) return cover;
        // A damaged one is rare enough to look at the file from here.
        cover = DecodeCover(kept.isEmpty() ? bytes : BytesOf(native_path), size);
        if (!cover.isNull()) cache->Keep(key, cover);
        return cover;
    };
    Beside(receiver, decode, take);
}

} // namespace kelvash::ui
