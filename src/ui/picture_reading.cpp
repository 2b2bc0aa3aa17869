#include "ui/picture_reading.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QImageIOHandler>
#include <QImageReader>
#include <QPointer>
#include <QThreadPool>
#include <QTransform>
#include <utility>

#include "swap/bitmap_file.h"
#include "swap/picture_codec.h"
#include "ui/cover_cache.h"

namespace kelvash::ui {

namespace {

constexpr qint64 kLargest = 256 << 20; // bytes; no picture of a game comes near

QByteArray BytesOf(const QString& native_path) {
    QFile file(native_path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > kLargest) return {};
    return file.readAll();
}

// What a picture's bytes are. Only these are read, whatever plug-ins there are: some open files that a
// picture names.
const char* FormatOf(const QByteArray& bytes) {
    if (bytes.startsWith("\xFF\xD8\xFF")) return "jpg";
    if (bytes.startsWith("BM")) return "bmp";
    if (bytes.startsWith("\x89PNG\r\n")) return "png";
    return nullptr;
}

// A bitmap that is cut short would be filled up with what lies in memory.
QByteArray WholeBitmap(const QByteArray& bytes) {
    const auto plain = swap::PlainBitmap({bytes.constData(), static_cast<std::size_t>(bytes.size())});
    return plain ? QByteArray::fromStdString(*plain) : QByteArray();
}

// A picture that is to be scaled to a size, none for as it is. JPEG is decoded at a fraction of its own;
// twice what is wanted leaves the scaling smooth.
QImage DecodeNear(const QByteArray& bytes, const QSize& size, Qt::AspectRatioMode mode) {
    const char* const format = FormatOf(bytes);
    if (format == nullptr) return {};
    QBuffer buffer;
    buffer.setData(QLatin1String(format) == QLatin1String("bmp") ? WholeBitmap(bytes) : bytes);
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    reader.setAutoTransform(true);
    const QSize whole = reader.size();
    const QSize twice = whole.scaled(2 * size, mode).expandedTo({1, 1});
    if (size.isValid() && whole.isValid() && whole.width() > twice.width()) reader.setScaledSize(twice);
    return reader.read();
}

// As its camera was held; what decodes the logic's pictures passes that over.
QImage Upright(const QImage& picture, const QByteArray& bytes) {
    QBuffer buffer;
    buffer.setData(bytes);
    const QImageIOHandler::Transformations turn = QImageReader(&buffer, "jpg").transformation();
    const QImage mirrored = picture.mirrored(turn.testFlag(QImageIOHandler::TransformationMirror),
                                             turn.testFlag(QImageIOHandler::TransformationFlip));
    return turn.testFlag(QImageIOHandler::TransformationRotate90)
               ? mirrored.transformed(QTransform().rotate(90))
               : mirrored;
}

QImage ScaleWhole(const QImage& picture, const QSize& size) {
    if (picture.isNull()) return {};
    const QSize fitting = picture.size().scaled(size, Qt::KeepAspectRatio).expandedTo({1, 1});
    return picture.scaled(fitting, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// The middle of a picture in the proportions of a size.
QRect MiddleOf(const QSize& picture, const QSize& size) {
    QRect part(QPoint(), size.scaled(picture, Qt::KeepAspectRatio).expandedTo({1, 1}));
    part.moveCenter(QRect(QPoint(), picture).center());
    return part;
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

QImage DecodeWhole(const QByteArray& bytes, const QSize& size) {
    // The toolkit fills up with grey what a cut JPEG lacks; what the commands can't read isn't shown either.
    if (QLatin1String(FormatOf(bytes)) == QLatin1String("jpg")) {
        const auto picture = swap::DecodePicture({bytes.constData(), static_cast<std::size_t>(bytes.size())});
        return picture ? ScaleWhole(Upright(ImageOf(*picture), bytes), size) : QImage();
    }
    return ScaleWhole(DecodeNear(bytes, size, Qt::KeepAspectRatio), size);
}

QImage DecodeCover(const QByteArray& bytes, const QSize& size) {
    const QImage picture = DecodeNear(bytes, size, Qt::KeepAspectRatioByExpanding);
    if (picture.isNull()) return {};
    // Cut first: a picture of one row, made as high as a cover, would be millions of pixels wide.
    return picture.copy(MiddleOf(picture.size(), size))
        .scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

QImage ImageOf(const swap::Picture& picture) {
    return QImage(reinterpret_cast<const uchar*>(picture.Pixels.data()), static_cast<int>(picture.Width),
                  static_cast<int>(picture.Height), static_cast<qsizetype>(picture.Width) * 3,
                  QImage::Format_RGB888)
        .copy();
}

void ScaleWholeBeside(QObject* receiver, const QImage& picture, const QSize& size, const TakePicture& take) {
    Beside(
        receiver, [picture, size] { return ScaleWhole(picture, size); }, take);
}

void ReadWholeBeside(QObject* receiver, const QString& native_path, const QSize& size,
                     const TakePicture& take) {
    Beside(
        receiver, [bytes = BytesOf(native_path), size] { return DecodeWhole(bytes, size); }, take);
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
