#include "breaking/small_disk.h"

#include <fcntl.h>
#include <linux/capability.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <fstream>

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

bool WriteText(const std::string& file, const std::string& text) {
    std::ofstream stream(file);
    stream << text;
    stream.close();
    return stream.good();
}

// A mount namespace of its own, and the rights in it by a user namespace.
bool Separate() {
    const std::string user = std::to_string(geteuid());
    const std::string group = std::to_string(getegid());
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return false;
    return WriteText("/proc/self/setgroups", "deny") &&
           WriteText("/proc/self/uid_map", user + " " + user + " 1") &&
           WriteText("/proc/self/gid_map", group + " " + group + " 1") &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// The program knows files again by their dates.
bool CopyDated(const fs::path& from, const fs::path& to) {
    std::error_code error;
    fs::copy(from, to, fs::copy_options::recursive | fs::copy_options::copy_symlinks, error);
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(from))
        if (!error && entry.is_regular_file())
            fs::last_write_time(to / entry.path().lexically_relative(from), entry.last_write_time(), error);
    return !error;
}

bool Mount(const fs::path& folder, std::uint64_t bytes) {
    const fs::path aside = folder.string() + ".full";
    std::error_code error;
    fs::rename(folder, aside, error);
    fs::create_directories(folder, error);
    const std::string size = "size=" + std::to_string(bytes);
    if (mount("tmpfs", folder.c_str(), "tmpfs", 0, size.c_str()) != 0) return false;
    return CopyDated(aside, folder);
}

// The keeper's whole life: the disk is there as long as it.
[[noreturn]] void Keep(const fs::path& folder, std::uint64_t bytes, int ready) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    const char answer = Separate() && Mount(folder, bytes) ? 'y' : 'n';
    if (write(ready, &answer, 1) != 1 || answer == 'n') _exit(1);
    for (;;)
        pause();
}

bool EnterSpace(pid_t keeper, const char* kind, int flag) {
    const std::string path = "/proc/" + std::to_string(keeper) + "/ns/" + kind;
    const int space = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool entered = space >= 0 && setns(space, flag) == 0;
    if (space >= 0) close(space);
    return entered;
}

} // namespace

SmallDisk::SmallDisk(const fs::path& folder, std::uint64_t bytes) {
    int ends[2];
    if (pipe(ends) != 0) return;
    keeper_ = fork();
    if (keeper_ == 0) Keep(folder, bytes, ends[1]);
    close(ends[1]);
    char answer = 'n';
    if (read(ends[0], &answer, 1) != 1) answer = 'n';
    close(ends[0]);
    if (answer == 'y') return;
    waitpid(keeper_, nullptr, 0);
    keeper_ = -1;
}

SmallDisk::~SmallDisk() {
    if (keeper_ <= 0) return;
    kill(keeper_, SIGKILL);
    waitpid(keeper_, nullptr, 0);
}

bool SmallDisk::Enter() const {
    return EnterSpace(keeper_, "user", CLONE_NEWUSER) && EnterSpace(keeper_, "mnt", CLONE_NEWNS);
}

int SmallDisk::Inside(const std::function<int()>& work) const {
    const pid_t child = fork();
    if (child == 0) _exit(Enter() ? work() : 120);
    int status = 0;
    if (waitpid(child, &status, 0) != child || !WIFEXITED(status)) return -1;
    return WEXITSTATUS(status);
}

bool ObeyPermissions() {
    if (geteuid() != 0) return true;
    for (int capability = 0; capability <= CAP_LAST_CAP; ++capability)
        if (prctl(PR_CAPBSET_READ, capability, 0, 0, 0) == 1 &&
            prctl(PR_CAPBSET_DROP, capability, 0, 0, 0) != 0)
            return false;
    return true;
}

} // namespace kelvash::test
