// What belongs to one run of a tool: processes carry a mark in their environment, which their children
// inherit, also those that leave the group or whose parent has ended. Wine starts all of its programs so.
#pragma once

#include <string>

namespace kelvash::platform {

// A variable of the environment that no other run has.
std::string NewRunMark();
// Ends all processes that carry a mark; nothing for an empty one.
void KillMarked(const std::string& mark);

} // namespace kelvash::platform
