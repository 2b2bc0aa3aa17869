// A screenshot in a handier size: how it will look, and where to.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <cstdint>
#include <string>

#include "swap/picture_codec.h"
#include "ui/form_support.h"
#include "ui/picture_view.h"

namespace kelvash::ui {

class Dialog_Resize final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_Resize(QWidget* parent);
    void Set_Caption_Texts();
    // The picture and the code of its level. False, after a message, for one that can't be resized.
    [[nodiscard]] bool ImpostaValori(std::int32_t code, const std::string& path);

    QLabel* const Label_Resize = Make<QLabel>(this, "Label_Resize");
    QComboBox* const Combo_Resize = Make<QComboBox>(this, "Combo_Resize");
    QLabel* const Label_JpgQuality = Make<QLabel>(this, "Label_JpgQuality");
    QComboBox* const Combo_JpgQuality = Make<QComboBox>(this, "Combo_JpgQuality");
    PictureView* const Picture1 = Make<PictureView>(this, "Picture1");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Save = Make<QPushButton>(this, "Pul_Save");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Fill();
    void Lay();
    void ShowResized();
    void Save();

    std::int32_t code_ = -1;
    std::string path_;
    swap::Picture picture_;
    swap::Picture resized_;
};

} // namespace kelvash::ui
