// The main form: the list of levels, and what is known of the selected one.
//
// It shows core::level_list and works on it; what a command does stands in the logic. While the game runs all
// of it is disabled, and Timer1 watches (ui/watch_window.h).
#pragma once

#include <QBoxLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QListWidget>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QSplitter>
#include <QTimer>
#include <string>
#include <vector>

#include "program/level_view.h"
#include "program/start_up.h"
#include "ui/contacts_bar.h"
#include "ui/empty_state.h"
#include "ui/form_support.h"
#include "ui/icon_button.h"
#include "ui/job_door.h"
#include "ui/joystick_navigation.h"
#include "ui/level_banner.h"
#include "ui/level_delegate.h"
#include "ui/level_model.h"
#include "ui/page_area.h"
#include "ui/path_label.h"
#include "ui/picture_view.h"
#include "ui/principale_menu.h"
#include "ui/row_list.h"
#include "ui/watch_window.h"

namespace kelvash::ui {

class FormsUser;
class SavegamePanel;
class ScreenshotPanel;

class Principale final : public QMainWindow {
    Q_OBJECT

  public:
    explicit Principale(FormsUser& user);
    ~Principale() override;
    void Set_Caption_Texts();
    // The program's start behind the form's back: profile, TRLE folder, backup, Archive. False if the program
    // is to end at once.
    [[nodiscard]] bool Load(const std::string& command_line,
                            const program::FirstStepWatcher& at_first_start = {});

    // Shows the selected level. With `keep_image` the pair of screenshots stays the one that is shown.
    void AggiornaDatiLivello(bool keep_image);
    // Another start of the program wants this window, and the Archive of that native path in it unless it is
    // empty. The Archive waits until no command or box is at work.
    void TakeWish(const std::string& archive);
    QAction* Command(MenuEntry entry) const { return menu_.Action(entry); }

    // Shows the level list as it is now, the selected level with it.
    void ShowLevels();
    void ShowTitle();
    // What stands behind the title, from its next change on.
    void SetTitleNote(const QString& note) { title_note_ = note; }
    // What has been done, in the status line for a while.
    void Say(const QString& done);
    // While the game runs nothing can be commanded.
    void SetPlaying(bool playing);
    // True where no job runs.
    bool IsFree() const { return door_.IsFree(); }
    WatchWindow& Watch() { return watch_; }
    ScreenshotPanel& Shots() { return *shots_; }
    // The panel of the screenshots, or that of the savegames.
    void ShowPanel(bool screenshots);
    SavegamePanel& Savegames() { return *savegames_; }

    QGroupBox* const Frame_Livelli = Make<QGroupBox>(this, "Frame_Livelli");
    QLineEdit* const Text_Search = Make<QLineEdit>(this, "Text_Search");
    QPushButton* const Pul_Search = Make<QPushButton>(this, "Pul_Search");
    QPushButton* const Pul_Prima = Make<IconButton>(this, "Pul_Prima");
    QPushButton* const Pul_Dopo = Make<IconButton>(this, "Pul_Dopo");
    QPushButton* const Pul_List = Make<IconButton>(this, "Pul_List");
    QPushButton* const Pul_Tiles = Make<IconButton>(this, "Pul_Tiles");
    EmptyState* const Empty_Levels = Make<EmptyState>(this, "Empty_Levels");
    QPushButton* const Pul_NewArchive = Make<QPushButton>(this, "Pul_NewArchive");
    QPushButton* const Pul_LoadArchive = Make<QPushButton>(this, "Pul_LoadArchive");
    QPushButton* const Pul_AddLevel = Make<QPushButton>(this, "Pul_AddLevel");
    QPushButton* const Pul_ShowAll = Make<QPushButton>(this, "Pul_ShowAll");
    QWidget* const Page_Level = Make<QWidget>(this, "Page_Level");
    EmptyState* const Empty_Level = Make<EmptyState>(this, "Empty_Level");
    EmptyState* const Empty_Trle = Make<EmptyState>(this, "Empty_Trle");
    QPushButton* const Pul_ChooseTrle = Make<QPushButton>(this, "Pul_ChooseTrle");
    QListView* const Combo_Livelli = Make<QListView>(this, "Combo_Livelli");
    LevelBanner* const Image_Level = Make<LevelBanner>(this, "Image_Level");
    QPushButton* const Pul_Play = Make<QPushButton>(this, "Pul_Play");
    QPushButton* const Pul_MoreInfo = Make<QPushButton>(this, "Pul_MoreInfo");
    QPushButton* const Pul_Author = Make<QPushButton>(this, "Pul_Author");
    ContactsBar* const Bar_Contacts = Make<ContactsBar>(this, "Bar_Contacts");
    ElidedLabel* const Label_Play = Make<ElidedLabel>(this, "Label_Play", Qt::ElideRight);
    ElidedLabel* const Label_InfoLevel = Make<ElidedLabel>(this, "Label_InfoLevel", Qt::ElideRight);
    ElidedLabel* const Label_InfoDir = Make<ElidedLabel>(this, "Label_InfoDir", Qt::ElideMiddle);
    QPushButton* const Pul_ScreenShots = Make<QPushButton>(this, "Pul_ScreenShots");
    QPushButton* const Pul_SaveGames = Make<QPushButton>(this, "Pul_SaveGames");
    ElidedLabel* const Label_Info = Make<ElidedLabel>(this, "Label_Info", Qt::ElideMiddle);
    QProgressBar* const ProgressBar1 = Make<QProgressBar>(this, "ProgressBar1");

