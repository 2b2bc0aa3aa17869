#include "ui/shipped_files.h"

#include <QFile>
#include <string>

#include "foundation/drives.h"
#include "foundation/files.h"

namespace kelvash::ui {

void ProvideShippedFiles() {
    for (const char* name : {"help_kelvash.txt", "splash.jpg", "default_shot.jpg", "lara.ico"}) {
        const std::string path = AppFolder() + "\\" + name;
        QFile shipped(QStringLiteral(":/kelvash/") + QLatin1String(name));
        if (FileExists(path) || !shipped.open(QIODevice::ReadOnly)) continue;
        static_cast<void>(ReplaceFileBytes(path, shipped.readAll().toStdString(), Flush::No));
    }
}

} // namespace kelvash::ui
