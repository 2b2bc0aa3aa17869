// The menu "Savegames", and the two of the savegames' panel.
#include "ui/Principale.h"
#include "ui/menu_commands.h"
#include "ui/savegame_panel.h"

namespace kelvash::ui {

std::vector<MenuCommand> SavegameCommands(Principale& window) {
    using enum MenuEntry;
    using companion::SearchWay;
    const auto command = [&window](MenuEntry entry, void (SavegamePanel::*run)()) {
        return MenuCommand{entry, EnabledWhen::LevelSelected,
                           [&window, run] { (window.Savegames().*run)(); }};
    };
    const auto again = [&window](MenuEntry entry, SearchWay way) {
        return MenuCommand{entry, EnabledWhen::LevelSelected,
                           [&window, way] { window.Savegames().FindAgain(way); }};
    };
    return {{mnu_ShowSavegames, EnabledWhen::Always, [&window] { window.ShowPanel(false); }},
            command(mnu_ImportSaveGameSingle, &SavegamePanel::ImportOne),
            command(mnu_ImportSaveGame, &SavegamePanel::ImportFolder),
            command(mnu_FindSavegameNote, &SavegamePanel::FindNote),
            again(mnu_FineNextSavegame, SearchWay::Forward),
            again(mnu_FindPreviousSavegame, SearchWay::Back),
            command(mnu_SendSaveGameEmail, &SavegamePanel::MailMany),
            command(mnu_SendSingoloSavegame, &SavegamePanel::MailSelected),
            command(mnu_ExportSavegame, &SavegamePanel::Export),
            command(mnu_BackupSavegame, &SavegamePanel::BackupSavegame),
            command(mnu_RestoreSavegames, &SavegamePanel::RestoreSavegames),
            command(mnu_ScegliImmagine, &SavegamePanel::ChooseImage),
            command(mnu_PropertySavegame, &SavegamePanel::ShowProperty),
            command(mnu_DelSavegame, &SavegamePanel::DeleteSavegame),
            command(mnu_SalvaSavegame, &SavegamePanel::SaveAs),
            command(mnu_SendSavegame, &SavegamePanel::MailSelected),
            command(mnu_ChangeImageSavegame, &SavegamePanel::ChooseImage)};
}

} // namespace kelvash::ui
