#include <time.h>

#include <chrono>
#include <thread>

#include "foundation/platform/platform.h"

namespace kelvash::platform {

void Sleep(double seconds) {
    std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
}

void Spin(double seconds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(seconds);
    while (std::chrono::steady_clock::now() < end) {
    }
}

LocalTime ToLocalTime(std::int64_t seconds) {
    const auto time = static_cast<std::time_t>(seconds);
    std::tm parts{};
    ::localtime_r(&time, &parts);
    return {parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec};
}

} // namespace kelvash::platform
