// Keeps a form within the screen that it is shown on: one that is too large for it gets smaller and scrolls.
#pragma once

class QDialog;
class QLayout;

namespace kelvash::ui {

// It acts whenever the form is shown. The row of buttons at the form's foot, if it has one, doesn't scroll.
void KeepOnScreen(QDialog* form, QLayout* foot = nullptr);

} // namespace kelvash::ui
