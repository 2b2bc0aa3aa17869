// The program is killed at every call that changes the file system while a level is added, removed, or the
// Archive is moved. Then it is started again: the Archive must load, and no other level may have changed.
#include <gtest/gtest.h>

#include <iostream>

#include "core/archive.h"
#include "core/kept_folders.h"
#include "core/level_list.h"
#include "core/maintenance.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "intake/new_level.h"
#include "program/remove_level.h"
#include "support/fault_home.h"
#include "support/zip_bytes.h"

namespace kelvash::test {
namespace {

const char* const kZip = "C:\\in\\New.zip";

class KillPointsOfLevels : public FaultHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
        user.MayBeTold("belongs to no level of this archive");
    }
    void PutZip() {
        MakeFile(world.drive / "in/New.zip",
                 MakeZipBytes({MakeEntry("new.tr4", "new level"), MakeEntry("script.dat", "new script"),
                               MakeEntry("english.dat", "new words"), MakeEntry("savegame.0", "new save"),
                               MakeEntry("shot.jpg", "new shot")}));
    }
    FileMap LevelTree(std::int32_t code) const { return TreeOf(NativePath(core::LevelFolder(code, false))); }
    std::map<std::int32_t, FileMap> Trees() const {
        std::map<std::int32_t, FileMap> trees;
        for (const std::int32_t code : {1, 2, 3, 4})
            trees[code] = LevelTree(code);
        return trees;
    }
    void KillEverywhere(const Operation& operation, const std::function<void()>& check) {
        const int points = CountCalls(operation);
        ASSERT_GT(points, 0);
        for (int at = 1; at <= points && !HasFailure(); ++at) {
            SCOPED_TRACE(operation.name + " killed at call " + std::to_string(at) + " of " +
                         std::to_string(points));
            ASSERT_TRUE(RunWith(operation, {Fault::Kill, at}).killed);
            StartProgram();
            check();
        }
        std::cout << "  " << points << " kill points in " << operation.name << "\n";
    }
};

void AnswerInChild(ScriptedUser& user, std::initializer_list<std::pair<const char*, const char*>> answers) {
    for (const auto& [question, answer] : answers)
        user.WillAnswer(question, answer);
}

TEST_F(KillPointsOfLevels, OfAddingTouchNoOtherLevelAndTheNextAddingIsWhole) {
    const Operation operation{"add", 1, Backup::Full, [this] {
                                  PutZip();
                                  intake::AddLevels({kZip});
                                  return core::archive.Table.Size() == 6 ? 0 : 1;
                              }};
    Prepare(operation);
    StartProgram();
    const std::map<std::int32_t, FileMap> before = Trees();
    KillEverywhere(operation, [&] {
        EXPECT_EQ(Trees(), before);
        const std::int32_t count = core::archive.Table.Size();
        EXPECT_TRUE(count == 5 || count == 6) << count;
        core::profile.CheckEqualLevels = false;
        PutZip();
        intake::AddLevels({kZip});
        ASSERT_EQ(core::archive.Table.Size(), count + 1);
        for (std::int32_t code = 5; code <= count; ++code) {
            const FileMap tree = LevelTree(code);
            EXPECT_EQ(tree.size(), 6U); // three files, save, shot, tr4.inf
            EXPECT_EQ(tree.at("files/new.tr4"), "new level");
            EXPECT_EQ(tree.at("backup_savegames/savegame.0"), "new save");
        }
        user.Forget();
    });
}

TEST_F(KillPointsOfLevels, OfRemovingTouchNoOtherLevel) {
    const Operation operation{"remove", 2, Backup::Full, [this] {
                                  AnswerInChild(user, {{"Are you sure to want remove level", "yes"},
                                                       {"Do you want remove all sub-folders", "yes"}});
                                  core::RefreshLevelList();
                                  core::SelectLevel(2);
                                  return program::RemoveLevel() ? 0 : 1;
                              }};
    Prepare(operation);
    StartProgram();
    std::map<std::int32_t, FileMap> before = Trees();
    before.erase(2);
    KillEverywhere(operation, [&] {
        std::map<std::int32_t, FileMap> after = Trees();
        after.erase(2);
        EXPECT_EQ(after, before);
        const bool listed = core::LevelIndex(2) >= 0;
        EXPECT_EQ(core::archive.Table.Size(), listed ? 5 : 4);
        if (!listed) return;
        // A level that is still in the Archive has all its files.
        EXPECT_EQ(LevelTree(2).count("files/coast.tr4"), 1U);
    });
}

