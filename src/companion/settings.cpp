#include "companion/settings.h"

#include <algorithm>
#include <optional>

#include "companion/messages.h"
#include "core/path_field.h"
#include "core/session.h"
#include "foundation/desktop.h"
#include "foundation/drives.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/state.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle/trle_folder.h"

namespace kelvash::companion {

constinit JoystickRest& joystick_rest = State<JoystickRest>::Get();

namespace {

using core::ProfileRecord;

// What was typed, if it is a number of minutes or what stood there before.
std::optional<std::int32_t> TypedMinutes(const Settings& settings) {
    const std::string_view typed = Trim(settings.Minutes);
    if (typed == std::to_string(settings.Former.ScreenshotMinutes)) return settings.Former.ScreenshotMinutes;
    const bool digits =
        std::all_of(typed.begin(), typed.end(), [](char letter) { return letter >= '0' && letter <= '9'; });
    return digits ? WholeNumber(typed) : std::nullopt;
}

} // namespace

Settings BeginSettings() {
    return {core::profile, core::profile, std::to_string(core::profile.ScreenshotMinutes)};
}

void ChooseTrleFolder(Settings& settings) {
    const std::optional<std::string> chosen = TheUser().ChooseFolder(
        LoadMessage(msg::kSettingsTrleTitle), std::string(Trim(settings.Edited.TrleFolder)));
    if (chosen && core::CheckPath(*chosen) && trle::CheckTrleFolder(*chosen, true))
        settings.Edited.TrleFolder = *chosen;
}

void ChooseDownloadFolder(Settings& settings) {
    const std::optional<std::string> chosen = TheUser().ChooseFolder(
        LoadMessage(msg::kSettingsLoadDirTitle), std::string(Trim(settings.Edited.DownloadFolder)));
    if (chosen && core::CheckPath(*chosen)) settings.Edited.DownloadFolder = *chosen;
}

void ChooseGraphicsProgram(Settings& settings) {
    const std::string former(Trim(settings.Edited.GraphicsProgram));
    const std::string folder =
        former.empty() ? SpecialFolder(SpecialFolderId::ProgramFiles) : FolderOf(former);
    const std::optional<std::string> chosen =
        TheUser().OpenFile({LoadMessage(msg::kSettingsEditorTitle), LoadMessage(msg::kSettingsEditorFilter),
                            folder, FileNameOf(former)});
    if (chosen && core::CheckPath(*chosen)) settings.Edited.GraphicsProgram = *chosen;
}

bool MinutesAreNumber(const Settings& settings) {
    return TypedMinutes(settings).has_value();
}

bool ApplySettings(const Settings& settings) {
    const std::optional<std::int32_t> minutes = TypedMinutes(settings);
    if (!minutes) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kSettingsBadMinutes));
        return false;
    }
    const ProfileRecord& edited = settings.Edited;
    ProfileRecord& profile = core::profile;
    for (std::string ProfileRecord::*const path :
         {&ProfileRecord::TrleFolder, &ProfileRecord::DownloadFolder, &ProfileRecord::GraphicsProgram})
        profile.*path = edited.*path;
    for (bool ProfileRecord::*const flag :
         {&ProfileRecord::PromptCapture, &ProfileRecord::ArchiveSavegames, &ProfileRecord::UrlUpdateReminder,
          &ProfileRecord::VerifyImage, &ProfileRecord::NoDecompress, &ProfileRecord::CheckEqualLevels,
          &ProfileRecord::NoAutoCompile, &ProfileRecord::AutoSave, &ProfileRecord::EnableJoystick})
        profile.*flag = edited.*flag;
    if (edited.ArchiveSavegames) profile.SavegamesToKeep = edited.SavegamesToKeep;
    profile.ScreenshotMinutes = *minutes;
    profile.TimerTenths = edited.TimerTenths;
    core::session.TimerInterval = profile.TimerTenths * 100;
    JoystickState joystick;
    if (profile.EnableJoystick && TheDesktop().ReadJoystick(profile.JoystickId, joystick))
        joystick_rest = {joystick.x, joystick.y};
    return true;
}

void CancelSettings(const Settings& settings) {
    core::profile = settings.Former;
}

} // namespace kelvash::companion
