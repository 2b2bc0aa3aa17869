// A disk that is full, folders that can't be written, and drives that are gone, while the real program works.
#include <sys/statvfs.h>

#include <cerrno>
#include <fstream>

#include "breaking/disk_home.h"
#include "breaking/small_disk.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class FailingCallsOfPrograms : public DiskHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
        DiskHome::SetUp();
    }
    void FailEverywhere(const DiskCommand& command, int error, bool lasting);
    void FailAt(const DiskCommand& command, const FaultPlan& plan, const FileMap& outcome);
};

// The names of the files that differ, a line each.
std::string DifferencesOf(const FileMap& expected, const FileMap& files) {
    std::string names;
    for (const auto& [name, bytes] : expected)
        if (const auto found = files.find(name); found == files.end() || found->second != bytes)
            names += (found == files.end() ? "missing: " : "changed: ") + name + "\n";
    for (const auto& [name, bytes] : files)
        if (expected.count(name) == 0) names += "new: " + name + "\n";
    return names;
}

void FailingCallsOfPrograms::FailAt(const DiskCommand& command, const FaultPlan& plan,
                                    const FileMap& outcome) {
    Renew();
    TracedRun run;
    const Told told = RunWith(command.words, plan, run, Answers::Yes);
    WaitForGame();
    figures.Count("failed calls");
    ExpectSane(told);
    if (told.status() == 0 && !told.Warned()) {
        // What a passing want of room has kept from its place waits in the record for the next start.
        Succeed({"level", "set", "4", "--note", "a new note"}, Answers::None);
        EXPECT_EQ(DifferencesOf(outcome, Outcome()), "") << "said to be done, but something is missing\n"
                                                         << told.Story();
    }
    if (command.name != "recover") ExpectRecovery();
}

void FailingCallsOfPrograms::FailEverywhere(const DiskCommand& command, int error, bool lasting) {
    constexpr int kPoints = 2; // of the short form
    Renew();
    TracedRun whole;
    const Told told = RunWith(command.words, {}, whole, Answers::Yes);
    WaitForGame();
    ASSERT_EQ(told.status(), 0) << told.Story();
    ASSERT_GT(whole.calls, 0);
    const FileMap outcome = Outcome();
    const int step = LongForm() ? 1 : std::max(1, whole.calls / kPoints);
    for (int at = 1 + (LongForm() ? 0 : error % step); at <= whole.calls; at += step) {
        SCOPED_TRACE(command.name + ": call " + std::to_string(at) + " of " + std::to_string(whole.calls) +
                     (lasting ? " and all later ones fail with " : " fails with ") + std::to_string(error));
        FailAt(command, {Fault::Fail, at, error, lasting}, outcome);
    }
}

TEST_F(FailingCallsOfPrograms, OnAFullDiskLoseNothing) {
    for (const DiskCommand& command : Sampled(Commands(), 2, 0))
        FailEverywhere(command, ENOSPC, true);
    EXPECT_GT(figures.Of("failed calls"), 10);
}

TEST_F(FailingCallsOfPrograms, OnceForWantOfRoomLoseNothing) {
    for (const DiskCommand& command : Sampled(Commands(), 2, 1))
        FailEverywhere(command, ENOSPC, false);
    EXPECT_GT(figures.Of("failed calls"), 10);
}

TEST_F(FailingCallsOfPrograms, ForWantOfRightsLoseNothing) {
    for (const DiskCommand& command : Sampled(Commands(), 2, 0))
        FailEverywhere(command, EACCES, false);
    EXPECT_GT(figures.Of("failed calls"), 10);
}

class FullDisks : public DiskHome {
  protected:
    // Leaves so many bytes free on the disk under the sandbox.
    int Fill(const SmallDisk& disk, std::uint64_t left) const;
    void RunOnFull(const DiskCommand& command, std::uint64_t left);
};

int FullDisks::Fill(const SmallDisk& disk, std::uint64_t left) const {
    return disk.Inside([&] {
        struct statvfs room {};
        const fs::path box = ground / "box";
        if (statvfs(box.c_str(), &room) != 0) return 1;
        std::uint64_t free = std::uint64_t{room.f_bavail} * room.f_bsize;
        std::ofstream ballast(box / "ballast", std::ios::binary);
        const std::string page(room.f_bsize, 'b');
        for (; free > left && ballast; free -= page.size())
            ballast << page << std::flush;
        return 0;
    });
}

void FullDisks::RunOnFull(const DiskCommand& command, std::uint64_t left) {
    Renew();
    const SmallDisk disk(ground / "box", std::uint64_t{48} << 20);
    ASSERT_TRUE(disk.Stands());
    ASSERT_EQ(Fill(disk, left), 0);
    const auto run_inside = [&](const Words& words) {
        ProgramStart start = Command(words, Answers::Yes);
        start.prepare = [&disk] { return disk.Enter(); };
        figures.Count("runs");
        const ProgramEnd end = RunProgram(start);
        return Tell(start, end);
    };
    const Told told = run_inside(command.words);
    WaitForGame();
    ExpectSane(told);
    figures.Count("full disks");
    if (told.status() != 0) figures.Count("refusals");
    const fs::path after = place / "after";
    fs::remove_all(after);
    ASSERT_EQ(disk.Inside([&] { return fs::remove(ground / "box/ballast") ? 0 : 1; }), 0);
    const Told restored = run_inside({"restore", "fast"});
    EXPECT_EQ(restored.status(), 0) << restored.Story();
    ASSERT_EQ(disk.Inside([&] {
        std::error_code error;
        fs::copy(drive, after, fs::copy_options::recursive, error);
        return error ? 1 : 0;
    }),
              0);
    ExpectWhole(ledger->MovedTo(after), after);
}

