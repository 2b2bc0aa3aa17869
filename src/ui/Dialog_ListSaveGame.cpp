#include "ui/Dialog_ListSaveGame.h"

#include <QVBoxLayout>

#include "companion/savegame_mail.h"
#include "companion/savegames.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "ui/Dialog_ListSaveGame_messages.h"
#include "ui/form_kit.h"
#include "ui/look.h"

namespace kelvash::ui {

using companion::ListPurpose;
using companion::SlotsOutcome;
using companion::SlotsResult;

namespace {

MessageId TitleOf(ListPurpose purpose) {
    switch (purpose) {
        case ListPurpose::Import:
            return msg::kListSavesImport;
        case ListPurpose::Export:
            return msg::kListSavesExport;
        case ListPurpose::Mail:
            return msg::kListSavesMail;
    }
    return msg::kListSavesCaption;
}

} // namespace

Dialog_ListSaveGame::Dialog_ListSaveGame(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_ListSaveGame"));
    Set_Caption_Texts();
    Lay();
    connect(Pul_All, &QPushButton::clicked, List_Shot, &QListWidget::selectAll);
    connect(Pul_Ok, &QPushButton::clicked, this, [this] { door_.Try([this] { Take(); }); });
    connect(Pul_Annulla, &QPushButton::clicked, this, &Dialog_ListSaveGame::reject);
}

void Dialog_ListSaveGame::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kListSavesCaption},
                       {Label_List, msg::kListSavesLabel, List_Shot},
                       {Pul_All, msg::kListSavesAll, Glyph::All},
                       {Check_Elimina, msg::kListSavesDelete},
                       {Pul_Ok, msg::kListSavesOk},
                       {Pul_Annulla, msg::kListSavesCancel},
                       {Pul_Help, msg::kListSavesHelp},
                       ControlCaption::WhatGoes(Check_Elimina, msg::kListSavesGoes)});
}

void Dialog_ListSaveGame::Lay() {
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Label_List);
    layout->addWidget(List_Shot, 1);
    layout->addLayout(Line({Pul_All}));
    layout->addWidget(Check_Elimina);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Savegames, Pul_Ok, Pul_Annulla}));
    List_Shot->setSelectionMode(QAbstractItemView::ExtendedSelection);
    List_Shot->setUniformItemSizes(true);
    const int letter = fontMetrics().averageCharWidth();
    List_Shot->setMinimumSize(letter * 48, fontMetrics().lineSpacing() * 6);
    resize(letter * 76, fontMetrics().lineSpacing() * 26);
}

bool Dialog_ListSaveGame::ImpostaValori(const std::string& folder, bool import, bool mail, bool) {
    purpose_ = import ? ListPurpose::Import : mail ? ListPurpose::Mail : ListPurpose::Export;
    setWindowTitle(Caption(TitleOf(purpose_)));
    Check_Elimina->setVisible(purpose_ == ListPurpose::Export);
    files_ = companion::SavegamesToList(core::SelectedLevel(), purpose_, folder);
    List_Shot->clear();
    for (const std::string& file : files_)
        List_Shot->addItem(ShownLine(companion::SavegameLine(file)));
    List_Shot->setFocus();
    return !files_.empty();
}

void Dialog_ListSaveGame::Take() {
    std::vector<std::string> chosen;
    for (std::size_t row = 0; row < files_.size(); ++row)
        if (List_Shot->item(static_cast<int>(row))->isSelected()) chosen.push_back(files_[row]);
    if (chosen.empty()) {
        companion::TellNothingChosen();
        return;
    }
    if (purpose_ == ListPurpose::Import)
        Import(chosen);
    else if (purpose_ == ListPurpose::Export)
        Export(chosen);
    else
        Mail(chosen);
}

// What is only partly done is told; the form closes, since its list is old then.
void Dialog_ListSaveGame::Import(const std::vector<std::string>& files) {
    const SlotsOutcome outcome = companion::ImportSavegames(core::SelectedLevel(), files);
    Changed = true;
    TellOutcome(outcome);
    if (outcome.Result == SlotsResult::Done || outcome.Result == SlotsResult::Partly) accept();
}

void Dialog_ListSaveGame::Export(const std::vector<std::string>& files) {
    const std::string folder = companion::ChooseExportFolder();
    if (folder.empty()) return;
    const auto sources = Check_Elimina->isChecked() ? companion::Sources::Delete : companion::Sources::Keep;
    const SlotsOutcome outcome = companion::ExportSavegames(core::SelectedLevel(), files, folder, sources);
    Changed = true;
    TellOutcome(outcome);
    if (outcome.Result == SlotsResult::Done || outcome.Result == SlotsResult::Partly) accept();
}

void Dialog_ListSaveGame::Mail(const std::vector<std::string>& files) {
    const std::string name = core::PlaceOf(core::SelectedLevel()).Name;
    if (companion::SendSavegames(files, name, companion::MailFrom::List)) accept();
}

} // namespace kelvash::ui
