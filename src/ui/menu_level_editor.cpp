// The menu "Level-Editor".
#include "ui/Dialog_Restore.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"
#include "ui/menu_commands_messages.h"

namespace kelvash::ui {

namespace {

void ShowRestore(Principale& window, FormsUser& user) {
    Dialog_Restore form(user, &window);
    form.exec();
    if (form.Restored) window.Say(Caption(msg::kSaidRestored));
    // The box that told the outcome had the keyboard, and its form is gone with it.
    window.activateWindow();
    window.Combo_Livelli->setFocus();
}

} // namespace

std::vector<MenuCommand> LevelEditorCommands(Principale& window, FormsUser& user) {
    return {
        {MenuEntry::mnu_SetOriginale, EnabledWhen::JobFree, [&window, &user] { ShowRestore(window, user); }}};
}

} // namespace kelvash::ui
