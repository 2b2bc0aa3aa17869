// Says which windows are the program's own, to whoever reads the clipboard beside the forms.
#pragma once

namespace kelvash::ui {

// Holds for as long as it lives. See TakeOwnWindow in foundation/clipboard_picture.h.
class OwnWindows {
  public:
    OwnWindows();
    ~OwnWindows();
    OwnWindows(const OwnWindows&) = delete;
    OwnWindows& operator=(const OwnWindows&) = delete;
};

} // namespace kelvash::ui
