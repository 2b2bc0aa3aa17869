// The program's entries in the desktop and the registry.
#pragma once

namespace kelvash::program {

// Ties the .kva extension to the program; false at the first write that fails.
bool RegisterArchiveType();
bool CreateProgramShortcut();
// Makes the App Paths keys of the program, and of winroomedit.exe where TRLE has it, point to where they are.
void RegisterAppPaths();

} // namespace kelvash::program
