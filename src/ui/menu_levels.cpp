// The menu "Levels", and levels that are dropped on the window.
#include "core/archive.h"
#include "core/level_list.h"
#include "foundation/text.h"
#include "intake/export_level.h"
#include "intake/new_level.h"
#include "program/remove_level.h"
#include "ui/Dialog_Autore.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"
#include "ui/menu_commands_messages.h"

namespace kelvash::ui {

namespace {

std::string SelectedName() {
    return CleanLine(Trim(core::archive.Table[core::LevelIndex(core::SelectedLevel())].Name));
}

// A filter that hides the new level would hide it from the player who has just added it.
void AddLevel(Principale& window, const std::string& source) {
    if (!intake::AddLevel(source)) return;
    window.Text_Search->clear();
    window.Say(Caption(msg::kSaidAdded, {SelectedName()}));
}

void RemoveLevel(Principale& window) {
    const std::string name = SelectedName();
    if (program::RemoveLevel()) window.Say(Caption(msg::kSaidRemoved, {name}));
}

void ExportLevel(Principale& window) {
    if (intake::ExportLevel()) window.Say(Caption(msg::kSaidExported, {SelectedName()}));
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
            {mnu_RemoveLevel, EnabledWhen::LevelSelected, [&window] { RemoveLevel(window); }},
            {mnu_Export, EnabledWhen::LevelSelected, [&window] { ExportLevel(window); }}};
}

void TakeSources(Principale& window, const std::vector<std::string>& paths) {
    if (paths.size() > 1)
        intake::AddLevels(paths);
    else
        AddLevel(window, paths.front());
}

} // namespace kelvash::ui
