#include "foundation/pumping.h"

#include <algorithm>
#include <thread>

#include "foundation/state.h"
#include "foundation/user.h"
#include "foundation/waiting.h"

namespace kelvash {

namespace {

using Clock = std::chrono::steady_clock;

struct Pumping {
    std::thread::id Owner = std::this_thread::get_id(); // made, and reset, by the program's own thread
    PumpClock Now = &Clock::now;
    Clock::time_point Last{};
    bool AtWork = false; // what is called by events pumps none
};

Pumping& Pump() {
    return State<Pumping>::Get();
}

} // namespace

void PumpNowAndThen() {
    Pumping& pump = Pump();
    if (std::this_thread::get_id() != pump.Owner || pump.AtWork || JobDepth() == 0) return;
    const Clock::time_point now = pump.Now();
    if (now - pump.Last < kPumpInterval || TheUser().JobWaits()) return;
    pump.AtWork = true;
    TheUser().PumpEvents();
    pump.AtWork = false;
    pump.Last = pump.Now(); // what the events took is no work of the job
}

bool StopWantedByNow() {
    PumpNowAndThen();
    return TheUser().StopRequested();
}

void WaitPumping(double seconds) {
    const double step = std::chrono::duration<double>(kPumpInterval).count();
    const Clock::time_point end =
        Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
    for (;;) {
        TheUser().PumpEvents();
        const double left = std::chrono::duration<double>(end - Clock::now()).count();
        if (left <= 0) return;
        WaitSeconds(std::min(left, step), Wait::Sleep);
    }
}

void SetPumpClock(PumpClock clock) {
    Pump().Now = clock;
}

} // namespace kelvash
