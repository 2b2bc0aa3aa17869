// A zip and a destination for what is out to do harm or merely odd.
#pragma once

#include <algorithm>

#include "foundation/native_text.h"
#include "support/foundation_home.h"
#include "support/zip_bytes.h"
#include "zip/zip.h"
#include "zip/zip_module.h"

namespace kelvash::zip {

class HostileZip : public test::FoundationHome {
  protected:
    HostileZip() : out(drive / "out") { std::filesystem::create_directories(out); }

    void Put(const std::vector<test::ZipBytes>& all) {
        test::MakeFile(drive / "a.zip", test::MakeZipBytes(all));
    }
    bool Extract(ZipFolders folders = ZipFolders::Kept, Wipe wipe = Wipe::No,
                 const std::string& archive = "C:\\a.zip") {
        Unzipped unzipped = UnzipToFolder({archive, "C:\\out", wipe, folders}, bar);
        entries = std::move(unzipped.Written);
        message = std::move(unzipped.Message);
        return unzipped.End == UnzipEnd::Whole;
    }
    // Relative names of all that is below C:\out, sorted, with a "/" behind those of folders.
    std::vector<std::string> OutNames() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(out))
            names.push_back(GenericTextOf(entry.path().lexically_relative(out)) +
                            (entry.is_directory() ? "/" : ""));
        std::sort(names.begin(), names.end());
        return names;
    }

    std::filesystem::path out;
    std::vector<std::string> entries;
    std::string message;
    Bar bar;
};

class OddZipTarget : public test::FoundationHome {
  protected:
    OddZipTarget() { test::MakeFile(drive / "in" / "a.txt", "aaa"); }
    bool Make(const std::string& archive) {
        return ZipFolder("C:\\in", archive, entries, Recurse::Yes, bar, message);
    }
    std::vector<std::string> entries;
    std::string message;
    Bar bar;
};

} // namespace kelvash::zip
