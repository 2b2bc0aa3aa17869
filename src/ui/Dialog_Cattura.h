// A picture that was captured in the game, and the question where to.
//
// It keeps the picture: what becomes of the clipboard meanwhile is nothing to it.
#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QPushButton>
#include <cstdint>
#include <string>

#include "swap/picture_codec.h"
#include "ui/form_support.h"
#include "ui/picture_view.h"

namespace kelvash::ui {

class Dialog_Cattura final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Cattura(QWidget* parent);
    void Set_Caption_Texts();
    // The picture, and the code of the level that it is of.
    void ImpostaValori(std::int32_t code, const swap::Picture& picture);

    // Where the picture was saved; empty if it was given up or couldn't be saved.
    std::string SavedPath;

    PictureView* const Picture1 = Make<PictureView>(this, "Picture1");
    QCheckBox* const Check_AutoSave = Make<QCheckBox>(this, "Check_AutoSave");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Save = Make<QPushButton>(this, "Pul_Save");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();
    void Save();

    std::int32_t code_ = -1;
    swap::Picture picture_;
};

} // namespace kelvash::ui
