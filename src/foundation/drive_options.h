// Drives that the command line of a program names: "L=DIR" or "L=DIR,cdrom".
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash {

// Takes the drives. Gives what is wrong with them; empty if nothing is.
std::string SetDrives(const std::vector<std::string>& drives);

// The platform's path of a path that a person typed, before the application's folder and so its drives are
// known: native, or a DOS path on one of these drives or on Z:, the whole file system. Empty for any other
// drive.
std::filesystem::path NativeFromUser(const std::vector<std::string>& drives, std::string_view typed);

// The path text of such a path, for a run that takes no application's folder: where none of the drives
// reaches it, its file system gets a letter, Z: if it has none of its own. Empty if that letter is taken.
std::string PathWithoutHome(const std::vector<std::string>& drives, std::string_view typed);

} // namespace kelvash
