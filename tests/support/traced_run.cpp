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
#include <vector>

namespace kelvash::test {

namespace {

using Registers = user_regs_struct;

enum class Kind { Other, Changes, TakesRoom };

Kind KindOf(const Registers& registers) {
    switch (registers.orig_rax) {
        case SYS_write:
        case SYS_pwrite64:
        case SYS_writev:
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

class Tracer {
  public:
    Tracer(pid_t child, const FaultPlan& plan) : child_(child), plan_(plan) {}

    TracedRun Follow() {
        int status = 0;
        waitpid(child_, &status, 0);
        ptrace(PTRACE_SETOPTIONS, child_, nullptr, PTRACE_O_TRACESECCOMP | PTRACE_O_EXITKILL);
        int signal = 0;
        for (;;) {
            ptrace(PTRACE_CONT, child_, nullptr, signal);
            if (waitpid(child_, &status, 0) < 0 || !WIFSTOPPED(status)) break;
            const bool at_call = status >> 8 == (SIGTRAP | (PTRACE_EVENT_SECCOMP << 8));
            signal = at_call || WSTOPSIG(status) == SIGSTOP ? 0 : WSTOPSIG(status);
            if (at_call) Enter();
        }
        run_.exit_code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return run_;
    }

  private:
    void Enter() {
        Registers registers{};
        ptrace(PTRACE_GETREGS, child_, nullptr, &registers);
        const Kind kind = KindOf(registers);
        if (kind == Kind::Other) return;
        ++run_.calls;
        const bool here = run_.calls == plan_.at;
        if (plan_.fault == Fault::Kill && here) {
            run_.killed = true;
            kill(child_, SIGKILL);
        } else if (plan_.fault == Fault::Fail &&
                   (here || (plan_.lasting && run_.calls > plan_.at && kind == Kind::TakesRoom))) {
            // Call number -1 is skipped with the result that stands there.
            registers.orig_rax = static_cast<decltype(registers.orig_rax)>(-1);
            registers.rax = static_cast<decltype(registers.rax)>(-plan_.error);
            ptrace(PTRACE_SETREGS, child_, nullptr, &registers);
        }
    }

    pid_t child_;
    FaultPlan plan_;
    TracedRun run_;
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
