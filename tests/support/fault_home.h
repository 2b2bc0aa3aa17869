// A world in which one operation of the program is killed or made to fail at each of its calls in turn, and
// which is looked at after the next start of the program.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "support/fake_desktop.h"
#include "support/swap_world.h"
#include "support/test_home.h"
#include "support/traced_run.h"

namespace kelvash::test {

// What is killed: `in` is the level in TRLE before it; `run` gives the exit code of the worker.
struct Operation {
    std::string name;
    std::int32_t in = 0;
    Backup backup = Backup::Full;
    std::function<int()> run;
};

class FaultHome : public TestHome {
  protected:
    FaultHome();
    ~FaultHome() override;

    // Makes the world, with the level `in` and saves of its player, and keeps it as the start of every run.
    void Prepare(const Operation& operation);
    // Puts the world back to a kept state. Files are linked, so what is kept changes if a file is written in
    // place.
    void Restore(const std::filesystem::path& kept);
    void Keep(const std::filesystem::path& kept);
    // True if the start of every run is still what Prepare made.
    bool StartIsUntouched() const { return TreeOf(pristine) == start_; }
    // A new start of the program: nothing in memory, profile and Archive from their files.
    void StartProgram();
    // How many calls the operation makes; it must end well.
    int CountCalls(const Operation& operation);
    // Runs the operation from the start with a fault.
    TracedRun RunWith(const Operation& operation, const FaultPlan& plan);

    // Every save that stood before the operation is in the TRLE root, if its level is in, or in its level's
    // stash, as it was, or was put into a rescue folder; and no level has a save of another or anything that
    // isn't one.
    void CheckSaves(std::int32_t in) const;
    // Files of the TRLE folder but for saves, the marker and what a killed write left half done.
    FileMap LevelFiles() const;

    // Outside the test's own folder, in memory where the system offers that: thousands of small files are
    // made.
    std::filesystem::path place;
    World world;
    FakeDesktop desktop;
    bool whole_start = true; // false where the start itself would do what is tested
    std::vector<WorldLevel> levels;
    std::filesystem::path pristine, killed;
    std::map<std::int32_t, FileMap> saves; // by level, as they stood before the operation

  private:
    FileMap start_;
};

} // namespace kelvash::test
