// Where the files of a zip are written.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace kelvash::zip {

// The names in the folders of a destination, read once each, so that a zip of a hundred thousand entries
// needs no search per entry.
class ZipDestination {
  public:
    explicit ZipDestination(std::filesystem::path root) : root_(std::move(root)) {}

    // The path of a file below the root under the spelling that it has there; its folders are made. Nothing
    // if a folder can't be made.
    std::optional<std::filesystem::path> PathOf(const std::vector<std::string>& parts);
    // The folder of the first parts, made where it is missing; nothing if it can't be made.
    std::optional<std::filesystem::path> FolderOf(const std::vector<std::string>& parts, std::size_t count);
    void Remember(const std::filesystem::path& file, const std::string& name);

  private:
    std::string Spelling(const std::filesystem::path& folder, const std::string& name);

    std::filesystem::path root_;
    std::map<std::filesystem::path, std::map<std::string, std::string>> names_; // spellings by folded name
};

} // namespace kelvash::zip
