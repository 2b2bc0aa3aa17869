#include "ui/dropped_files.h"

#include <QUrl>

#include "foundation/drives.h"

namespace kelvash::ui {

std::vector<std::string> DroppedFiles(const QMimeData* data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data->urls()) {
        if (!url.isLocalFile()) continue;
        std::string path = DosPath(url.toLocalFile().toStdU16String());
        if (!path.empty()) paths.push_back(std::move(path));
    }
    return paths;
}

} // namespace kelvash::ui
