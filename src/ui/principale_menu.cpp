#include "ui/principale_menu.h"

#include <QAction>
#include <QHash>
#include <QMenu>
#include <QMenuBar>
#include <QString>
#include <array>

#include "ui/form_support.h"

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
    {0, "mnu_File", MessageId::kMnuFile},
    {1, "mnu_New", MessageId::kMnuNew},
    {1, "mnu_Load", MessageId::kMnuLoad, "Ctrl+O"},
    {1, "mnu_Save", MessageId::kMnuSave, "Ctrl+S"},
    {1, "mnu_SaveAs", MessageId::kMnuSaveAs},
    {1, "Mnu_Exit", MessageId::kMnuExit, "Ctrl+Q"},
    {0, "mnu_Level", MessageId::kMnuLevel},
    {1, "mnu_AddLevel", MessageId::kMnuAddLevel},
    {1, "mnu_SearchLivelli", MessageId::kMnuSearchLivelli},
    {1, "mnu_Property", MessageId::kMnuProperty},
    {1, "mnu_ShowAutoreInfo", MessageId::kMnuShowAutoreInfo},
    {1, "mnu_Language", MessageId::kMnuLanguage},
    {2, "mnu_SetMylanguage", MessageId::kMnuSetMylanguage},
    {2, "mnu_RestoreLanguage", MessageId::kMnuRestoreLanguage},
    {1, "mnu_RemoveLevel", MessageId::kMnuRemoveLevel},
    {1, "mnu_Export", MessageId::kMnuExport},
    {1, "mnu_ShowListaUrl", MessageId::kMnuShowListaUrl},
    {0, "mnu_SaveGames", MessageId::kMnuSaveGames},
    {1, "mnu_ShowSavegames", MessageId::kMnuShowSavegames},
    {1, "mnu_ImpSavegames", MessageId::kMnuImpSavegames},
    {2, "mnu_ImportSaveGameSingle", MessageId::kMnuImportSaveGameSingle},
    {2, "mnu_ImportSaveGame", MessageId::kMnuImportSaveGame},
    {1, "mnu_SearchSavegame", MessageId::kMnuSearchSavegame},
    {2, "mnu_FindSavegameNote", MessageId::kMnuFindSavegameNote, "Ctrl+F"},
    {2, "mnu_FineNextSavegame", MessageId::kMnuFineNextSavegame, "Ctrl+N"},
    {2, "mnu_FindPreviousSavegame", MessageId::kMnuFindPreviousSavegame, "Ctrl+P"},
    {1, "mnu_MandaSavegameEmail", MessageId::kMnuMandaSavegameEmail},
    {2, "mnu_SendSaveGameEmail", MessageId::kMnuSendSaveGameEmail},
    {2, "mnu_SendSingoloSavegame", MessageId::kMnuSendSingoloSavegame},
    {1, "mnu_ExportSavegame", MessageId::kMnuExportSavegame},
    {1, "mnu_BackupSavegame", MessageId::kMnuBackupSavegame},
    {1, "mnu_RestoreSavegames", MessageId::kMnuRestoreSavegames},
    {0, "mnu_SaveGameHid", MessageId::kMnuSaveGameHid},
    {1, "mnu_ScegliImmagine", MessageId::kMnuScegliImmagine},
    {0, "mnu_SaveGameHid2", MessageId::kMnuSaveGameHid2},
    {1, "mnu_PropertySavegame", MessageId::kMnuPropertySavegame},
    {1, "mnu_DelSavegame", MessageId::kMnuDelSavegame},
    {1, "mnu_SalvaSavegame", MessageId::kMnuSalvaSavegame},
    {1, "mnu_SendSavegame", MessageId::kMnuSendSavegame},
    {1, "mnu_ChangeImageSavegame", MessageId::kMnuChangeImageSavegame},
    {0, "mnu_Edit", MessageId::kMnuEdit},
    {1, "mnu_ShowScreenShot", MessageId::kMnuShowScreenShot},
    {1, "mnu_CaptureScreen", MessageId::kMnuCaptureScreen},
    {1, "mnu_AddScreenshot", MessageId::kMnuAddScreenshot},
    {1, "mnu_OpenEditor", MessageId::kMnuOpenEditor},
    {1, "mnu_SendScreenshotemail", MessageId::kMnuSendScreenshotemail},
    {1, "mnu_CopyPathInClip", MessageId::kMnuCopyPathInClip},
    {1, "mnu_PropertyScreenShot", MessageId::kMnuPropertyScreenShot},
    {1, "mnu_DeleteShot", MessageId::kMnuDeleteShot},
    {1, "mnu_RenameShot", MessageId::kMnuRenameShot},
    {1, "mnu_ResizeSave", MessageId::kMnuResizeSave},
    {1, "mnu_SaveShot", MessageId::kMnuSaveShot},
    {1, "mnu_Zoom", MessageId::kMnuZoom},
    {0, "mnu_LevelEditor", MessageId::kMnuLevelEditor},
    {1, "mnu_InstallTrle", MessageId::kMnuInstallTrle},
    {2, "mnu_InstallTrleFolder", MessageId::kMnuInstallTrleFolder},
    {2, "mnu_InstallComprTrle", MessageId::kMnuInstallComprTrle},
    {1, "mnu_SetupTrle", MessageId::kMnuSetupTrle},
    {1, "mnu_SetOriginale", MessageId::kMnuSetOriginale},
    {1, "mnu_ImportWads", MessageId::kMnuImportWads},
    {1, "mnu_CompareTrle", MessageId::kMnuCompareTrle},
    {1, "mnu_ShowUrlList", MessageId::kMnuShowUrlList},
    {0, "mnu_Tools", MessageId::kMnuTools},
    {1, "mnu_ConvertAudio", MessageId::kMnuConvertAudio},
    {2, "mnu_DecodeMp3", MessageId::kMnuDecodeMp3},
    {2, "mnu_EncodeMp3", MessageId::kMnuEncodeMp3},
    {2, "mnu_ConvertWav", MessageId::kMnuConvertWav},
    {1, "mnu_Manutenzione", MessageId::kMnuManutenzione},
    {2, "mnu_CorrectArchiveCD", MessageId::kMnuCorrectArchiveCD},
    {2, "mnu_CalcolaSize", MessageId::kMnuCalcolaSize},
    {2, "mnu_MoveArc", MessageId::kMnuMoveArc},
    {2, "mnu_ControllaUguali", MessageId::kMnuControllaUguali},
    {2, "mnu_CopiaFileInfos", MessageId::kMnuCopiaFileInfos},
    {2, "mnu_CreaInfoTr4", MessageId::kMnuCreaInfoTr4},
    {2, "mnu_FaiFullBackup", MessageId::kMnuFaiFullBackup},
    {2, "mnu_Recover", MessageId::kMnuRecover},
    {2, "mnu_Kept", MessageId::kMnuKept},
    {2, "mnu_SetLanguageAll", MessageId::kMnuSetLanguageAll},
    {2, "mnu_RestoreAll", MessageId::kMnuRestoreAll},
    {1, "mnu_MoveOnCd", MessageId::kMnuMoveOnCd},
    {1, "mnu_SetupUpload", MessageId::kMnuSetupUpload},
    {1, "mnu_ProvaFilmato", MessageId::kMnuProvaFilmato},
    {0, "mnu_Pref", MessageId::kMnuPref},
    {1, "mnu_Settings", MessageId::kMnuSettings},
    {1, "mnu_PrefArchive", MessageId::kMnuPrefArchive},
    {0, "mnu_Help", MessageId::kMnuHelp},
    {1, "mnu_About", MessageId::kMnuAbout},
    {1, "mnu_FindHelp", MessageId::kMnuFindHelp, "F1"},
    {1, "mnu_HelpSaveGameMan", MessageId::kMnuHelpSaveGameMan},
    {1, "mnu_HelpFaq", MessageId::kMnuHelpFaq},
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
