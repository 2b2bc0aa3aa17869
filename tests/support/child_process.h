// A procedure in a process of its own: for limits that would stay, and for what it takes of memory.
#pragma once

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdint>

namespace kelvash::test {

struct ChildResult {
    bool answer = false;    // false too if the child died
    std::int64_t grown = 0; // bytes of memory that the procedure held at most
};

inline std::int64_t PeakMemory() {
    struct rusage usage {};
    getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} * 1024;
}

template <class Procedure>
ChildResult InChild(const Procedure& procedure) {
    int ends[2];
    EXPECT_EQ(pipe(ends), 0);
    const pid_t child = fork();
    if (child == 0) {
        const std::int64_t before = PeakMemory();
        ChildResult result;
        result.answer = procedure();
        result.grown = PeakMemory() - before;
        _exit(write(ends[1], &result, sizeof result) == static_cast<ssize_t>(sizeof result) ? 0 : 1);
    }
    close(ends[1]);
    ChildResult result;
    if (read(ends[0], &result, sizeof result) != static_cast<ssize_t>(sizeof result)) result = {};
    close(ends[0]);
    EXPECT_EQ(waitpid(child, nullptr, 0), child);
    return result;
}

// As on a disk with so many bytes left: writing more fails. It can't be taken back.
inline void LimitFiles(rlim_t bytes) {
    std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit limit { bytes, bytes };
    setrlimit(RLIMIT_FSIZE, &limit);
}

} // namespace kelvash::test
