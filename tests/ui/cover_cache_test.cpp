// Covers that are kept on the disk, and what must not come of what lies there.
#include "ui/cover_cache.h"

#include <gmock/gmock.h>

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

#include "support/foundation_home.h"
#include "support/platform.h"
#include "ui/picture_reading.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;
using ui::CoverCache;

class Covers : public testing::Test {
  protected:
    const std::filesystem::path home = MakeTemporaryFolder();
    const QString folder = In("covers");
    CoverCache cache{folder};

    ~Covers() override { std::filesystem::remove_all(home); }

    QString In(const std::string& name) const { return QString::fromStdString((home / name).string()); }
    QString MakePicture(const QString& name, const QColor& colour) const {
        QImage picture(320, 240, QImage::Format_RGB32);
        picture.fill(colour);
        const QString path = In(name.toStdString());
        EXPECT_TRUE(picture.save(path, "bmp"));
        return path;
    }
    static QByteArray Key(const QString& picture) { return CoverCache::KeyOf(QFileInfo(picture), {80, 60}); }
    // What is kept for a picture file.
    QImage Kept(const QString& picture) const {
        return CoverCache::Decode(Key(picture), cache.Read(Key(picture)));
    }
    QFileInfoList Files() const { return QDir(folder).entryInfoList(QDir::Files | QDir::Hidden); }
    // As the library reads it.
    QImage Shown(const QString& picture) {
        QObject receiver;
        QImage shown;
        bool taken = false;
        ui::ReadCoverBeside(&receiver, picture, {80, 60}, shared, [&](const QImage& cover) {
            shown = cover;
            taken = true;
        });
        EXPECT_FALSE(taken) << "nothing is decoded in the interface's time";
        EXPECT_TRUE(QTest::qWaitFor([&] { return taken; }));
        return shown;
    }
    static QColor MiddleOf(const QImage& cover) {
        return cover.isNull() ? QColor() : cover.pixelColor(cover.width() / 2, cover.height() / 2);
    }
    const std::shared_ptr<CoverCache> shared = std::make_shared<CoverCache>(folder);
};

bool IsNear(const QColor& one, const QColor& other) {
    return one.isValid() && std::abs(one.red() - other.red()) + std::abs(one.green() - other.green()) +
                                    std::abs(one.blue() - other.blue()) <
                                12;
}

TEST_F(Covers, AreKeptFromTheFirstReadingOn) {
    const QString picture = MakePicture(QStringLiteral("a.bmp"), Qt::darkGreen);
    EXPECT_TRUE(Kept(picture).isNull());
    EXPECT_TRUE(IsNear(MiddleOf(Shown(picture)), Qt::darkGreen));
    EXPECT_EQ(Kept(picture).size(), QSize(80, 60));
    EXPECT_EQ(Files().size(), 1) << "nothing half-written is left";
    EXPECT_TRUE(IsNear(MiddleOf(Shown(picture)), Qt::darkGreen));
}

TEST_F(Covers, AreReadInsteadOfThePicture) {
    const QString picture = MakePicture(QStringLiteral("a.bmp"), Qt::darkGreen);
    QImage other(80, 60, QImage::Format_RGB32);
    other.fill(Qt::darkRed);
    cache.Keep(Key(picture), other);
    EXPECT_TRUE(IsNear(MiddleOf(Shown(picture)), Qt::darkRed));
}

TEST_F(Covers, OfAChangedPictureAreMadeAnew) {
    const QString picture = MakePicture(QStringLiteral("a.bmp"), Qt::darkGreen);
    Shown(picture);
    MakePicture(QStringLiteral("a.bmp"), Qt::darkRed);
    QFile file(picture);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-3600), QFile::FileModificationTime));
    file.close();
    EXPECT_TRUE(IsNear(MiddleOf(Shown(picture)), Qt::darkRed));
}

TEST_F(Covers, ThatAreDamagedAreMadeAnew) {
    const QString picture = MakePicture(QStringLiteral("a.bmp"), Qt::darkGreen);
    Shown(picture);
    const QString path = Files().value(0).filePath();
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray whole = file.readAll();
    file.close();
    int faults = 0;
    for (const qsizetype length :
         {qsizetype(0), qsizetype(10), qsizetype(20), whole.size() / 2, whole.size() - 1}) {
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(whole.left(length));
        file.close();
        EXPECT_TRUE(Kept(picture).isNull()) << length;
        EXPECT_TRUE(IsNear(MiddleOf(Shown(picture)), Qt::darkGreen)) << length;
        EXPECT_FALSE(Kept(picture).isNull()) << length;
        ++faults;
    }
    EXPECT_EQ(faults, 5);
    QByteArray turned = whole;
    turned[whole.size() / 2] = static_cast<char>(turned[whole.size() / 2] ^ 1);
    EXPECT_TRUE(CoverCache::Decode(Key(picture), turned).isNull());
    EXPECT_TRUE(CoverCache::Decode(QByteArray(20, 'x'), whole).isNull()) << "of another picture";
}

