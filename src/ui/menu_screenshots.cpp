// The menu "ScreenShots".
#include "companion/shot_commands.h"
#include "ui/Principale.h"
#include "ui/menu_commands.h"
#include "ui/screenshot_panel.h"

namespace kelvash::ui {

std::vector<MenuCommand> ScreenshotCommands(Principale& window) {
    using enum MenuEntry;
    using enum EnabledWhen;
    const auto run = [&window](auto command) { return [&window, command] { (window.Shots().*command)(); }; };
    return {{mnu_ShowScreenShot, Always, [&window] { window.ShowPanel(true); }},
            {mnu_CaptureScreen, JobFree, companion::TellHowToCapture},
            {mnu_AddScreenshot, LevelSelected, run(&ScreenshotPanel::Add)},
            {mnu_OpenEditor, LevelSelected, run(&ScreenshotPanel::OpenEditor)},
            {mnu_CopyPathInClip, LevelSelected, run(&ScreenshotPanel::CopyPath)},
            {mnu_CopyShot, LevelSelected, run(&ScreenshotPanel::CopyImage)},
            {mnu_PropertyScreenShot, LevelSelected, run(&ScreenshotPanel::ShowProperty)},
            {mnu_DeleteShot, LevelSelected, run(&ScreenshotPanel::Delete)},
            {mnu_RenameShot, LevelSelected, run(&ScreenshotPanel::Rename)},
            {mnu_ResizeSave, LevelSelected, run(&ScreenshotPanel::Resize)},
            {mnu_SendScreenshotemail, LevelSelected, run(&ScreenshotPanel::Mail)},
            {mnu_SaveShot, LevelSelected, run(&ScreenshotPanel::Save)},
            {mnu_Zoom, LevelSelected, run(&ScreenshotPanel::Zoom)}};
}

} // namespace kelvash::ui
