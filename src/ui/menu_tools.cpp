// The menu "Tools".
#include "audio/converter.h"
#include "core/archive.h"
#include "core/kept_folders.h"
#include "core/maintenance.h"
#include "core/sizes.h"
#include "core/tr4_info.h"
#include "program/create_tr4_infos.h"
#include "program/start_up.h"
#include "swap/backup.h"
#include "ui/Dialog_ConvertAudio.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"
#include "ui/menu_commands_messages.h"

namespace kelvash::ui {

namespace {

void RefreshBackup(Principale& window) {
    if (swap::RefreshFullBackup()) window.Say(Caption(msg::kSaidBackup));
}

void ShowConverter(Principale& window, audio::ConverterMode mode) {
    Dialog_ConvertAudio form(&window);
    if (form.ImpostaValori({.Mode = mode})) form.exec();
}

} // namespace

std::vector<MenuCommand> ToolCommands(Principale& window) {
    using enum MenuEntry;
    const auto convert = [&window](audio::ConverterMode mode) {
        return [&window, mode] { ShowConverter(window, mode); };
    };
    return {
        {mnu_DecodeMp3, EnabledWhen::JobFree, convert(audio::ConverterMode::DecodeMp3)},
        {mnu_EncodeMp3, EnabledWhen::JobFree, convert(audio::ConverterMode::EncodeWave)},
        {mnu_ConvertWav, EnabledWhen::JobFree, convert(audio::ConverterMode::ConvertWave)},
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
