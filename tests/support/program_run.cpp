#include "support/program_run.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include "support/foundation_home.h"

namespace kelvash::test {

namespace {

double Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool OpenAs(int number, const std::filesystem::path& file, int flags) {
    const int opened = open(file.c_str(), flags, 0600);
    if (opened < 0 || dup2(opened, number) != number) return false;
    if (opened != number) close(opened);
    return true;
}

} // namespace

int BecomeProgram(const ProgramStart& start) {
    constexpr int kNotFound = 127;
    for (const auto& [name, value] : start.environment)
        setenv(name.c_str(), value.c_str(), 1);
    std::vector<std::string> copies = {start.program.string()};
    copies.insert(copies.end(), start.words.begin(), start.words.end());
    std::vector<char*> arguments;
    for (std::string& word : copies)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    constexpr int kNew = O_WRONLY | O_CREAT | O_TRUNC;
    if (!OpenAs(0, start.folder / "stdin", O_RDONLY) || !OpenAs(1, start.folder / "stdout", kNew) ||
        !OpenAs(2, start.folder / "stderr", kNew) || (start.prepare && !start.prepare()))
        return kNotFound;
    execv(copies.front().c_str(), arguments.data());
    return kNotFound;
}

void ReadStreams(const ProgramStart& start, ProgramEnd& end) {
    end.output = BytesOf(start.folder / "stdout");
    end.errors = BytesOf(start.folder / "stderr");
}

RunningProgram::RunningProgram(ProgramStart start) : start_(std::move(start)) {
    MakeFile(start_.folder / "stdin", start_.input);
    started_ = Now();
    process_ = fork();
    if (process_ == 0) _exit(BecomeProgram(start_));
    EXPECT_GT(process_, 0);
}

RunningProgram::~RunningProgram() {
    if (process_ <= 0) return;
    Kill();
    waitpid(process_, nullptr, 0);
}

void RunningProgram::Kill() const {
    if (process_ > 0) kill(process_, SIGKILL);
}

ProgramEnd RunningProgram::Wait(double seconds) {
    ProgramEnd end;
    int status = 0;
    struct rusage usage {};
    pid_t ended = 0;
    auto pause = std::chrono::microseconds(200);
    while ((ended = wait4(process_, &status, WNOHANG, &usage)) == 0 && Now() - started_ < seconds) {
        std::this_thread::sleep_for(pause);
        if (pause < std::chrono::milliseconds(5)) pause += pause / 8;
    }
    if (ended == 0) {
        Kill();
        ended = wait4(process_, &status, 0, &usage);
    }
    EXPECT_EQ(ended, process_);
    process_ = -1;
    end.seconds = Now() - started_;
    end.memory = std::int64_t{usage.ru_maxrss} * 1024;
    if (WIFEXITED(status)) end.status = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
    ReadStreams(start_, end);
    return end;
}

} // namespace kelvash::test
