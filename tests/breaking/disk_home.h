// A sandbox whose level 1 is in and has been played, and the commands that meet a disk's faults there.
#pragma once

#include <optional>

#include "breaking/breaking_home.h"
#include "breaking/save_ledger.h"

namespace kelvash::test {

class DiskHome : public BreakingHome {
  protected:
    struct DiskCommand {
        std::string name;
        Words words;
    };

    void SetUp() override;
    // Changing commands that make different files in different places.
    std::vector<DiskCommand> Commands() const;
    // After the fault: the levels leave, every save is at home, and TRLE is as it was made.
    void ExpectRecovery();
    // The same without running anything, for a sandbox whose C: lies there.
    void ExpectWhole(const SaveLedger& saves, const std::filesystem::path& drive_c) const;
    // TRLE and the levels' files, to compare outcomes by.
    FileMap Outcome() const;

    std::optional<SaveLedger> ledger;
};

} // namespace kelvash::test
