#include <zip.h>

#include <algorithm>
#include <vector>

#include "foundation/native_text.h"
#include "support/zip_program.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

bool AddEntry(zip_t* zip, const fs::path& folder, const fs::path& file, const std::string& password) {
    zip_source_t* const source = zip_source_win32w(zip, file.c_str(), 0, -1);
    const std::string name = GenericTextOf(file.lexically_relative(folder));
    const zip_int64_t index =
        source == nullptr ? -1 : zip_file_add(zip, name.c_str(), source, ZIP_FL_ENC_UTF_8);
    if (index < 0) return false;
    return password.empty() || zip_file_set_encryption(zip, static_cast<zip_uint64_t>(index),
                                                       ZIP_EM_TRAD_PKWARE, password.c_str()) == 0;
}

} // namespace

// This platform brings no zip program: the library alone, without the program's code.
bool MakeZipOf(const fs::path& folder, const fs::path& zip, const std::string& password) {
    std::vector<fs::path> files;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file()) files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    zip_source_t* const target = zip_source_win32w_create(zip.c_str(), 0, -1, nullptr);
    zip_t* const opened = target == nullptr ? nullptr : zip_open_from_source(target, ZIP_CREATE, nullptr);
    if (opened == nullptr) return false;
    const bool added = std::all_of(files.begin(), files.end(), [&](const fs::path& file) {
        return AddEntry(opened, folder, file, password);
    });
    return added && zip_close(opened) == 0;
}

} // namespace kelvash::test
