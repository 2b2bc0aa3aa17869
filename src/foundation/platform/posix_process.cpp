#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <map>
#include <optional>
#include <utility>

#include "foundation/platform/platform.h"
#include "foundation/platform/posix_common.h"
#include "foundation/platform/posix_run.h"
#include "foundation/text.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

// Between two looks at a process that can't be awaited.
constexpr double kPollSeconds = 0.02;
constexpr double kLongestPollSeconds = 3600;
// A handler of documents that fails does so at once; one that works may stay.
constexpr double kOpenerSeconds = 0.5;

// What a child says through the status pipe when it can't become the program.
constexpr char kRedirectionFailed = 'r';
constexpr char kStartFailed = 's';

// The processes started here; the exit code once they have ended and are reaped. A reaped id may belong to
// another process by now, so the table answers for it.
std::map<pid_t, std::optional<int>>& Children() {
    static std::map<pid_t, std::optional<int>> children;
    return children;
}

pid_t IdOf(const Process& process) {
    return static_cast<pid_t>(process.id);
}

int ExitCodeOf(int status) {
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status); // as shells count signals
}

// Takes a child's exit code if it has ended. True if it has.
bool Reap(pid_t id, std::optional<int>& exit_code) {
    if (exit_code) return true;
    int status = 0;
    const pid_t ended = ::waitpid(id, &status, WNOHANG);
    if (ended == id)
        exit_code = ExitCodeOf(status);
    else if (ended < 0 && errno == ECHILD) // somebody else reaped it
        exit_code = -1;
    return exit_code.has_value();
}

void ReapAll() {
    for (auto& [id, exit_code] : Children())
        Reap(id, exit_code);
}

// By number: the library declares the call without C linkage.
int OpenDescriptor(pid_t id) {
    return static_cast<int>(::syscall(SYS_pidfd_open, id, 0));
}

// One that has ended and that nobody has reaped keeps its id: "id (name) Z ...".
bool IsUnreaped(pid_t id) {
    const std::string state = BytesOfProcess(std::to_string(id), "stat");
    const std::size_t at = state.rfind(") ");
    return at != std::string::npos && (state[at + 2] == 'Z' || state[at + 2] == 'X');
}

bool HasEnded(const Process& process, int* exit_code) {
    const pid_t id = IdOf(process);
    if (process.descriptor >= 0) {
        pollfd wait{process.descriptor, POLLIN, 0};
        return ::poll(&wait, 1, 0) > 0;
    }
    const auto child = Children().find(id);
    if (child == Children().end()) return (::kill(id, 0) != 0 && errno == ESRCH) || IsUnreaped(id);
    if (!Reap(id, child->second)) return false;
    if (exit_code != nullptr) *exit_code = *child->second;
    return true;
}

// Sleeps until a process ends, whoever its parent is, or the time is over. True if it is known to have ended.
bool SleepUntilEnd(pid_t id, double seconds) {
    const int descriptor = OpenDescriptor(id);
    if (descriptor < 0) {
        Sleep(std::min(seconds, kPollSeconds));
        return false;
    }
    pollfd wait{descriptor, POLLIN, 0};
    const bool ended = ::poll(&wait, 1, static_cast<int>(std::min(seconds, kLongestPollSeconds) * 1000)) > 0;
    ::close(descriptor);
    return ended;
}

// --- what the child is to become, laid out before the fork: the child may not allocate ---

