// The profile: the one settings store, kept in Kelvash.prf of the application's folder.
//
// The file is one record of 1588 bytes, read and written whole; its length is its version. It is written at
// the end of a run, and when another Archive has been opened.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/record.h"

namespace kelvash::core {

// The defaults are those of a first run.
struct ProfileRecord {
    bool ShowScreenShots = true;
    bool PromptCapture = false;
    bool NoAutoCompile = false;
    bool CheckEqualLevels = true;
    std::int16_t Reserved1 = 0;
    std::string LastArchive;
    std::string TrleFolder;
    std::string ConverterName = "tom2pc.exe";
    std::string GameExeName = "tomb4.exe"; // kept; the launch uses the fixed name
    std::string DownloadFolder = "c:\\";
    bool NoDecompress = true;
    bool FullBackup = false;
    bool AutoSave = true;
    bool ArchiveSavegames = true;
    std::int32_t SavegamesToKeep = 5;
    bool UrlUpdateReminder = true;
    std::int32_t ScreenshotMinutes = 5;
    std::string GraphicsProgram;
    std::int32_t TimerTenths = 5;
    bool VerifyImage = true;
    bool EnableJoystick = true;
    std::int32_t JoyButtonA = 0;
    bool JoyFlagA = false;
    std::int32_t JoyButtonB = 0;
    bool JoyFlagB = false;
    std::int16_t JoystickId = 0;
    std::int16_t Reserved2 = 0;
};
extern ProfileRecord& profile;

inline constexpr std::size_t kProfileSize = 1588;
inline constexpr std::array<Field<ProfileRecord>, 27> kProfileFields = {{
    {"ShowScreenShots", 0, 2, &ProfileRecord::ShowScreenShots},
    {"PromptCapture", 2, 2, &ProfileRecord::PromptCapture},
    {"NoAutoCompile", 4, 2, &ProfileRecord::NoAutoCompile},
    {"CheckEqualLevels", 6, 2, &ProfileRecord::CheckEqualLevels},
    {"", 8, 2, &ProfileRecord::Reserved1},
    {"LastArchive", 10, 256, &ProfileRecord::LastArchive},
    {"TrleFolder", 266, 256, &ProfileRecord::TrleFolder},
    {"ConverterName", 522, 256, &ProfileRecord::ConverterName},
    {"GameExeName", 778, 256, &ProfileRecord::GameExeName},
    {"DownloadFolder", 1034, 256, &ProfileRecord::DownloadFolder},
    {"NoDecompress", 1290, 2, &ProfileRecord::NoDecompress},
    {"FullBackup", 1292, 2, &ProfileRecord::FullBackup},
    {"AutoSave", 1294, 2, &ProfileRecord::AutoSave},
    {"ArchiveSavegames", 1296, 2, &ProfileRecord::ArchiveSavegames},
    {"SavegamesToKeep", 1298, 4, &ProfileRecord::SavegamesToKeep},
    {"UrlUpdateReminder", 1302, 2, &ProfileRecord::UrlUpdateReminder},
    {"ScreenshotMinutes", 1304, 4, &ProfileRecord::ScreenshotMinutes},
    {"GraphicsProgram", 1308, 256, &ProfileRecord::GraphicsProgram},
    {"TimerTenths", 1564, 4, &ProfileRecord::TimerTenths},
    {"VerifyImage", 1568, 2, &ProfileRecord::VerifyImage},
    {"EnableJoystick", 1570, 2, &ProfileRecord::EnableJoystick},
    {"JoyButtonA", 1572, 4, &ProfileRecord::JoyButtonA},
    {"JoyFlagA", 1576, 2, &ProfileRecord::JoyFlagA},
    {"JoyButtonB", 1578, 4, &ProfileRecord::JoyButtonB},
    {"JoyFlagB", 1582, 2, &ProfileRecord::JoyFlagB},
    {"JoystickId", 1584, 2, &ProfileRecord::JoystickId},
    {"", 1586, 2, &ProfileRecord::Reserved2},
}};
static_assert(IsLayout(kProfileFields, kProfileSize));
// From this field to the end an old file is not trusted.
inline constexpr std::size_t kUpgradeOffset = 1296;

// Fills a record, which holds the defaults, from the bytes of a profile file of any length. True if the
// length is that of this version; otherwise the fields from ArchiveSavegames on keep their defaults.
bool DecodeProfile(std::string_view bytes, ProfileRecord& record);
std::string EncodeProfile(const ProfileRecord& record);

// The TRLE folder, trimmed.
std::string TrleFolder();

std::string ProfilePath();
enum class ProfileState { FirstRun, Current, Upgraded, Unreadable };
// Fills the profile with the defaults, then from the file if there is one; FullBackup follows the backup's
// note where there is one. Unreadable is one that is there and can't be read: the defaults stand, and nothing
// is written over it. An empty one is of another length.
ProfileState LoadProfile();
// The same; a profile that can't be read is told and gives false.
[[nodiscard]] bool OpenProfile(ProfileState& state);
// Brings what this run has changed into the file, over what other programs have written since; the profile is
// what the file holds then. False if it can't be written; the old settings stand then.
[[nodiscard]] bool WriteProfile();
// True if nothing of this run is missing in the file: written now, or never read, so that nothing was
// changed.
[[nodiscard]] bool ProfileStands();

} // namespace kelvash::core
