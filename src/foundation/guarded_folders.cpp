#include "foundation/guarded_folders.h"

#include <algorithm>
#include <filesystem>

#include "foundation/drives.h"
#include "foundation/platform/platform.h"
#include "foundation/state.h"
#include "foundation/text.h"

namespace kelvash {

namespace {

namespace fs = std::filesystem;

struct GuardSources {
    std::vector<GuardedFolders> List;
};

std::vector<GuardedFolders>& Sources() {
    return Lifelong<GuardSources>::Get().List;
}

struct Place {
    fs::path path;
    Guard guard;
};

std::vector<Place> Places() {
    std::vector<Place> places;
    for (const fs::path& root : DriveRoots())
        places.push_back({root, Guard::Whole});
    places.push_back({platform::HomeFolder(), Guard::Whole});
    places.push_back({NativePath(AppFolder()), Guard::Whole});
    for (const GuardedFolders source : Sources())
        for (const GuardedFolder& folder : source())
            if (!Trim(folder.path).empty()) places.push_back({NativePath(Trim(folder.path)), folder.guard});
    return places;
}

bool IsSame(const fs::path& a, const fs::path& b) {
    std::error_code error;
    return fs::equivalent(a, b, error) && !error;
}

// True if `folder` is the place or one of the folders that it lies in.
bool Holds(const fs::path& folder, const fs::path& place) {
    std::error_code error;
    fs::path at = fs::weakly_canonical(place, error);
    for (; !error && !at.empty(); at = at.parent_path()) {
        if (IsSame(folder, at)) return true;
        if (at == at.parent_path()) break;
    }
    return false;
}

// The path without the dots and blanks that Windows drops at the ends of names; ".." stays.
std::string WithoutEndings(std::string_view path) {
    std::vector<std::string> names = Split(path, '\\');
    for (std::string& name : names)
        if (name.find_first_not_of('.') != std::string::npos || name.size() > 2)
            name.resize(name.find_last_not_of(". ") + 1);
    std::erase(names, std::string());
    return Join(names, "\\");
}

// The places that the text may mean; none for one that is no path below a drive.
std::vector<fs::path> MeantBy(std::string_view folder) {
    const std::string trimmed = WithoutEndings(folder);
    const std::string letter = FoldCase(trimmed.substr(0, 1));
    if (trimmed.size() < 4 || letter < "A" || letter > "Z" || trimmed.compare(1, 2, ":\\") != 0) return {};
    return {NativePath(folder), NativePath(trimmed)};
}

template <class Guarded>
bool NoneIs(const std::vector<fs::path>& meant, Guarded guarded) {
    if (meant.empty()) return false;
    const std::vector<Place> places = Places();
    return std::none_of(meant.begin(), meant.end(), [&](const fs::path& folder) {
        std::error_code error;
        return fs::exists(folder, error) &&
               std::any_of(places.begin(), places.end(),
                           [&](const Place& place) { return guarded(folder, place); });
    });
}

} // namespace

bool AddGuardedFolders(GuardedFolders folders) {
    Sources().push_back(folders);
    return true;
}

bool MayDeleteTree(std::string_view folder) {
    return NoneIs(MeantBy(folder),
                  [](const fs::path& meant, const Place& place) { return Holds(meant, place.path); });
}

bool MayDeleteFilesIn(std::string_view folder) {
    const fs::path native = NativePath(folder);
    for (const Place& place : Places()) // first of all: such a folder may be a drive's root
        if (place.guard == Guard::AllButFiles && IsSame(native, place.path)) return true;
    return NoneIs(MeantBy(folder),
                  [](const fs::path& meant, const Place& place) { return IsSame(meant, place.path); });
}

} // namespace kelvash