TEST_F(Covers, TheOldestGoWhenThereAreTooMany) {
    QDir().mkpath(folder);
    for (int i = 0; i < 10; ++i) {
        QFile file(folder + QStringLiteral("/%1.cover").arg(i));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(QByteArray(1000, 'x'));
        file.flush();
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-100 * (i + 1)),
                                     QFile::FileModificationTime));
    }
    CoverCache small(folder, 8000);
    small.DropOldest();
    QStringList names = QDir(folder).entryList(QDir::Files, QDir::Name);
    EXPECT_EQ(names.join(QLatin1Char(' ')).toStdString(), "0.cover 1.cover 2.cover 3.cover 4.cover 5.cover");
    small.DropOldest();
    EXPECT_EQ(QDir(folder).entryList(QDir::Files).size(), 6) << "there is room now";
}

std::vector<std::string> NamesIn(const std::filesystem::path& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        names.push_back(entry.path().filename().string());
    return names;
}

TEST_F(Covers, FilesOfOtherNamesAreLeftAlone) {
    for (const char* name : {"readme.txt", ".hidden", "1.cover", "aB3xY9.new", "notes.new"})
        MakeFile(home / "covers" / name, std::string(1000, 'x'));
    CoverCache(folder, 0).DropOldest();
    EXPECT_THAT(NamesIn(home / "covers"), UnorderedElementsAre(".hidden", "notes.new", "readme.txt"));
}

// A path that couldn't be made out would mean whatever folder the program stands in.
TEST_F(Covers, OfNoFolderAreNowhere) {
    const std::filesystem::path before = std::filesystem::current_path();
    MakeFile(home / "1.cover", "somebody's");
    std::filesystem::current_path(home);
    for (const char* nowhere : {"", "covers"}) {
        CoverCache none(QString::fromLatin1(nowhere), 0);
        none.DropOldest();
        none.Keep(QByteArray(20, 'k'), QImage(80, 60, QImage::Format_RGB32));
        EXPECT_TRUE(none.Read(QByteArray(20, 'k')).isEmpty());
    }
    std::filesystem::current_path(before);
    EXPECT_THAT(NamesIn(home), ElementsAre("1.cover"));
}

TEST_F(Covers, TheFolderStaysWithinItsBound) {
    CoverCache small(folder, 20000);
    QImage cover(80, 60, QImage::Format_RGB32);
    for (int i = 0; i < 60; ++i) {
        cover.fill(QColor::fromHsv(i * 5, 200, 200));
        small.Keep(QByteArray(20, static_cast<char>(i)), cover);
    }
    qint64 bytes = 0;
    for (const QFileInfo& file : Files())
        bytes += file.size();
    EXPECT_GT(bytes, 5000);
    EXPECT_LT(bytes, 20000 + 20000 / 8);
}

TEST_F(Covers, WithoutAFolderPicturesAreShownAllTheSame) {
    const QString picture = MakePicture(QStringLiteral("a.bmp"), Qt::darkGreen);
    QFile in_the_way(folder);
    ASSERT_TRUE(in_the_way.open(QIODevice::WriteOnly)); // not even root can make the folder
    in_the_way.close();
    EXPECT_TRUE(IsNear(MiddleOf(Shown(picture)), Qt::darkGreen));
    EXPECT_TRUE(Kept(picture).isNull());
}

TEST_F(Covers, ANewerReadingOfTheSameKeyTakesThePlace) {
    const QByteArray key(20, 'k');
    QImage cover(80, 60, QImage::Format_RGB32);
    cover.fill(Qt::darkRed);
    cache.Keep(key, cover);
    cover.fill(Qt::darkGreen);
    shared->Keep(key, cover); // another program
    EXPECT_TRUE(IsNear(MiddleOf(CoverCache::Decode(key, cache.Read(key))), Qt::darkGreen));
    EXPECT_EQ(Files().size(), 1);
}

TEST_F(Covers, OfWhatIsNoPictureAreNull) {
    const QString path = In("a.jpg");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("no picture at all");
    file.close();
    EXPECT_TRUE(Shown(path).isNull());
    EXPECT_TRUE(Shown(In("missing.jpg")).isNull());
    EXPECT_TRUE(Files().isEmpty());
}

TEST_F(Covers, AReceiverThatIsGoneIsToldNothing) {
    const QString picture = MakePicture(QStringLiteral("a.bmp"), Qt::darkGreen);
    int taken = 0;
    {
        QObject receiver;
        ui::ReadCoverBeside(&receiver, picture, {80, 60}, shared, [&](const QImage&) { ++taken; });
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return !Kept(picture).isNull(); }));
    QTest::qWait(50);
    EXPECT_EQ(taken, 0);
}

} // namespace
} // namespace kelvash::test
