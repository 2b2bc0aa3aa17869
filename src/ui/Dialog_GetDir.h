// The folder chooser, on the drives and paths that the logic knows.
#pragma once

#include <QDialog>
#include <string>

#include "ui/form_support.h"

namespace kelvash::ui {

class Dialog_GetDir final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_GetDir(QWidget* parent);
    void Set_Caption_Texts();
    // An empty caption leaves the form's own; the folder to start from may be missing.
    void ImpostaValori(const std::string& caption, const std::string& start);

    // The chosen folder as a path text, after Accepted.
    std::string Folder;
};

} // namespace kelvash::ui
