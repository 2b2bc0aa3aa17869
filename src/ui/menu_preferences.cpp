// The menu "Preferences".
#include "core/level_list.h"
#include "core/session.h"
#include "ui/Dialog_PrefArc.h"
#include "ui/Dialog_Settings.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"

namespace kelvash::ui {

namespace {

void ShowSettings(Principale& window) {
    Dialog_Settings form(&window);
    form.ImpostaValori();
    form.exec();
    window.Timer1->setInterval(core::session.TimerInterval);
    core::RefreshLevelList(); // another TRLE folder may hold another level
}

void ShowPreferences(Principale& window) {
    Dialog_PrefArc form(&window);
    form.ImpostaValori();
    form.exec();
}

} // namespace

std::vector<MenuCommand> PreferenceCommands(Principale& window) {
    return {{MenuEntry::mnu_Settings, EnabledWhen::JobFree, [&window] { ShowSettings(window); }},
            {MenuEntry::mnu_PrefArchive, EnabledWhen::ArchiveOpen, [&window] { ShowPreferences(window); }}};
}

} // namespace kelvash::ui
