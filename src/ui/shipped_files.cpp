#include "ui/shipped_files.h"

#include <QFile>
#include <string>

#include "foundation/drives.h"
#include "foundation/files.h"

// The resources lie in a library, whose parts the linker leaves out unless somebody asks for them.
static void TakeResources() {
    Q_INIT_RESOURCE(kelvash);
}

namespace kelvash::ui {

void TakeShippedFiles() {
    TakeResources();
}

void ProvideShippedFiles() {
    TakeResources();
    for (const char* name : {"help_kelvash.txt", "splash.jpg", "default_shot.jpg", "lara.ico"}) {
        const std::string path = AppFolder() + "\\" + name;
        QFile shipped(QStringLiteral(":/kelvash/") + QLatin1String(name));
        if (FileExists(path) || !shipped.open(QIODevice::ReadOnly)) continue;
        static_cast<void>(ReplaceFileBytes(path, shipped.readAll().toStdString(), Flush::No));
    }
}

} // namespace kelvash::ui
