// The menu "Savegames".
#include "ui/Principale.h"
#include "ui/menu_commands.h"

namespace kelvash::ui {

std::vector<MenuCommand> SavegameCommands(Principale& window) {
    return {{MenuEntry::mnu_ShowSavegames, EnabledWhen::Always, [&window] { window.ShowPanel(false); }}};
}

} // namespace kelvash::ui
