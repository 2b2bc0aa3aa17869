// What differs between platforms, as plain functions over native paths. One set of files per platform
// (posix_*.cpp, windows_*.cpp); the build picks one. Nothing outside this folder asks which platform it is.
#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/desktop.h"
#include "foundation/drives.h"
#include "foundation/lock.h"
#include "foundation/process.h"
#include "foundation/waiting.h"

namespace kelvash::platform {

using NativeFile = std::filesystem::path;

// --- texts (posix_text.cpp) ---

// Upper-case form of UTF-8, character by character; bytes that are no UTF-8 stay.
std::string FoldCase(std::string_view text);

// --- fonts (posix_fonts.cpp) ---

// Reads where the system's fonts are and keeps it for those who ask for one; nothing where the system does.
// May run on any thread.
void ReadFontConfiguration();

// --- files (posix_files.cpp) ---

// Copies content, modification time and the read-only attribute to a file that doesn't exist yet, letting the
// kernel do the work. `go_on` is asked every few megabytes whether to go on. On failure or a stop nothing is
// left at `to`.
using GoOn = std::function<bool()>;
bool CopyContent(const NativeFile& from, const NativeFile& to, const GoOn& go_on);
// Descriptors for writing: open or empty a file (-1 on failure), write all bytes, close; with `flush` the
// bytes reach the disk first.
int OpenForWriting(const NativeFile& file);
bool WriteBytes(int descriptor, std::string_view bytes);
bool CloseWritten(int descriptor, bool flush);
// Renames over an existing file in one step; with `flush` the rename reaches the disk.
bool RenameOver(const NativeFile& from, const NativeFile& to, bool flush);
// What has been written to the file system of a folder reaches the disk, as far as the platform offers that
// for files that are closed.
bool FlushDrive(const NativeFile& folder);
// The names in a folder reach the disk, where they don't by themselves.
bool FlushFolder(const NativeFile& folder);
// The bytes of a closed file reach the disk. False if it can't be opened or written.
bool FlushFile(const NativeFile& file);
// Bytes of the files in a tree whose names, spelt in UTF-8, count. Links to folders are not followed, names
// that can't be spelt in a path text left out; 0 for a missing folder.
using NameCounts = std::function<bool(std::string_view name)>;
std::int64_t TreeBytes(const NativeFile& folder, const NameCounts& counts);
bool ClearReadOnly(const NativeFile& file);
// Gives a file a second name, which doesn't exist yet, where the file system can. The two are one file then:
// a change of the one in place changes the other.
bool LinkFile(const NativeFile& file, const NativeFile& name);
// Exchanges the places of two folders, or of two files, in one step; false where the file system can't.
bool Exchange(const NativeFile& a, const NativeFile& b);
// Unlinks a file, a read-only one too. False for a folder and for a missing file.
bool Unlink(const NativeFile& file);
// Removes an empty folder, a read-only one too, or a link to a folder. False for anything else.
bool RemoveEmptyFolder(const NativeFile& folder);
bool SetFileTime(const NativeFile& file, std::int64_t seconds);
// The short form of a path; empty where there is none.
std::string ShortPath(std::string_view path);

// --- drives and folders (posix_drives.cpp) ---

struct MappedDrive {
    char letter;
    NativeFile root;
    DriveType type;
};
// The drives that the platform knows, given the application's folder.
std::vector<MappedDrive> SystemDrives(const NativeFile& home);
// Volume name, serial number, free and total bytes of the file system that holds a folder; false if it can't
// be read.
bool VolumeInfo(const NativeFile& folder, DriveRecord& record);
// `root` followed by the components of `rest` (a path text without its drive), each found without regard to
// case.
NativeFile FindExact(const NativeFile& root, std::string_view rest);
// From the one to the other FindExact looks in memory for other spellings of the folder's names: those that
// it holds now and those that are asked for. Of the calling thread; they nest.
void KnowFolder(const NativeFile& folder);
void ForgetFolder(const NativeFile& folder);
NativeFile ExecutablePath();
// A variable of the environment as a path; empty if it isn't set.
NativeFile EnvironmentPath(const char* name);
// The user's home folder.
NativeFile HomeFolder();
// The user's folder for program data, the application's own name at its end.
NativeFile UserDataFolder();
// The same for what can be made anew.
NativeFile UserCacheFolder();
NativeFile SpecialFolder(SpecialFolderId id);

// --- processes (posix_process.cpp) ---

struct SpawnRequest {
    NativeFile program;
    Arguments arguments;
    NativeFile folder; // working folder
    Window window = Window::Normal;
    bool suspended = false;
    bool is_tool = false;     // KillRun can end it with all that it starts
    std::string_view input{}; // what standard input gives where the output is read
};
enum class SpawnResult { Started, NoPipe, NoRedirection, NotStarted };
// Starts a process. With `output` its two output streams go into one pipe, whose read end is put there (a CRT
// descriptor). A suspended process can't tell that its program is unusable: it then ends once it is resumed.
SpawnResult Spawn(const SpawnRequest& request, Process& process, int* output);
// Up to `size` bytes of the process's pipe; nothing if it stays silent for that time; 0 at its end, or once
// the process has ended and the pipe is empty, whoever else may still hold it.
std::optional<std::size_t> ReadPipe(int descriptor, const Process& process, char* buffer, std::size_t size,
                                    int milliseconds);
void ClosePipe(int descriptor);
// True if the process ended within that time, which may be infinite.
bool WaitFor(const Process& process, double seconds, int* exit_code);
void Resume(const Process& process);
void Kill(const Process& process);
// Ends a tool and all processes that come of it, its own end or not.
void KillRun(const Process& process);
// Takes hold of a process by its id. False, with `process` as it was, if it has ended; one that the system
// keeps from this program is known by its id alone.
bool Take(std::int64_t id, Process& process);
// Gives the process's handles back; it runs on.
void Release(Process& process);
// `document` is a native path or an address. Only a file that is called a Windows program is run.
bool OpenWithDesktop(const std::string& document, std::string_view verb, Window window,
                     const NativeFile& folder);
// True for a program that knows drives and back-slashes: any on Windows, elsewhere what Wine runs.
bool TakesPathTexts(const NativeFile& program);
// The platform's own build of a tool; empty if there is none on PATH.
NativeFile NativeTool(std::string_view name);

// --- running programs (posix_running.cpp) ---

// Id of a process that runs this program file, under Wine too, whoever has started it; 0 if none does. One
// that works in the program's folder counts as well: Wine may know the program by another path.
std::int64_t FindProcessOf(const NativeFile& program);

// See foundation/process.h. Path texts: only those that may be open are looked for on the disk.
bool HoldsOpen(std::int64_t process_id, const std::vector<std::string>& files);

// --- locks (posix_lock.cpp) ---

// Makes a folder that nobody but the user can reach into. False if that can't be had, or if what stands there
// is another user's.
bool MakePrivateFolder(const NativeFile& folder);
// See foundation/lock.h.
NativeFile RuntimeFolder();
// Empty for a missing folder.
std::string FolderIdentity(const NativeFile& folder);
// A descriptor that no started program inherits; -1 on failure. The file is made if it is missing.
int OpenLockFile(const NativeFile& file);
LockResult TryLock(int descriptor);
// Replaces what stands in an open lock file.
bool WriteNote(int descriptor, std::string_view note);
// Unlocks and closes.
void CloseLockFile(int descriptor);
std::int64_t OwnProcessId();

// --- terminal (posix_terminal.cpp) ---

// True if the standard output goes to a terminal.
bool OutputIsTerminal();
// From now on the signals that ask a program to end (Ctrl+C, a closed terminal, the end of the session) are
// only remembered, and a reader who is gone makes a write fail instead of ending the program. A signal that
// was ignored stays so.
void CatchStopSignals();
bool StopSignalled();
// A line of the standard input without its end; nothing at the end of the input or once StopSignalled. What
// is typed into a terminal can be hidden.
enum class Echo { Shown, Hidden };
std::optional<std::string> ReadInputLine(Echo echo);

// --- time (posix_time.cpp) ---

void Sleep(double seconds);
void Spin(double seconds);
// "dd/mm/yyyy hh.nn.ss" and the like: a local time broken into numbers.
struct LocalTime {
    int year, month, day, hour, minute, second;
};
LocalTime ToLocalTime(std::int64_t seconds);

// --- registration (posix_registration.cpp) ---

bool RegisterFileType(std::string_view extension, std::string_view description, std::string_view icon,
                      std::string_view program);
bool CreateShortcut(const NativeFile& folder, const NativeFile& target_folder, const NativeFile& target,
                    std::string_view caption, std::string_view arguments);
std::string ReadRegistryValue(std::string_view key);
bool WriteRegistryValues(std::string_view key, std::string_view default_value, std::string_view name,
                         std::string_view value);
int WindowsVersion();

// --- desktop (posix_desktop.cpp) ---

Desktop& OwnDesktop();

} // namespace kelvash::platform
