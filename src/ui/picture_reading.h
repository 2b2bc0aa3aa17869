// Reading of the levels' pictures: JPEG, bitmaps, PNG. Captures come as .jpg whatever they are: their
// contents tell what they are. One that is cut short or claims more than memory has is none. Decoding and
// scaling take longer than a frame may: they are done beside the interface.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>
#include <functional>
#include <memory>

class QObject;

namespace kelvash::swap {
struct Picture;
} // namespace kelvash::swap

namespace kelvash::ui {

class CoverCache;

// All of it, as large as fits into a size; null for bytes that are none.
QImage DecodeWhole(const QByteArray& bytes, const QSize& size);
// Its middle in that size, which is no more than is shown; null for bytes that are none.
QImage DecodeCover(const QByteArray& bytes, const QSize& size);

// A picture of the logic.
QImage ImageOf(const swap::Picture& picture);

// What is done with a picture when it is there; null if the file is none. It runs on the interface's thread,
// behind the call, unless the receiver is gone by then.
using TakePicture = std::function<void(const QImage& picture)>;

// The file is read at once, and stays closed from then on: whatever begins next may move or delete it.
void ReadWholeBeside(QObject* receiver, const QString& native_path, const QSize& size,
                     const TakePicture& take);
// One that is in memory already, as large as fits into a size.
void ScaleWholeBeside(QObject* receiver, const QImage& picture, const QSize& size, const TakePicture& take);
// A cover; with a cache one that is kept from an earlier time, if it is still the file's.
void ReadCoverBeside(QObject* receiver, const QString& native_path, const QSize& size,
                     const std::shared_ptr<CoverCache>& cache, const TakePicture& take);

} // namespace kelvash::ui