TEST_F(KillPointsOfLevels, OfMovingLeaveEveryLevelWholeWhereTheArchiveSays) {
    const Operation operation{"move", 0, Backup::Full, [this] {
                                  std::filesystem::create_directories(world.drive / "new");
                                  AnswerInChild(user, {{"Select target folder", "C:\\new"}});
                                  return core::MoveArchive() ? 0 : 1;
                              }};
    Prepare(operation);
    StartProgram();
    const std::map<std::int32_t, FileMap> before = Trees();
    user.MayBeTold(
        "The last move of the Archive was cut short when its levels were already in the new folder");
    KillEverywhere(operation, [&] {
        EXPECT_EQ(Trees(), before);
        if (core::archive.Header.SecondaryFolder == "C:\\new") return;
        // The same move again takes or replaces what the killed one has left.
        EXPECT_EQ(operation.run(), 0);
        EXPECT_EQ(Trees(), before);
        EXPECT_EQ(core::archive.Header.SecondaryFolder, "C:\\new");
        EXPECT_FALSE(Exists(world.drive / "new/KELVASH_MOVE"));
        EXPECT_FALSE(Exists(world.drive / "new/KEPT"));
        for (const std::int32_t code : {1, 2, 3, 4})
            EXPECT_FALSE(Exists(world.LevelPath(code)));
        user.Forget();
    });
}

// A folder that no record names is in its place, in KEPT, or a level; nowhere else, and never gone.
class KillPointsOfKeptFolders : public KillPointsOfLevels {
  protected:
    void Begin(const Operation& operation, const std::filesystem::path& folder) {
        Prepare(operation);
        MakeFile(folder / "FILES/lost.tr4", "lost level");
        MakeFile(folder / "SAVEGAMES/savegame.0", "lost save");
        Keep(pristine);
    }
    int Copies() const {
        int found = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(world.levels))
            if (entry.path().filename() == "FILES" && Exists(entry.path() / "lost.tr4") &&
                BytesOf(entry.path() / "lost.tr4") == "lost level" &&
                BytesOf(entry.path().parent_path() / "SAVEGAMES/savegame.0") == "lost save")
                ++found;
        return found;
    }
};

TEST_F(KillPointsOfKeptFolders, OfAddingOverOneLoseNothing) {
    const Operation operation{"add_over", 1, Backup::Full, [this] {
                                  PutZip();
                                  intake::AddLevels({kZip});
                                  return core::archive.Table.Size() == 6 ? 0 : 1;
                              }};
    Begin(operation, world.LevelPath(5));
    KillEverywhere(operation, [&] {
        EXPECT_EQ(Copies(), 1);
        core::profile.CheckEqualLevels = false;
        const std::int32_t count = core::archive.Table.Size();
        operation.run();
        EXPECT_EQ(core::archive.Table.Size(), count + 1);
        EXPECT_EQ(Copies(), 1);
        user.Forget();
    });
}

TEST_F(KillPointsOfKeptFolders, OfTakingOneBackLoseNothing) {
    const Operation operation{"take", 1, Backup::Full, [] { return core::TakeKept("old") == 5 ? 0 : 1; }};
    Begin(operation, world.levels / "KEPT" / "old");
    KillEverywhere(operation, [&] {
        EXPECT_EQ(Copies(), 1);
        if (core::LevelIndex(5) >= 0) {
            EXPECT_TRUE(Exists(world.LevelPath(5) / "FILES/lost.tr4"));
        }
        PutZip();
        core::profile.CheckEqualLevels = false;
        intake::AddLevels({kZip});
        EXPECT_EQ(Copies(), 1);
        user.Forget();
    });
}

} // namespace
} // namespace kelvash::test
