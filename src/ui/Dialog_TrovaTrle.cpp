#include "ui/Dialog_TrovaTrle.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "trle/trle_folder.h"
#include "ui/Dialog_TrovaTrle_messages.h"
#include "ui/form_kit.h"

namespace kelvash::ui {

Dialog_TrovaTrle::Dialog_TrovaTrle(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_TrovaTrle"));
    NotYet({Pul_InstallTrleCD, Pul_InstallCompresso});
    Set_Caption_Texts();
    Lay();
    connect(Pul_Sfoglia, &QPushButton::clicked, this, &Dialog_TrovaTrle::Browse);
    connect(Pul_Ok, &QPushButton::clicked, this, &QDialog::accept);
    connect(Pul_Cancel, &QPushButton::clicked, this, &QDialog::reject);
    ShowFolder();
}

void Dialog_TrovaTrle::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kTrovaCaption},
                       {Label_Info, msg::kTrovaText, {kLineBreak, kLineBreak}},
                       {Label_Title, msg::kTrovaPath},
                       {Pul_Sfoglia, msg::kTrovaBrowse, Glyph::Folder},
                       {Pul_InstallTrleCD, msg::kTrovaInstallCd, Glyph::Disc},
                       {Pul_InstallCompresso, msg::kTrovaInstallZips, Glyph::Compress},
                       {Pul_Help, msg::kTrovaHelp},
                       {Pul_Ok, msg::kTrovaOk},
                       {Pul_Cancel, msg::kTrovaCancel}});
}

void Dialog_TrovaTrle::Lay() {
    auto* const choice = new QGridLayout;
    choice->addWidget(Label_Title, 0, 0);
    choice->addWidget(Label_Path, 0, 1);
    choice->addWidget(Pul_Sfoglia, 0, 2);
    choice->addWidget(Note_Path, 1, 1, 1, 2);
    choice->setColumnStretch(1, 1);
    auto* const set_up = new QHBoxLayout;
    set_up->addWidget(Pul_InstallTrleCD);
    set_up->addWidget(Pul_InstallCompresso);
    set_up->addStretch();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_Info);
    layout->addLayout(choice);
    layout->addLayout(set_up);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::FindTrle, Pul_Ok, Pul_Cancel}));
    layout->setSpacing(fontMetrics().height());
    Label_Info->setWordWrap(true);
    layout->addStrut(fontMetrics().averageCharWidth() * 84);
}

void Dialog_TrovaTrle::ImpostaValori(const trle::TrleFolderChoice& choice) {
    Folder = choice.Folder;
    ShowFolder();
}

void Dialog_TrovaTrle::ShowFolder() {
    Label_Path->SetPath(FromUtf8(Folder), Caption(msg::kTrovaNone));
    Note_Path->Say(Fault());
    Pul_Ok->setEnabled(!Folder.empty());
    (Folder.empty() ? Pul_Sfoglia : Pul_Ok)->setDefault(true);
    (Folder.empty() ? Pul_Sfoglia : Pul_Ok)->setFocus();
}

// Of the folder that is shown; without one, of that which the settings name and which can't be used.
QString Dialog_TrovaTrle::Fault() const {
    if (!Folder.empty())
        return trle::CheckTrleFolder(Folder, false) ? QString() : Caption(msg::kTrovaNoteUnfit);
    const std::string former = core::TrleFolder();
    if (former.empty()) return {};
    return WrappedText(LoadMessage(
        FolderExists(former) ? msg::kTrovaNoteFormerUnfit : msg::kTrovaNoteFormerGone, {CleanLine(former)}));
}

void Dialog_TrovaTrle::Browse() {
    const std::optional<std::string> chosen =
        TheUser().ChooseFolder(LoadMessage(msg::kTrovaBrowseTitle), Folder);
    if (!chosen || !trle::CheckTrleFolder(*chosen, true)) return;
    Folder = *chosen;
    ShowFolder();
}

} // namespace kelvash::ui
