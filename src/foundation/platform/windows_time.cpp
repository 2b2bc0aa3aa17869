#include <time.h>

#include <algorithm>
#include <chrono>

#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"

namespace kelvash::platform {

namespace {

using Clock = std::chrono::steady_clock;

constexpr double kLongestSleep = 3600;

double SecondsUntil(Clock::time_point end) {
    return std::chrono::duration<double>(end - Clock::now()).count();
}

Clock::time_point After(double seconds) {
    return Clock::now() + std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(seconds));
}

} // namespace

// The system may wake a sleeper up to a tick of its clock too early.
void Sleep(double seconds) {
    const Clock::time_point end = After(seconds);
    for (double left = seconds; left > 0; left = SecondsUntil(end))
        ::Sleep(static_cast<DWORD>(std::max(1.0, std::min(left, kLongestSleep) * 1000)));
}

void Spin(double seconds) {
    const Clock::time_point end = After(seconds);
    while (SecondsUntil(end) > 0) {
    }
}

LocalTime ToLocalTime(std::int64_t seconds) {
    std::tm parts{};
    const __time64_t time = seconds;
    if (_localtime64_s(&parts, &time) != 0) return {};
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

} // namespace kelvash::platform
