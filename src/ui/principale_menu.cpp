#include "ui/principale_menu.h"

#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QString>
#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "ui/form_support.h"
#include "ui/icons.h"
#include "ui/job_door.h"
#include "ui/menu_icons.h"
#include "ui/principale_menu_messages.h"

namespace kelvash::ui {

namespace {

// Depth 0 is a menu; an entry that is followed by a deeper one is a sub-menu.
struct Entry {
    int depth;
    MenuEntry entry;
    const char* name;
    MessageId caption;
    const char* key = "";
};

// An entry's object name is its name in the enum.
#define KELVASH_ENTRY(depth, name, ...)            \
    Entry {                                        \
        depth, MenuEntry::name, #name, __VA_ARGS__ \
    }

constexpr std::array kEntries = {
    KELVASH_ENTRY(0, mnu_File, msg::kMnuFile),
    KELVASH_ENTRY(1, mnu_New, msg::kMnuNew),
    KELVASH_ENTRY(1, mnu_Load, msg::kMnuLoad, "Ctrl+O"),
    KELVASH_ENTRY(1, mnu_Save, msg::kMnuSave, "Ctrl+S"),
    KELVASH_ENTRY(1, mnu_SaveAs, msg::kMnuSaveAs),
    KELVASH_ENTRY(1, Mnu_Exit, msg::kMnuExit, "Ctrl+Q"),
    KELVASH_ENTRY(0, mnu_Level, msg::kMnuLevel),
    KELVASH_ENTRY(1, mnu_AddLevel, msg::kMnuAddLevel, "Ins"),
    KELVASH_ENTRY(1, mnu_SearchLivelli, msg::kMnuSearchLivelli),
    KELVASH_ENTRY(1, mnu_Property, msg::kMnuProperty, "F2"),
    KELVASH_ENTRY(1, mnu_ShowAutoreInfo, msg::kMnuShowAutoreInfo),
    KELVASH_ENTRY(1, mnu_Language, msg::kMnuLanguage),
    KELVASH_ENTRY(2, mnu_SetMylanguage, msg::kMnuSetMylanguage),
    KELVASH_ENTRY(2, mnu_RestoreLanguage, msg::kMnuRestoreLanguage),
    KELVASH_ENTRY(1, mnu_RemoveLevel, msg::kMnuRemoveLevel),
    KELVASH_ENTRY(1, mnu_Export, msg::kMnuExport),
    KELVASH_ENTRY(1, mnu_ShowListaUrl, msg::kMnuShowListaUrl),
    KELVASH_ENTRY(0, mnu_SaveGames, msg::kMnuSaveGames),
    KELVASH_ENTRY(1, mnu_ShowSavegames, msg::kMnuShowSavegames),
    KELVASH_ENTRY(1, mnu_ImpSavegames, msg::kMnuImpSavegames),
    KELVASH_ENTRY(2, mnu_ImportSaveGameSingle, msg::kMnuImportSaveGameSingle),
    KELVASH_ENTRY(2, mnu_ImportSaveGame, msg::kMnuImportSaveGame),
    KELVASH_ENTRY(1, mnu_SearchSavegame, msg::kMnuSearchSavegame),
    KELVASH_ENTRY(2, mnu_FindSavegameNote, msg::kMnuFindSavegameNote, "Ctrl+F"),
    KELVASH_ENTRY(2, mnu_FineNextSavegame, msg::kMnuFineNextSavegame, "Ctrl+N"),
    KELVASH_ENTRY(2, mnu_FindPreviousSavegame, msg::kMnuFindPreviousSavegame, "Ctrl+P"),
    KELVASH_ENTRY(1, mnu_MandaSavegameEmail, msg::kMnuMandaSavegameEmail),
    KELVASH_ENTRY(2, mnu_SendSaveGameEmail, msg::kMnuSendSaveGameEmail),
    KELVASH_ENTRY(2, mnu_SendSingoloSavegame, msg::kMnuSendSingoloSavegame),
    KELVASH_ENTRY(1, mnu_ExportSavegame, msg::kMnuExportSavegame),
    KELVASH_ENTRY(1, mnu_BackupSavegame, msg::kMnuBackupSavegame),
    KELVASH_ENTRY(1, mnu_RestoreSavegames, msg::kMnuRestoreSavegames),
    KELVASH_ENTRY(0, mnu_SaveGameHid, msg::kMnuSaveGameHid),
    KELVASH_ENTRY(1, mnu_ScegliImmagine, msg::kMnuScegliImmagine),
    KELVASH_ENTRY(0, mnu_SaveGameHid2, msg::kMnuSaveGameHid2),
    KELVASH_ENTRY(1, mnu_PropertySavegame, msg::kMnuPropertySavegame),
    KELVASH_ENTRY(1, mnu_DelSavegame, msg::kMnuDelSavegame),
    KELVASH_ENTRY(1, mnu_SalvaSavegame, msg::kMnuSalvaSavegame),
    KELVASH_ENTRY(1, mnu_SendSavegame, msg::kMnuSendSavegame),
    KELVASH_ENTRY(1, mnu_ChangeImageSavegame, msg::kMnuChangeImageSavegame),
    KELVASH_ENTRY(0, mnu_Edit, msg::kMnuEdit),
    KELVASH_ENTRY(1, mnu_ShowScreenShot, msg::kMnuShowScreenShot),
    KELVASH_ENTRY(1, mnu_CaptureScreen, msg::kMnuCaptureScreen),
    KELVASH_ENTRY(1, mnu_AddScreenshot, msg::kMnuAddScreenshot),
    KELVASH_ENTRY(1, mnu_OpenEditor, msg::kMnuOpenEditor),
    KELVASH_ENTRY(1, mnu_SendScreenshotemail, msg::kMnuSendScreenshotemail),
    KELVASH_ENTRY(1, mnu_CopyPathInClip, msg::kMnuCopyPathInClip),
    KELVASH_ENTRY(1, mnu_CopyShot, msg::kMnuCopyShot),
    KELVASH_ENTRY(1, mnu_PropertyScreenShot, msg::kMnuPropertyScreenShot),
    KELVASH_ENTRY(1, mnu_DeleteShot, msg::kMnuDeleteShot),
    KELVASH_ENTRY(1, mnu_RenameShot, msg::kMnuRenameShot),
    KELVASH_ENTRY(1, mnu_ResizeSave, msg::kMnuResizeSave),
    KELVASH_ENTRY(1, mnu_SaveShot, msg::kMnuSaveShot),
    KELVASH_ENTRY(1, mnu_Zoom, msg::kMnuZoom),
    KELVASH_ENTRY(0, mnu_LevelEditor, msg::kMnuLevelEditor),
    KELVASH_ENTRY(1, mnu_InstallTrle, msg::kMnuInstallTrle),
    KELVASH_ENTRY(2, mnu_InstallTrleFolder, msg::kMnuInstallTrleFolder),
    KELVASH_ENTRY(2, mnu_InstallComprTrle, msg::kMnuInstallComprTrle),
    KELVASH_ENTRY(1, mnu_SetupTrle, msg::kMnuSetupTrle),
    KELVASH_ENTRY(1, mnu_SetOriginale, msg::kMnuSetOriginale),
    KELVASH_ENTRY(1, mnu_ImportWads, msg::kMnuImportWads),
    KELVASH_ENTRY(1, mnu_CompareTrle, msg::kMnuCompareTrle),
    KELVASH_ENTRY(1, mnu_ShowUrlList, msg::kMnuShowUrlList),
    KELVASH_ENTRY(0, mnu_Tools, msg::kMnuTools),
    KELVASH_ENTRY(1, mnu_ConvertAudio, msg::kMnuConvertAudio),
    KELVASH_ENTRY(2, mnu_DecodeMp3, msg::kMnuDecodeMp3),
    KELVASH_ENTRY(2, mnu_EncodeMp3, msg::kMnuEncodeMp3),
    KELVASH_ENTRY(2, mnu_ConvertWav, msg::kMnuConvertWav),
    KELVASH_ENTRY(1, mnu_Manutenzione, msg::kMnuManutenzione),
    KELVASH_ENTRY(2, mnu_CorrectArchiveCD, msg::kMnuCorrectArchiveCD),
    KELVASH_ENTRY(2, mnu_CalcolaSize, msg::kMnuCalcolaSize),
    KELVASH_ENTRY(2, mnu_MoveArc, msg::kMnuMoveArc),
    KELVASH_ENTRY(2, mnu_ControllaUguali, msg::kMnuControllaUguali),
    KELVASH_ENTRY(2, mnu_CopiaFileInfos, msg::kMnuCopiaFileInfos),
    KELVASH_ENTRY(2, mnu_CreaInfoTr4, msg::kMnuCreaInfoTr4),
    KELVASH_ENTRY(2, mnu_FaiFullBackup, msg::kMnuFaiFullBackup),
    KELVASH_ENTRY(2, mnu_Recover, msg::kMnuRecover),
    KELVASH_ENTRY(2, mnu_Kept, msg::kMnuKept),
    KELVASH_ENTRY(2, mnu_SetLanguageAll, msg::kMnuSetLanguageAll),
    KELVASH_ENTRY(2, mnu_RestoreAll, msg::kMnuRestoreAll),
    KELVASH_ENTRY(1, mnu_MoveOnCd, msg::kMnuMoveOnCd),
    KELVASH_ENTRY(1, mnu_SetupUpload, msg::kMnuSetupUpload),
    KELVASH_ENTRY(1, mnu_ProvaFilmato, msg::kMnuProvaFilmato),
    KELVASH_ENTRY(0, mnu_Pref, msg::kMnuPref),
    KELVASH_ENTRY(1, mnu_Settings, msg::kMnuSettings),
    KELVASH_ENTRY(1, mnu_PrefArchive, msg::kMnuPrefArchive),
    KELVASH_ENTRY(0, mnu_Help, msg::kMnuHelp),
    KELVASH_ENTRY(1, mnu_About, msg::kMnuAbout),
    KELVASH_ENTRY(1, mnu_FindHelp, msg::kMnuFindHelp, "F1"),
    KELVASH_ENTRY(1, mnu_HelpSaveGameMan, msg::kMnuHelpSaveGameMan),
    KELVASH_ENTRY(1, mnu_HelpFaq, msg::kMnuHelpFaq),
    KELVASH_ENTRY(1, mnu_Keys, msg::kMnuKeys, "?"),
};

#undef KELVASH_ENTRY

constexpr bool StandInOrder() {
    for (std::size_t i = 0; i < kEntries.size(); ++i)
        if (static_cast<std::size_t>(kEntries[i].entry) != i) return false;
    return kEntries.size() == static_cast<std::size_t>(MenuEntry::Count);
}
static_assert(StandInOrder(), "actions are found by their entry's number");

bool IsMenu(std::size_t at) {
    return kEntries[at].depth == 0 ||
           (at + 1 < kEntries.size() && kEntries[at + 1].depth > kEntries[at].depth);
}

// The menus of the savegame panel are no part of the bar.
bool StandsApart(MenuEntry entry) {
    return entry == MenuEntry::mnu_SaveGameHid || entry == MenuEntry::mnu_SaveGameHid2;
}

} // namespace

bool IsEnabled(EnabledWhen when, const CommandState& now) {
    switch (when) {
        case EnabledWhen::Always:
            return true;
        case EnabledWhen::JobFree:
            return now.job_free;
        case EnabledWhen::ArchiveOpen:
            return now.job_free && now.archive_open;
        case EnabledWhen::LevelSelected:
            return now.job_free && now.archive_open && now.level_selected;
    }
    return false;
}

namespace {

// What stands in a command's way.
std::optional<MessageId> HindranceOf(EnabledWhen when, const CommandState& now) {
    if (IsEnabled(when, now)) return std::nullopt;
    if (!now.job_free) return msg::kWhyGameRuns;
    return now.archive_open ? msg::kWhyNoLevel : msg::kWhyNoArchive;
}

} // namespace

QString WhyGrey(EnabledWhen when, const CommandState& now) {
    const std::optional<MessageId> hindrance = HindranceOf(when, now);
    return hindrance ? Caption(*hindrance) : QString();
}

MainMenu::MainMenu(QMenuBar* bar, QWidget* form, std::vector<MenuCommand> commands, JobDoor& door)
    : commands_(std::move(commands)) {
    std::array<QMenu*, 3> open{}; // the menu being filled at each depth
    for (std::size_t i = 0; i < kEntries.size(); ++i) {
        const Entry& entry = kEntries[i];
        const auto depth = static_cast<std::size_t>(entry.depth);
        QAction* action = nullptr;
        if (IsMenu(i)) {
            open.at(depth) = new QMenu(form);
            open.at(depth)->setToolTipsVisible(true);
            action = open.at(depth)->menuAction();
        } else {
            action = new QAction(form);
            action->setShortcut(QKeySequence(QLatin1String(entry.key)));
            NotYet(action, true);
        }
        action->setObjectName(QLatin1String(entry.name));
        if (const auto glyph = GlyphOf(entry.entry)) action->setIcon(IconOf(*glyph));
        if (depth > 0)
            open.at(depth - 1)->addAction(action);
        else if (!StandsApart(entry.entry))
            bar->addAction(action);
        actions_.push_back(action);
    }
    for (const MenuCommand& command : commands_)
        Connect(command, door);
    Update({});
}

void MainMenu::Connect(const MenuCommand& command, JobDoor& door) {
    QAction* const action = Action(command.entry);
    NotYet(action, false);
    const bool is_job = command.is_job && command.when != EnabledWhen::Always;
    QObject::connect(action, &QAction::triggered, action, [&door, is_job, run = command.run] {
        if (is_job)
            door.Try(run);
        else
            run();
    });
}

QAction* MainMenu::Action(MenuEntry entry) const {
    return actions_.at(static_cast<std::size_t>(entry));
}

void MainMenu::Update(const CommandState& now) {
    for (const MenuCommand& command : commands_) {
        QAction* const action = Action(command.entry);
        action->setEnabled(IsEnabled(command.when, now));
        TellWhy(action, WhyGrey(command.when, now));
    }
    // From the end, so that a menu comes after those in it.
    for (auto action = actions_.rbegin(); action != actions_.rend(); ++action) {
        if ((*action)->menu() == nullptr) continue;
        const QList<QAction*> inside = (*action)->menu()->actions();
        (*action)->setEnabled(std::any_of(inside.begin(), inside.end(),
                                          [](const QAction* entry) { return entry->isEnabled(); }));
    }
}

void MainMenu::SetCaptions() {
    for (const Entry& entry : kEntries)
        Action(entry.entry)->setText(Caption(entry.caption));
}

} // namespace kelvash::ui
