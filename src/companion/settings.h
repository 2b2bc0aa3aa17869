// The settings that a player changes in one place, and what follows from a change at once.
//
// The profile itself stays as it is until ApplySettings; it reaches its file at the end of the run.
#pragma once

#include <string>

#include "core/profile.h"

namespace kelvash::companion {

// Where the joystick's axes stand when nobody touches it; read when the joystick is enabled.
struct JoystickRest {
    int X = 32767;
    int Y = 32767;
};
extern JoystickRest& joystick_rest;

// Settings while they are being changed.
struct Settings {
    core::ProfileRecord Former; // the whole profile at the beginning
    core::ProfileRecord Edited; // of it the fields that are settings count
    std::string Minutes;        // Edited.ScreenshotMinutes as it is typed
};

inline constexpr int kMostSavegamesToChoose = 15;
inline constexpr int kMostTenthsToChoose = 9;

// Those of the profile.
Settings BeginSettings();

// Each asks for another path; what is refused, after a message, or not chosen leaves the old one. A TRLE
// folder must pass trle::CheckTrleFolder; every path must fit its field of the profile's file.
void ChooseTrleFolder(Settings& settings);
void ChooseDownloadFolder(Settings& settings);
void ChooseGraphicsProgram(Settings& settings);

// True if the minutes are a number, or what stood there before.
[[nodiscard]] bool MinutesAreNumber(const Settings& settings);
// Puts the settings into the profile and the watcher's interval into the session, and reads the joystick's
// rest position if it is enabled. Fields of the profile that are no settings are left alone, and so is the
// number of savegames when they aren't archived. False, after a message and with nothing changed, if the
// minutes are no number.
[[nodiscard]] bool ApplySettings(const Settings& settings);
// Puts the whole profile back, also what was changed in it meanwhile.
void CancelSettings(const Settings& settings);

} // namespace kelvash::companion
