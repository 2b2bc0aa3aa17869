#include "ui/Dialog_Settings.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "foundation/files.h"
#include "foundation/text.h"
#include "ui/Dialog_Settings_messages.h"
#include "ui/form_kit.h"
#include "ui/look.h"

namespace kelvash::ui {

namespace {

QString TenthsText(int tenths) {
    return QString::number(tenths) + Caption(msg::kSettingsTenths);
}

// Shows a number that may have no item of its own: it then stands there until another is chosen.
void ShowNumber(QComboBox* combo, int number, const QString& text) {
    combo->setPlaceholderText(text);
    combo->setCurrentIndex(combo->findData(number));
}

void TakeNumber(const QComboBox* combo, std::int32_t& number) {
    if (combo->currentIndex() >= 0) number = combo->currentData().toInt();
}

} // namespace

Dialog_Settings::Dialog_Settings(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Settings"));
    NotYet({Pul_SetJoy});
    Set_Caption_Texts();
    Lay();
    for (int number = 1; number <= companion::kMostSavegamesToChoose; ++number)
        Combo_NSavegame->addItem(QString::number(number), number);
    for (int tenths = 1; tenths <= companion::kMostTenthsToChoose; ++tenths)
        Combo_Decimi->addItem(TenthsText(tenths), tenths);
    const auto choose = [this](QPushButton* button, void (*chooser)(companion::Settings&)) {
        connect(button, &QPushButton::clicked, this, [this, chooser] {
            chooser(settings_);
            ShowPaths();
        });
    };
    choose(Pul_SfogliaPathTrle, &companion::ChooseTrleFolder);
    choose(Pul_SfogliaLoadDir, &companion::ChooseDownloadFolder);
    choose(Pul_ScegliEditor, &companion::ChooseGraphicsProgram);
    connect(Check_ArchiviaSavegame, &QCheckBox::toggled, Combo_NSavegame, &QComboBox::setEnabled);
    connect(Pul_Ok, &QPushButton::clicked, this, &Dialog_Settings::Accept);
    connect(Pul_Cancel, &QPushButton::clicked, this, &Dialog_Settings::reject);
    ImpostaValori();
}

void Dialog_Settings::Set_Caption_Texts() {
    SetCaptions(this, {{this, msg::kSettingsCaption},
                       {Frame_Folders, msg::kSettingsFolders},
                       {Label_TitlePathTrle, msg::kSettingsTrle},
                       {Pul_SfogliaPathTrle, msg::kSettingsBrowseTrle, Glyph::Folder},
                       {Label_TitleLoadDir, msg::kSettingsLoadDir},
                       {Pul_SfogliaLoadDir, msg::kSettingsBrowseLoadDir, Glyph::Folder},
                       {Label_TitleEditor, msg::kSettingsEditor},
                       {Pul_ScegliEditor, msg::kSettingsChooseEditor, Glyph::OpenArchive},
                       {Label_TitleBackup, msg::kSettingsFullBackup},
                       {Frame_Playing, msg::kSettingsPlaying},
                       {Opt_NonPrompt, msg::kSettingsNonPrompt},
                       {Opt_PromptCapture, msg::kSettingsPrompt},
                       {Check_VerifyImage, msg::kSettingsVerifyImage},
                       {Check_ArchiviaSavegame, msg::kSettingsArchiveSaves},
                       {Label_NSavegame, msg::kSettingsSavegames},
                       {Label_Associate, msg::kSettingsAssociate, Text_MinutiDifferenza},
                       {Label_Minutes, msg::kSettingsMinutes},
                       {Label_Interval, msg::kSettingsInterval, Combo_Decimi},
                       {Check_EnableJoystick, msg::kSettingsJoystick},
                       {Pul_SetJoy, msg::kSettingsSetJoy, Glyph::Joystick},
                       {Frame_Archive, msg::kSettingsArchive},
                       {Check_AutoSave, msg::kSettingsAutoSave},
                       {Label_AutoSave, msg::kSettingsAboutAutoSave},
                       {Check_TestCOntrollaUguali, msg::kSettingsCheckEqual},
                       {Check_NoAutoCompila, msg::kSettingsNoAutoCompile},
                       {Check_NonDecomprimere, msg::kSettingsNoDecompress},
                       {Label_NonDecomprimere, msg::kSettingsAboutDecompress},
                       {Check_AggiornamentoUrl, msg::kSettingsUrlUpdate},
                       {Pul_Help, msg::kSettingsHelp},
                       {Pul_Ok, msg::kSettingsOk},
                       {Pul_Cancel, msg::kSettingsCancel},
                       ControlCaption::Spoken(Pul_SfogliaPathTrle, msg::kSettingsSpokenTrle),
                       ControlCaption::Spoken(Pul_SfogliaLoadDir, msg::kSettingsSpokenLoadDir),
                       ControlCaption::Spoken(Pul_ScegliEditor, msg::kSettingsSpokenEditor),
                       ControlCaption::Spoken(Combo_NSavegame, msg::kSettingsSpokenSaves)});
}

void Dialog_Settings::Lay() {
    LayFolders();
    LayPlaying();
    LayArchive();
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Frame_Folders);
    layout->addWidget(Frame_Playing);
    layout->addWidget(Frame_Archive);
    layout->addStretch();
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(FootRow(this, {Pul_Help, HelpMark::Settings, Pul_Ok, Pul_Cancel}));
    Pul_Ok->setFocus();
}

