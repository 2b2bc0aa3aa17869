// What the build made beside the tests: no test is compiled for one build alone, so a compiler cache serves
// several.
#pragma once

#include <filesystem>

namespace kelvash::test {

// A program of the build tree by its path there, without the platform's suffix: "bin/kelvash-cli".
std::filesystem::path Built(const std::filesystem::path& program);

// By how much this build is slower than one for users, and hungrier for memory: 1, or 5 with sanitizers.
int Slowness();

} // namespace kelvash::test
