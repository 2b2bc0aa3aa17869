// Files of the user on a disk without room: a limit on file sizes stands for the full disk.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <functional>

#include "core/archive.h"
#include "core/profile.h"
#include "support/test_home.h"

namespace kelvash::core {
namespace {

namespace fs = std::filesystem;

class FullDisk : public test::TestHome {
  protected:
    // True if `work` does in a process of its own that can't write a file beyond `bytes`.
    static bool DoesWithin(rlim_t bytes, const std::function<bool()>& work) {
        const pid_t child = fork();
        if (child == 0) {
            signal(SIGXFSZ, SIG_IGN); // the write fails instead
            const rlimit limit{bytes, bytes};
            const bool done = setrlimit(RLIMIT_FSIZE, &limit) == 0 && work();
            _exit(done ? 0 : 1);
        }
        int status = 0;
        EXPECT_EQ(waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status));
        return WIFEXITED(status) && WEXITSTATUS(status) == 0;
    }

    static std::vector<std::string> Names(const fs::path& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            if (entry.is_regular_file()) names.push_back(entry.path().filename().string());
        return names;
    }
};

TEST_F(FullDisk, LeavesTheOldArchive) {
    const std::string old(2180, 'o');
    test::MakeFile(home / "a.kva", old);
    archive.Table = {{}, {}};
    profile.LastArchive = "C:\\Kelvash\\old.kva";
    for (const rlim_t room : {0U, 1U, 545U, 546U, 2180U, 3813U})
        EXPECT_TRUE(DoesWithin(room, [] {
            archive.ArchiveChanged = true;
            return !WriteArchive("C:\\Kelvash\\a.kva") && archive.ArchiveChanged &&
                   profile.LastArchive == "C:\\Kelvash\\old.kva";
        })) << room;
    EXPECT_EQ(test::BytesOf(home / "a.kva"), old);
    EXPECT_EQ(Names(home), std::vector<std::string>{"a.kva"});
    EXPECT_TRUE(DoesWithin(3814, [] { return WriteArchive("C:\\Kelvash\\a.kva"); }));
    EXPECT_EQ(fs::file_size(home / "a.kva"), 3814U);
}

TEST_F(FullDisk, LeavesTheOldArchiveWhenOnlyItsTailHasNoRoom) {
    const std::string old(5000, 'o');
    test::MakeFile(home / "a.kva", old);
    EXPECT_TRUE(DoesWithin(4999, [] { return !WriteArchive("C:\\Kelvash\\a.kva"); }));
    EXPECT_EQ(test::BytesOf(home / "a.kva"), old);
}

TEST_F(FullDisk, LeavesTheOldProfile) {
    const std::string old(1588, '\0');
    test::MakeFile(home / "Kelvash.prf", old);
    EXPECT_TRUE(DoesWithin(1587, [] { return !WriteProfile(); }));
    EXPECT_EQ(test::BytesOf(home / "Kelvash.prf"), old);
    EXPECT_EQ(Names(home), std::vector<std::string>{"Kelvash.prf"});
    EXPECT_TRUE(DoesWithin(1588, [] { return WriteProfile(); }));
    EXPECT_NE(test::BytesOf(home / "Kelvash.prf"), old);
}

} // namespace
} // namespace kelvash::core
