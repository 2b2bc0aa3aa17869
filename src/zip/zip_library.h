// What the zip classes share of the library.
#pragma once

#include <zip.h>

#include <memory>
#include <string>
#include <string_view>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/native_text.h"

namespace kelvash::zip {

struct ZipDiscard {
    void operator()(zip_t* zip) const { zip_discard(zip); }
};
using ZipHandle = std::unique_ptr<zip_t, ZipDiscard>;

inline std::string ZipErrorText(int code) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    std::string text = zip_error_strerror(&error);
    zip_error_fini(&error);
    return text;
}

// Opens a zip by its path text; null, with the reason, if that fails.
inline ZipHandle OpenZip(std::string_view path, int flags, std::string& message) {
    // An empty file would count as a zip without entries; it is a download that failed.
    const bool is_empty = FileExists(path) && FileSize(path) == 0;
    int code = ZIP_ER_NOZIP;
    ZipHandle zip;
    if (!is_empty || (flags & ZIP_TRUNCATE) != 0)
        zip.reset(zip_open(TextOfNative(NativePath(path)).c_str(), flags, &code));
    if (!zip) message = ZipErrorText(code);
    return zip;
}

} // namespace kelvash::zip
