// Files that the program ships and that a user may replace: help, splash, default picture, icon.
#pragma once

namespace kelvash::ui {

// Puts those that are missing into the application's folder. One that can't be written is missed where it is
// wanted.
void ProvideShippedFiles();

} // namespace kelvash::ui