std::vector<char*> Pointers(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    pointers.reserve(texts.size() + 1);
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> OwnEnvironment() {
    std::vector<std::string> environment;
    for (char** variable = environ; *variable != nullptr; ++variable)
        environment.emplace_back(*variable);
    return environment;
}

// Outside programs are to print the same texts and numbers whatever language the user has.
std::vector<std::string> ToolEnvironment(bool wine) {
    std::vector<std::string> environment = OwnEnvironment();
    std::erase_if(environment, [](const std::string& variable) { return variable.starts_with("LC_ALL="); });
    environment.emplace_back("LC_ALL=C.UTF-8");
    if (wine && ::getenv("WINEDEBUG") == nullptr) environment.emplace_back("WINEDEBUG=-all");
    return environment;
}

struct Launch {
    std::vector<std::string> words; // the executable, then its arguments
    std::vector<std::string> environment;
    std::string folder;
    bool silent = false;
    bool suspended = false;
    bool own_group = false;
    bool own_session = false;
    int output = -1; // where both streams go
    int input = -1;
};

bool PutOn(int descriptor, int stream) {
    return ::dup2(descriptor, stream) >= 0;
}

// A program that isn't read from has nothing to say on standard output: that belongs to this program's own
// answers.
bool Redirect(const Launch& launch) {
    const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
    if (nothing < 0 || !PutOn(launch.input >= 0 ? launch.input : nothing, STDIN_FILENO)) return false;
    if (launch.output >= 0) return PutOn(launch.output, STDOUT_FILENO) && PutOn(launch.output, STDERR_FILENO);
    if (launch.silent) return PutOn(nothing, STDOUT_FILENO) && PutOn(nothing, STDERR_FILENO);
    PutOn(STDERR_FILENO, STDOUT_FILENO); // fails only where nobody listens anyway
    return true;
}

[[noreturn]] void FailChild(int status_pipe, char failure) {
    [[maybe_unused]] const ssize_t written = ::write(status_pipe, &failure, 1);
    ::_exit(127);
}

// In the child: only calls that are safe after a fork of a program with threads.
[[noreturn]] void BecomeProgram(const Launch& launch, char* const* words, char* const* environment,
                                int status_pipe) {
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
    for (const int number : {SIGPIPE, SIGIO}) // ignored ones would stay so
        ::signal(number, SIG_DFL);
    if (launch.own_group) ::setpgid(0, 0);
    if (launch.own_session) ::setsid(); // what the terminal tells this program's group isn't for it
    if (!Redirect(launch)) FailChild(status_pipe, kRedirectionFailed);
    ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
    if (::chdir(launch.folder.c_str()) != 0) FailChild(status_pipe, kStartFailed);
    if (launch.suspended) ::kill(::getpid(), SIGSTOP);
    ::execve(words[0], words, environment);
    FailChild(status_pipe, kStartFailed);
}

// Standard input as a file in memory, to be read from its start: a tool that reads none of it holds nobody
// up. -1 on failure.
int FileOf(std::string_view bytes) {
    const int descriptor = ::memfd_create("input", MFD_CLOEXEC);
    if (descriptor < 0) return -1;
    if (WriteBytes(descriptor, bytes) && ::lseek(descriptor, 0, SEEK_SET) == 0) return descriptor;
    ::close(descriptor);
    return -1;
}

struct OwnDescriptor {
    int descriptor;
    explicit OwnDescriptor(int opened) : descriptor(opened) {}
    OwnDescriptor(const OwnDescriptor&) = delete;
    OwnDescriptor& operator=(const OwnDescriptor&) = delete;
    ~OwnDescriptor() {
        if (descriptor >= 0) ::close(descriptor);
    }
};

struct Pipe {
    std::array<int, 2> ends{-1, -1};
    Pipe() = default;
    Pipe(const Pipe&) = delete;
    Pipe& operator=(const Pipe&) = delete;
    ~Pipe() {
        CloseEnd(0);
        CloseEnd(1);
    }
    bool Open() { return ::pipe2(ends.data(), O_CLOEXEC) == 0; }
    void CloseEnd(std::size_t end) {
        if (ends[end] >= 0) ::close(ends[end]);
        ends[end] = -1;
    }
};

// Waits until the child is the program, or is stopped just before.
SpawnResult AwaitStart(pid_t id, bool suspended, int status_pipe) {
    int status = 0;
    if (suspended) {
        while (::waitpid(id, &status, WUNTRACED) < 0 && errno == EINTR) {
        }
        if (WIFSTOPPED(status)) return SpawnResult::Started;
    }
    char failure = 0;
    ssize_t got = 0;
    while ((got = ::read(status_pipe, &failure, 1)) < 0 && errno == EINTR) {
    }
    if (got == 0 && !suspended) return SpawnResult::Started;
    if (!suspended) ::waitpid(id, &status, 0);
    return failure == kRedirectionFailed ? SpawnResult::NoRedirection : SpawnResult::NotStarted;
}

SpawnResult Start(Launch& launch, Process& process) {
    ReapAll();
    Pipe status;
    if (!status.Open()) return SpawnResult::NoPipe;
    const std::vector<char*> words = Pointers(launch.words);
    const std::vector<char*> environment = Pointers(launch.environment);
    const pid_t id = ::fork();
    if (id < 0) return SpawnResult::NotStarted;
    if (id == 0) BecomeProgram(launch, words.data(), environment.data(), status.ends[1]);
    status.CloseEnd(1);
    const SpawnResult result = AwaitStart(id, launch.suspended, status.ends[0]);
    if (result != SpawnResult::Started) return result;
    Children()[id] = std::nullopt;
    process.id = process.thread_id = id;
    process.handle = process.thread_handle = static_cast<std::uintptr_t>(id);
    return result;
}

// The executable and its arguments; empty if the program can't be run.
std::vector<std::string> WordsFor(const NativeFile& program, const Arguments& arguments, bool wine) {
    std::vector<std::string> words;
    if (wine) words.push_back(FindOnPath("wine").string());
    words.push_back(program.string());
    if (words.front().empty() || ::access(words.front().c_str(), X_OK) != 0) return {};
    words.insert(words.end(), arguments.begin(), arguments.end());
    return words;
}

} // namespace

