// Reading of the levels' pictures. Captures come as .jpg whatever they are: their contents tell what they
// are.
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

namespace kelvash::ui {

// The whole picture; null for a file that is none.
QImage ReadPicture(const QString& native_path);
// One that covers that size with as little as possible beyond it on two sides; null for no path and for no
// picture.
QImage ReadCover(const QString& native_path, const QSize& size);

} // namespace kelvash::ui
