#include "companion/watch_calls.h"

#include <chrono>

#include "companion/screenshots.h"
#include "foundation/pumping.h"
#include "foundation/state.h"

namespace kelvash::companion {

constinit WatchCalls& watch_calls = State<WatchCalls>::Get();

namespace {

double SteadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

} // namespace

WatchCalls::WatchCalls()
    : CountPictures([](const LevelPlace& level) { return Screenshots(level).size(); }),
      Now(&SteadySeconds),
      Wait(&WaitPumping) {
    ArchiveSlots = [](const LevelPlace&, int) { return WorkOutcome(); };
    RestoreLastSlot = [](const LevelPlace&) { return WorkOutcome(); };
    ClipboardChange = [] { return std::uint64_t{0}; };
    ReadClipboard = [](std::string&) { return Offered::None; };
    PutClipboard = [](const std::string&) {};
    EmptyClipboard = [] {};
    IsBlack = [](const std::string&) { return false; };
    SavePicture = [](const LevelPlace&, const std::string&) { return WorkOutcome(); };
}

} // namespace kelvash::companion
