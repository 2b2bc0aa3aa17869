#include "foundation/place.h"

#include <algorithm>

#include "foundation/drives.h"
#include "foundation/text.h"

namespace kelvash {

namespace fs = std::filesystem;

namespace {

// What doesn't exist yet keeps the case in which it was spelt.
bool IsSameName(const fs::path& name, const fs::path& other) {
    const std::u8string a = name.u8string();
    const std::u8string b = other.u8string();
    return EqualNoCase(std::string(a.begin(), a.end()), std::string(b.begin(), b.end()));
}

} // namespace

fs::path PlaceOf(std::string_view path) {
    std::error_code error;
    const fs::path native = NativePath(path);
    const fs::path place = fs::weakly_canonical(native, error);
    return error ? native : place;
}

bool IsSamePlace(std::string_view path, std::string_view other) {
    std::error_code error;
    return EqualNoCase(path, other) || fs::equivalent(NativePath(path), NativePath(other), error) ||
           PlaceOf(path) == PlaceOf(other);
}

bool LiesIn(std::string_view path, std::string_view folder) {
    const fs::path place = PlaceOf(path);
    const fs::path around = PlaceOf(folder);
    return std::mismatch(around.begin(), around.end(), place.begin(), place.end(), IsSameName).first ==
           around.end();
}

} // namespace kelvash
