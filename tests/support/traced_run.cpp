#include "support/traced_run.h"

#if defined(__x86_64__)

#include <fcntl.h>
#include <linux/filter.h>
#include <linux/fs.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/ptrace.h>
#include <sys/syscall.h>
#include <sys/user.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace kelvash::test {

namespace {

using Registers = user_regs_struct;

enum class Kind { Other, Changes, TakesRoom };

Kind KindOf(const Registers& registers) {
    switch (registers.orig_rax) {
        case SYS_write:
        case SYS_writev:
            // What is told goes to no disk.
            return registers.rdi <= STDERR_FILENO ? Kind::Other : Kind::TakesRoom;
        case SYS_pwrite64:
        case SYS_copy_file_range:
        case SYS_sendfile:
        case SYS_mkdir:
        case SYS_mkdirat:
        case SYS_creat:
        case SYS_link:
        case SYS_linkat:
        case SYS_symlink:
            return Kind::TakesRoom;
        case SYS_open:
            return (registers.rsi & (O_CREAT | O_TRUNC)) != 0 ? Kind::TakesRoom : Kind::Other;
        case SYS_openat:
            return (registers.rdx & (O_CREAT | O_TRUNC)) != 0 ? Kind::TakesRoom : Kind::Other;
        case SYS_ioctl:
            return registers.rsi == FICLONE ? Kind::TakesRoom : Kind::Other;
        case SYS_rename:
        case SYS_renameat:
        case SYS_renameat2:
        case SYS_unlink:
        case SYS_unlinkat:
        case SYS_rmdir:
        case SYS_truncate:
        case SYS_ftruncate:
        case SYS_chmod:
        case SYS_fchmod:
        case SYS_fchmodat:
        case SYS_utimensat:
        case SYS_fsync:
        case SYS_fdatasync:
            return Kind::Changes;
        default:
            return Kind::Other;
    }
}

// Lets the kernel stop the process at the calls that KindOf knows and at no other: most of a run are looks at
// files.
bool FilterCalls() {
    constexpr std::array<unsigned, 28> kCalls = {
        SYS_write,    SYS_pwrite64,  SYS_writev,    SYS_copy_file_range, SYS_sendfile, SYS_mkdir,
        SYS_mkdirat,  SYS_creat,     SYS_link,      SYS_symlink,         SYS_open,     SYS_openat,
        SYS_ioctl,    SYS_rename,    SYS_renameat,  SYS_unlink,          SYS_unlinkat, SYS_rmdir,
        SYS_truncate, SYS_ftruncate, SYS_chmod,     SYS_fchmod,          SYS_fchmodat, SYS_utimensat,
        SYS_fsync,    SYS_fdatasync, SYS_renameat2, SYS_linkat};
    std::vector<sock_filter> program = {{BPF_LD | BPF_W | BPF_ABS, 0, 0, offsetof(seccomp_data, nr)}};
    for (std::size_t i = 0; i < kCalls.size(); ++i)
        program.push_back(
            {BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint8_t>(kCalls.size() - i), 0, kCalls[i]});
    program.push_back({BPF_RET | BPF_K, 0, 0, SECCOMP_RET_ALLOW});
    program.push_back({BPF_RET | BPF_K, 0, 0, SECCOMP_RET_TRACE});
    const sock_fprog filter = {static_cast<unsigned short>(program.size()), program.data()};
    return prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &filter) == 0;
}

// The child: stops until it is traced, then works.
[[noreturn]] void WorkTraced(const std::function<int()>& body) {
    if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(126);
    raise(SIGSTOP);
    if (!FilterCalls()) _exit(126);
    _exit(body());
}

// The filter is inherited, and a call that it stops fails where nobody traces: so every thread and process
// that comes of the child is followed to its end, though only the child's own calls count.
class Tracer {
  public:
    Tracer(pid_t child, const FaultPlan& plan) : child_(child), plan_(plan) {}

    TracedRun Follow() {
        constexpr long kOptions = PTRACE_O_TRACESECCOMP | PTRACE_O_EXITKILL | PTRACE_O_TRACEEXEC |
                                  PTRACE_O_TRACECLONE | PTRACE_O_TRACEFORK | PTRACE_O_TRACEVFORK;
        int status = 0;
        waitpid(child_, &status, 0);
        ptrace(PTRACE_SETOPTIONS, child_, nullptr, kOptions);
        ptrace(PTRACE_CONT, child_, nullptr, 0);
        for (;;) {
            const pid_t stopped = waitpid(-1, &status, __WALL);
            if (stopped < 0) break;
            if (WIFSTOPPED(status))
                GoOn(stopped, status);
            else if (stopped == child_)
                End(status);
        }
        return run_;
    }

  private:
    void End(int status) {
        run_.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        run_.signal = WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

    void GoOn(pid_t thread, int status) {
        const int event = status >> 16;
        int signal = WSTOPSIG(status);
        if (event == PTRACE_EVENT_SECCOMP && IsOurs(thread)) Enter(thread);
        if (event == PTRACE_EVENT_EXEC && thread == child_) {
            run_.calls = 0;
            in_program_ = true;
        }
        if (event != 0 || signal == SIGSTOP) signal = 0;
        ptrace(PTRACE_CONT, thread, nullptr, signal);
    }

    // The child itself and its threads, not the programs that it starts.
    bool IsOurs(pid_t thread) const {
        const std::string task = "/proc/" + std::to_string(child_) + "/task/" + std::to_string(thread);
        return thread == child_ || access(task.c_str(), F_OK) == 0;
    }

    void Enter(pid_t thread) {
        Registers registers{};
        ptrace(PTRACE_GETREGS, thread, nullptr, &registers);
        const Kind kind = KindOf(registers);
        if (kind == Kind::Other || (plan_.in_program && !in_program_)) return;
        ++run_.calls;
        const bool here = run_.calls == plan_.at;
        if (plan_.fault == Fault::Kill && here) {
            run_.killed = true;
            kill(child_, SIGKILL);
        } else if (plan_.fault == Fault::Fail &&
                   (here || (plan_.lasting && run_.calls > plan_.at && kind == Kind::TakesRoom))) {
            Fail(thread, registers, plan_.error);
        } else if (plan_.no_links && (registers.orig_rax == SYS_link || registers.orig_rax == SYS_linkat)) {
            Fail(thread, registers, EXDEV);
        }
    }

    // Call number -1 is skipped with the result that stands there.
    static void Fail(pid_t thread, Registers& registers, int error) {
        registers.orig_rax = static_cast<decltype(registers.orig_rax)>(-1);
        registers.rax = static_cast<decltype(registers.rax)>(-error);
        ptrace(PTRACE_SETREGS, thread, nullptr, &registers);
    }

    pid_t child_;
    FaultPlan plan_;
    TracedRun run_;
    bool in_program_ = false;
};

} // namespace

TracedRun RunTraced(const std::function<int()>& body, const FaultPlan& plan) {
    const pid_t child = fork();
    if (child == 0) WorkTraced(body);
    return Tracer(child, plan).Follow();
}

bool CanTrace() {
    const TracedRun run = RunTraced(
        [] {
            rmdir("/dev/null/nowhere");
            return 7;
        },
        {});
    return run.calls == 1 && run.exit_code == 7;
}

} // namespace kelvash::test

#else

namespace kelvash::test {

TracedRun RunTraced(const std::function<int()>&, const FaultPlan&) {
    return {};
}

bool CanTrace() {
    return false;
}

} // namespace kelvash::test

#endif
