// The clock by which long work looks after the interface: in a test it moves by so much with each look.
#pragma once

#include <chrono>

#include "foundation/pumping.h"

namespace kelvash::test {

struct PumpTime {
    std::chrono::steady_clock::time_point now{std::chrono::hours{1}};
    std::chrono::milliseconds step{0};
    static PumpTime& Get() {
        static PumpTime time;
        return time;
    }
};

// 0 lets it stand still, so that nothing pumps by time: how every test begins.
inline void SetPumpStep(std::chrono::milliseconds step) {
    PumpTime::Get().step = step;
    SetPumpClock([] { return PumpTime::Get().now += PumpTime::Get().step; });
}

} // namespace kelvash::test