TEST_F(FullDisks, LoseNothing) {
    fs::create_directories(place / "probe");
    if (!SmallDisk(place / "probe", 4096).Stands())
        GTEST_SKIP() << "no file system can be mounted here by a user";
    std::vector<std::uint64_t> rooms = {0, 40000, 400000};
    if (LongForm()) rooms = {0, 4096, 8192, 20000, 40000, 80000, 160000, 400000, 800000, 1600000};
    std::size_t number = 0;
    for (const DiskCommand& command : Commands())
        for (const std::uint64_t left : rooms) {
            if (!LongForm() && number++ % 4 != 0) continue; // each command, with one room or two
            SCOPED_TRACE(command.name + " with " + std::to_string(left) + " bytes left");
            RunOnFull(command, left);
        }
    EXPECT_GT(figures.Of("refusals"), LongForm() ? 5 : 1);
}

class ReadOnlyFolders : public DiskHome {
  protected:
    void Forbid(const DiskCommand& command, const fs::path& folder);
};

void ReadOnlyFolders::Forbid(const DiskCommand& command, const fs::path& folder) {
    Renew();
    SCOPED_TRACE(command.name + " while nobody may write " + folder.lexically_relative(drive).string());
    fs::permissions(folder, fs::perms::owner_read | fs::perms::owner_exec);
    ProgramStart start = Command(command.words, Answers::Yes);
    start.prepare = [] { return ObeyPermissions(); };
    const ProgramEnd end = RunProgram(start);
    std::error_code gone; // a move may take an empty folder with it
    fs::permissions(folder, fs::perms::owner_all, gone);
    const Told told = Tell(start, end);
    WaitForGame();
    ExpectSane(told);
    figures.Count("folders");
    if (told.status() != 0) figures.Count("refusals");
    if (command.name != "recover") ExpectRecovery();
}

TEST_F(ReadOnlyFolders, LoseNothing) {
    constexpr int kEach = 8;
    int number = 0;
    for (const fs::path& folder :
         {trle, trle / "data", trle / "audio", home, home / "backup_trle",
          home / "LEVEL_0000/BACKUP_SAVEGAMES", levels, Level(1), Level(1) / "BACKUP_SAVEGAMES",
          Level(2) / "FILES", Level(2) / "BACKUP_SAVEGAMES"})
        for (const DiskCommand& command : Commands())
            if (LongForm() || number++ % kEach == 0) Forbid(command, folder);
    EXPECT_GT(figures.Of("refusals"), LongForm() ? 5 : 1);
}

class VanishedDrives : public DiskHome {
  protected:
    void TakeAway(const DiskCommand& command, const fs::path& folder, bool made_anew);
};

// `made_anew`: the program may make such a folder when it finds none.
void VanishedDrives::TakeAway(const DiskCommand& command, const fs::path& folder, bool made_anew) {
    Renew();
    SCOPED_TRACE(command.name + " while " + folder.lexically_relative(drive).string() + " is gone");
    const fs::path aside = ground / "gone";
    const std::string owner = ledger->OwnerOf(folder);
    fs::rename(folder, aside);
    const Told told = Run(command.words);
    WaitForGame();
    ExpectSane(told);
    figures.Count("vanished folders");
    if (told.status() != 0) figures.Count("refusals");
    if (!made_anew) {
        EXPECT_FALSE(Exists(folder)) << "made anew\n" << told.Story();
    }
    if (Exists(folder)) fs::rename(folder, drive / "made anew");
    ledger->Expect(drive / "made anew", owner);
    fs::create_directories(folder.parent_path()); // a move may have taken it along
    fs::rename(aside, folder);
    if (command.name != "recover") ExpectRecovery();
}

TEST_F(VanishedDrives, LoseNothing) {
    constexpr int kEach = 5;
    int number = 0;
    const std::vector<std::pair<fs::path, bool>> folders = {{trle, false},
                                                            {levels, false},
                                                            {home / "backup_trle", true},
                                                            {home / "LEVEL_0000", true},
                                                            {Level(1), true},
                                                            {Level(2) / "FILES", true},
                                                            {zips, false}};
    for (const auto& [folder, made_anew] : folders)
        for (const DiskCommand& command : Commands())
            if (LongForm() || number++ % kEach == 0) TakeAway(command, folder, made_anew);
    EXPECT_GT(figures.Of("refusals"), LongForm() ? 5 : 1);
}

} // namespace
} // namespace kelvash::test
