// The converter of audio files: a list of them, the wanted format, the folder that they go to.
#pragma once

#include <QComboBox>
#include <QDialog>
#include <QGroupBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>

#include "audio/converter.h"
#include "ui/form_support.h"
#include "ui/job_door.h"
#include "ui/path_label.h"

namespace kelvash::ui {

class Dialog_ConvertAudio final : public QDialog {
    Q_OBJECT

  public:
    explicit Dialog_ConvertAudio(QWidget* parent);
    void Set_Caption_Texts();
    // What it is opened for, and what it begins with. False, after a message, if it can't work.
    bool ImpostaValori(const audio::Converter& converter = {});
    void done(int result) override;

    QGroupBox* const Frame_Files = Make<QGroupBox>(this, "Frame_Files");
    QListWidget* const List_Files = Make<QListWidget>(this, "List_Files");
    QPushButton* const Pul_AddFile = Make<QPushButton>(this, "Pul_AddFile");
    QPushButton* const Pul_AddFolder = Make<QPushButton>(this, "Pul_AddFolder");
    QPushButton* const Pul_Remove = Make<QPushButton>(this, "Pul_Remove");
    QLabel* const Label_Total = Make<QLabel>(this, "Label_Total");
    QGroupBox* const Frame1_Outputwav = Make<QGroupBox>(this, "Frame1_Outputwav");
    QRadioButton* const Opt_StandardWav = Make<QRadioButton>(this, "Opt_StandardWav");
    QRadioButton* const Opt_22050_mono = Make<QRadioButton>(this, "Opt_22050_mono");
    QRadioButton* const Opt_Wav4bit = Make<QRadioButton>(this, "Opt_Wav4bit");
    QGroupBox* const Frame_RateMp3 = Make<QGroupBox>(this, "Frame_RateMp3");
    QLabel* const Label_BitRate = Make<QLabel>(this, "Label_BitRate");
    QComboBox* const Combo_BitRate = Make<QComboBox>(this, "Combo_BitRate");
    QLabel* const Label_Canali = Make<QLabel>(this, "Label_Canali");
    QComboBox* const Combo_Canali = Make<QComboBox>(this, "Combo_Canali");
    QLabel* const Label_Frequenza = Make<QLabel>(this, "Label_Frequenza");
    QComboBox* const Combo_Frequenza = Make<QComboBox>(this, "Combo_Frequenza");
    QLabel* const Label_InfoMp3 = Make<QLabel>(this, "Label_InfoMp3");
    QLabel* const Label_SourceMp3 = Make<QLabel>(this, "Label_SourceMp3");
    QLabel* const Label_Target = Make<QLabel>(this, "Label_Target");
    PathLabel* const Label_DirOut = Make<PathLabel>(this, "Label_DirOut");
    QPushButton* const Pul_SfogliaDirOut = Make<QPushButton>(this, "Pul_SfogliaDirOut");
    QPushButton* const Pul_Help = Make<QPushButton>(this, "Pul_Help");
    QPushButton* const Pul_Converti = Make<QPushButton>(this, "Pul_Converti");
    QPushButton* const Pul_Cancel = Make<QPushButton>(this, "Pul_Cancel");

  private:
    void Lay();
    void LayFiles();
    void Connect();
    void Refresh();
    // True if the form is to be closed.
    bool Convert();
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    audio::Converter converter_;
    JobDoor door_{this};
};

} // namespace kelvash::ui
