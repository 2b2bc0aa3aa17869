// What is wrong with a text that is typed for a field of the Archive.
#pragma once

#include <QString>
#include <cstddef>

namespace kelvash::ui {

// For the user, in a line; empty if a field of that width gives the text back as it is.
QString FaultOfText(const QString& typed, std::size_t width);

} // namespace kelvash::ui
