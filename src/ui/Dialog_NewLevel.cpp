#include "ui/Dialog_NewLevel.h"

#include <QDragEnterEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QVBoxLayout>

#include "core/path_field.h"
#include "foundation/path.h"
#include "ui/Dialog_NewLevel_messages.h"
#include "ui/dropped_files.h"
#include "ui/form_kit.h"
#include "ui/forms_user.h"
#include "ui/text_faults.h"

namespace kelvash::ui {

namespace {

// Takes zips, folders or files into a level.
void AddSources(intake::NewLevel& level, const std::vector<std::string>& sources) {
    for (const std::string& source : sources)
        if (level.State == intake::FormState::Open) AddSource(level, source);
}

} // namespace

Dialog_NewLevel::Dialog_NewLevel(FormsUser& user, intake::NewLevel& level, QWidget* parent)
    : QDialog(parent), level_(level) {
    setObjectName(QStringLiteral("Dialog_NewLevel"));
    NotYet({Pul_SearchLevel, Pul_CompileTom, Pul_SetMyLanguage});
    Set_Caption_Texts();
    Lay();
    Connect(user);
    ImpostaValori();
}

void Dialog_NewLevel::Set_Caption_Texts() {
    SetCaptions(this, {{this, level_.Adding ? msg::kNewLevelCaption : msg::kPropertyCaption},
                       {Label_NameLevel, msg::kNewLevelName, Text_NameLevel},
                       {Label_Note, msg::kNewLevelNote, Text_Note},
                       {Label_MoreInfo, msg::kNewLevelMoreInfo, Combo_MoreInfo},
                       {Frame_Files, msg::kNewLevelFileFrame},
                       {Pul_AddFile, msg::kNewLevelAddFile, Glyph::AddFile},
                       {Pul_AddFolder, msg::kNewLevelAddFolder, Glyph::NewFolder},
                       {Pul_SearchLevel, msg::kNewLevelSearch, Glyph::Search},
                       {Pul_CompileTom, msg::kNewLevelCompile, Glyph::Repair},
                       {Pul_SetMyLanguage, msg::kNewLevelLanguage, Glyph::Language},
                       {Pul_Remove, msg::kNewLevelRemove, Glyph::TakeOut},
                       {Pul_RimuoviTutti, msg::kNewLevelRemoveAll, Glyph::Delete},
                       {Pul_Refresh, msg::kNewLevelRefresh, Glyph::Refresh},
                       {Pul_Help, msg::kNewLevelHelp},
                       {Pul_Ok, msg::kNewLevelOk},
                       {Pul_Cancel, msg::kNewLevelCancel},
                       ControlCaption::WhatGoes(Pul_Remove, msg::kNewLevelGoesFile),
                       ControlCaption::WhatGoes(Pul_RimuoviTutti, msg::kNewLevelGoesAll),
                       ControlCaption::Spoken(List_Files, msg::kNewLevelSpokenFiles)});
}

void Dialog_NewLevel::Lay() {
    LayFiles();
    auto* const layout = new QVBoxLayout(this);
    layout->addLayout(LayFields());
    layout->addWidget(Frame_Files, 1);
    layout->addWidget(Label_Info);
    layout->addWidget(ProgressBar1);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::AddLevel, Pul_Ok, Pul_Cancel}));
    Label_Info->setWordWrap(true);
    QSizePolicy keeps_place = ProgressBar1->sizePolicy();
    keeps_place.setRetainSizeWhenHidden(true);
    ProgressBar1->setSizePolicy(keeps_place);
    setAcceptDrops(true);
    layout->addStrut(fontMetrics().averageCharWidth() * 92);
    List_Files->setMinimumHeight(fontMetrics().height() * 14);
}

QLayout* Dialog_NewLevel::LayFields() {
    auto* const grid = new QGridLayout;
    grid->addWidget(Label_NameLevel, 0, 0);
    grid->addWidget(Text_NameLevel, 0, 1);
    grid->addWidget(Label_Note, 1, 0);
    grid->addWidget(Text_Note, 1, 1);
    grid->addWidget(Note_Fields, 2, 1);
    grid->addWidget(Label_MoreInfo, 3, 0);
    grid->addWidget(Combo_MoreInfo, 3, 1);
    grid->setColumnStretch(1, 1);
    Text_NameLevel->setMaxLength(core::kLineWidth);
    Text_Note->setMaxLength(core::kLineWidth);
    Note_Fields->Watch(Text_NameLevel, [](const QString& typed) {
        return typed.trimmed().isEmpty() ? Caption(msg::kNewLevelNoName)
                                         : FaultOfText(typed, core::kLineWidth);
    });
    Note_Fields->Watch(Text_Note, [](const QString& typed) { return FaultOfText(typed, core::kLineWidth); });
    TakeLongItems(Combo_MoreInfo);
    return grid;
}

