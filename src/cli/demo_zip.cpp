#include "cli/demo_zip.h"

#include <zip.h>

#include "foundation/native_text.h"

namespace kelvash::cli {

bool WriteZip(const std::filesystem::path& zip,
              const std::vector<std::pair<std::string, std::string>>& files) {
    zip_t* const archive = zip_open(TextOfNative(zip).c_str(), ZIP_CREATE | ZIP_EXCL, nullptr);
    if (archive == nullptr) return false;
    for (const auto& [name, content] : files) {
        zip_source_t* const source = zip_source_buffer(archive, content.data(), content.size(), 0);
        if (source == nullptr || zip_file_add(archive, name.c_str(), source, ZIP_FL_ENC_UTF_8) < 0) {
            zip_source_free(source);
            zip_discard(archive);
            return false;
        }
    }
    if (zip_close(archive) == 0) return true;
    zip_discard(archive);
    return false;
}

} // namespace kelvash::cli
