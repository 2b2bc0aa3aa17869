// A zip at C:\a.zip and what its extraction to C:\out leaves.
#pragma once

#include <algorithm>

#include "foundation/native_text.h"
#include "support/foundation_home.h"
#include "support/zip_bytes.h"
#include "zip/zip.h"
#include "zip/zip_module.h"

namespace kelvash::zip {

class Unzip : public test::FoundationHome {
  protected:
    Unzip() { std::filesystem::create_directories(drive / "out"); }

    void Put(const std::vector<test::ZipBytes>& all) { PutBytes(test::MakeZipBytes(all)); }
    void PutBytes(const std::string& bytes) { test::MakeFile(drive / "a.zip", bytes); }
    bool Extract(ZipFolders folders = ZipFolders::Kept, Wipe wipe = Wipe::No) {
        Unzipped unzipped = UnzipToFolder({"C:\\a.zip", "C:\\out", wipe, folders}, bar);
        entries = std::move(unzipped.Written);
        message = std::move(unzipped.Message);
        return unzipped.End == UnzipEnd::Whole;
    }
    std::vector<std::string> Tree() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(drive / "out"))
            if (entry.is_regular_file())
                names.push_back(GenericTextOf(entry.path().lexically_relative(drive / "out")));
        std::sort(names.begin(), names.end());
        return names;
    }
    std::string Bytes(const std::string& name) const { return test::BytesOf(drive / "out" / name); }

    std::vector<std::string> entries;
    std::string message;
    Bar bar;
};

} // namespace kelvash::zip
