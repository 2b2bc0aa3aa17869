#include "ui/Dialog_Settings.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include "foundation/text.h"
#include "ui/Dialog_Settings_messages.h"
#include "ui/help.h"

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

// Controls that make one line, with what is left over behind them.
QHBoxLayout* Row(std::initializer_list<QWidget*> controls) {
    auto* const row = new QHBoxLayout;
    for (QWidget* control : controls)
        row->addWidget(control);
    row->addStretch();
    return row;
}

} // namespace

Dialog_Settings::Dialog_Settings(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("Dialog_Settings"));
    Set_Caption_Texts();
    Lay();
    for (int number = 1; number <= companion::kMostSavegamesToChoose; ++number)
        Combo_NSavegame->addItem(QString::number(number), number);
    for (int tenths = 1; tenths <= companion::kMostTenthsToChoose; ++tenths)
        Combo_Decimi->addItem(TenthsText(tenths), tenths);
    Pul_SetJoy->setEnabled(false); // the form that sets the joystick's buttons does not stand yet
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
    ConnectHelp(this, Pul_Help, HelpMark::Settings);
    ImpostaValori();
}

void Dialog_Settings::Set_Caption_Texts() {
    setWindowTitle(Caption(msg::kSettingsCaption));
    Frame_Folders->setTitle(Caption(msg::kSettingsFolders));
    Label_TitlePathTrle->setText(Caption(msg::kSettingsTrle));
    Pul_SfogliaPathTrle->setText(Caption(msg::kSettingsBrowseTrle));
    Label_TitleLoadDir->setText(Caption(msg::kSettingsLoadDir));
    Pul_SfogliaLoadDir->setText(Caption(msg::kSettingsBrowseLoadDir));
    Label_TitleEditor->setText(Caption(msg::kSettingsEditor));
    Pul_ScegliEditor->setText(Caption(msg::kSettingsChooseEditor));
    Label_TitleBackup->setText(Caption(msg::kSettingsFullBackup));
    Frame_Playing->setTitle(Caption(msg::kSettingsPlaying));
    Opt_NonPrompt->setText(Caption(msg::kSettingsNonPrompt));
    Opt_PromptCapture->setText(Caption(msg::kSettingsPrompt));
    Check_VerifyImage->setText(Caption(msg::kSettingsVerifyImage));
    Check_ArchiviaSavegame->setText(Caption(msg::kSettingsArchiveSaves));
    Label_NSavegame->setText(Caption(msg::kSettingsSavegames));
    Label_Associate->setText(Caption(msg::kSettingsAssociate));
    Label_Minutes->setText(Caption(msg::kSettingsMinutes));
    Label_Interval->setText(Caption(msg::kSettingsInterval));
    Check_EnableJoystick->setText(Caption(msg::kSettingsJoystick));
    Pul_SetJoy->setText(Caption(msg::kSettingsSetJoy));
    Frame_Archive->setTitle(Caption(msg::kSettingsArchive));
    Check_AutoSave->setText(Caption(msg::kSettingsAutoSave));
    Check_TestCOntrollaUguali->setText(Caption(msg::kSettingsCheckEqual));
    Check_NoAutoCompila->setText(Caption(msg::kSettingsNoAutoCompile));
    Check_NonDecomprimere->setText(Caption(msg::kSettingsNoDecompress));
    Check_AggiornamentoUrl->setText(Caption(msg::kSettingsUrlUpdate));
    Pul_Help->setText(Caption(msg::kSettingsHelp));
    Pul_Ok->setText(Caption(msg::kSettingsOk));
    Pul_Cancel->setText(Caption(msg::kSettingsCancel));
    Label_Associate->setBuddy(Text_MinutiDifferenza);
    Label_Interval->setBuddy(Combo_Decimi);
    AssignMnemonics(this);
}

void Dialog_Settings::Lay() {
    LayFolders();
    LayPlaying();
    LayArchive();
    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(Pul_Help);
    buttons->addStretch();
    buttons->addWidget(Pul_Ok);
    buttons->addWidget(Pul_Cancel);
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(Frame_Folders);
    layout->addWidget(Frame_Playing);
    layout->addWidget(Frame_Archive);
    layout->addStretch();
    layout->addSpacing(fontMetrics().height() / 2);
    layout->addLayout(buttons);
    Pul_Ok->setDefault(true);
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
    rows->addLayout(Row({Check_ArchiviaSavegame, Combo_NSavegame, Label_NSavegame}));
    rows->addLayout(Row({Label_Associate, Text_MinutiDifferenza, Label_Minutes}));
    rows->addLayout(Row({Label_Interval, Combo_Decimi}));
    rows->addLayout(Row({Check_EnableJoystick, Pul_SetJoy}));
    Combo_NSavegame->setMaxVisibleItems(companion::kMostSavegamesToChoose);
    Text_MinutiDifferenza->setFixedWidth(fontMetrics().averageCharWidth() * 10);
}

void Dialog_Settings::LayArchive() {
    auto* const grid = new QGridLayout(Frame_Archive);
    grid->addWidget(Check_AutoSave, 0, 0);
    grid->addWidget(Check_TestCOntrollaUguali, 1, 0);
    grid->addWidget(Check_NoAutoCompila, 2, 0);
    grid->addWidget(Check_NonDecomprimere, 0, 1);
    grid->addWidget(Check_AggiornamentoUrl, 1, 1);
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
}

void Dialog_Settings::Accept() {
    for (const Box& entry : Boxes())
        settings_.Edited.*entry.field = entry.box->isChecked();
    settings_.Edited.PromptCapture = Opt_PromptCapture->isChecked();
    TakeNumber(Combo_NSavegame, settings_.Edited.SavegamesToKeep);
    TakeNumber(Combo_Decimi, settings_.Edited.TimerTenths);
    settings_.Minutes = ToUtf8(Text_MinutiDifferenza->text());
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
