// Runs a program as a process of its own and tells what became of it.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace kelvash::test {

// How a program is started.
struct ProgramStart {
    std::filesystem::path program;
    std::vector<std::string> words;
    std::string input = {};                              // what is typed
    std::filesystem::path folder;                        // for the files of the standard streams
    std::map<std::string, std::string> environment = {}; // beside that of the test
    std::function<bool()> prepare = {}; // in the new process, before the program; false ends it
};

struct ProgramEnd {
    int status = -1; // exit status; -1 for a run that was killed
    int signal = 0;  // that ended it
    std::string output;
    std::string errors;
    double seconds = 0;
    std::int64_t memory = 0; // bytes held at most
};

// Becomes the program; gives 127 if that fails. For a child that somebody else has forked.
int BecomeProgram(const ProgramStart& start);
// Streams of a run that has ended.
void ReadStreams(const ProgramStart& start, ProgramEnd& end);

// A program that has been started and not yet waited for.
class RunningProgram {
  public:
    explicit RunningProgram(ProgramStart start);
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;
    // Kills what nobody has waited for.
    ~RunningProgram();

    // Waits for the end; a program that takes longer than `seconds` is killed.
    ProgramEnd Wait(double seconds = 60);
    void Kill() const;

  private:
    ProgramStart start_;
    pid_t process_ = -1;
    double started_ = 0;
};

inline ProgramEnd RunProgram(ProgramStart start, double seconds = 60) {
    return RunningProgram(std::move(start)).Wait(seconds);
}

} // namespace kelvash::test
