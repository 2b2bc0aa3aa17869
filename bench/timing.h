// What the measurements share: runs of programs, pairs of times, the table of ratios, files like a level's.
#pragma once

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <random>
#include <string>
#include <vector>

extern char** environ;

namespace kelvash::bench {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;
using Command = std::vector<std::string>;

inline constexpr int kRounds = 15;
inline constexpr int kShortRounds = 41;
inline constexpr std::size_t kMegabyte = std::size_t{1} << 20;

[[noreturn]] inline void Die(const std::string& why) {
    std::cerr << "bench: " << why << "\n";
    std::exit(1);
}

// --- running ---

// Milliseconds of a run.
inline double Run(const Command& command) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    const auto start = Clock::now();
    pid_t child = 0;
    if (posix_spawnp(&child, arguments[0], &quiet, nullptr, arguments.data(), environ) != 0)
        Die("can't run " + command[0]);
    int status = 0;
    waitpid(child, &status, 0);
    const std::chrono::duration<double, std::milli> time = Clock::now() - start;
    posix_spawn_file_actions_destroy(&quiet);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) Die(command[0] + " failed");
    return time.count();
}

// Largest resident memory of a run in MiB.
inline double PeakOf(const std::string& bin, const std::string& command) {
    std::FILE* output = popen((bin + "/peak " + command).c_str(), "r");
    long kilobytes = 0;
    if (output == nullptr || std::fscanf(output, "%ld", &kilobytes) != 1 || pclose(output) != 0)
        Die("no peak");
    return static_cast<double>(kilobytes) / 1024;
}

inline double RunAll(const std::vector<Command>& commands) {
    double sum = 0;
    for (const Command& command : commands)
        sum += Run(command);
    return sum;
}

inline double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// What an earlier run has written must not be on its way to the disk while the next is timed.
inline void Settle(const fs::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY);
    if (descriptor < 0) return;
    syncfs(descriptor);
    close(descriptor);
}

struct Pairs {
    std::vector<double> ours, plain, ratios, differences;
    void Add(double our, double other) {
        ours.push_back(our);
        plain.push_back(other);
        ratios.push_back(our / other);
        differences.push_back(our - other);
    }
};

// --- the table ---

inline void PrintHead() {
    std::printf("%-52s %10s %10s %10s %10s\n", "", "Kelvash", "plain", "measured", "target");
}

inline void PrintRow(const std::string& what, double ours, double plain, double measured, double target,
                     const char* unit) {
    char plain_text[32] = "-";
    if (plain > 0) std::snprintf(plain_text, sizeof plain_text, "%.1f ms", plain);
    char ours_text[32];
    std::snprintf(ours_text, sizeof ours_text, ours > 0 ? "%.1f ms" : "-", ours);
    char measured_text[32], target_text[32];
    std::snprintf(measured_text, sizeof measured_text, "%.2f%s", measured, unit);
    std::snprintf(target_text, sizeof target_text, "%.2f%s", target, unit);
    std::printf("%-52s %10s %10s %10s %10s%s\n", what.c_str(), ours_text, plain_text, measured_text,
                target_text, measured <= target ? "" : "  MISSED");
    std::fflush(stdout);
}

inline void PrintRatio(const std::string& what, const Pairs& pairs, double target) {
    PrintRow(what, Median(pairs.ours), Median(pairs.plain), Median(pairs.ratios), target, "");
}

inline void Write(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary).write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
}

// Half noise, half repetition, as a level file is.
inline std::string LevelBytes(std::size_t size, unsigned seed) {
    std::mt19937 random(seed);
    std::string bytes;
    bytes.reserve(size);
    while (bytes.size() < size) {
        const std::size_t length = std::min<std::size_t>(64, size - bytes.size());
        if (random() % 2 == 0 || bytes.size() < 4096)
            for (std::size_t i = 0; i < length; ++i)
                bytes += static_cast<char>(random());
        else
            bytes += bytes.substr(bytes.size() - 64 - random() % 4000, length);
    }
    return bytes;
}

} // namespace kelvash::bench
