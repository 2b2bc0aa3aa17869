// Exports that tell a reason of the system, and of names that no other platform has.
#include <gmock/gmock.h>

#include "intake/export_level_home.h"

namespace kelvash::intake {
namespace {

using testing::Contains;
using testing::UnorderedElementsAre;

TEST_F(Export, FailuresAreToldAndLeaveNothing) {
    core::level_list = {};
    EXPECT_FALSE(ExportLevel());
    EXPECT_EQ(user.Told().back(), "exclamation: No selected level");
    AddLevel(1, "On CD", {});
    core::archive.Table.Edit(1)->CdNumber = 1;
    AddLevel(2, "Damaged", {{"maze.tr4.zl", "no stream"}});
    AddLevel(3, "Good", kMaze);
    Select(1);
    EXPECT_FALSE(ExportLevel());
    EXPECT_EQ(user.Told().back(), "critical: Cd not availableC:\\Levels\\LEVEL_0001\\files");
    Select(2);
    EXPECT_FALSE(ExportLevel());
    EXPECT_EQ(user.Told().back(), "critical: Error decompressing level files");
    EXPECT_TRUE(NothingTemporary() || !test::Exists(home / "out_files"));
    Select(3);
    EXPECT_FALSE(ExportTo("C:\\nowhere\\out.zip"));
    EXPECT_EQ(user.Told().back(),
              "critical: Error zipping files:\r\nFailure to create temporary file: "
              "No such file or directory");
    EXPECT_TRUE(!test::Exists(home / "out_files"));
}

TEST_F(Export, HoldsPlainNamesOnlyAndNoForeignPackageFile) {
    Files files = kMaze;
    files["kelvash.cfg"] = std::string(20000, 'z');
    AddLevel(1, "Maze\r\n\x1B[2JX", files);
    Select(1);
    for (const char* name : {"aux.wav", "trailing.", "li\nne.wav"})
        test::MakeFile(LevelPath(1) / "FILES" / name, "x");
    ASSERT_TRUE(ExportTo("C:\\out.zip"));
    EXPECT_THAT(NamesOf("C:\\out.zip"),
                UnorderedElementsAre("maze.tr4", "script.dat", "english.dat", "kelvash.cfg"));
    EXPECT_THAT(user.Told(), Contains(testing::HasSubstr("following files are not in the zip file")));
    const std::string config = ConfigOf("C:\\out.zip");
    EXPECT_LT(config.size(), 10000U);
    EXPECT_EQ(config.find("zzzz"), std::string::npos);
}

} // namespace
} // namespace kelvash::intake
