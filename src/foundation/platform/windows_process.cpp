#include <fcntl.h>
#include <io.h>

#include <algorithm>
#include <memory>
#include <system_error>

#include "foundation/platform/platform.h"
#include "foundation/platform/windows_common.h"
#include "foundation/text.h"

// Behind windows.h.
#include <shellapi.h>

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

constexpr double kLongestWaitSeconds = 4000000; // the system's own limit is 2^32 milliseconds
// Between two looks at a pipe that may stay silent for ever, in milliseconds.
constexpr int kSilence = 5;
constexpr UINT kKilled = 0xFFFFFFFF;

HANDLE HandleOf(const Process& process) {
    return reinterpret_cast<HANDLE>(process.handle); // NOLINT: that is what a handle is
}

// A process that wasn't started here has no handle yet.
HANDLE OpenById(const Process& process, DWORD access) {
    return OpenProcess(access, FALSE, static_cast<DWORD>(process.id));
}

// One argument as the C runtime's rules take it apart again: back-slashes count only before a quote.
std::wstring Quoted(const std::wstring& argument) {
    std::wstring quoted = L"\"";
    std::size_t slashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'"') quoted.append(slashes + 1, L'\\');
        slashes = c == L'\\' ? slashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(slashes, L'\\') + L"\"";
}

bool NeedsQuotes(const std::wstring& argument) {
    return argument.empty() || argument.find_first_of(L" \t\n\v\"") != std::wstring::npos;
}

std::wstring CommandLine(const SpawnRequest& request) {
    std::wstring line = Quoted(request.program.wstring());
    for (const std::string& argument : request.arguments) {
        const std::wstring wide = WideFromUtf8(argument);
        line += L' ' + (NeedsQuotes(wide) ? Quoted(wide) : wide);
    }
    return line;
}

// This program's variables with LC_ALL, each ended by a NUL, a NUL at the end; sorted, as the system wants
// them.
std::wstring ToolEnvironment() {
    std::vector<std::wstring> variables = {L"LC_ALL=C.UTF-8"};
    wchar_t* block = GetEnvironmentStringsW();
    for (const wchar_t* at = block; at != nullptr && *at != L'\0'; at += variables.back().size() + 1) {
        variables.emplace_back(at);
    }
    if (block != nullptr) FreeEnvironmentStringsW(block);
    const auto is_old = [&](const std::wstring& variable) {
        return &variable != &variables.front() && _wcsnicmp(variable.c_str(), L"LC_ALL=", 7) == 0;
    };
    variables.erase(std::remove_if(variables.begin() + 1, variables.end(), is_old), variables.end());
    std::sort(variables.begin(), variables.end(), [](const std::wstring& a, const std::wstring& b) {
        return _wcsicmp(a.c_str(), b.c_str()) < 0;
    });
    std::wstring environment;
    for (const std::wstring& variable : variables)
        environment.append(variable).push_back(L'\0');
    return environment + L'\0';
}

// The handles of standard input and output; the only ones that a child inherits.
struct Streams {
    OwnHandle input{nullptr};
    OwnHandle read_end{nullptr};
    OwnHandle write_end{nullptr};

    SpawnResult Open(std::string_view typed) {
        SECURITY_ATTRIBUTES inheritable{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
        if (CreatePipe(&read_end.handle, &write_end.handle, &inheritable, 0) == 0) return SpawnResult::NoPipe;
        OpenInput(typed, inheritable);
        return input.handle != nullptr && SetHandleInformation(read_end.handle, HANDLE_FLAG_INHERIT, 0) != 0
                   ? SpawnResult::Started
                   : SpawnResult::NoRedirection;
    }

  private:
    // A file that goes with its last handle: a tool that reads none of it holds nobody up.
    void OpenInput(std::string_view typed, SECURITY_ATTRIBUTES& inheritable) {
        std::wstring name = L"NUL";
        DWORD disposition = OPEN_EXISTING;
        DWORD flags = 0;
        if (!typed.empty()) {
            name = (fs::temp_directory_path() / ("kelvash-input-" + std::to_string(GetCurrentProcessId())))
                       .wstring();
            disposition = CREATE_ALWAYS;
            flags = FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE;
        }
        const DWORD access = GENERIC_READ | (typed.empty() ? 0 : GENERIC_WRITE | DELETE);
        const HANDLE opened =
            CreateFileW(name.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        &inheritable, disposition, flags, nullptr);
        if (opened == INVALID_HANDLE_VALUE) return;
        input.handle = opened;
        DWORD written = 0;
        if (!typed.empty() &&
            (WriteFile(opened, typed.data(), static_cast<DWORD>(typed.size()), &written, nullptr) == 0 ||
             written != typed.size() || SetFilePointer(opened, 0, nullptr, FILE_BEGIN) != 0))
            input.Close();
    }
};

// Start-up information that passes the streams and no other handle.
class StartUp {
  public:
    StartUp(Window window, Streams* streams) {
        info_.StartupInfo.cb = sizeof info_;
        if (window == Window::Hidden) {
            info_.StartupInfo.dwFlags |= STARTF_USESHOWWINDOW;
            info_.StartupInfo.wShowWindow = SW_HIDE;
        }
        if (streams != nullptr) Pass(*streams);
    }
    ~StartUp() {
        if (info_.lpAttributeList != nullptr) DeleteProcThreadAttributeList(info_.lpAttributeList);
    }
    StartUp(const StartUp&) = delete;
    StartUp& operator=(const StartUp&) = delete;

