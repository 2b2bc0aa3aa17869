// The window, killed by the system at the moment it is up.
#include "breaking/breaking_home.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class WindowKill : public BreakingHome {
  protected:
    void KillWhenUp(const Hand& hand) {
        RunningProgram shown(Window(hand));
        ASSERT_TRUE(IsReady()) << "no window";
        shown.Kill();
        EXPECT_EQ(shown.Wait().signal, SIGKILL);
        figures.Count("runs");
        figures.Count("kills");
    }
};

// The first start that is ended by a kill of the window goes on without a question, in both programs.
TEST_F(WindowKill, AfterTheFirstStartKeepsWhatWasChosen) {
    for (const char* name : {"Kelvash.prf", "LevelArchive.kva", "current_level.txt"})
        fs::remove(home / name);
    for (const char* name : {"backup_trle", "LEVEL_0000"})
        fs::remove_all(home / name);
    const std::string folder = Dos(trle);
    MakeFile(home / "first_start.prf",
             std::string("\2\0\0\0", 4) + folder + std::string(256 - folder.size(), ' '));
    KillWhenUp({"first start", "", "Dialog_NewArc=Pul_New"});
    ASSERT_FALSE(HasFailure());
    EXPECT_FALSE(Exists(home / "first_start.prf"));
    const Told status = Run({"status"});
    EXPECT_EQ(status.status(), 0) << status.Story();
    EXPECT_EQ(status.result.value("trle", ""), folder) << status.Story();
    const Told list = Run({"levels"});
    EXPECT_EQ(list.status(), 0) << list.Story();
    EXPECT_EQ(list.result.value("levels", Json::array()).size(), 1U) << list.Story();
    KillWhenUp({"later start", ""});
    EXPECT_EQ(figures.Of("kills"), 2);
}

} // namespace
} // namespace kelvash::test
