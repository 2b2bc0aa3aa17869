#include "zip/zip_destination.h"

#include "foundation/native_text.h"
#include "foundation/text.h"

namespace kelvash::zip {

namespace fs = std::filesystem;

namespace {

std::map<std::string, std::string> NamesIn(const fs::path& folder) {
    std::map<std::string, std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error)) {
        const std::string name = TextOfNative(entry->path().filename());
        names.emplace(FoldCase(name), name);
    }
    return names;
}

} // namespace

std::optional<fs::path> ZipDestination::PathOf(const std::vector<std::string>& parts) {
    const std::optional<fs::path> folder = FolderOf(parts, parts.size() - 1);
    if (!folder) return std::nullopt;
    return *folder / NativeFromText(Spelling(*folder, parts.back()));
}

std::optional<fs::path> ZipDestination::FolderOf(const std::vector<std::string>& parts, std::size_t count) {
    fs::path folder = root_;
    for (std::size_t i = 0; i < count; ++i) {
        const fs::path next = folder / NativeFromText(Spelling(folder, parts[i]));
        std::error_code error;
        if (!fs::is_directory(fs::symlink_status(next, error))) {
            if (!fs::create_directory(next, error)) return std::nullopt;
            names_[folder][FoldCase(parts[i])] = parts[i];
        }
        folder = next;
    }
    return folder;
}

void ZipDestination::Remember(const fs::path& file, const std::string& name) {
    names_[file.parent_path()].emplace(FoldCase(name), name);
}

std::string ZipDestination::Spelling(const fs::path& folder, const std::string& name) {
    auto known = names_.find(folder);
    if (known == names_.end()) known = names_.emplace(folder, NamesIn(folder)).first;
    const auto found = known->second.find(FoldCase(name));
    return found == known->second.end() ? name : found->second;
}

} // namespace kelvash::zip
