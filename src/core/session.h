// What a run knows beside the profile and the Archive.
#pragma once

#include <cstdint>

namespace kelvash::core {

struct SessionState {
    bool Started = false; // program::StartUp has run; it runs once
    bool IsNtFamily = false;
    bool WindowAnimation = false;   // the system's setting, put back at the end
    std::int32_t TimerInterval = 0; // of the watcher, milliseconds
    bool RunTestMovie = false;      // a first run or an upgrade
    bool UpgradeWarning = false;
    bool LevelZeroCreated = false;
};
extern SessionState& session;

} // namespace kelvash::core
