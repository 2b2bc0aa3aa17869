// The world of the breaking suite: the real kelvash-cli runs as a process of its own on the sandbox that its
// command `demo` makes. Around the sandbox lie files of a user, which nobody may touch.
//
//   user     the user's home, with the files that a stranger would like to write
//   outside  files that lying names point at
//   box      the sandbox: box/drive_c is C:
//   runtime  the user's runtime folder        tmp  for temporary files
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "breaking/figures.h"
#include "support/foundation_home.h"
#include "support/program_run.h"
#include "support/swap_world.h"
#include "support/traced_run.h"

namespace kelvash::test {

using Json = nlohmann::json;
using Words = std::vector<std::string>;

// What a run of kelvash-cli told.
struct Told {
    std::string command; // as it would be typed
    ProgramEnd end;
    std::vector<Json> events;
    Json result;       // the last event; an empty object if there was none
    bool clean = true; // every line of the output is JSON

    int status() const { return end.status; }
    // True if a box, a question or a line on stderr said something.
    bool Spoke() const;
    // True if a box told that something isn't as it should be.
    bool Warned() const;
    // The command line, its status and all that it told.
    std::string Story() const;
};

// Entries of a tree by their path: what they are, and a file's bytes.
using Snapshot = std::map<std::string, std::string>;
Snapshot SnapshotOf(const std::filesystem::path& folder);
// The differences, a line each, but for those of paths that `allowed` knows.
std::string Differences(const Snapshot& before, const Snapshot& after,
                        const std::function<bool(const std::string&)>& allowed);

// What a question gets that nobody expects.
enum class Answers { None, Yes };

// What a user's hand does in a window: see standins/hand.
struct Hand {
    std::string name;
    std::string does;
    std::string forms = {};
};

class BreakingHome : public testing::Test {
  protected:
    BreakingHome();
    ~BreakingHome() override;
    void SetUp() override;

    // As the sandbox was made, or as it was when Keep was last called.
    void Renew();
    void Keep();

    // How a command is started: --home, --json and the answers stand in front of its words.
    ProgramStart Command(const Words& words, Answers answers = Answers::None,
                         const std::string& stream = "0");
    Told Run(const Words& words, Answers answers = Answers::None);
    // A fault of the plan happens in the program itself.
    Told RunWith(const Words& words, FaultPlan plan, TracedRun& run, Answers answers = Answers::None);
    static Told Tell(const ProgramStart& start, ProgramEnd end);
    // The window with a hand in it, which waits for the file Go() once it has made Ready().
    ProgramStart Window(const Hand& hand);
    std::filesystem::path Ready() const { return place / "ready"; }
    std::filesystem::path Go() const { return place / "go"; }
    // True once the window is up.
    bool IsReady() const;
    // Runs a command that must succeed.
    Told Succeed(const Words& words, Answers answers = Answers::Yes);

    // Every run ends by itself, in time, within its memory, with a status of the contract and in JSON, and
    // tells why if it failed.
    void ExpectSane(const Told& told, double seconds = 30) const;

    std::string Dos(const std::filesystem::path& path) const; // of a place below C:
    std::filesystem::path Level(int code) const { return levels / LevelName(code); }
    static std::string LevelName(int code);
    // Codes and records of the open Archive's levels.
    std::map<int, Json> Levels();
    // What stands in TRLE but saves; the marker's and logs' bytes don't count.
    FileMap OriginalFiles() const;
    // Waits until no game of this TRLE folder runs any more.
    void WaitForGame() const;

    std::filesystem::path place; // all of it
    std::filesystem::path ground;
    std::filesystem::path user, outside, runtime, tmp;
    std::filesystem::path drive, home, trle, levels, zips;
    FileMap original; // of TRLE, as it was made
    Figures figures;

  private:
    void MakeDecoys() const;

    std::filesystem::path pristine_, streams_;
};

} // namespace kelvash::test