    STARTUPINFOW* Info() { return &info_.StartupInfo; }

  private:
    void Pass(Streams& streams) {
        info_.StartupInfo.dwFlags |= STARTF_USESTDHANDLES;
        info_.StartupInfo.hStdInput = streams.input.handle;
        info_.StartupInfo.hStdOutput = streams.write_end.handle;
        info_.StartupInfo.hStdError = streams.write_end.handle;
        handles_[0] = streams.input.handle;
        handles_[1] = streams.write_end.handle;
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        memory_ = std::make_unique<char[]>(size);
        auto* list = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(memory_.get());
        if (InitializeProcThreadAttributeList(list, 1, 0, &size) == 0) return;
        info_.lpAttributeList = list;
        UpdateProcThreadAttribute(list, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_, sizeof handles_,
                                  nullptr, nullptr);
    }

    STARTUPINFOEXW info_{};
    HANDLE handles_[2] = {};
    std::unique_ptr<char[]> memory_;
};

bool HasEnded(const Process& process, DWORD milliseconds) {
    return WaitForSingleObject(HandleOf(process), milliseconds) == WAIT_OBJECT_0;
}

// Without a job the tool alone can be ended.
void PutIntoJob(Process& process) {
    const HANDLE job = CreateJobObjectW(nullptr, nullptr);
    if (job == nullptr) return;
    if (AssignProcessToJobObject(job, HandleOf(process)) == 0)
        CloseHandle(job);
    else
        process.job_handle = reinterpret_cast<std::uintptr_t>(job);
}

bool IsProgram(const std::string& document) {
    return EndsWithNoCase(document, ".exe") || EndsWithNoCase(document, ".com");
}

} // namespace

SpawnResult Spawn(const SpawnRequest& request, Process& process, int* output) {
    process = {};
    Streams streams;
    if (output != nullptr)
        if (const SpawnResult opened = streams.Open(request.input); opened != SpawnResult::Started)
            return opened;
    std::error_code error;
    if (!fs::is_regular_file(request.program, error)) return SpawnResult::NotStarted;
    StartUp start_up(request.window, output == nullptr ? nullptr : &streams);
    std::wstring line = CommandLine(request);
    std::wstring environment = ToolEnvironment();
    const DWORD flags = CREATE_UNICODE_ENVIRONMENT | EXTENDED_STARTUPINFO_PRESENT |
                        (request.suspended || request.is_tool ? DWORD{CREATE_SUSPENDED} : 0) |
                        (request.window == Window::Hidden ? DWORD{CREATE_NO_WINDOW} : 0) |
                        // Ctrl+C in this program's console isn't for what the user works with.
                        (request.is_tool ? 0 : DWORD{CREATE_NEW_PROCESS_GROUP});
    PROCESS_INFORMATION made{};
    if (CreateProcessW(request.program.c_str(), line.data(), nullptr, nullptr, output != nullptr, flags,
                       environment.data(), request.folder.c_str(), start_up.Info(), &made) == 0)
        return SpawnResult::NotStarted;
    process.id = static_cast<std::int64_t>(made.dwProcessId);
    process.handle = reinterpret_cast<std::uintptr_t>(made.hProcess);
    process.thread_id = static_cast<std::int64_t>(made.dwThreadId);
    process.thread_handle = reinterpret_cast<std::uintptr_t>(made.hThread);
    if (request.is_tool) {
        PutIntoJob(process);
        if (!request.suspended) ResumeThread(made.hThread);
    }
    if (output != nullptr) {
        *output = _open_osfhandle(reinterpret_cast<std::intptr_t>(streams.read_end.handle), _O_BINARY);
        if (*output >= 0) streams.read_end.handle = nullptr; // the descriptor owns it now
    }
    return SpawnResult::Started;
}

