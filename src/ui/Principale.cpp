#include "ui/Principale.h"

#include <QAction>
#include <QCloseEvent>
#include <QDragEnterEvent>
#include <QItemSelectionModel>
#include <QMenuBar>
#include <QTimer>
#include <algorithm>

#include "companion/game.h"
#include "companion/savegames.h"
#include "companion/screenshots.h"
#include "core/archive.h"
#include "core/level_list.h"
#include "core/level_view.h"
#include "core/profile.h"
#include "core/start_up.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "swap/install.h"
#include "ui/Principale_messages.h"
#include "ui/dropped_files.h"
#include "ui/forms_user.h"
#include "ui/window_state.h"

namespace kelvash::ui {

namespace {

QString NativeText(const std::string& path) {
    return path.empty() ? QString() : QString::fromStdU16String(NativePath(path).u16string());
}

// The picture that stands for none; empty if the user has taken it away.
QString DefaultPicture() {
    const std::string path = companion::DefaultScreenshot();
    return FileExists(path) ? NativeText(path) : QString();
}

void FillList(QListWidget* list, const std::vector<std::string>& savegames) {
    list->clear();
    for (const std::string& path : savegames)
        list->addItem(ShownLine(companion::SavegameLine(path)));
}

} // namespace

Principale::Principale(FormsUser& user) : user_(user) {
    setObjectName(QStringLiteral("Principale"));
    setAcceptDrops(true);
    context_menus_ = BuildMenu(menuBar(), this);
    Set_Caption_Texts();
    Lay();
    ConnectControls(user);
    ConnectMenu();
}

QAction* Principale::Command(const char* name) const {
    return findChild<QAction*>(QString::fromLatin1(name));
}

bool Principale::Load(const std::string& command_line) {
    core::StartUp(command_line);
    Timer1->setInterval(core::session.TimerInterval);
    RestoreWindow(this, splitter_);
    ShowPanel(core::profile.ShowScreenShots);
    if (!core::session.EndWanted && companion::AdoptGame()) {
        SetPlaying(true);
        ShowPlaying();
    }
    return !core::session.EndWanted;
}

void Principale::ConnectControls(FormsUser& user) {
    connect(&user, &FormsUser::ListChanged, this, &Principale::ShowLevels);
    connect(&user, &FormsUser::LabelChanged, this, [this](BarPlace place, const QString& text) {
        if (place == BarPlace::MainWindow) Label_Info->setText(text);
    });
    connect(&user, &FormsUser::BarChanged, this, [this](BarPlace place, int percent) {
        if (place != BarPlace::MainWindow) return;
        ProgressBar1->setValue(percent);
        ProgressBar1->setVisible(percent > 0);
    });
    connect(Combo_Livelli->selectionModel(), &QItemSelectionModel::currentChanged, this,
            &Principale::TakeSelection);
    connect(Combo_Livelli, &QListView::doubleClicked, this, &Principale::Play);
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
    connect(Pul_Play, &QPushButton::clicked, this, &Principale::Play);
    connect(Pul_MoreInfo, &QPushButton::clicked, this, [] { core::ShowMoreInfo(); });
    connect(Pul_ScreenShots, &QPushButton::clicked, this, [this] { ShowPanel(true); });
    connect(Pul_SaveGames, &QPushButton::clicked, this, [this] { ShowPanel(false); });
    connect(Pul_PrimoShot, &QPushButton::clicked, this, [this] { PageImages(0); });
    connect(Pul_PrimaScreenShot, &QPushButton::clicked, this,
            [this] { PageImages(first_shown_image_ < 2 ? 0 : first_shown_image_ - 2); });
    connect(Pul_DopoScreenShot, &QPushButton::clicked, this, [this] { PageImages(first_shown_image_ + 2); });
    connect(Pul_UltimoShot, &QPushButton::clicked, this,
            [this] { PageImages((image_names_.size() - 1) / 2 * 2); });
    connect(Timer1, &QTimer::timeout, this, &Principale::WatchGame);
    connect(Timer_Wish, &QTimer::timeout, this, &Principale::OpenWish);
    // A click in one list takes the selection of the other away.
    connect(List_SaveGameTomb, &QListWidget::itemClicked, List_SaveGameArchiviati,
            &QListWidget::clearSelection);
    connect(List_SaveGameArchiviati, &QListWidget::itemClicked, List_SaveGameTomb,
            &QListWidget::clearSelection);
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
    setWindowTitle(core::ArchiveIsOpen() ? ShownLine(core::ArchiveTitle()) : Caption(msg::kMainNoArchive));
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
// one: it comes back with its row, and until then no row is selected.
void Principale::SyncSelection() {
    syncing_ = true;
    Combo_Livelli->setCurrentIndex(levels_->index(levels_->RowOf(core::level_list.Selected)));
    Combo_Livelli->scrollTo(Combo_Livelli->currentIndex());
    syncing_ = false;
}

void Principale::FilterLevels() {
    // Not before it is of use: the search for its icon takes a tenth of the program's start.
    Text_Search->setClearButtonEnabled(true);
    const bool was_shown = SelectedIsShown();
    syncing_ = true; // the view forgets its selection with the old rows
    levels_->SetFilter(Text_Search->text());
    SyncSelection();
    if (!was_shown || !SelectedIsShown()) AggiornaDatiLivello(false);
}

// Nothing is done with a level that nobody sees.
bool Principale::SelectedIsShown() const {
    return levels_->RowOf(core::level_list.Selected) >= 0;
}

bool Principale::Search() {
    const std::int32_t found = core::FindLevel(ToUtf8(Text_Search->text()));
    Select(found);
    if (found < 0 && !Text_Search->text().trimmed().isEmpty())
        ShowMessage(MessageStyle::Plain, LoadMessage(msg::kMainNotFound));
    return found >= 0;
}

void Principale::AggiornaDatiLivello(bool keep_image) {
    const std::optional<core::LevelView> view = SelectedIsShown() ? core::SelectedLevelView() : std::nullopt;
    const core::LevelView shown = view.value_or(core::LevelView());
    if (view) levels_->RenewThumbnail(view->Code);
    image_names_ = shown.Screenshots;
    image_hint_ = shown.FolderMissing ? LoadMessage(msg::kMainLevelMissing) + shown.Folder : std::string();
    PageImages(keep_image ? first_shown_image_ : 0);
    ShowSavegames(shown.SlotSavegames, shown.ArchivedSavegames);
    Label_InfoLevel->setText(NoteToShow(shown.Note));
    Label_InfoDir->setText(ShownLine(shown.Place));
    Label_InfoDir->setToolTip(ToolTipText(Label_InfoDir->text()));
    EnableCommands();
}

// An empty list wants an Archive, or a name that holds the typed text.
QString Principale::NoteToShow(const std::string& note) const {
    if (levels_->rowCount() > 0) return ShownLine(note);
    return Caption(core::ArchiveIsOpen() ? msg::kMainNoLevelFound : msg::kMainNoArchiveNote);
}

void Principale::ShowSavegames(const std::vector<std::string>& slots,
                               const std::vector<std::string>& archived) {
    FillList(List_SaveGameTomb, slots);
    FillList(List_SaveGameArchiviati, archived);
    Text_NoteSaveGame->clear();
    Image_SaveGame->ShowFile(DefaultPicture(), Caption(msg::kMainNoImage));
}

void Principale::PageImages(std::size_t first) {
    if (first >= image_names_.size()) first = image_names_.empty() ? 0 : (image_names_.size() - 1) / 2 * 2;
    first_shown_image_ = first;
    ShowImages();
}

void Principale::ShowImages() {
    const auto show = [this](PictureView* view, std::size_t index) {
        const bool there = index < image_names_.size();
        view->ShowFile(there ? NativeText(image_names_[index]) : QString(), {});
    };
    show(Image1, first_shown_image_);
    show(Image2, first_shown_image_ + 1);
    if (image_names_.empty())
        Image1->ShowFile(image_hint_.empty() ? DefaultPicture() : QString(),
                         image_hint_.empty() ? Caption(msg::kMainNoImage) : ShownText(image_hint_));
    Image2->setVisible(first_shown_image_ + 1 < image_names_.size() || image_names_.size() > 2);
    const bool before = first_shown_image_ > 0;
    const bool behind = first_shown_image_ + 2 < image_names_.size();
    for (QPushButton* button : {Pul_PrimoShot, Pul_PrimaScreenShot})
        button->setEnabled(before);
    for (QPushButton* button : {Pul_DopoScreenShot, Pul_UltimoShot})
        button->setEnabled(behind);
}

void Principale::Play() {
    if (!SelectedIsShown()) {
        TellCritical(LoadMessage(msg::kNoSelectedLevel));
        return;
    }
    SetPlaying(true);
    if (swap::PlayLevel(core::SelectedLevel())) {
        ShowPlaying();
        return;
    }
    SetPlaying(false);
    core::RefreshLevelList(); // the former level may be out all the same
}

void Principale::ShowPlaying() {
    Label_Info->setText(Caption(msg::kMainPlaying));
    Timer1->start();
}

void Principale::SetPlaying(bool playing) {
    menuBar()->setEnabled(!playing);
    centralWidget()->setEnabled(!playing);
    Label_Info->clear();
}

// Closing the game brings the level's new savegames and the mark of the level that is in.
void Principale::WatchGame() {
    if (!companion::game.WatcherActive || companion::GameRuns()) return;
    Timer1->stop();
    SetPlaying(false);
    core::RefreshLevelList();
    activateWindow();
    Combo_Livelli->setFocus();
}

void Principale::EnableCommands() {
    const bool open = core::ArchiveIsOpen();
    for (const char* name :
         {"mnu_Save", "mnu_SaveAs", "mnu_CalcolaSize", "mnu_FaiFullBackup", "mnu_AddLevel", "mnu_PrefArchive",
          "mnu_MoveArc", "mnu_ControllaUguali", "mnu_CreaInfoTr4", "mnu_Kept"})
        Command(name)->setEnabled(open);
    const bool selected = SelectedIsShown();
    for (const char* name : {"mnu_Property", "mnu_ShowAutoreInfo", "mnu_RemoveLevel", "mnu_Export"})
        Command(name)->setEnabled(open && selected);
    for (QPushButton* button : {Pul_Play, Pul_MoreInfo})
        button->setEnabled(open && selected);
}

void Principale::closeEvent(QCloseEvent* event) {
    if (isVisible() && companion::GameRuns() &&
        !AskYesNo(MessageStyle::Question, LoadMessage(msg::kCloseWhilePlaying, {kLineBreak}))) {
        event->ignore();
        return;
    }
    if (!isVisible()) { // the start has failed: there is nothing to stay for
        static_cast<void>(core::SaveProfile());
        return;
    }
    if (!core::SaveToClose()) {
        event->ignore();
        return;
    }
    SaveWindow(this, splitter_);
    event->accept();
}

void Principale::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    ShowLevels();
}

void Principale::changeEvent(QEvent* event) {
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) Combo_Livelli->viewport()->update();
}

// Not while the game runs, as with the menu.
bool Principale::TakesDrops() const {
    return menuBar()->isEnabled() && Command("mnu_AddLevel")->isEnabled();
}

void Principale::dragEnterEvent(QDragEnterEvent* event) {
    if (TakesDrops() && !DroppedFiles(event->mimeData()).empty()) event->acceptProposedAction();
}

void Principale::dropEvent(QDropEvent* event) {
    if (!TakesDrops()) return;
    const std::vector<std::string> paths = DroppedFiles(event->mimeData());
    event->acceptProposedAction();
    // The program that gave the files waits for the end of this event.
    if (!paths.empty()) QTimer::singleShot(0, this, [this, paths] { TakeSources(paths); });
}

} // namespace kelvash::ui
