// Looking after the interface in the middle of long work.
//
// A window that is to be repainted, moved or stopped may wait for a job no longer than 50 ms. Whatever can
// take longer than that calls PumpNowAndThen between its small steps: each entry of a folder, each block of
// a file.
#pragma once

#include <chrono>

namespace kelvash {

// Pumps events if the last time is a while ago; else it costs no more than a look at the clock. Does nothing
// where no job is at work (foundation/user.h), and on any thread but the program's own.
void PumpNowAndThen();
// The same; true once the user has asked the job to stop.
[[nodiscard]] bool StopWantedByNow();
// Lets a time pass with the interface at work.
void WaitPumping(double seconds);

// The longest that PumpNowAndThen lets pass between two pumps, as far as it is called.
inline constexpr std::chrono::milliseconds kPumpInterval{15};

// What tells PumpNowAndThen the time; a test's own clock in place of the system's.
using PumpClock = std::chrono::steady_clock::time_point (*)();
void SetPumpClock(PumpClock clock);

} // namespace kelvash