bool IsWindowsProgram(const NativeFile& file) {
    std::error_code error;
    if (!fs::is_regular_file(file, error)) return false;
    std::ifstream bytes(file, std::ios::binary);
    return bytes.get() == 'M' && bytes.get() == 'Z';
}

NativeFile FindOnPath(std::string_view name) {
    const char* folders = std::getenv("PATH");
    for (const std::string& folder : Split(folders == nullptr ? "/usr/bin:/bin" : folders, ':')) {
        const fs::path file = fs::path(folder) / name;
        std::error_code error;
        if (file.is_absolute() && fs::is_regular_file(file, error) && ::access(file.c_str(), X_OK) == 0)
            return file;
    }
    return {};
}

SpawnResult Spawn(const SpawnRequest& request, Process& process, int* output) {
    process = {};
    const bool wine = IsWindowsProgram(request.program);
    Launch launch{WordsFor(request.program, request.arguments, wine),
                  ToolEnvironment(wine),
                  request.folder.string(),
                  request.window == Window::Hidden,
                  request.suspended,
                  request.is_tool,
                  !request.is_tool};
    if (launch.words.empty()) return SpawnResult::NotStarted;
    if (request.is_tool) launch.environment.push_back(process.run = NewRunMark());
    if (output == nullptr) return Start(launch, process);
    Pipe pipe;
    if (!pipe.Open()) return SpawnResult::NoPipe;
    const OwnDescriptor input{request.input.empty() ? -1 : FileOf(request.input)};
    if (!request.input.empty() && input.descriptor < 0) return SpawnResult::NoRedirection;
    launch.input = input.descriptor;
    launch.output = pipe.ends[1];
    const SpawnResult result = Start(launch, process);
    if (result == SpawnResult::Started) *output = std::exchange(pipe.ends[0], -1);
    return result;
}

std::optional<std::size_t> ReadPipe(int descriptor, const Process& process, char* buffer, std::size_t size,
                                    int milliseconds) {
    pollfd wait{descriptor, POLLIN, 0};
    int ready = ::poll(&wait, 1, milliseconds);
    if (ready == 0) {
        // A process may leave servants behind that hold its pipe (Wine's server does), so its own end counts
        // too: what it printed is in the pipe by then.
        if (!HasEnded(process, nullptr)) return std::nullopt;
        ready = ::poll(&wait, 1, 0);
        if (ready == 0) return 0;
    }
    const ssize_t got = ready < 0 ? -1 : ::read(descriptor, buffer, size);
    if (got >= 0) return static_cast<std::size_t>(got);
    if (errno == EINTR) return std::nullopt;
    return 0;
}

