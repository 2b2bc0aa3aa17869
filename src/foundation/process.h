// Other programs: starting, awaiting, ending. What works for this one and is read is in tool.h.
//
// Programs are path texts, arguments a list, never a shell line. On Linux a file that begins with "MZ" is run
// by wine, any other directly; wine execs the program, so the process id is that of the program to its end.
// Outside programs run with LC_ALL=C.UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash {

using Arguments = std::vector<std::string>;

// A started process, or one that runs already (TakeProcess); id 0 is none. `handle` is the platform's (a
// process handle on Windows, the id elsewhere).
struct Process {
    std::int64_t id = 0;
    std::uintptr_t handle = 0;
    std::int64_t thread_id = 0;
    std::uintptr_t thread_handle = 0;
    int descriptor =
        -1;            // of a taken one: what it is known by though its id may be used again (not on Windows)
    std::string run{}; // of a tool: what all carry in their environment that it starts (not on Windows)
    std::uintptr_t job_handle = 0; // of a tool on Windows: what holds it and all that it starts
};

enum class Window { Normal, Hidden };

// Starts a program in its own folder. The process id is the result, -1 on failure.
std::int64_t RunNoWait(std::string_view program, const Arguments& arguments, Process& process, Window window);
// The same with all that is known of the process. A suspended start stops before the program's first
// instruction until ResumeProcess; whether the system can run it is then only known by its end.
bool RunFull(std::string_view program, const Arguments& arguments, Window window, Process& process,
             bool suspended);
void ResumeProcess(const Process& process);
// True if the process ended within that many seconds; 0 only looks. Its exit code, where it is known, is in
// `exit_code`.
bool WaitForProcess(const Process& process, double seconds, int* exit_code = nullptr);
void KillProcess(const Process& process);
// Takes hold of a process that this program hasn't started: its end is seen though nobody heeds it, and
// another one that gets its id later isn't taken for it. False, with no process, if it has ended. Until
// ReleaseProcess.
[[nodiscard]] bool TakeProcess(std::int64_t id, Process& process);
// Gives back what the system keeps for a process that nobody asks about any more; the process runs
// on.
void ReleaseProcess(Process& process);

// Id of a process that runs a program, whoever has started it; 0 if there is none. A few milliseconds.
std::int64_t FindProcessOf(std::string_view program);

// True if a process has one of these files open; on Windows, if anybody has. One look at the process,
// whatever the number of files.
bool HoldsOpen(std::int64_t process_id, const std::vector<std::string>& files);

// Opens a document with the program that the desktop has for its extension, or an address (see
// OpenableAddress). What a document's bytes or rights say doesn't count: only what is called a program
// (".exe") is run, the verb being its parameters; else that is what to do with the document ("open" or empty
// for the usual). An empty folder takes the document's. What strangers made is opened through
// strangers_files.h.
bool OpenDocument(std::string_view document, std::string_view verb, Window window, std::string_view folder);

} // namespace kelvash
