#include "support/x_server.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "support/platform.h"

namespace kelvash::test {

namespace {

// The number that the server writes once it is ready, with its line end.
std::string ReadDisplay(int descriptor) {
    std::string text;
    char byte = 0;
    while (::read(descriptor, &byte, 1) == 1 && byte != '\n')
        text += byte;
    return text;
}

} // namespace

XServer::XServer() {
    const char* old = std::getenv("DISPLAY");
    old_display_ = old == nullptr ? "" : old;
    int ready[2];
    if (::pipe(ready) != 0) std::abort();
    const std::string number = std::to_string(ready[1]);
    process_ = ::fork();
    if (process_ == 0) {
        const int nothing = ::open("/dev/null", O_RDWR);
        ::dup2(nothing, STDOUT_FILENO);
        ::dup2(nothing, STDERR_FILENO);
        ::prctl(PR_SET_PDEATHSIG, SIGTERM); // a test that crashes leaves no server behind
        ::close(ready[0]);
        ::execlp("Xvfb", "Xvfb", "-displayfd", number.c_str(), "-screen", "0", "800x600x24", "-nolisten",
                 "tcp", "-noreset", nullptr);
        ::_exit(127);
    }
    ::close(ready[1]);
    const std::string display = ReadDisplay(ready[0]);
    ::close(ready[0]);
    EXPECT_FALSE(display.empty()) << "Xvfb can't be started";
    SetEnvironment("DISPLAY", ":" + display);
}

XServer::~XServer() {
    Kill();
    SetEnvironment("DISPLAY", old_display_);
}

void XServer::Kill() {
    if (process_ <= 0) return;
    ::kill(process_, SIGTERM);
    ::waitpid(process_, nullptr, 0);
    process_ = 0;
}

} // namespace kelvash::test
