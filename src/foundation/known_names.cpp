#include "foundation/known_names.h"

#include "foundation/drives.h"
#include "foundation/platform/platform.h"

namespace kelvash {

KnownNames::KnownNames(std::string_view folder) : folder_(NativePath(folder)) {
    platform::KnowFolder(folder_);
}

KnownNames::~KnownNames() {
    platform::ForgetFolder(folder_);
}

} // namespace kelvash
