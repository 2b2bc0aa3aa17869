// Names that a stranger's package may give its files.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace kelvash::test {

struct HostileName {
    std::string label; // what is wrong with it
    std::string name;  // as its bytes stand in a zip
    // False for names that the program may leave out without a word, as it knows them for its own or the
    // system's.
    bool told = true;
};

// Some of them point at files of `outside`: by their whole path, and by climbing up to the root.
std::vector<HostileName> HostileNames(const std::filesystem::path& outside);
// Those that fit into a text field whose items a NUL separates.
std::vector<HostileName> HostileFieldNames(const std::filesystem::path& outside);

// What is wrong with the last part of a path that the program made of a stranger's name; empty if it leads
// nowhere on any platform.
std::string FaultOfName(const std::string& name);

} // namespace kelvash::test
