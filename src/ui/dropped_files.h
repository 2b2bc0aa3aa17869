// Files and folders that are dropped on a form.
#pragma once

#include <QMimeData>
#include <string>
#include <vector>

namespace kelvash::ui {

// Those that a drive reaches, as path texts.
std::vector<std::string> DroppedFiles(const QMimeData* data);

} // namespace kelvash::ui
