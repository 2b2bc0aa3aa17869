// The menu "Tools".
#include "core/archive.h"
#include "core/kept_folders.h"
#include "core/maintenance.h"
#include "core/sizes.h"
#include "core/tr4_info.h"
#include "program/create_tr4_infos.h"
#include "program/start_up.h"
#include "swap/backup.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"
#include "ui/menu_commands_messages.h"

namespace kelvash::ui {

namespace {

void RefreshBackup(Principale& window) {
    if (swap::RefreshFullBackup()) window.Say(Caption(msg::kSaidBackup));
}

} // namespace

std::vector<MenuCommand> ToolCommands(Principale& window) {
    using enum MenuEntry;
    return {
        {mnu_CalcolaSize, EnabledWhen::ArchiveOpen, [] { core::ComputeArchiveSize(core::Report::Shown); }},
        {mnu_MoveArc, EnabledWhen::ArchiveOpen, [] { core::MoveArchive(); }},
        {mnu_ControllaUguali, EnabledWhen::ArchiveOpen, [] { core::ControllaUguali(); }},
        {mnu_CreaInfoTr4, EnabledWhen::ArchiveOpen, [] { program::CreaInfoTr4(); }},
        {mnu_FaiFullBackup, EnabledWhen::ArchiveOpen, [&window] { RefreshBackup(window); }},
        {mnu_Recover, EnabledWhen::JobFree,
         [&window] {
             if (core::RecoverArchive()) window.Text_Search->clear();
             program::KeepArchiveInUse();
         }},
        {mnu_Kept, EnabledWhen::ArchiveOpen, [] { core::TakeKeptLevel(); }}};
}

} // namespace kelvash::ui
