// Covers of levels that have been made once, on the disk: reading one takes a tenth of what making it does.
//
// Nothing depends on it. A folder that can't be written keeps nothing, a damaged or foreign file counts as
// none, and programs that use the folder at the same time don't disturb each other.
#pragma once

#include <QByteArray>
#include <QImage>
#include <QSize>
#include <QString>

class QFileInfo;

namespace kelvash::ui {

class CoverCache {
  public:
    static constexpr qint64 kMostBytes = 128 << 20; // 10,000 levels as rows and as tiles

    // The folder is a native path; when more than that is in covers there, the oldest go. Files of other
    // names are left alone, and one that isn't absolute is no folder: nothing is kept.
    explicit CoverCache(QString folder, qint64 most_bytes = kMostBytes);

    // Stands for a picture file as it is now, by path, size and time, and for the cover's size.
    static QByteArray KeyOf(const QFileInfo& picture, const QSize& size);

    // What is kept under a key, as it lies there; empty for nothing.
    QByteArray Read(const QByteArray& key) const;
    // Null if these bytes aren't a whole cover of that key.
    static QImage Decode(const QByteArray& key, const QByteArray& bytes);

    // Both may run beside Read; they themselves one after the other.
    void Keep(const QByteArray& key, const QImage& cover);
    void DropOldest();

  private:
    QString FileOf(const QByteArray& key) const;

    QString folder_;
    QString end_;        // of a cover's name
    QString unfinished_; // mask of what is being written; both taken where texts may be loaded
    qint64 most_bytes_;
    qint64 since_drop_ = -1; // bytes written since the last look at the whole folder; -1 before the first
};

} // namespace kelvash::ui