std::optional<std::size_t> ReadPipe(int descriptor, const Process& process, char* buffer, std::size_t size,
                                    int milliseconds) {
    const auto pipe = reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
    bool ended = false;
    for (int waited = 0;; waited += kSilence) {
        DWORD waiting = 0;
        if (PeekNamedPipe(pipe, nullptr, 0, nullptr, &waiting, nullptr) == 0) return 0;
        if (waiting > 0) {
            DWORD got = 0;
            const auto wanted = static_cast<DWORD>(std::min<std::size_t>(size, waiting));
            return ReadFile(pipe, buffer, wanted, &got, nullptr) == 0 ? 0 : got;
        }
        if (ended) return 0;
        if (waited >= milliseconds) return std::nullopt;
        ended = HasEnded(process, kSilence);
    }
}

void ClosePipe(int descriptor) {
    _close(descriptor);
}

bool WaitFor(const Process& process, double seconds, int* exit_code) {
    if (process.id <= 0) return true;
    const OwnHandle opened(
        process.handle != 0 ? nullptr : OpenById(process, SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION));
    const HANDLE handle = process.handle != 0 ? HandleOf(process) : opened.handle;
    if (handle == nullptr) return GetLastError() == ERROR_INVALID_PARAMETER; // there is no such process
    const DWORD milliseconds =
        seconds > kLongestWaitSeconds ? INFINITE : static_cast<DWORD>(std::max(0.0, seconds * 1000));
    if (WaitForSingleObject(handle, milliseconds) != WAIT_OBJECT_0) return false;
    DWORD code = 0;
    if (exit_code != nullptr && GetExitCodeProcess(handle, &code) != 0) *exit_code = static_cast<int>(code);
    return true;
}

void Resume(const Process& process) {
    if (process.thread_handle != 0) ResumeThread(reinterpret_cast<HANDLE>(process.thread_handle));
}

void Kill(const Process& process) {
    if (process.id <= 0) return;
    const OwnHandle opened(process.handle != 0 ? nullptr : OpenById(process, PROCESS_TERMINATE));
    const HANDLE handle = process.handle != 0 ? HandleOf(process) : opened.handle;
    if (handle != nullptr) TerminateProcess(handle, kKilled);
}

void KillRun(const Process& process) {
    if (process.job_handle != 0)
        TerminateJobObject(reinterpret_cast<HANDLE>(process.job_handle), kKilled);
    else
        Kill(process);
}

// Ending it may be denied where asking is not.
bool Take(std::int64_t id, Process& process) {
    Process taken;
    taken.id = id;
    constexpr DWORD kAsking = SYNCHRONIZE | PROCESS_QUERY_LIMITED_INFORMATION;
    HANDLE handle = OpenById(taken, kAsking | PROCESS_TERMINATE);
    if (handle == nullptr) handle = OpenById(taken, kAsking);
    if (handle == nullptr && GetLastError() == ERROR_INVALID_PARAMETER) return false; // there is none
    taken.handle = reinterpret_cast<std::uintptr_t>(handle);
    if (handle != nullptr && HasEnded(taken, 0)) {
        CloseHandle(handle);
        return false;
    }
    process = std::move(taken);
    return true;
}

void Release(Process& process) {
    if (process.job_handle != 0) CloseHandle(reinterpret_cast<HANDLE>(process.job_handle));
    process.job_handle = 0;
    if (process.handle != 0) CloseHandle(HandleOf(process));
    if (process.thread_handle != 0) CloseHandle(reinterpret_cast<HANDLE>(process.thread_handle));
    process.handle = 0;
    process.thread_handle = 0;
}

bool OpenWithDesktop(const std::string& document, std::string_view verb, Window window,
                     const NativeFile& folder) {
    const std::wstring what = WideFromUtf8(document);
    const std::wstring how = WideFromUtf8(verb);
    const bool program = IsProgram(document);
    const bool plain = verb.empty() || EqualNoCase(verb, "open");
    const HINSTANCE result =
        ShellExecuteW(GetDesktopWindow(), program || plain ? nullptr : how.c_str(), what.c_str(),
                      program && !plain ? how.c_str() : nullptr, folder.empty() ? nullptr : folder.c_str(),
                      window == Window::Hidden ? SW_HIDE : SW_SHOWNORMAL);
    return reinterpret_cast<std::intptr_t>(result) > 32;
}

bool TakesPathTexts(const NativeFile&) {
    return true;
}

NativeFile NativeTool(std::string_view name) {
    if (name.empty() || name.find_first_of("\\/:") != std::string_view::npos) return {};
    for (const std::string& folder : Split(Utf8FromWide(EnvironmentPath("PATH").native()), ';')) {
        const fs::path file = fs::path(WideFromUtf8(folder)) / WideFromUtf8(name);
        std::error_code error;
        if (file.is_absolute() && fs::is_regular_file(file, error)) return file;
    }
    return {};
}

} // namespace kelvash::platform
