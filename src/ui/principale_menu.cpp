#include "ui/principale_menu.h"

#include <QAction>
#include <QHash>
#include <QMenu>
#include <QMenuBar>
#include <QString>
#include <array>

#include "ui/form_support.h"
#include "ui/principale_menu_messages.h"

namespace kelvash::ui {

namespace {

// Depth 0 is a menu; an entry that is followed by a deeper one is a sub-menu.
struct Entry {
    int depth;
    const char* name;
    MessageId caption;
    const char* key = "";
};

constexpr auto kEntries = std::to_array<Entry>({
    {0, "mnu_File", msg::kMnuFile},
    {1, "mnu_New", msg::kMnuNew},
    {1, "mnu_Load", msg::kMnuLoad, "Ctrl+O"},
    {1, "mnu_Save", msg::kMnuSave, "Ctrl+S"},
    {1, "mnu_SaveAs", msg::kMnuSaveAs},
    {1, "Mnu_Exit", msg::kMnuExit, "Ctrl+Q"},
    {0, "mnu_Level", msg::kMnuLevel},
    {1, "mnu_AddLevel", msg::kMnuAddLevel},
    {1, "mnu_SearchLivelli", msg::kMnuSearchLivelli},
    {1, "mnu_Property", msg::kMnuProperty},
    {1, "mnu_ShowAutoreInfo", msg::kMnuShowAutoreInfo},
    {1, "mnu_Language", msg::kMnuLanguage},
    {2, "mnu_SetMylanguage", msg::kMnuSetMylanguage},
    {2, "mnu_RestoreLanguage", msg::kMnuRestoreLanguage},
    {1, "mnu_RemoveLevel", msg::kMnuRemoveLevel},
    {1, "mnu_Export", msg::kMnuExport},
    {1, "mnu_ShowListaUrl", msg::kMnuShowListaUrl},
    {0, "mnu_SaveGames", msg::kMnuSaveGames},
    {1, "mnu_ShowSavegames", msg::kMnuShowSavegames},
    {1, "mnu_ImpSavegames", msg::kMnuImpSavegames},
    {2, "mnu_ImportSaveGameSingle", msg::kMnuImportSaveGameSingle},
    {2, "mnu_ImportSaveGame", msg::kMnuImportSaveGame},
    {1, "mnu_SearchSavegame", msg::kMnuSearchSavegame},
    {2, "mnu_FindSavegameNote", msg::kMnuFindSavegameNote, "Ctrl+F"},
    {2, "mnu_FineNextSavegame", msg::kMnuFineNextSavegame, "Ctrl+N"},
    {2, "mnu_FindPreviousSavegame", msg::kMnuFindPreviousSavegame, "Ctrl+P"},
    {1, "mnu_MandaSavegameEmail", msg::kMnuMandaSavegameEmail},
    {2, "mnu_SendSaveGameEmail", msg::kMnuSendSaveGameEmail},
    {2, "mnu_SendSingoloSavegame", msg::kMnuSendSingoloSavegame},
    {1, "mnu_ExportSavegame", msg::kMnuExportSavegame},
    {1, "mnu_BackupSavegame", msg::kMnuBackupSavegame},
    {1, "mnu_RestoreSavegames", msg::kMnuRestoreSavegames},
    {0, "mnu_SaveGameHid", msg::kMnuSaveGameHid},
    {1, "mnu_ScegliImmagine", msg::kMnuScegliImmagine},
    {0, "mnu_SaveGameHid2", msg::kMnuSaveGameHid2},
    {1, "mnu_PropertySavegame", msg::kMnuPropertySavegame},
    {1, "mnu_DelSavegame", msg::kMnuDelSavegame},
    {1, "mnu_SalvaSavegame", msg::kMnuSalvaSavegame},
    {1, "mnu_SendSavegame", msg::kMnuSendSavegame},
    {1, "mnu_ChangeImageSavegame", msg::kMnuChangeImageSavegame},
    {0, "mnu_Edit", msg::kMnuEdit},
    {1, "mnu_ShowScreenShot", msg::kMnuShowScreenShot},
    {1, "mnu_CaptureScreen", msg::kMnuCaptureScreen},
    {1, "mnu_AddScreenshot", msg::kMnuAddScreenshot},
    {1, "mnu_OpenEditor", msg::kMnuOpenEditor},
    {1, "mnu_SendScreenshotemail", msg::kMnuSendScreenshotemail},
    {1, "mnu_CopyPathInClip", msg::kMnuCopyPathInClip},
    {1, "mnu_PropertyScreenShot", msg::kMnuPropertyScreenShot},
    {1, "mnu_DeleteShot", msg::kMnuDeleteShot},
    {1, "mnu_RenameShot", msg::kMnuRenameShot},
    {1, "mnu_ResizeSave", msg::kMnuResizeSave},
    {1, "mnu_SaveShot", msg::kMnuSaveShot},
    {1, "mnu_Zoom", msg::kMnuZoom},
    {0, "mnu_LevelEditor", msg::kMnuLevelEditor},
    {1, "mnu_InstallTrle", msg::kMnuInstallTrle},
    {2, "mnu_InstallTrleFolder", msg::kMnuInstallTrleFolder},
    {2, "mnu_InstallComprTrle", msg::kMnuInstallComprTrle},
    {1, "mnu_SetupTrle", msg::kMnuSetupTrle},
    {1, "mnu_SetOriginale", msg::kMnuSetOriginale},
    {1, "mnu_ImportWads", msg::kMnuImportWads},
    {1, "mnu_CompareTrle", msg::kMnuCompareTrle},
    {1, "mnu_ShowUrlList", msg::kMnuShowUrlList},
    {0, "mnu_Tools", msg::kMnuTools},
    {1, "mnu_ConvertAudio", msg::kMnuConvertAudio},
    {2, "mnu_DecodeMp3", msg::kMnuDecodeMp3},
    {2, "mnu_EncodeMp3", msg::kMnuEncodeMp3},
    {2, "mnu_ConvertWav", msg::kMnuConvertWav},
    {1, "mnu_Manutenzione", msg::kMnuManutenzione},
    {2, "mnu_CorrectArchiveCD", msg::kMnuCorrectArchiveCD},
    {2, "mnu_CalcolaSize", msg::kMnuCalcolaSize},
    {2, "mnu_MoveArc", msg::kMnuMoveArc},
    {2, "mnu_ControllaUguali", msg::kMnuControllaUguali},
    {2, "mnu_CopiaFileInfos", msg::kMnuCopiaFileInfos},
    {2, "mnu_CreaInfoTr4", msg::kMnuCreaInfoTr4},
    {2, "mnu_FaiFullBackup", msg::kMnuFaiFullBackup},
    {2, "mnu_Recover", msg::kMnuRecover},
    {2, "mnu_Kept", msg::kMnuKept},
    {2, "mnu_SetLanguageAll", msg::kMnuSetLanguageAll},
    {2, "mnu_RestoreAll", msg::kMnuRestoreAll},
    {1, "mnu_MoveOnCd", msg::kMnuMoveOnCd},
    {1, "mnu_SetupUpload", msg::kMnuSetupUpload},
    {1, "mnu_ProvaFilmato", msg::kMnuProvaFilmato},
    {0, "mnu_Pref", msg::kMnuPref},
    {1, "mnu_Settings", msg::kMnuSettings},
    {1, "mnu_PrefArchive", msg::kMnuPrefArchive},
    {0, "mnu_Help", msg::kMnuHelp},
    {1, "mnu_About", msg::kMnuAbout},
    {1, "mnu_FindHelp", msg::kMnuFindHelp, "F1"},
    {1, "mnu_HelpSaveGameMan", msg::kMnuHelpSaveGameMan},
    {1, "mnu_HelpFaq", msg::kMnuHelpFaq},
});

bool IsMenu(std::size_t at) {
    return kEntries[at].depth == 0 ||
           (at + 1 < kEntries.size() && kEntries[at + 1].depth > kEntries[at].depth);
}

bool StandsApart(const char* name) {
    return QLatin1String(name).startsWith(QLatin1String("mnu_SaveGameHid"));
}

} // namespace

ContextMenus BuildMenu(QMenuBar* bar, QWidget* form) {
    ContextMenus apart;
    std::array<QMenu*, 3> open{}; // the menu being filled at each depth
    for (std::size_t i = 0; i < kEntries.size(); ++i) {
        const Entry& entry = kEntries[i];
        const QString name = QString::fromLatin1(entry.name);
        QMenu* const parent = entry.depth == 0 ? nullptr : open.at(static_cast<std::size_t>(entry.depth) - 1);
        if (IsMenu(i)) {
            auto* const menu = new QMenu(form);
            menu->menuAction()->setObjectName(name);
            open.at(static_cast<std::size_t>(entry.depth)) = menu;
            if (parent != nullptr)
                parent->addMenu(menu);
            else if (!StandsApart(entry.name))
                bar->addMenu(menu);
            else
                (apart.mnu_SaveGameHid == nullptr ? apart.mnu_SaveGameHid : apart.mnu_SaveGameHid2) = menu;
            continue;
        }
        auto* const action = new QAction(form);
        action->setObjectName(name);
        action->setEnabled(false);
        action->setShortcut(QKeySequence(QLatin1String(entry.key)));
        parent->addAction(action);
    }
    return apart;
}

void SetMenuCaptions(QWidget* form) {
    QHash<QString, QAction*> actions;
    for (QAction* action : form->findChildren<QAction*>())
        actions.insert(action->objectName(), action);
    for (const Entry& entry : kEntries)
        actions.value(QString::fromLatin1(entry.name))->setText(Caption(entry.caption));
}

} // namespace kelvash::ui
