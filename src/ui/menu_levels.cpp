// The menu "Levels", and levels that are dropped on the window.
#include "core/archive.h"
#include "core/level_list.h"
#include "foundation/files.h"
#include "foundation/text.h"
#include "intake/export_level.h"
#include "intake/new_level.h"
#include "program/remove_level.h"
#include "ui/Dialog_Autore.h"
#include "ui/Dialog_NewLevel.h"
#include "ui/Principale.h"
#include "ui/forms_user.h"
#include "ui/menu_commands.h"

namespace kelvash::ui {

namespace {

// A filter that hides the new level would hide it from the player who has just added it.
void AddLevel(Principale& window, FormsUser& user, const std::string& zip,
              const std::vector<std::string>& sources) {
    if (intake::AddLevel(zip, NewLevelForm(user, &window, sources))) window.Text_Search->clear();
}

void ShowAuthor(Principale& window) {
    Dialog_Autore form(&window);
    form.ImpostaValori(core::LevelIndex(core::SelectedLevel()));
    form.exec();
}

} // namespace

std::vector<MenuCommand> LevelCommands(Principale& window, FormsUser& user) {
    using enum MenuEntry;
    return {{mnu_AddLevel, EnabledWhen::ArchiveOpen, [&window, &user] { AddLevel(window, user, {}, {}); }},
            {mnu_Property, EnabledWhen::LevelSelected,
             [&window, &user] { intake::ShowProperty(NewLevelForm(user, &window)); }},
            {mnu_ShowAutoreInfo, EnabledWhen::LevelSelected, [&window] { ShowAuthor(window); }},
            {mnu_RemoveLevel, EnabledWhen::LevelSelected, [] { program::RemoveLevel(); }},
            {mnu_Export, EnabledWhen::LevelSelected, [] { intake::ExportLevel(); }}};
}

void TakeSources(Principale& window, FormsUser& user, const std::vector<std::string>& paths) {
    if (paths.size() > 1)
        intake::AddLevels(paths);
    else if (EndsWithNoCase(paths.front(), ".zip") && FileExists(paths.front()))
        AddLevel(window, user, paths.front(), {});
    else
        AddLevel(window, user, {}, paths);
}

} // namespace kelvash::ui
