#include "foundation/process.h"

#include <limits>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/platform/platform.h"
#include "foundation/strangers_files.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash {

namespace {

constexpr double kForever = std::numeric_limits<double>::infinity();
// A program that has closed its output has ended or is about to; more patience would only hold the interface
// up.
constexpr double kEndPatience = 1.0;
constexpr std::size_t kOutputBlock = std::size_t{1} << 16;

// Bytes of a line that are kept; the rest of a longer line is dropped.
constexpr std::size_t kLineLimit = 257;
constexpr std::size_t kTabWidth = 4;

platform::SpawnRequest RequestFor(std::string_view program, const Arguments& arguments, Window window) {
    const std::filesystem::path native = NativePath(program);
    return {native, arguments, native.parent_path(), window, false};
}

// Makes lines of what a console program prints and tells the reader.
class OutputLines {
  public:
    OutputLines(const LineReader& reader, LineMode mode, std::string& output)
        : reader_(reader), mode_(mode), output_(output) {}

    // False once the reader wants the program stopped.
    bool Take(std::string_view bytes) {
        for (const char byte : bytes)
            if (!TakeByte(byte)) return false;
        return true;
    }
    // A last line without a line end counts as a line.
    void Finish() {
        if (!line_.empty()) EndLine();
    }

  private:
    bool TakeByte(char byte) {
        const bool second_of_pair = byte == '\n' && after_return_;
        after_return_ = byte == '\r';
        switch (byte) {
            case '\0':
                ShowMessage(MessageStyle::Plain, LoadMessage(MessageId::kNulInOutput, {}));
                return true;
            case '\r':
                return EndLine();
            case '\n':
                return second_of_pair || EndLine();
            case '\b':
                if (!line_.empty()) line_.pop_back();
                break;
            case '\t':
                Append(std::string(kTabWidth - line_.size() % kTabWidth, ' '));
                break;
            default:
                Append({&byte, 1});
        }
        return TellChange();
    }

    void Append(std::string_view text) { line_ += text.substr(0, kLineLimit - line_.size()); }

    bool TellChange() {
        if (mode_ != LineMode::PartialLines || line_ == told_) return true;
        told_ = line_;
        return !reader_(line_);
    }

    // The next line starts as told empty: a display keeps showing the finished one until there is more to
    // show.
    bool EndLine() {
        output_.append(line_).append(kLineBreak);
        const bool go_on = mode_ != LineMode::WholeLines || !reader_(line_);
        line_.clear();
        told_.clear();
        return go_on;
    }

    const LineReader& reader_;
    LineMode mode_;
    std::string& output_;
    std::string line_;
    std::string told_; // the partial line that the reader was told last
    bool after_return_ = false;
};

// Reads the pipe to its end; false if the reader stopped it.
bool ReadOutput(int pipe, const Process& process, const LineReader& reader, LineMode mode,
                std::string& output) {
    OutputLines lines(reader, mode, output);
    if (reader(std::string())) return false;
    std::string block(kOutputBlock, '\0');
    for (;;) {
        const std::size_t got = platform::ReadPipe(pipe, process, block.data(), block.size());
        if (got == 0) break;
        if (!lines.Take({block.data(), got})) return false;
    }
    lines.Finish();
    return true;
}

std::string SpawnError(platform::SpawnResult result, std::string_view program, const Arguments& arguments) {
    switch (result) {
        case platform::SpawnResult::Started:
            break;
        case platform::SpawnResult::NoPipe:
            return LoadMessage(MessageId::kPipeFailed, {});
        case platform::SpawnResult::NoRedirection:
            return LoadMessage(MessageId::kRedirectFailed, {});
        case platform::SpawnResult::NotStarted:
            return LoadMessage(MessageId::kSubprocessFailed,
                               {std::string(program), kLineBreak, Join(arguments, " ")});
    }
    return {};
}

bool IsPathText(std::string_view text) {
    return text.size() >= 2 && text[1] == ':';
}

} // namespace

bool RunAndWait(std::string_view program, const Arguments& arguments, Window window) {
    Process process;
    if (!RunFull(program, arguments, window, process, false)) return false;
    platform::WaitFor(process, kForever, nullptr);
    platform::Release(process);
    return true;
}

std::int64_t RunNoWait(std::string_view program, const Arguments& arguments, Process& process,
                       Window window) {
    return RunFull(program, arguments, window, process, false) ? process.id : -1;
}

bool RunFull(std::string_view program, const Arguments& arguments, Window window, Process& process,
             bool suspended) {
    process = {};
    platform::SpawnRequest request = RequestFor(program, arguments, window);
    request.suspended = suspended;
    return FileExists(program) &&
           platform::Spawn(request, process, nullptr) == platform::SpawnResult::Started;
}

void ResumeProcess(const Process& process) {
    platform::Resume(process);
}

bool WaitForProcess(const Process& process, double seconds, int* exit_code) {
    return platform::WaitFor(process, seconds, exit_code);
}

void KillProcess(const Process& process) {
    platform::Kill(process);
}

void ReleaseProcess(Process& process) {
    platform::Release(process);
}

std::int64_t FindProcessOf(std::string_view program) {
    return platform::FindProcessOf(NativePath(program));
}

bool OpenDocument(std::string_view document, std::string_view verb, Window window, std::string_view folder) {
    if (!IsPathText(document)) {
        const std::optional<std::string> address = OpenableAddress(document);
        return address && platform::OpenWithDesktop(*address, verb, window, {});
    }
    if (!FileExists(document) && !FolderExists(document)) return false;
    const std::filesystem::path native = NativePath(document);
    const std::filesystem::path place = folder.empty() ? native.parent_path() : NativePath(folder);
    return platform::OpenWithDesktop(native.string(), verb, window, place);
}

Captured CaptureOutput(std::string_view program, const Arguments& arguments, const LineReader& reader,
                       LineMode mode) {
    Captured captured;
    if (!FileExists(program)) {
        captured.error = LoadMessage(MessageId::kUtilityMissing, {std::string(program)});
        return captured;
    }
    Process process;
    int pipe = -1;
    const platform::SpawnResult result =
        platform::Spawn(RequestFor(program, arguments, Window::Hidden), process, &pipe);
    if (result != platform::SpawnResult::Started) {
        captured.error = SpawnError(result, program, arguments);
        return captured;
    }
    captured.ok = ReadOutput(pipe, process, reader, mode, captured.output);
    if (!captured.ok) {
        platform::Kill(process);
        captured.error = LoadMessage(MessageId::kBreakUser, {});
    }
    platform::ClosePipe(pipe);
    platform::WaitFor(process, kEndPatience, nullptr);
    platform::Release(process);
    return captured;
}

std::string FindTool(std::string_view name) {
    const std::string own = AppFolder() + "\\" + std::string(name);
    if (FileExists(own)) return own;
    const std::filesystem::path native = platform::NativeTool(name);
    return native.empty() ? std::string() : DosPath(native);
}

} // namespace kelvash
