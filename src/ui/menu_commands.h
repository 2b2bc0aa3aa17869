// The commands of the main form's menu, one function and one file for each menu: thin calls of the logic.
#pragma once

#include <string>
#include <vector>

#include "ui/principale_menu.h"

namespace kelvash::ui {

class FormsUser;
class Principale;

std::vector<MenuCommand> FileCommands(Principale& window);
std::vector<MenuCommand> LevelCommands(Principale& window);
std::vector<MenuCommand> SavegameCommands(Principale& window);
std::vector<MenuCommand> ScreenshotCommands(Principale& window);
std::vector<MenuCommand> LevelEditorCommands(Principale& window, FormsUser& user);
std::vector<MenuCommand> ToolCommands(Principale& window);
std::vector<MenuCommand> PreferenceCommands(Principale& window);
std::vector<MenuCommand> HelpCommands(Principale& window);

// All of them.
std::vector<MenuCommand> MenuCommands(Principale& window, FormsUser& user);

// Zips, folders or files that were dropped, as path texts: one opens the form, several are taken in one after
// the other.
void TakeSources(Principale& window, const std::vector<std::string>& paths);

} // namespace kelvash::ui
