#include "ui/menu_commands.h"

namespace kelvash::ui {

std::vector<MenuCommand> MenuCommands(Principale& window, FormsUser& user) {
    std::vector<MenuCommand> all;
    for (const std::vector<MenuCommand>& menu : std::vector<std::vector<MenuCommand>>{
             FileCommands(window), LevelCommands(window), SavegameCommands(window),
             ScreenshotCommands(window), LevelEditorCommands(window, user), ToolCommands(window),
             PreferenceCommands(window), HelpCommands(window)})
        all.insert(all.end(), menu.begin(), menu.end());
    return all;
}

} // namespace kelvash::ui
