#include "foundation/place.h"

#include <algorithm>

#include "foundation/drives.h"
#include "foundation/text.h"

namespace kelvash {

namespace fs = std::filesystem;

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
    return std::mismatch(around.begin(), around.end(), place.begin(), place.end()).first == around.end();
}

} // namespace kelvash
