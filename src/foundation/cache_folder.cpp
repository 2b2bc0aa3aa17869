#include "foundation/cache_folder.h"

#include "foundation/platform/platform.h"

namespace kelvash {

std::filesystem::path CacheFolder() {
    return platform::UserCacheFolder();
}

} // namespace kelvash
