// A disk that takes no more bytes, played by a limit on the size of files.
#include <gmock/gmock.h>
#include <sys/resource.h>

#include <csignal>

#include "intake/level_config.h"
#include "support/test_home.h"

namespace kelvash::test {
namespace {

class FullDisk {
  public:
    FullDisk() : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
        getrlimit(RLIMIT_FSIZE, &old_limit_);
        const rlimit small{1000, old_limit_.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &old_limit_);
        std::signal(SIGXFSZ, old_handler_);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;

  private:
    rlimit old_limit_{};
    void (*old_handler_)(int);
};

class PackageOnAFullDisk : public TestHome {};

TEST_F(PackageOnAFullDisk, IsToldAndTheOldOneStands) {
    MakeFile(drive / "kelvash.cfg", "the old one");
    {
        const FullDisk full;
        EXPECT_FALSE(intake::WriteLevelConfig("C:\\kelvash.cfg"));
    }
    EXPECT_THAT(user.Told(), testing::ElementsAre("critical: Error writing config file: C:\\kelvash.cfg"));
    EXPECT_EQ(BytesOf(drive / "kelvash.cfg"), "the old one");
    EXPECT_FALSE(Exists(drive / "kelvash.cfg.new"));
}

} // namespace
} // namespace kelvash::test
