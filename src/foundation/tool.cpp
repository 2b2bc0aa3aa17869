#include "foundation/tool.h"

#include <chrono>
#include <optional>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/platform/platform.h"
#include "foundation/text.h"
#include "foundation/texts.h"
#include "foundation/user.h"

namespace kelvash {

namespace {

constexpr int kHeedMilliseconds = 25; // a wait that ends just before is followed by a whole one
// A program that has closed its output has ended or is about to; more patience would only hold the interface
// up.
constexpr double kEndPatience = 1.0;
constexpr std::size_t kOutputBlock = std::size_t{1} << 16;

// Bytes of a line that are kept; the rest of a longer line is dropped.
constexpr std::size_t kLineLimit = 257;
constexpr std::size_t kTabWidth = 4;

platform::SpawnRequest RequestFor(std::string_view program, const Arguments& arguments, Window window,
                                  std::string_view input = {}, std::string_view folder = {}) {
    const std::filesystem::path native = NativePath(program);
    platform::SpawnRequest request{native, arguments,
                                   folder.empty() ? native.parent_path() : NativePath(folder), window, false};
    request.is_tool = true;
    request.input = input;
    return request;
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
                ShowMessage(MessageStyle::Plain, LoadMessage(msg::kNulInOutput));
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
        return !reader_(line_, false);
    }

    // The next line starts as told empty: a display keeps showing the finished one until there is more to
    // show.
    bool EndLine() {
        output_.append(line_).append(kLineBreak);
        const bool go_on = mode_ != LineMode::WholeLines || !reader_(line_, false);
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

// Lets the interface work every kHeedMilliseconds, whether the tool talks or not.
class Heed {
  public:
    bool StopWanted() {
        const auto now = std::chrono::steady_clock::now();
        if (now - last_ < std::chrono::milliseconds(kHeedMilliseconds)) return false;
        last_ = now;
        TheUser().PumpEvents();
        return TheUser().StopRequested();
    }

  private:
    std::chrono::steady_clock::time_point last_ = std::chrono::steady_clock::now();
};

// Reads the pipe to its end; false if it was stopped.
bool ReadOutput(int pipe, const Process& process, const LineReader& reader, LineMode mode,
                std::string& output) {
    OutputLines lines(reader, mode, output);
    if (reader({}, true)) return false;
    Heed heed;
    std::string block(kOutputBlock, '\0');
    for (;;) {
        const std::optional<std::size_t> got =
            platform::ReadPipe(pipe, process, block.data(), block.size(), kHeedMilliseconds);
        if (got == std::size_t{0}) break;
        if (got && !lines.Take({block.data(), *got})) return false;
        if (heed.StopWanted()) return false;
    }
    lines.Finish();
    return true;
}

std::string SpawnError(platform::SpawnResult result, std::string_view program, const Arguments& arguments) {
    switch (result) {
        case platform::SpawnResult::Started:
            break;
        case platform::SpawnResult::NoPipe:
            return LoadMessage(msg::kPipeFailed);
        case platform::SpawnResult::NoRedirection:
            return LoadMessage(msg::kRedirectFailed);
        case platform::SpawnResult::NotStarted:
            return LoadMessageOfOthers(msg::kSubprocessFailed,
                                       {std::string(program), kLineBreak, Join(arguments, " ")});
    }
    return {};
}

} // namespace

bool RunAndWait(std::string_view program, const Arguments& arguments, Window window) {
    Process process;
    if (!FileExists(program) || platform::Spawn(RequestFor(program, arguments, window), process, nullptr) !=
                                    platform::SpawnResult::Started)
        return false;
    Heed heed;
    bool stopped = false;
    while (!stopped && !platform::WaitFor(process, kHeedMilliseconds / 1000.0, nullptr))
        stopped = heed.StopWanted();
    if (stopped) {
        platform::KillRun(process);
        platform::WaitFor(process, kEndPatience, nullptr);
    }
    platform::Release(process);
    return !stopped;
}

Captured CaptureOutput(std::string_view program, const Arguments& arguments, const LineReader& reader,
                       LineMode mode, std::string_view input, std::string_view folder) {
    Captured captured;
    if (!FileExists(program)) {
        captured.error = LoadMessage(msg::kUtilityMissing, {std::string(program)});
        return captured;
    }
    Process process;
    int pipe = -1;
    const platform::SpawnResult result =
        platform::Spawn(RequestFor(program, arguments, Window::Hidden, input, folder), process, &pipe);
    if (result != platform::SpawnResult::Started) {
        captured.error = SpawnError(result, program, arguments);
        return captured;
    }
    captured.ok = ReadOutput(pipe, process, reader, mode, captured.output);
    if (!captured.ok) {
        platform::KillRun(process);
        captured.error = LoadMessage(msg::kBreakUser);
    }
    platform::ClosePipe(pipe);
    platform::WaitFor(process, kEndPatience, nullptr);
    platform::Release(process);
    return captured;
}

std::string PathFor(std::string_view program, std::string_view path) {
    if (platform::TakesPathTexts(NativePath(program))) return std::string(path);
    const std::u8string native = NativePath(path).u8string();
    return {native.begin(), native.end()};
}

std::string FindTool(std::string_view name) {
    for (const std::string& folder : {AppFolder(), FolderOf(ProgramPath())})
        if (std::string own = folder + "\\" + std::string(name); FileExists(own)) return own;
    const std::filesystem::path native = platform::NativeTool(name);
    return native.empty() ? std::string() : DosPath(native);
}

} // namespace kelvash
