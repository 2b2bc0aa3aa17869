// A folder with three files to make zips of.
#pragma once

#include "foundation/native_text.h"
#include "support/foundation_home.h"
#include "zip/zip.h"
#include "zip/zip_module.h"

namespace kelvash::zip {

class Zip : public test::FoundationHome {
  protected:
    Zip() {
        test::MakeFile(drive / "in/a.txt", "aaa");
        test::MakeFile(drive / NativeFromText("in/Größe Ł.txt"), "g");
        test::MakeFile(drive / "in/sub/b.txt", "b");
    }
    std::vector<std::string> Names(const std::string& zip = "C:\\a.zip") const {
        std::string reason;
        std::vector<std::string> names;
        const auto listed = ListZip(zip, reason);
        if (listed)
            for (const ZipEntry& entry : *listed)
                names.push_back(entry.Name);
        return names;
    }
    std::vector<std::string> entries;
    std::string message;
    Bar bar;
};

} // namespace kelvash::zip
