// A world for tests of the adding of levels: that of the swap, with an open dialog and zips made by the
// system's own zip program.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "core/records.h"
#include "intake/new_level.h"
#include "support/swap_home.h"

namespace kelvash::test {

class IntakeHome : public SwapHome {
  protected:
    // Makes a zip of these files, with the folders of their names, and a password if there is one.
    std::filesystem::path MakeZip(const std::string& path, const Files& files,
                                  const std::string& password = {});
    // Writes a kelvash.cfg of intake::LevelConfig and gives its bytes.
    static std::string ConfigBytes();

    // A dialog on a new level with code 1 and these files in its work folder.
    void OpenNew(const Files& files = {});
    // The same dialog on a level of the table.
    void OpenProperties(std::int32_t index) { intake::BeginLevel(level, core::PlaceAt(index)); }
    void Store() { intake::StoreLevel(level); }
    // The next form that opens over a level is worked like this.
    void WillWork(const std::function<void(intake::NewLevel&)>& work);
    const core::LevelRecord& Record() const;
    // Names of the files that the dialog works on, and of those stored.
    std::vector<std::string> WorkNames() const;
    std::vector<std::string> StoredNames(std::int32_t code = 1) const;
    std::filesystem::path Work() const;

    intake::NewLevel level;
};

} // namespace kelvash::test
