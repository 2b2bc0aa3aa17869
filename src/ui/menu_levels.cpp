// The menu "Levels", and levels that are dropped on the window.
#include "core/archive.h"
#include "core/level_list.h"
#include "intake/export_level.h"
#include "intake/new_level.h"
#include "program/remove_level.h"
#include "ui/Dialog_Autore.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"

namespace kelvash::ui {

namespace {

// A filter that hides the new level would hide it from the player who has just added it.
void AddLevel(Principale& window, const std::string& source) {
    if (intake::AddLevel(source)) window.Text_Search->clear();
}

void ShowAuthor(Principale& window) {
    Dialog_Autore form(&window);
    form.ImpostaValori(core::LevelIndex(core::SelectedLevel()));
    form.exec();
}

} // namespace

std::vector<MenuCommand> LevelCommands(Principale& window) {
    using enum MenuEntry;
    return {{mnu_AddLevel, EnabledWhen::ArchiveOpen, [&window] { AddLevel(window, {}); }},
            {mnu_Property, EnabledWhen::LevelSelected, [] { intake::ShowProperty(); }},
            {mnu_ShowAutoreInfo, EnabledWhen::LevelSelected, [&window] { ShowAuthor(window); }},
            {mnu_RemoveLevel, EnabledWhen::LevelSelected, [] { program::RemoveLevel(); }},
            {mnu_Export, EnabledWhen::LevelSelected, [] { intake::ExportLevel(); }}};
}

void TakeSources(Principale& window, const std::vector<std::string>& paths) {
    if (paths.size() > 1)
        intake::AddLevels(paths);
    else
        AddLevel(window, paths.front());
}

} // namespace kelvash::ui
