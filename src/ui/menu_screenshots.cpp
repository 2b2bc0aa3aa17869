// The menu "ScreenShots".
#include "ui/Principale.h"
#include "ui/menu_commands.h"

namespace kelvash::ui {

std::vector<MenuCommand> ScreenshotCommands(Principale& window) {
    return {{MenuEntry::mnu_ShowScreenShot, EnabledWhen::Always, [&window] { window.ShowPanel(true); }}};
}

} // namespace kelvash::ui
