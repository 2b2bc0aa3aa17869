#pragma once
#include <QDialog>
namespace kelvash::ui {
class Dialog_Settings : public QDialog {
  public:
    using QDialog::QDialog;
    void ImpostaValori() {}
};
} // namespace kelvash::ui
