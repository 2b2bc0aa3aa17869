#include "ui/cover_cache.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>
#include <utility>

#include "ui/form_support.h"
#include "ui/fragments.h"

namespace kelvash::ui {

namespace {

constexpr int kQuality = 90;      // of JPEG: no difference can be seen at these sizes
constexpr qint64 kSumLength = 20; // of SHA-1
constexpr int kLooks = 16;        // at the folder, while as much is written as may lie in it

// A file is the sum of key and picture, then the picture: one that is cut or of another key doesn't fit.
QByteArray SumOf(const QByteArray& key, const QByteArray& picture) {
    return QCryptographicHash::hash(key + picture, QCryptographicHash::Sha1);
}

} // namespace

CoverCache::CoverCache(QString folder, qint64 most_bytes)
    : folder_(QDir::isAbsolutePath(folder) ? std::move(folder) : QString()),
      end_(FromUtf8(LoadFragment(fragment::kCoverEnd))),
      unfinished_(FromUtf8(LoadFragment(fragment::kCoverNew))),
      most_bytes_(most_bytes) {}

QByteArray CoverCache::KeyOf(const QFileInfo& picture, const QSize& size) {
    const QString stamp = QStringLiteral("%1|%2|%3|%4x%5")
                              .arg(picture.absoluteFilePath())
                              .arg(picture.size())
                              .arg(picture.lastModified().toMSecsSinceEpoch())
                              .arg(size.width())
                              .arg(size.height());
    return QCryptographicHash::hash(stamp.toUtf8(), QCryptographicHash::Sha1);
}

QString CoverCache::FileOf(const QByteArray& key) const {
    return folder_ + QLatin1Char('/') + QString::fromLatin1(key.toHex()) + end_;
}

QByteArray CoverCache::Read(const QByteArray& key) const {
    if (folder_.isEmpty()) return {};
    QFile file(FileOf(key));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QImage CoverCache::Decode(const QByteArray& key, const QByteArray& bytes) {
    const QByteArray picture = bytes.mid(kSumLength);
    if (picture.isEmpty() || bytes.left(kSumLength) != SumOf(key, picture)) return {};
    return QImage::fromData(picture, "jpg");
}

void CoverCache::Keep(const QByteArray& key, const QImage& cover) {
    if (folder_.isEmpty()) return;
    if (since_drop_ < 0 || since_drop_ > most_bytes_ / kLooks) DropOldest();
    QBuffer picture;
    picture.open(QIODevice::WriteOnly);
    if (!cover.save(&picture, "jpg", kQuality) || !QDir().mkpath(folder_)) return;
    const QByteArray bytes = SumOf(key, picture.data()) + picture.data();
    QTemporaryFile file(folder_ + QLatin1Char('/') + unfinished_);
    if (!file.open() || file.write(bytes) != bytes.size() || !file.flush()) return;
    QFile::remove(FileOf(key)); // one that is damaged
    if (file.rename(FileOf(key))) file.setAutoRemove(false);
    since_drop_ += bytes.size();
}

void CoverCache::DropOldest() {
    since_drop_ = 0;
    if (folder_.isEmpty()) return;
    QString left_over = unfinished_; // by a program that was killed
    left_over.replace(QLatin1String("XXXXXX"), QLatin1String("??????"));
    const QFileInfoList files = QDir(folder_).entryInfoList(
        {QLatin1Char('*') + end_, left_over}, QDir::Files | QDir::Hidden, QDir::Time | QDir::Reversed);
    qint64 bytes = 0;
    for (const QFileInfo& file : files)
        bytes += file.size();
    if (bytes <= most_bytes_) return;
    for (const QFileInfo& file : files) {
        if (bytes <= most_bytes_ / 4 * 3) break;
        if (QFile::remove(file.filePath())) bytes -= file.size();
    }
}

} // namespace kelvash::ui
