// Keeps a form within the screen that it is shown on: one that is too large for it gets smaller and scrolls.
#pragma once

class QDialog;

namespace kelvash::ui {

// To be called once the form's controls are laid out; it acts whenever the form is shown.
void KeepOnScreen(QDialog* form);

} // namespace kelvash::ui
