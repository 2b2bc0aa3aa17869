#include "ui/Principale.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QItemSelectionModel>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QTimer>
#include <utility>

#include "companion/game.h"
#include "companion/watcher.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "core/session.h"
#include "program/beside.h"
#include "program/end.h"
#include "program/level_view.h"
#include "program/play.h"
#include "program/start_up.h"
#include "ui/Dialog_ScreenShot.h"
#include "ui/Principale_messages.h"
#include "ui/dropped_files.h"
#include "ui/form_kit.h"
#include "ui/forms_user.h"
#include "ui/menu_commands.h"
#include "ui/savegame_panel.h"
#include "ui/screenshot_panel.h"
#include "ui/window_state.h"

namespace kelvash::ui {

namespace {

constexpr int kLookBesideMillis = 1500;

} // namespace

Principale::Principale(FormsUser& user) : menu_(menuBar(), this, MenuCommands(*this, user), door_) {
    setObjectName(QStringLiteral("Principale"));
    setAcceptDrops(true);
    LettersLast({Pul_Author, Pul_List, Pul_Tiles, Pul_NewArchive, Pul_LoadArchive, Pul_AddLevel, Pul_ShowAll,
                 Pul_ChooseTrle, Pul_AddShots, Pul_PlayNow, Pul_ImportFirst});
    Set_Caption_Texts();
    Lay();
    shots_ = new ScreenshotPanel(*this);
    ConnectControls(user);
    savegames_ = new SavegamePanel(*this, door_);
    savegames_->open_picture = [this](const std::string& image) {
        Dialog_ScreenShot form(this);
        if (form.ImpostaValori(image)) form.exec();
    };
}

// The panels look at this form when its controls, which go later, have an event.
Principale::~Principale() {
    delete savegames_;
    delete shots_;
}

bool Principale::Load(const std::string& command_line, const program::FirstStepWatcher& at_first_start) {
    const JobScope job;
    const bool runs = program::StartUp(command_line, at_first_start);
    Timer1->setInterval(core::session.TimerInterval);
    Timer_Joystick->start();
    SetView(RestoreWindow({this, splitter_}));
    ShowPanel(core::profile.ShowScreenShots);
    if (runs && companion::AdoptGame()) {
        SetPlaying(true);
        ShowPlaying();
    }
    return runs;
}

void Principale::ConnectControls(FormsUser& user) {
    connect(&user, &FormsUser::ListChanged, this, &Principale::ShowLevels);
    connect(&user, &FormsUser::InputRefused, this, &Principale::SayJobRuns);
    connect(&door_, &JobDoor::Refused, this, &Principale::SayJobRuns);
    FollowJobs(user, BarPlace::MainWindow, Label_Info, ProgressBar1, IdleBar::Hides);
    connect(Combo_Livelli->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &Principale::TakeSelection);
    const auto play = [this] { door_.Try([this] { Play(); }); };
    connect(Combo_Livelli, &QListView::doubleClicked, this, play);
    Combo_Livelli->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(Combo_Livelli, &QListView::customContextMenuRequested, this, &Principale::ShowLevelMenu);
    connect(Text_Search, &QLineEdit::textChanged, this, &Principale::FilterLevels);
    // Enter leaves the keyboard here: in the list another Enter would start the game.
    connect(Text_Search, &QLineEdit::returnPressed, this, [this] { Search(); });
    connect(Pul_Search, &QPushButton::clicked, this, [this] {
        if (Search()) Combo_Livelli->setFocus();
    });
    connect(Pul_Dopo, &QPushButton::clicked, this,
            [this] { Select(core::FindNextLevel(ToUtf8(Text_Search->text()))); });
    connect(Pul_Prima, &QPushButton::clicked, this,
            [this] { Select(core::FindPreviousLevel(ToUtf8(Text_Search->text()))); });
    connect(Pul_Play, &QPushButton::clicked, this, play);
    connect(Pul_List, &QPushButton::clicked, this, [this] { SetView(LibraryView::List); });
    connect(Pul_Tiles, &QPushButton::clicked, this, [this] { SetView(LibraryView::Tiles); });
    connect(Pul_MoreInfo, &QPushButton::clicked, this,
            [this] { door_.Try([] { program::ShowMoreInfo(); }); });
    connect(Pul_ScreenShots, &QPushButton::clicked, this, [this] { ShowPanel(true); });
    connect(Pul_SaveGames, &QPushButton::clicked, this, [this] { ShowPanel(false); });
    connect(Timer1, &QTimer::timeout, &watch_, &WatchWindow::TickSoon);
    connect(Timer_Beside, &QTimer::timeout, this, &Principale::LookBeside);
}

void Principale::ShowLevels() {
    if (!isVisible()) return; // showEvent does it: the start changes the list more than once
    syncing_ = true;          // the view forgets its selection with the old rows
    levels_->Refresh();
    SyncSelection();
    ShowTitle();
    AggiornaDatiLivello(false);
}

void Principale::ShowTitle() {
    setWindowTitle(TitleWith(
        core::ArchiveIsOpen() ? ShownLine(core::ArchiveTitle()) : Caption(msg::kMainNoArchive), title_note_));
}

// Selects the item at a place of the level list; -1 changes nothing.
void Principale::Select(int index) {
    if (index < 0) return;
    const QModelIndex row = levels_->index(levels_->RowOf(index));
    Combo_Livelli->setCurrentIndex(row);
    Combo_Livelli->scrollTo(row);
}

void Principale::TakeSelection() {
    if (syncing_) return;
    core::level_list.Selected = levels_->IndexAt(Combo_Livelli->currentIndex().row());
    AggiornaDatiLivello(false);
}

// Puts the view's selection on the level list's. A selected level that the filter hides stays the selected
// one, and its page stays: it comes back with its row, and until then no row is selected.
void Principale::SyncSelection() {
    syncing_ = true;
    Combo_Livelli->setCurrentIndex(levels_->index(levels_->RowOf(core::level_list.Selected)));
    Combo_Livelli->scrollTo(Combo_Livelli->currentIndex());
    syncing_ = false;
}

void Principale::FilterLevels() {
    clear_->setVisible(!Text_Search->text().isEmpty());
    syncing_ = true; // the view forgets its selection with the old rows
    levels_->SetFilter(Text_Search->text());
    Combo_Livelli->scrollToTop();
    SyncSelection();
    ShowEmptyLibrary();
}

bool Principale::Search() {
    const std::int32_t found = core::FindLevel(ToUtf8(Text_Search->text()));
    Select(found);
    if (found < 0 && !Text_Search->text().trimmed().isEmpty())
        ShowMessage(MessageStyle::Plain, LoadMessage(msg::kMainNotFound));
    return found >= 0;
}

void Principale::Play() {
    if (core::SelectedLevel() < 0) {
        TellCritical(LoadMessage(msg::kNoSelectedLevel));
        return;
    }
    SetPlaying(true);
    if (program::PlayLevel(core::SelectedLevel())) {
        ShowPlaying();
        return;
    }
    SetPlaying(false);
    core::RefreshLevelList(); // the former level may be out all the same
}

void Principale::ShowPlaying() {
    SayPlaying();
    watch_.Begin();
}

void Principale::SayPlaying() {
    Label_Info->SetLine(Caption(msg::kMainPlaying));
}

void Principale::SetPlaying(bool playing) {
    playing_ = playing;
    menuBar()->setEnabled(!playing);
    centralWidget()->setEnabled(!playing);
    Label_Info->SetLine({});
    EnableCommands();
}

// What others change shows by itself when nothing else is at work. The eye keeps its place: the list its
// scrolling, the level its pair of pictures and its chosen savegame, the status line its word.
void Principale::LookBeside() {
    if (!door_.MayInterrupt()) return;
    if (!playing_ && companion::TakeOverGame()) {
        SetPlaying(true);
        ShowPlaying();
    }
    if (isMinimized()) return;
    const std::int32_t level = core::SelectedLevel();
    const std::size_t pair = shots_->Pages().FirstShownImage;
    const SavegamePanel::Eye eye = savegames_->TakeEye();
    const int scrolled = Combo_Livelli->verticalScrollBar()->value();
    const QString said = Label_Info->text();
    program::Beside changed{};
    door_.Try([&changed] { changed = program::TakeWhatIsBeside(); });
    if (changed == program::Beside::Nothing) return;
    if (changed == program::Beside::Page) AggiornaDatiLivello(true);
    levels_->RenewAll();
    if (core::SelectedLevel() == level) {
        shots_->ShowFrom(pair);
        savegames_->ReturnTo(eye);
        Combo_Livelli->verticalScrollBar()->setValue(scrolled);
    }
    Label_Info->SetLine(said);
}

void Principale::EnableCommands() {
    const bool open = core::ArchiveIsOpen();
    const bool selected = core::SelectedLevel() >= 0;
    const CommandState now{.job_free = !playing_, .archive_open = open, .level_selected = selected};
    menu_.Update(now);
    const QString why = WhyGrey(EnabledWhen::LevelSelected, now);
    const bool uncovered = !playing_ && companion::GameRuns(); // the game runs still, its cover is closed
    CommandState to_play = now;
    to_play.job_free = now.job_free && !uncovered;
    if (uncovered && Label_Info->text().isEmpty()) SayPlaying();
    const QString why_not_play = WhyGrey(EnabledWhen::LevelSelected, to_play);
    const auto enable = [](QPushButton* button, QAction* action, const QString& hindrance) {
        button->setEnabled(hindrance.isEmpty());
        button->setToolTip(hindrance);
        action->setEnabled(hindrance.isEmpty());
        TellWhy(action, hindrance);
    };
    enable(Pul_Play, play_, why_not_play);
    enable(Pul_MoreInfo, more_, why);
    Pul_Author->setEnabled(Command(MenuEntry::mnu_ShowAutoreInfo)->isEnabled());
    Pul_Author->setToolTip(why);
}

void Principale::ShowPanel(bool screenshots) {
    core::profile.ShowScreenShots = screenshots;
    Frame_ScreenShots->setVisible(screenshots);
    Frame_SaveGames->setVisible(!screenshots);
    (screenshots ? Pul_ScreenShots : Pul_SaveGames)->setChecked(true);
}

void Principale::ShowLevelMenu(const QPoint& where) {
    if (!Combo_Livelli->indexAt(where).isValid()) return;
    QMenu menu(this);
    menu.setObjectName(QStringLiteral("Menu_Level"));
    using enum MenuEntry;
    menu.addActions({play_, more_});
    menu.addSeparator();
    for (const MenuEntry entry : {mnu_Property, mnu_ShowAutoreInfo, mnu_Export, mnu_RemoveLevel})
        menu.addAction(Command(entry));
    menu.exec(Combo_Livelli->viewport()->mapToGlobal(where));
}

void Principale::TakeWish(const std::string& archive) {
    if (isMinimized()) showNormal();
    raise();
    activateWindow();
    if (archive.empty()) return;
    const bool is_first = wish_.empty();
    wish_ = archive; // of several that wait the last counts
    if (is_first) door_.WhenFree([this] { OpenWish(); });
}

void Principale::OpenWish() {
    const std::string former = core::profile.LastArchive;
    program::OpenWishedArchive(std::exchange(wish_, {}));
    if (core::profile.LastArchive != former) Text_Search->clear();
    ShowLevels();
}

bool Principale::MayClose() {
    if (!isVisible()) { // the start has failed: there is nothing to stay for
        static_cast<void>(program::SaveProfile());
        return true;
    }
    if (companion::GameRuns() &&
        !AskYesNo(MessageStyle::Question, LoadMessage(msg::kCloseWhilePlaying, {kLineBreak})))
        return false;
    companion::LeaveWatch(); // before what it has changed is saved
    if (!program::SaveToClose()) return false;
    SaveWindow({this, splitter_}, delegate_->View());
    companion::TellRemembered();
    return true;
}

void Principale::closeEvent(QCloseEvent* event) {
    bool may_close = false;
    door_.Try([&] { may_close = MayClose(); });
    event->setAccepted(may_close);
}

void Principale::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    ShowLevels();
    if (!Timer_Beside->isActive()) Timer_Beside->start(kLookBesideMillis);
}

void Principale::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) Combo_Livelli->viewport()->update();
}

bool Principale::TakesDrops() const {
    return door_.IsFree() && Command(MenuEntry::mnu_AddLevel)->isEnabled();
}

void Principale::dragEnterEvent(QDragEnterEvent* event) {
    if (TakesDrops() && !DroppedFiles(event->mimeData()).empty()) event->acceptProposedAction();
}

void Principale::dropEvent(QDropEvent* event) {
    if (!TakesDrops()) return;
    const std::vector<std::string> paths = DroppedFiles(event->mimeData());
    event->acceptProposedAction();
    // The program that gave the files waits for the end of this event.
    if (!paths.empty()) door_.WhenFree([this, paths] { TakeSources(*this, paths); });
}

} // namespace kelvash::ui
