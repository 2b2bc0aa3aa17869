// The menu commands of the main form: thin calls of the logic.
#include <QAction>
#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QPixmap>
#include <utility>

#include "core/archive.h"
#include "core/fragments.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/sizes.h"
#include "core/start_up.h"
#include "swap/backup.h"
#include "ui/Dialog_Restore.h"
#include "ui/Dialog_Settings.h"
#include "ui/Principale.h"
#include "ui/Principale_messages.h"
#include "ui/forms_user.h"
#include "ui/help.h"

namespace kelvash::ui {

// A command that is connected is no longer greyed.
void Principale::Connect(const char* command, std::function<void()> run) {
    QAction* const action = Command(command);
    action->setEnabled(true);
    connect(action, &QAction::triggered, this, std::move(run));
}

void Principale::ConnectMenu() {
    Connect("mnu_New", [this] { NewArchive(); });
    Connect("mnu_Load", [this] { LoadArchive(); });
    Connect("mnu_Save", [] { core::SaveArchive(); });
    Connect("mnu_SaveAs", [this] {
        static_cast<void>(core::SaveArchiveAs()); // tells its own failure
        ShowTitle();
    });
    Connect("Mnu_Exit", [this] { close(); });
    Connect("mnu_ShowSavegames", [this] { ShowPanel(false); });
    Connect("mnu_ShowScreenShot", [this] { ShowPanel(true); });
    Connect("mnu_SetOriginale", [this] { ShowRestore(); });
    Connect("mnu_CalcolaSize", [] { core::ComputeArchiveSize(core::Report::Shown); });
    Connect("mnu_FaiFullBackup", [] { swap::RefreshFullBackup(); });
    ConnectLevelMenu();
    Connect("mnu_Settings", [this] { ShowSettings(); });
    Connect("mnu_About", [this] { ShowAbout(); });
    Connect("mnu_FindHelp", [this] { ShowHelp(this, HelpMark::MainWindow); });
    Connect("mnu_HelpSaveGameMan", [this] { ShowHelp(this, HelpMark::Savegames); });
    Connect("mnu_HelpFaq", [this] { ShowHelp(this, HelpMark::Questions); });
}

// An Archive that isn't made leaves none open: the former one comes back. One that couldn't even be begun has
// left it open.
void Principale::NewArchive() {
    const std::string former = core::profile.LastArchive;
    if (core::NewArchive())
        Text_Search->clear();
    else if (core::profile.LastArchive != former || !core::ArchiveIsOpen())
        core::ReturnToArchive(former);
    ShowLevels();
}

// So does one whose missing folder was given up: its table is loaded by then.
void Principale::LoadArchive() {
    const std::string former = core::profile.LastArchive;
    if (core::LoadArchiveDialog())
        Text_Search->clear(); // what was sought in the former one
    else if (core::archive.ArchiveLoadRefused)
        core::ReturnToArchive(former);
    ShowLevels();
}

void Principale::TakeWish(const std::string& archive) {
    constexpr int kLookMillis = 200;
    if (isMinimized()) showNormal();
    raise();
    activateWindow();
    if (archive.empty()) return;
    wish_ = archive;
    Timer_Wish->start(kLookMillis);
}

bool Principale::IsFree() const {
    return isVisible() && menuBar()->isEnabled() && !user_.IsBusy() &&
           QApplication::activeModalWidget() == nullptr && QApplication::activePopupWidget() == nullptr;
}

void Principale::OpenWish() {
    if (!IsFree()) return;
    Timer_Wish->stop();
    const std::string former = core::profile.LastArchive;
    core::OpenWishedArchive(std::exchange(wish_, {}));
    if (core::profile.LastArchive != former) Text_Search->clear();
    ShowLevels();
}

void Principale::ShowPanel(bool screenshots) {
    core::profile.ShowScreenShots = screenshots;
    Frame_ScreenShots->setVisible(screenshots);
    Frame_SaveGames->setVisible(!screenshots);
    (screenshots ? Pul_ScreenShots : Pul_SaveGames)->setChecked(true);
}

void Principale::ShowSettings() {
    Dialog_Settings form(this);
    form.ImpostaValori();
    form.exec();
    Timer1->setInterval(core::session.TimerInterval);
    core::RefreshLevelList(); // another TRLE folder may hold another level
}

void Principale::ShowRestore() {
    Dialog_Restore form(user_, this);
    form.exec();
    // The box that told the outcome had the keyboard, and its form is gone with it.
    activateWindow();
    Combo_Livelli->setFocus();
}

void Principale::ShowAbout() {
    QMessageBox box(this);
    box.setObjectName(QStringLiteral("About"));
    box.setWindowTitle(Caption(msg::kAboutCaption));
    box.setTextFormat(Qt::PlainText);
    box.setText(Caption(msg::kAboutText, {LoadFragment(fragment::kAboutVersion), kLineBreak, kLineBreak}));
    box.setIconPixmap(
        QPixmap(QStringLiteral(":/kelvash/kelvash.png")).scaledToWidth(96, Qt::SmoothTransformation));
    box.exec();
}

} // namespace kelvash::ui
