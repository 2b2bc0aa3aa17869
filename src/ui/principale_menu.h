// The menu of the main form: every entry under its name, in its order, and the commands behind them.
#pragma once

#include <QString>
#include <functional>
#include <vector>

class QAction;
class QMenuBar;
class QWidget;

namespace kelvash::ui {

class JobDoor;

// Menus and commands in the order in which they stand. The names are those of the actions.
enum class MenuEntry {
    mnu_File,
    mnu_New,
    mnu_Load,
    mnu_Save,
    mnu_SaveAs,
    Mnu_Exit,
    mnu_Level,
    mnu_AddLevel,
    mnu_SearchLivelli,
    mnu_Property,
    mnu_ShowAutoreInfo,
    mnu_Language,
    mnu_SetMylanguage,
    mnu_RestoreLanguage,
    mnu_RemoveLevel,
    mnu_Export,
    mnu_ShowListaUrl,
    mnu_SaveGames,
    mnu_ShowSavegames,
    mnu_ImpSavegames,
    mnu_ImportSaveGameSingle,
    mnu_ImportSaveGame,
    mnu_SearchSavegame,
    mnu_FindSavegameNote,
    mnu_FineNextSavegame,
    mnu_FindPreviousSavegame,
    mnu_MandaSavegameEmail,
    mnu_SendSaveGameEmail,
    mnu_SendSingoloSavegame,
    mnu_ExportSavegame,
    mnu_BackupSavegame,
    mnu_RestoreSavegames,
    mnu_SaveGameHid,
    mnu_ScegliImmagine,
    mnu_SaveGameHid2,
    mnu_PropertySavegame,
    mnu_DelSavegame,
    mnu_SalvaSavegame,
    mnu_SendSavegame,
    mnu_ChangeImageSavegame,
    mnu_Edit,
    mnu_ShowScreenShot,
    mnu_CaptureScreen,
    mnu_AddScreenshot,
    mnu_OpenEditor,
    mnu_SendScreenshotemail,
    mnu_CopyPathInClip,
    mnu_CopyShot,
    mnu_PropertyScreenShot,
    mnu_DeleteShot,
    mnu_RenameShot,
    mnu_ResizeSave,
    mnu_SaveShot,
    mnu_Zoom,
    mnu_LevelEditor,
    mnu_InstallTrle,
    mnu_InstallTrleFolder,
    mnu_InstallComprTrle,
    mnu_SetupTrle,
    mnu_SetOriginale,
    mnu_ImportWads,
    mnu_CompareTrle,
    mnu_ShowUrlList,
    mnu_Tools,
    mnu_ConvertAudio,
    mnu_DecodeMp3,
    mnu_EncodeMp3,
    mnu_ConvertWav,
    mnu_Manutenzione,
    mnu_CorrectArchiveCD,
    mnu_CalcolaSize,
    mnu_MoveArc,
    mnu_ControllaUguali,
    mnu_CopiaFileInfos,
    mnu_CreaInfoTr4,
    mnu_FaiFullBackup,
    mnu_Recover,
    mnu_Kept,
    mnu_SetLanguageAll,
    mnu_RestoreAll,
    mnu_MoveOnCd,
    mnu_SetupUpload,
    mnu_ProvaFilmato,
    mnu_Pref,
    mnu_Settings,
    mnu_PrefArchive,
    mnu_Help,
    mnu_About,
    mnu_FindHelp,
    mnu_HelpSaveGameMan,
    mnu_HelpFaq,
    mnu_Keys,
    Count
};

// When a command can be given; a command that can always be isn't a job. Who needs an Archive or a level
// needs a free job as well. An entry without a command is not there yet: it stays grey.
enum class EnabledWhen { Always, JobFree, ArchiveOpen, LevelSelected };

struct CommandState {
    bool job_free = false; // no game runs
    bool archive_open = false;
    bool level_selected = false; // and shown
};

bool IsEnabled(EnabledWhen when, const CommandState& now);
// What stands in the way of it, in words; empty if nothing does.
QString WhyGrey(EnabledWhen when, const CommandState& now);

struct MenuCommand {
    MenuEntry entry;
    EnabledWhen when;
    std::function<void()> run;
    bool is_job = true; // else it goes through the door by itself
};

class MainMenu {
  public:
    // Fills the bar; the actions belong to `form`. Jobs begin through the door.
    MainMenu(QMenuBar* bar, QWidget* form, std::vector<MenuCommand> commands, JobDoor& door);

    // An entry's action; that of a menu leads to it.
    QAction* Action(MenuEntry entry) const;
    void SetCaptions();
    // Enables what can be done now, and the menus in which there is something to do.
    void Update(const CommandState& now);

  private:
    void Connect(const MenuCommand& command, JobDoor& door);

    std::vector<MenuCommand> commands_;
    std::vector<QAction*> actions_; // by MenuEntry
};

} // namespace kelvash::ui
