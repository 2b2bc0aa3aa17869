// Properties of a level under faults: whatever happens, the level has its old files or the new ones.
#include <gtest/gtest.h>

#include <cerrno>
#include <iostream>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "intake/new_level.h"
#include "support/child_process.h"
#include "support/fault_home.h"
#include "support/intake_home.h"
#include "support/zip_bytes.h"

namespace kelvash::test {
namespace {

constexpr int kSaved = 0;
constexpr int kNotSaved = 3;

class ChangedLevels : public FaultHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
    }
    FileMap Files(std::int32_t code) const {
        return TreeOf(NativePath(core::FilesFolder(core::LevelFolder(code, false))));
    }
    // The world of an operation, with a zip to add.
    void PrepareWithZip(const Operation& operation) {
        Prepare(operation);
        MakeFile(world.drive / "in/New.zip",
                 MakeZipBytes({MakeEntry("new.tr4", "new level"), MakeEntry("script.dat", "new script"),
                               MakeEntry("english.dat", "new words")}));
        Keep(pristine);
        StartProgram();
    }
    // The dialog over level 2, with all its files replaced by those of the zip.
    void Change(const std::function<void(intake::NewLevel&)>& end) {
        core::RefreshLevelList();
        core::SelectLevel(2);
        const FormScope<intake::NewLevel> form(user.forms, [&](intake::NewLevel& open) {
            intake::RemoveAllFiles(open);
            if (intake::AddSource(open, "C:\\in\\New.zip"))
                end(open);
            else
                intake::CancelLevel(open); // a part of a level isn't worth storing
            return open.State == intake::FormState::Saved;
        });
        intake::ShowProperty();
    }
    int Store(bool compressed) {
        bool saved = false;
        core::archive.Header.CompressFiles = compressed;
        Change([&](intake::NewLevel& open) {
            intake::StoreLevel(open);
            saved = open.State == intake::FormState::Saved;
            if (!saved) intake::CancelLevel(open);
        });
        return saved ? kSaved : kNotSaved;
    }
    // Where compressing fails, the new files are stored as they are.
    const FileMap kPlain = {
        {"english.dat", "new words"}, {"new.tr4", "new level"}, {"script.dat", "new script"}};
    // At each fault the level has its old files or the new ones, and the new ones if it was saved.
    void FailEverywhere(const Operation& operation, const FaultPlan& fault, const FileMap& before,
                        const FileMap& after) {
        const int points = CountCalls(operation);
        ASSERT_GT(points, 10);
        int old_ones = 0;
        for (int at = 1; at <= points && !HasFailure(); ++at) {
            SCOPED_TRACE(operation.name + " at call " + std::to_string(at) + " of " + std::to_string(points));
            FaultPlan plan = fault;
            plan.at = at;
            const TracedRun run = RunWith(operation, plan);
            ASSERT_EQ(run.killed, fault.fault == Fault::Kill);
            StartProgram();
            const FileMap files = Files(2);
            const bool is_new = files == after || files == kPlain;
            EXPECT_TRUE(files == before || is_new)
                << testing::PrintToString(files) << ", exit " << run.exit_code;
            EXPECT_TRUE(run.exit_code != kSaved || is_new || before == after);
            if (files == before) ++old_ones;
            // What is left over disturbs nobody.
            core::RefreshLevelList();
            core::SelectLevel(2);
            user.WillGiveUp<intake::NewLevel>();
            intake::ShowProperty();
            EXPECT_EQ(Files(2), files);
            EXPECT_FALSE(Exists(NativePath(core::LevelFolder(2, false) + "\\FILES_NEW")));
            user.Forget();
        }
        EXPECT_GT(old_ones, 0);
        std::cout << "  " << points << " faults in " << operation.name << "\n";
    }
    void FailEverywhere(bool compressed, const FaultPlan& fault) {
        const Operation operation{compressed ? "compressed" : "plain", 1, Backup::Full,
                                  [this, compressed] { return Store(compressed); }};
        PrepareWithZip(operation);
        const FileMap before = Files(2);
        ASSERT_EQ(Store(compressed), kSaved);
        FailEverywhere(operation, fault, before, Files(2));
    }
};

TEST_F(ChangedLevels, AreOldOrNewAfterAKill) {
    FailEverywhere(false, {Fault::Kill});
}

TEST_F(ChangedLevels, AreOldOrNewAfterAKillWhereFilesAreCompressed) {
    FailEverywhere(true, {Fault::Kill});
}

TEST_F(ChangedLevels, AreOldOrNewWhenTheDiskGetsFull) {
    FailEverywhere(false, {Fault::Fail, 0, ENOSPC, true});
}

TEST_F(ChangedLevels, AreOldOrNewWhenTheDiskGetsFullWhereFilesAreCompressed) {
    FailEverywhere(true, {Fault::Fail, 0, ENOSPC, true});
}

TEST_F(ChangedLevels, ThatAreCancelledAreTheOldOnesAfterAKillToo) {
    const Operation operation{"cancel", 1, Backup::Full, [this] {
                                  Change([](intake::NewLevel& open) { intake::CancelLevel(open); });
                                  return kSaved;
                              }};
    PrepareWithZip(operation);
    const FileMap before = Files(2);
    FailEverywhere(operation, {Fault::Kill}, before, before);
}

class FullDiskOfProperties : public IntakeHome {};

// Told, and no file of the level gone: files that didn't come into the temporary folder aren't taken for
// removed.
TEST_F(FullDiskOfProperties, LosesNoFileOfTheLevel) {
    core::archive.Header.CompressFiles = true;
    core::profile.NoDecompress = false;
    const std::string large(3000, 'x');
    AddLevel(1, "Large", {{"a.tr4", large}, {"script.dat", "s"}, {"english.dat", "e"}, {"z.txt", large}});
    AddLevel(2, "Last", {});
    const ChildResult run = InChild([&] {
        LimitFiles(2000);
        OpenProperties(1);
        return level.State == intake::FormState::Cancelled && user.Told().size() == 2 &&
               user.Told()[0] ==
                   "critical: I can not copy the level files in temp directory: "
                   "C:\\Kelvash\\_temp_Dec" &&
               user.Told()[1] == "critical: Error decompressing files";
    });
    EXPECT_TRUE(run.answer);
    EXPECT_EQ(StoredNames().size(), 4U);
    EXPECT_FALSE(Exists(home / "_temp_Dec"));
    const ChildResult at_ok = InChild([&] {
        OpenProperties(1);
        MakeFile(Work() / "new.txt", "x");
        LimitFiles(2000);
        Store();
        return level.State == intake::FormState::Open;
    });
    EXPECT_TRUE(at_ok.answer);
    EXPECT_EQ(StoredNames(), (std::vector<std::string>{"a.tr4", "english.dat", "script.dat", "z.txt"}));
}

} // namespace
} // namespace kelvash::test
