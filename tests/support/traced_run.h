// Runs a piece of the program in a child process that is stopped at every system call which changes the file
// system, so that it can be killed there or the call be made to fail. Linux on x86-64 only.
#pragma once

#include <functional>

namespace kelvash::test {

enum class Fault { None, Kill, Fail };

// What happens at the call number `at`, counted from 1. A killed process doesn't execute the call. A failing
// call isn't executed either and gives `error`; with `lasting` every later call that takes room fails as
// well.
struct FaultPlan {
    Fault fault = Fault::None;
    int at = 0;
    int error = 0;
    bool lasting = false;
    bool in_program = false; // nothing happens before the body has become another program
    bool no_links = false;   // no file can be given a second name, as between two drives
};

struct TracedRun {
    int calls = 0;       // counted up to the end of the process
    bool killed = false; // by the plan
    int exit_code = -1;  // of a process that ended by itself
    int signal = 0;      // that ended it otherwise
};

// False where a process can't be traced.
bool CanTrace();
// Runs `body` in a forked child; its result is the child's exit code. If the body becomes another program the
// count begins with that one. Returns when everything that the child started has ended as well.
TracedRun RunTraced(const std::function<int()>& body, const FaultPlan& plan);

} // namespace kelvash::test
