// Other programs: starting, awaiting, reading what they print.
//
// Programs are path texts, arguments a list, never a shell line. On Linux a file that begins with "MZ" is run
// by wine, any other directly; wine execs the program, so the process id is that of the program to its end.
// Outside programs run with LC_ALL=C.UTF-8.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace kelvash {

using Arguments = std::vector<std::string>;

// A started process; id 0 is none. `handle` is the platform's (a process handle on Windows, the id
// elsewhere).
struct Process {
    std::int64_t id = 0;
    std::uintptr_t handle = 0;
    std::int64_t thread_id = 0;
    std::uintptr_t thread_handle = 0;
};

enum class Window { Normal, Hidden };

// Starts a program in its own folder and waits for ever. False if it can't be started.
bool RunAndWait(std::string_view program, const Arguments& arguments, Window window);
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
// Gives back what the system keeps for a started process that nobody asks about any more; the process runs
// on.
void ReleaseProcess(Process& process);

// Id of a process that runs a program, whoever has started it; 0 if there is none. A few milliseconds.
std::int64_t FindProcessOf(std::string_view program);

// Opens a document with the program that the desktop has for its extension, or an address (see
// OpenableAddress). What a document's bytes or rights say doesn't count: only what is called a program
// (".exe") is run, the verb being its parameters; else that is what to do with the document ("open" or empty
// for the usual). An empty folder takes the document's. What strangers made is opened through
// strangers_files.h.
bool OpenDocument(std::string_view document, std::string_view verb, Window window, std::string_view folder);

enum class LineMode { PartialLines, WholeLines };
// Told each line, or each change of one, that a program prints; true stops the program.
using LineReader = std::function<bool(const std::string& line)>;
struct Captured {
    bool ok = false;
    std::string error;  // why not; empty when ok
    std::string output; // all finished lines, each ended by CR LF
};
// Runs a console program and reads what it prints on either stream. The reader is called once with an empty
// line at the start. With PartialLines it is told a line after every change, so that counters that rewrite
// one line are seen; with WholeLines only finished lines. CR and LF end a line, backspace steps back, tab
// goes to the next multiple of four columns. A line is cut at 257 bytes. A NUL shows the message "Valore 0".
// A stop ends the program and gives the error "Break user".
Captured CaptureOutput(std::string_view program, const Arguments& arguments, const LineReader& reader,
                       LineMode mode);

// An outside tool: in the application's folder under its own name ("lame.exe"), else what stands for it on
// PATH where the platform has its own build ("lame", "mkisofs" or "genisoimage", ...). Empty if there is
// none.
std::string FindTool(std::string_view name);

} // namespace kelvash
