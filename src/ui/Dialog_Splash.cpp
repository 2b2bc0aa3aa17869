#include "ui/Dialog_Splash.h"

#include <QGuiApplication>
#include <QImageReader>
#include <QPixmap>
#include <QScreen>

#include "foundation/drives.h"
#include "ui/Dialog_Splash_messages.h"
#include "ui/fragments.h"
#include "ui/look.h"

namespace kelvash::ui {

Dialog_Splash::Dialog_Splash(const QPixmap& picture) : QWidget(nullptr, Qt::SplashScreen) {
    setObjectName(QStringLiteral("Dialog_Splash"));
    Image_Splash->setPixmap(picture);
    Image_Splash->adjustSize();
    setFixedSize(Image_Splash->size());
    QPalette light = Label_Version->palette();
    light.setColor(QPalette::WindowText, ShadeText());
    Label_Version->setPalette(light);
    Label_Version->setText(Caption(msg::kSplashVersion, {LoadFragment(fragment::kSplashVersionNumber)}));
    Label_Version->adjustSize();
    const int margin = fontMetrics().height();
    Label_Version->move(width() - Label_Version->width() - margin,
                        height() - Label_Version->height() - margin);
    if (const QScreen* const screen = QGuiApplication::primaryScreen())
        move(screen->availableGeometry().center() - rect().center());
}

QPixmap SplashPicture() {
    const std::string path = AppFolder() + LoadFragment(fragment::kSplashName);
    const QString file = NativeText(path);
    // By its name it is a JPEG: to load every plug-in for pictures and ask it takes longer than reading it.
    QImageReader reader(file, "jpg");
    reader.setAutoDetectImageFormat(false);
    const QPixmap picture = QPixmap::fromImageReader(&reader);
    return picture.isNull() ? QPixmap(file) : picture;
}

} // namespace kelvash::ui