void ClosePipe(int descriptor) {
    ::close(descriptor);
}

bool WaitFor(const Process& process, double seconds, int* exit_code) {
    const pid_t id = IdOf(process);
    if (id <= 0) return true;
    const auto start = std::chrono::steady_clock::now();
    for (;;) {
        if (HasEnded(process, exit_code)) return true;
        const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start;
        const double left = seconds - passed.count();
        if (left <= 0) return false;
        // A process that isn't a child here counts as ended before its parent has reaped it.
        if (SleepUntilEnd(id, left) && !Children().contains(id)) return true;
    }
}

void Resume(const Process& process) {
    if (process.id > 0) ::kill(IdOf(process), SIGCONT);
}

void Kill(const Process& process) {
    if (process.id <= 0 || HasEnded(process, nullptr)) return;
    if (process.descriptor >= 0)
        ::syscall(SYS_pidfd_send_signal, process.descriptor, SIGKILL, nullptr, 0);
    else
        ::kill(IdOf(process), SIGKILL);
}

void KillRun(const Process& process) {
    if (process.id <= 0) return;
    // The group's number is nobody else's as long as the child isn't reaped.
    if (!process.run.empty() && !HasEnded(process, nullptr)) ::kill(-IdOf(process), SIGKILL);
    KillMarked(process.run);
}

// One of this program's own needs no descriptor: its id is nobody else's until it is reaped here.
bool Take(std::int64_t id, Process& process) {
    Process taken;
    taken.id = taken.thread_id = id;
    taken.handle = taken.thread_handle = static_cast<std::uintptr_t>(id);
    if (!Children().contains(static_cast<pid_t>(id)))
        taken.descriptor = OpenDescriptor(static_cast<pid_t>(id));
    if (HasEnded(taken, nullptr)) {
        Release(taken);
        return false;
    }
    process = std::move(taken);
    return true;
}

void Release(Process& process) {
    if (process.descriptor >= 0) ::close(process.descriptor);
    process.descriptor = -1;
}

bool OpenWithDesktop(const std::string& document, std::string_view verb, Window window,
                     const NativeFile& folder) {
    Process process;
    if ((EndsWithNoCase(document, ".exe") || EndsWithNoCase(document, ".com")) &&
        IsWindowsProgram(document)) {
        const bool plain = verb.empty() || EqualNoCase(verb, "open");
        const SpawnRequest request{document, plain ? Arguments() : Split(verb, ' '), folder, window, false};
        return Spawn(request, process, nullptr) == SpawnResult::Started;
    }
    // The opened program is the user's, so it keeps the user's language.
    const std::string opener = FindOnPath("xdg-open").string();
    if (opener.empty() || document.starts_with('-')) return false; // an option is no address
    Launch launch{{opener, document}, OwnEnvironment(), folder.empty() ? "/" : folder.string(), true};
    launch.own_session = true;
    int exit_code = 0;
    return Start(launch, process) == SpawnResult::Started &&
           (!WaitFor(process, kOpenerSeconds, &exit_code) || exit_code == 0);
}

bool TakesPathTexts(const NativeFile& program) {
    return IsWindowsProgram(program);
}

NativeFile NativeTool(std::string_view name) {
    struct Twin {
        std::string_view tool;
        std::vector<std::string_view> here;
    };
    static const std::vector<Twin> twins = {{"lame.exe", {"lame"}},
                                            {"madplay.exe", {"madplay"}},
                                            {"mkisofs.exe", {"mkisofs", "genisoimage"}},
                                            {"cdrecord.exe", {"cdrecord", "wodim"}},
                                            {"isoinfo.exe", {"isoinfo"}}};
    for (const Twin& twin : twins) {
        if (!EqualNoCase(name, twin.tool)) continue;
        for (const std::string_view here : twin.here)
            if (const NativeFile found = FindOnPath(here); !found.empty()) return found;
    }
    return {};
}

} // namespace kelvash::platform
