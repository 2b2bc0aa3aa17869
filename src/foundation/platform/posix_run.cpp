#include "foundation/platform/posix_run.h"

#include <signal.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "foundation/platform/platform.h"
#include "foundation/platform/posix_common.h"
#include "foundation/text.h"

namespace kelvash::platform {

namespace {

// A process can start another while the list is read; one that is told to end needs a moment for it.
constexpr int kMostRounds = 100;
constexpr double kRoundSeconds = 0.01;

bool Carries(const std::string& process, const std::string& mark) {
    const std::vector<std::string> variables = Split(BytesOfProcess(process, "environ"), '\0');
    return std::find(variables.begin(), variables.end(), mark) != variables.end();
}

} // namespace

std::string NewRunMark() {
    static int runs = 0;
    return "KELVASH_RUN=" + std::to_string(::getpid()) + "-" + std::to_string(++runs);
}

void KillMarked(const std::string& mark) {
    if (mark.empty()) return;
    for (int round = 0; round < kMostRounds; ++round) {
        bool found = false;
        for (const std::string& process : ProcessIds()) {
            if (!Carries(process, mark)) continue;
            found = true;
            ::kill(static_cast<pid_t>(std::stol(process)), SIGKILL);
        }
        if (!found) return;
        Sleep(kRoundSeconds);
    }
}

} // namespace kelvash::platform