void Dialog_Settings::LayFolders() {
    auto* const grid = new QGridLayout(Frame_Folders);
    const auto line = [&](QLabel* title, PathLabel* path, QPushButton* button) {
        const int row = grid->rowCount();
        grid->addWidget(title, row, 0);
        grid->addWidget(path, row, 1);
        grid->addWidget(button, row, 2);
    };
    line(Label_TitlePathTrle, Label_PathTrle, Pul_SfogliaPathTrle);
    grid->addWidget(Note_Trle, grid->rowCount(), 1, 1, 2);
    line(Label_TitleLoadDir, Label_DefaultLoadDir, Pul_SfogliaLoadDir);
    line(Label_TitleEditor, Label_EditorGrafico, Pul_ScegliEditor);
    grid->addWidget(Label_TitleBackup, grid->rowCount(), 0);
    grid->addWidget(Label_FullBackup, grid->rowCount() - 1, 1);
    grid->setColumnStretch(1, 1);
    Label_FullBackup->setIndent(Label_PathTrle->frameWidth() + Label_PathTrle->margin());
}

void Dialog_Settings::LayPlaying() {
    auto* const rows = new QVBoxLayout(Frame_Playing);
    rows->addWidget(Opt_NonPrompt);
    rows->addWidget(Opt_PromptCapture);
    rows->addWidget(Check_VerifyImage);
    // Their captions have blanks of their own.
    for (QHBoxLayout* line : {Line({Check_ArchiviaSavegame, Combo_NSavegame, Label_NSavegame}),
                              Line({Label_Associate, Text_MinutiDifferenza, Label_Minutes})}) {
        line->setSpacing(space::kTight);
        rows->addLayout(line);
    }
    rows->addWidget(Note_Minutes);
    Note_Minutes->Watch(Text_MinutiDifferenza, [this](const QString& typed) {
        settings_.Minutes = ToUtf8(typed);
        return companion::MinutesAreNumber(settings_) ? QString() : Caption(msg::kSettingsNoteMinutes);
    });
    rows->addLayout(Line({Label_Interval, Combo_Decimi}));
    rows->addLayout(Line({Check_EnableJoystick, Pul_SetJoy}));
    Combo_NSavegame->setMaxVisibleItems(companion::kMostSavegamesToChoose);
    Text_MinutiDifferenza->setFixedWidth(fontMetrics().averageCharWidth() * 10);
}

