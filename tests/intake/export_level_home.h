// A level to be exported, and what its zip holds.
#pragma once

#include "core/archive.h"
#include "core/level_list.h"
#include "intake/export_level.h"
#include "support/intake_home.h"
#include "zip/zip_module.h"

namespace kelvash::intake {

class Export : public test::IntakeHome {
  protected:
    const Files kMaze = {{"maze.tr4", "level data"}, {"script.dat", "script"}, {"english.dat", "words"}};
    void Select(std::int32_t code) {
        core::RefreshLevelList();
        core::SelectLevel(code);
    }
    bool ExportTo(const std::string& zip) {
        user.WillAnswer("Save exported level files", zip);
        return ExportLevel();
    }
    std::vector<std::string> NamesOf(const std::string& zip) const {
        std::string message;
        std::vector<std::string> names;
        const auto listed = zip::ListZip(zip, message);
        if (listed)
            for (const zip::ZipEntry& entry : *listed)
                names.push_back(entry.Name);
        return names;
    }
    // The package file in a zip.
    std::string ConfigOf(const std::string& zip) {
        std::filesystem::create_directories(drive / "x");
        Bar bar;
        EXPECT_EQ(zip::UnzipToFolder({zip, "C:\\x", zip::Wipe::Yes}, bar).End, zip::UnzipEnd::Whole);
        return test::BytesOf(drive / "x/kelvash.cfg");
    }
    bool NothingTemporary() const {
        return !test::Exists(home / "out_files") && !test::Exists(home / "_temp_Dec");
    }
};

} // namespace kelvash::intake
