// peak COMMAND...: runs a command without its output and prints its largest resident memory in KB. A program
// of its own, because the peak of a started process counts from what its starter holds.
#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

#include <cstdio>

extern char** environ;

int main(int, char** argv) {
    posix_spawn_file_actions_t quiet;
    posix_spawn_file_actions_init(&quiet);
    posix_spawn_file_actions_addopen(&quiet, 1, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    int status = 0;
    rusage usage{};
    if (argv[1] == nullptr || posix_spawnp(&child, argv[1], &quiet, nullptr, argv + 1, environ) != 0)
        return 1;
    if (wait4(child, &status, 0, &usage) != child || status != 0) return 1;
    std::printf("%ld\n", usage.ru_maxrss);
    return 0;
}