void Dialog_Settings::LayArchive() {
    auto* const grid = new QGridLayout(Frame_Archive);
    grid->addWidget(Check_AutoSave, 0, 0);
    grid->addWidget(Explain(Label_AutoSave, Check_AutoSave), 1, 0);
    grid->addWidget(Check_TestCOntrollaUguali, 2, 0);
    grid->addWidget(Check_NoAutoCompila, 3, 0);
    grid->addWidget(Check_NonDecomprimere, 0, 1);
    grid->addWidget(Explain(Label_NonDecomprimere, Check_NonDecomprimere), 1, 1);
    grid->addWidget(Check_AggiornamentoUrl, 2, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(1, 1);
}

std::vector<Dialog_Settings::Box> Dialog_Settings::Boxes() const {
    using core::ProfileRecord;
    return {{Check_VerifyImage, &ProfileRecord::VerifyImage},
            {Check_ArchiviaSavegame, &ProfileRecord::ArchiveSavegames},
            {Check_EnableJoystick, &ProfileRecord::EnableJoystick},
            {Check_AutoSave, &ProfileRecord::AutoSave},
            {Check_TestCOntrollaUguali, &ProfileRecord::CheckEqualLevels},
            {Check_NoAutoCompila, &ProfileRecord::NoAutoCompile},
            {Check_NonDecomprimere, &ProfileRecord::NoDecompress},
            {Check_AggiornamentoUrl, &ProfileRecord::UrlUpdateReminder}};
}

void Dialog_Settings::ImpostaValori() {
    settings_ = companion::BeginSettings();
    const core::ProfileRecord& profile = settings_.Edited;
    for (const Box& entry : Boxes())
        entry.box->setChecked(profile.*entry.field);
    (profile.PromptCapture ? Opt_PromptCapture : Opt_NonPrompt)->setChecked(true);
    ShowNumber(Combo_NSavegame, profile.SavegamesToKeep, QString::number(profile.SavegamesToKeep));
    ShowNumber(Combo_Decimi, profile.TimerTenths, TenthsText(profile.TimerTenths));
    Combo_NSavegame->setEnabled(profile.ArchiveSavegames);
    Text_MinutiDifferenza->setText(FromUtf8(settings_.Minutes));
    Label_FullBackup->setText(Caption(profile.FullBackup ? msg::kSettingsYes : msg::kSettingsNo));
    ShowPaths();
}

void Dialog_Settings::ShowPaths() {
    const auto show = [](PathLabel* label, const std::string& path) {
        label->SetPath(FromUtf8(std::string(Trim(path))), Caption(msg::kSettingsNone));
    };
    show(Label_PathTrle, settings_.Edited.TrleFolder);
    show(Label_DefaultLoadDir, settings_.Edited.DownloadFolder);
    show(Label_EditorGrafico, settings_.Edited.GraphicsProgram);
    const std::string trle(Trim(settings_.Edited.TrleFolder));
    Note_Trle->Say(trle.empty() || FolderExists(trle) ? QString() : Caption(msg::kSettingsNoteTrle));
}

void Dialog_Settings::Accept() {
    for (const Box& entry : Boxes())
        settings_.Edited.*entry.field = entry.box->isChecked();
    settings_.Edited.PromptCapture = Opt_PromptCapture->isChecked();
    TakeNumber(Combo_NSavegame, settings_.Edited.SavegamesToKeep);
    TakeNumber(Combo_Decimi, settings_.Edited.TimerTenths);
    settings_.Minutes = ToUtf8(Text_MinutiDifferenza->text());
    const JobScope job;
    if (companion::ApplySettings(settings_)) {
        accept();
        return;
    }
    Text_MinutiDifferenza->setFocus();
    Text_MinutiDifferenza->selectAll();
}

void Dialog_Settings::reject() {
    companion::CancelSettings(settings_);
    QDialog::reject();
}

} // namespace kelvash::ui