void Dialog_NewLevel::LayFiles() {
    auto* const buttons = new QVBoxLayout;
    for (QPushButton* button : {Pul_AddFile, Pul_AddFolder, Pul_SearchLevel})
        buttons->addWidget(button);
    buttons->addSpacing(fontMetrics().height() / 2);
    for (QPushButton* button : {Pul_CompileTom, Pul_SetMyLanguage})
        buttons->addWidget(button);
    buttons->addSpacing(fontMetrics().height() / 2);
    for (QPushButton* button : {Pul_Remove, Pul_RimuoviTutti, Pul_Refresh})
        buttons->addWidget(button);
    buttons->addStretch();
    auto* const grid = new QGridLayout(Frame_Files);
    grid->addWidget(List_Files, 0, 0);
    grid->addLayout(buttons, 0, 1);
    grid->addWidget(Label_Size, 1, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    List_Files->setTextElideMode(Qt::ElideMiddle);
    List_Files->setUniformItemSizes(true);
    List_Files->installEventFilter(this);
}

void Dialog_NewLevel::Connect(FormsUser& user) {
    const auto work = [this](QPushButton* button, void (*job)(intake::NewLevel&)) {
        connect(button, &QPushButton::clicked, this, [this, job] { Work(job); });
    };
    work(Pul_AddFile, &intake::AddFile);
    work(Pul_AddFolder, &intake::AddFolder);
    work(Pul_RimuoviTutti, &intake::RemoveAllFiles);
    work(Pul_Refresh, &intake::Refresh);
    work(Pul_Ok, &intake::StoreLevel);
    work(Pul_Cancel, &intake::CancelLevel);
    connect(Pul_Remove, &QPushButton::clicked, this, [this] {
        const int item = List_Files->currentRow();
        Work([item](intake::NewLevel& level) { RemoveFile(level, item); });
    });
    connect(List_Files, &QListWidget::itemDoubleClicked, this, [this] { OpenSelected(); });
    FollowJobs(user, BarPlace::CallerForm, Label_Info, ProgressBar1, IdleBar::Hides);
}

void Dialog_NewLevel::ImpostaValori() {
    Text_NameLevel->setText(ShownLine(level_.Name));
    Text_Note->setText(ShownLine(level_.Note));
    Combo_MoreInfo->clear();
    for (const std::string& name : level_.MoreInfoChoices)
        Combo_MoreInfo->addItem(ShownLine(name));
    Combo_MoreInfo->setCurrentIndex(level_.MoreInfo);
    const int selected = List_Files->currentRow();
    List_Files->clear();
    for (const std::string& file : level_.FileList)
        List_Files->addItem(ShownLine(FileNameOf(file)));
    List_Files->setCurrentRow(std::min(selected, List_Files->count() - 1));
    Label_Size->setText(ShownLine(level_.SizeText));
    EnableButtons();
}

void Dialog_NewLevel::EnableButtons() {
    for (QPushButton* button : {Pul_AddFile, Pul_AddFolder, Pul_Refresh})
        button->setEnabled(!level_.OnCd);
    for (QPushButton* button : {Pul_Remove, Pul_RimuoviTutti})
        button->setEnabled(!level_.OnCd && List_Files->count() > 0);
}

void Dialog_NewLevel::Work(const LevelJob& job) {
    door_.Try([&] { WorkNow(job); });
}

void Dialog_NewLevel::WorkNow(const LevelJob& job) {
    level_.Name = ToUtf8(Text_NameLevel->text());
    level_.Note = ToUtf8(Text_Note->text());
    level_.MoreInfo = Combo_MoreInfo->currentIndex();
    job(level_);
    if (level_.State == intake::FormState::Saved) {
        accept();
    } else if (level_.State == intake::FormState::Cancelled) {
        QDialog::reject();
    } else {
        ImpostaValori();
    }
}

void Dialog_NewLevel::reject() {
    Work(&intake::GiveUpLevel);
}

void Dialog_NewLevel::OpenSelected() {
    door_.Try([this] { OpenLevelFile(level_, List_Files->currentRow()); });
}

// Enter opens the selected file, and Delete removes it.
bool Dialog_NewLevel::eventFilter(QObject* watched, QEvent* event) {
    if (watched != List_Files || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    const int key = static_cast<QKeyEvent*>(event)->key();
    if (key == Qt::Key_Delete && Pul_Remove->isEnabled()) {
        Pul_Remove->click();
        return true;
    }
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && List_Files->currentRow() >= 0) {
        OpenSelected();
        return true;
    }
    return false;
}

void Dialog_NewLevel::dragEnterEvent(QDragEnterEvent* event) {
    if (door_.IsFree() && !level_.OnCd && !DroppedFiles(event->mimeData()).empty())
        event->acceptProposedAction();
}

void Dialog_NewLevel::dropEvent(QDropEvent* event) {
    if (!door_.IsFree()) return;
    const std::vector<std::string> paths = DroppedFiles(event->mimeData());
    event->acceptProposedAction();
    // The program that gave the files waits for the end of this event.
    door_.WhenFree(
        [this, paths] { WorkNow([&paths](intake::NewLevel& level) { AddSources(level, paths); }); });
}

} // namespace kelvash::ui
