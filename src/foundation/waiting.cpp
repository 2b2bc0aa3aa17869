#include "foundation/waiting.h"

#include <random>

#include "foundation/platform/platform.h"
#include "foundation/state.h"

namespace kelvash {

void WaitSeconds(double seconds, Wait how) {
    if (how == Wait::Sleep)
        platform::Sleep(seconds);
    else
        platform::Spin(seconds);
}

void WaitTenths(int tenths, Wait how) {
    WaitSeconds(tenths / 10.0, how);
}

void WaitMillis(int milliseconds, Wait how) {
    WaitSeconds(milliseconds / 1000.0, how);
}

namespace {

struct Dice {
    std::mt19937 Generator{std::random_device{}()};
};

} // namespace

int RandomBelow(int n) {
    return n < 1 ? 0 : std::uniform_int_distribution<int>(0, n - 1)(Lifelong<Dice>::Get().Generator);
}

} // namespace kelvash
