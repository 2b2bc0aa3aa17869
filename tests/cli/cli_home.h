// A world for tests of kelvash-cli: the built program is run as a process of its own in a home and a drive C:
// that nobody else has.
#pragma once

#include <string>
#include <vector>

#include "support/test_home.h"
#include "support/trle_sandbox.h"

namespace kelvash::test {

// What a run left behind.
struct CliRun {
    int status = -1;                // exit status; -1 for a run that was killed
    std::vector<std::string> lines; // of stdout, without their line ends
    std::string errors;             // stderr

    // The lines as one text.
    std::string Output() const;
};

class CliHome : public TestHome {
  protected:
    CliHome();

    // Runs the program with --home, --drive C= and --json in front of the words.
    CliRun Json(std::vector<std::string> words);
    // The same without --json; `input` is what is typed.
    CliRun Plain(std::vector<std::string> words, const std::string& input = {});
    // Runs the program with these words alone.
    CliRun Bare(const std::vector<std::string>& words, const std::string& input = {});

    // A home that is set up for a TRLE folder at C:\trle, with an Archive at C:\Levels.
    void SetUpHome();
    // Writes an answers file and gives its path.
    std::string Answers(const std::string& json);
};

} // namespace kelvash::test
