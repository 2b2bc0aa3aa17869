// Waiting without pumping events, and chance.
#pragma once

namespace kelvash {

// How to spend the time: asleep, or spinning on the clock.
enum class Wait { Sleep, Spin };

void WaitSeconds(double seconds, Wait how);
void WaitTenths(int tenths, Wait how);
void WaitMillis(int milliseconds, Wait how);

// A random whole number from 0 to n - 1; 0 for an n below 1.
int RandomBelow(int n);

} // namespace kelvash
