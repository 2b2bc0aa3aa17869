// Runs the tests of the forms without a screen.
#include <gmock/gmock.h>

#include <QApplication>
#include <QTemporaryDir>

#include "ui/look.h"

int main(int argc, char** argv) {
    testing::InitGoogleMock(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir cache; // covers of earlier runs would hide what isn't read any more
    qputenv("XDG_CACHE_HOME", cache.path().toUtf8());
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    const QApplication application(argc, argv);
    kelvash::ui::TakeLook(false);
    return RUN_ALL_TESTS();
}
