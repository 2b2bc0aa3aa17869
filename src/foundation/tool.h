// Outside tools: programs that work for this one, are read while they run, and can be stopped.
//
// While a tool runs the interface works and a stop is heeded every 50 ms, though the tool says nothing. A
// stop ends the tool and all that it has started, handed to others or not (under Wine they are).
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "foundation/process.h"

namespace kelvash {

// Starts a program in its own folder and waits for its end. False if it can't be started, or was stopped.
bool RunAndWait(std::string_view program, const Arguments& arguments, Window window);

enum class LineMode { PartialLines, WholeLines };
// Told each line, or each change of one, that a program prints; `start` comes with the one call before all,
// and an empty line. True stops the program.
using LineReader = std::function<bool(const std::string& line, bool start)>;
struct Captured {
    bool ok = false;
    std::string error;  // why not; empty when ok
    std::string output; // all finished lines, each ended by CR LF
};
// Runs a console program hidden and reads what it prints on either stream to the end, whatever its exit code;
// `input` is what its standard input gives. With PartialLines the reader is told a line after every change,
// so that counters that rewrite one line are seen; with WholeLines only finished lines. CR and LF end a line,
// backspace steps back, tab goes to the next multiple of four columns. A line is cut at 257 bytes. A NUL
// shows the message "Valore 0". A stop, the reader's or the user's, gives the error "Break user". An empty
// working folder is the program's own.
Captured CaptureOutput(std::string_view program, const Arguments& arguments, const LineReader& reader,
                       LineMode mode, std::string_view input = {}, std::string_view folder = {});

// A path as a program takes it for an argument: a path text where it knows drives, else the platform's path.
std::string PathFor(std::string_view program, std::string_view path);

// In the application's folder or beside the program under its own name ("lame.exe"), else what stands for it
// on PATH where the platform has its own build ("lame", "mkisofs" or "genisoimage", ...). Empty if there is
// none.
std::string FindTool(std::string_view name);

} // namespace kelvash
