#include "ui/menu_icons.h"

#include <algorithm>
#include <array>

namespace kelvash::ui {

namespace {

struct EntryIcon {
    MenuEntry entry;
    Glyph glyph;
};

constexpr auto kIcons = std::to_array<EntryIcon>({
    {MenuEntry::mnu_New, Glyph::NewArchive},
    {MenuEntry::mnu_Load, Glyph::OpenArchive},
    {MenuEntry::mnu_Save, Glyph::Archive},
    {MenuEntry::mnu_SaveAs, Glyph::SaveAs},
    {MenuEntry::Mnu_Exit, Glyph::Exit},
    {MenuEntry::mnu_AddLevel, Glyph::Add},
    {MenuEntry::mnu_SearchLivelli, Glyph::Search},
    {MenuEntry::mnu_Property, Glyph::Properties},
    {MenuEntry::mnu_ShowAutoreInfo, Glyph::Author},
    {MenuEntry::mnu_Language, Glyph::Language},
    {MenuEntry::mnu_RemoveLevel, Glyph::Delete},
    {MenuEntry::mnu_Export, Glyph::Export},
    {MenuEntry::mnu_ShowListaUrl, Glyph::Address},
    {MenuEntry::mnu_ShowSavegames, Glyph::Savegames},
    {MenuEntry::mnu_ImpSavegames, Glyph::Import},
    {MenuEntry::mnu_SearchSavegame, Glyph::Search},
    {MenuEntry::mnu_MandaSavegameEmail, Glyph::Email},
    {MenuEntry::mnu_ExportSavegame, Glyph::Export},
    {MenuEntry::mnu_BackupSavegame, Glyph::Package},
    {MenuEntry::mnu_RestoreSavegames, Glyph::Restore},
    {MenuEntry::mnu_ScegliImmagine, Glyph::NoPicture},
    {MenuEntry::mnu_PropertySavegame, Glyph::Info},
    {MenuEntry::mnu_DelSavegame, Glyph::Delete},
    {MenuEntry::mnu_SalvaSavegame, Glyph::SaveAs},
    {MenuEntry::mnu_SendSavegame, Glyph::Email},
    {MenuEntry::mnu_ChangeImageSavegame, Glyph::NoPicture},
    {MenuEntry::mnu_ShowScreenShot, Glyph::Screenshots},
    {MenuEntry::mnu_CaptureScreen, Glyph::Camera},
    {MenuEntry::mnu_AddScreenshot, Glyph::Add},
    {MenuEntry::mnu_OpenEditor, Glyph::Note},
    {MenuEntry::mnu_SendScreenshotemail, Glyph::Email},
    {MenuEntry::mnu_CopyPathInClip, Glyph::Copy},
    {MenuEntry::mnu_CopyShot, Glyph::NoPicture},
    {MenuEntry::mnu_PropertyScreenShot, Glyph::Info},
    {MenuEntry::mnu_DeleteShot, Glyph::Delete},
    {MenuEntry::mnu_RenameShot, Glyph::Rename},
    {MenuEntry::mnu_ResizeSave, Glyph::Resize},
    {MenuEntry::mnu_SaveShot, Glyph::SaveAs},
    {MenuEntry::mnu_Zoom, Glyph::Zoom},
    {MenuEntry::mnu_InstallTrle, Glyph::Package},
    {MenuEntry::mnu_SetupTrle, Glyph::Settings},
    {MenuEntry::mnu_SetOriginale, Glyph::Restore},
    {MenuEntry::mnu_ImportWads, Glyph::Import},
    {MenuEntry::mnu_CompareTrle, Glyph::Compare},
    {MenuEntry::mnu_ShowUrlList, Glyph::Address},
    {MenuEntry::mnu_ConvertAudio, Glyph::Sound},
    {MenuEntry::mnu_Manutenzione, Glyph::Repair},
    {MenuEntry::mnu_CorrectArchiveCD, Glyph::Disc},
    {MenuEntry::mnu_CalcolaSize, Glyph::Measure},
    {MenuEntry::mnu_MoveArc, Glyph::Move},
    {MenuEntry::mnu_ControllaUguali, Glyph::Copy},
    {MenuEntry::mnu_CopiaFileInfos, Glyph::Import},
    {MenuEntry::mnu_CreaInfoTr4, Glyph::Info},
    {MenuEntry::mnu_FaiFullBackup, Glyph::Backup},
    {MenuEntry::mnu_Recover, Glyph::Folder},
    {MenuEntry::mnu_Kept, Glyph::Kept},
    {MenuEntry::mnu_SetLanguageAll, Glyph::Language},
    {MenuEntry::mnu_RestoreAll, Glyph::Restore},
    {MenuEntry::mnu_MoveOnCd, Glyph::Disc},
    {MenuEntry::mnu_SetupUpload, Glyph::Upload},
    {MenuEntry::mnu_ProvaFilmato, Glyph::Movie},
    {MenuEntry::mnu_Settings, Glyph::Settings},
    {MenuEntry::mnu_PrefArchive, Glyph::Archive},
    {MenuEntry::mnu_About, Glyph::About},
    {MenuEntry::mnu_FindHelp, Glyph::Help},
    {MenuEntry::mnu_HelpSaveGameMan, Glyph::Savegames},
    {MenuEntry::mnu_HelpFaq, Glyph::Question},
    {MenuEntry::mnu_Keys, Glyph::Keys},
});

} // namespace

std::optional<Glyph> GlyphOf(MenuEntry entry) {
    const auto* const found = std::find_if(kIcons.begin(), kIcons.end(),
                                           [entry](const EntryIcon& icon) { return icon.entry == entry; });
    if (found == kIcons.end()) return std::nullopt;
    return found->glyph;
}

} // namespace kelvash::ui
