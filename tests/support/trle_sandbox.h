// A small TRLE folder that passes every test of one, for tests.
#pragma once

#include <filesystem>

namespace kelvash::test {

// Makes tomb4.exe and winroomedit.exe, script.dat, english.dat, load.bmp, objects.h, data with two levels,
// audio with the waves 000 to 053, graphics\wads, sound\samples, script and manual with a file each. Every
// file's bytes tell its name.
void MakeTrle(const std::filesystem::path& folder);

} // namespace kelvash::test
