// Copies of folders that cost nothing: their files are links to the same bytes. The programs under test write
// a file whole under another name and rename it, so a link keeps what it had.
#pragma once

#include <filesystem>

namespace kelvash::test {

// A new folder in memory where the system offers that, else `otherwise`.
std::filesystem::path FastFolder(const std::filesystem::path& otherwise);
// Makes `to` a copy of `from`. A half-written file is copied indeed: the program may go on writing into it.
void LinkTree(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace kelvash::test
