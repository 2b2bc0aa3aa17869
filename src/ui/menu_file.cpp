// The menu "File".
#include "core/archive.h"
#include "core/profile.h"
#include "program/start_up.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"
#include "ui/menu_commands_messages.h"

namespace kelvash::ui {

namespace {

// An Archive that isn't made leaves none open: the former one comes back. One that couldn't even be begun has
// left it open.
void NewArchive(Principale& window) {
    const std::string former = core::profile.LastArchive;
    if (core::NewArchive())
        window.Text_Search->clear();
    else if (core::profile.LastArchive != former || !core::ArchiveIsOpen())
        program::ReturnToArchive(former);
    program::KeepArchiveInUse();
    window.ShowLevels();
}

// So does one whose missing folder was given up: its table is loaded by then.
void LoadArchive(Principale& window) {
    const std::string former = core::profile.LastArchive;
    if (core::LoadArchiveDialog())
        window.Text_Search->clear(); // what was sought in the former one
    else if (core::archive.ArchiveLoadRefused)
        program::ReturnToArchive(former);
    program::KeepArchiveInUse();
    window.ShowLevels();
}

void SaySaved(Principale& window) {
    const std::int32_t levels = core::archive.Table.Size();
    const std::string& path = core::profile.LastArchive;
    window.Say(levels == 1 ? Caption(msg::kSaidSavedOne, {path})
                           : Caption(msg::kSaidSaved, {std::to_string(levels), path}));
}

void SaveArchive(Principale& window) {
    if (core::SaveArchive()) SaySaved(window);
}

void SaveArchiveAs(Principale& window) {
    const core::SavedAs end = core::SaveArchiveAs(); // tells its own failure
    program::KeepArchiveInUse();
    window.ShowTitle();
    if (end == core::SavedAs::Saved) SaySaved(window);
}

} // namespace

std::vector<MenuCommand> FileCommands(Principale& window) {
    return {{MenuEntry::mnu_New, EnabledWhen::JobFree, [&window] { NewArchive(window); }},
            {MenuEntry::mnu_Load, EnabledWhen::JobFree, [&window] { LoadArchive(window); }},
            {MenuEntry::mnu_Save, EnabledWhen::ArchiveOpen, [&window] { SaveArchive(window); }},
            {MenuEntry::mnu_SaveAs, EnabledWhen::ArchiveOpen, [&window] { SaveArchiveAs(window); }},
            {MenuEntry::Mnu_Exit, EnabledWhen::JobFree, [&window] { window.close(); }, false}};
}

} // namespace kelvash::ui