    QGroupBox* const Frame_ScreenShots = Make<QGroupBox>(this, "Frame_ScreenShots");
    PictureView* const Image1 = Make<PictureView>(this, "Image1");
    PictureView* const Image2 = Make<PictureView>(this, "Image2");
    EmptyState* const Empty_Shots = Make<EmptyState>(this, "Empty_Shots");
    QPushButton* const Pul_AddShots = Make<QPushButton>(this, "Pul_AddShots");
    QPushButton* const Pul_PrimoShot = Make<IconButton>(this, "Pul_PrimoShot");
    QPushButton* const Pul_PrimaScreenShot = Make<IconButton>(this, "Pul_PrimaScreenShot");
    QPushButton* const Pul_DopoScreenShot = Make<IconButton>(this, "Pul_DopoScreenShot");
    QPushButton* const Pul_UltimoShot = Make<IconButton>(this, "Pul_UltimoShot");

    QGroupBox* const Frame_SaveGames = Make<QGroupBox>(this, "Frame_SaveGames");
    QWidget* const Page_SaveGames = Make<QWidget>(this, "Page_SaveGames");
    EmptyState* const Empty_SaveGames = Make<EmptyState>(this, "Empty_SaveGames");
    QPushButton* const Pul_PlayNow = Make<QPushButton>(this, "Pul_PlayNow");
    QPushButton* const Pul_ImportFirst = Make<QPushButton>(this, "Pul_ImportFirst");
    QLabel* const Label_SaveGameTomb = Make<QLabel>(this, "Label_SaveGameTomb");
    QListWidget* const List_SaveGameTomb = Make<RowList>(this, "List_SaveGameTomb");
    QLabel* const Label_SaveGameArchiviati = Make<QLabel>(this, "Label_SaveGameArchiviati");
    QListWidget* const List_SaveGameArchiviati = Make<RowList>(this, "List_SaveGameArchiviati");
    QLabel* const Label_NoteSaveGame = Make<QLabel>(this, "Label_NoteSaveGame");
    QPlainTextEdit* const Text_NoteSaveGame = Make<QPlainTextEdit>(this, "Text_NoteSaveGame");
    PictureView* const Image_SaveGame = Make<PictureView>(this, "Image_SaveGame");
    QPushButton* const Pul_RestoreSaveGame = Make<QPushButton>(this, "Pul_RestoreSaveGame");
    QPushButton* const Pul_ArchiviaSavegames = Make<QPushButton>(this, "Pul_ArchiviaSavegames");
    QPushButton* const Pul_DeleteSavegame = Make<QPushButton>(this, "Pul_DeleteSavegame");
    QPushButton* const Pul_ImportSavegame = Make<QPushButton>(this, "Pul_ImportSavegame");
    QPushButton* const Pul_ExportSaveGame = Make<QPushButton>(this, "Pul_ExportSaveGame");
    QPushButton* const Pul_ChangeScreenshot = Make<QPushButton>(this, "Pul_ChangeScreenshot");

    QTimer* const Timer1 = Make<QTimer>(this, "Timer1");
    QTimer* const Timer_Beside = Make<QTimer>(this, "Timer_Beside"); // see program/beside.h
    QTimer* const Timer_Joystick = Make<QTimer>(this, "Timer_Joystick");

  private:
    // Principale_layout.cpp
    void Lay();
    void LayLibrary();
    QLayout* LaySearch();
    void LayTools();
    void SetView(LibraryView view);

    // Principale_page.cpp
    QWidget* LayRightSide();
    void LayPage();
    void LayEmptyStates();
    QLayout* LayActions();
    void LayScreenShots();
    void LaySaveGames();
    void SetTabOrder();

    // Principale_details.cpp
    void ShowHead(const program::LevelView& level);
    void ShowContacts(bool shown);
    void ShowEmptiness(const program::LevelView* level);
    void ShowEmptyLibrary();
    void ShowRightSide(bool shown);

    void SayJobRuns();
    void ShowLevelMenu(const QPoint& where);
    void ConnectControls(FormsUser& user);
    void Select(int index);
    void SyncSelection();
    void TakeSelection();
    void FilterLevels();
    bool Search();
    void Play();
    void ShowPlaying();
    void SayPlaying();
    void OpenWish();
    void LookBeside();
    bool MayClose();
    void EnableCommands();
    bool TakesDrops() const;

    void showEvent(QShowEvent* event) override;
    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dropEvent(QDropEvent* event) override;

    JobDoor door_{this, [this] { return isVisible() && !playing_; }};
    MainMenu menu_;
    LevelModel* const levels_ = new LevelModel(this);
    LevelDelegate* const delegate_ = new LevelDelegate(*levels_, this);
    SavegamePanel* savegames_ = nullptr;
    QAction* play_ = nullptr;
    QAction* more_ = nullptr;  // the level's document
    QAction* clear_ = nullptr; // empties the search
    PageArea* const right_side_ = Make<PageArea>(this, "Scroll_Page");
    QSplitter* const splitter_ = Make<QSplitter>(this, "Splitter1");
    QByteArray divided_; // by the splitter, while the right side is hidden
    ScreenshotPanel* shots_ = nullptr;
    QString title_note_;
    std::string wish_; // native path of an Archive that another start wants open
    bool playing_ = false;
    bool syncing_ = false; // the program, not the user, changes the view's selection
    WatchWindow watch_{*this};
    JoystickNavigation joystick_{*this};
};

} // namespace kelvash::ui
