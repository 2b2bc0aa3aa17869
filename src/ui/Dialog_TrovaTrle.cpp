#include "ui/Dialog_TrovaTrle.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "trle/trle_folder.h"
#include "ui/Dialog_TrovaTrle_messages.h"
#include "ui/help.h"

namespace kelvash::ui {

Dialog_TrovaTrle::Dialog_TrovaTrle(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_TrovaTrle"));
    Set_Caption_Texts();
    Lay();
    // TRLE can't be set up from a folder or from zips yet.
    Pul_InstallTrleCD->setEnabled(false);
    Pul_InstallCompresso->setEnabled(false);
    connect(Pul_Sfoglia, &QPushButton::clicked, this, &Dialog_TrovaTrle::Browse);
    connect(Pul_Ok, &QPushButton::clicked, this, [this] {
        Chosen = folder_;
        accept();
    });
    connect(Pul_Cancel, &QPushButton::clicked, this, [this] {
        Chosen = ToUtf8(Pul_Cancel->objectName());
        reject();
    });
    ConnectHelp(this, Pul_Help, HelpMark::FindTrle);
    ShowFolder();
}

void Dialog_TrovaTrle::Set_Caption_Texts() {
    setWindowTitle(Caption(msg::kTrovaCaption));
    Label_Info->setText(Caption(msg::kTrovaText, {kLineBreak, kLineBreak}));
    Label_Title->setText(Caption(msg::kTrovaPath));
    Pul_Sfoglia->setText(Caption(msg::kTrovaBrowse));
    Pul_InstallTrleCD->setText(Caption(msg::kTrovaInstallCd));
    Pul_InstallCompresso->setText(Caption(msg::kTrovaInstallZips));
    Pul_Help->setText(Caption(msg::kTrovaHelp));
    Pul_Ok->setText(Caption(msg::kTrovaOk));
    Pul_Cancel->setText(Caption(msg::kTrovaCancel));
    AssignMnemonics(this);
}

void Dialog_TrovaTrle::Lay() {
    auto* const choice = new QHBoxLayout;
    choice->addWidget(Label_Title);
    choice->addWidget(Label_Path, 1);
    choice->addWidget(Pul_Sfoglia);
    auto* const set_up = new QHBoxLayout;
    set_up->addWidget(Pul_InstallTrleCD);
    set_up->addWidget(Pul_InstallCompresso);
    set_up->addStretch();
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(Pul_Help);
    buttons->addStretch();
    buttons->addWidget(Pul_Ok);
    buttons->addWidget(Pul_Cancel);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addLayout(choice);
    layout->addLayout(set_up);
    layout->addLayout(buttons);
    layout->setSpacing(fontMetrics().height());
    Label_Info->setWordWrap(true);
    Label_Path->setFrameShape(QFrame::StyledPanel);
    Label_Path->setTextInteractionFlags(Qt::TextSelectableByMouse);
    setMinimumWidth(fontMetrics().averageCharWidth() * 84);
}

void Dialog_TrovaTrle::ImpostaValori(const ChoiceForm& form) {
    folder_ = form.start;
    ShowFolder();
}

void Dialog_TrovaTrle::ShowFolder() {
    Label_Path->setText(folder_.empty() ? Caption(msg::kTrovaNone) : FromUtf8(folder_));
    Pul_Ok->setEnabled(!folder_.empty());
    (folder_.empty() ? Pul_Sfoglia : Pul_Ok)->setDefault(true);
    (folder_.empty() ? Pul_Sfoglia : Pul_Ok)->setFocus();
}

void Dialog_TrovaTrle::Browse() {
    const std::optional<std::string> chosen =
        TheUser().ChooseFolder(LoadMessage(msg::kTrovaBrowseTitle), folder_);
    if (!chosen || !trle::CheckTrleFolder(*chosen, true)) return;
    folder_ = *chosen;
    ShowFolder();
}

} // namespace kelvash::ui
