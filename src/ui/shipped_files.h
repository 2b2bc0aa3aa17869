// Files that the program ships and that a user may replace: help, splash, default picture, icon.
#pragma once

namespace kelvash::ui {

// Makes the files that are built into the program known as ":/kelvash/...".
void TakeShippedFiles();

// Puts those that are missing into the application's folder. One that can't be written is missed where it is
// wanted.
void ProvideShippedFiles();

} // namespace kelvash::ui
