// Each operation on a level's pictures is killed at every call that changes the file system: what is listed
// afterwards can be read, and no picture is gone but the one that was to go.
#include <iostream>
#include <set>

#include "companion/resize_shot.h"
#include "companion/screenshots.h"
#include "companion/shot_capture.h"
#include "companion/shot_commands.h"
#include "companion/shot_files.h"
#include "companion/shots_home.h"
#include "foundation/drives.h"
#include "support/traced_run.h"

namespace kelvash::test {
namespace {

const swap::Picture kPicture{2, 1, std::string("\xFF\xFF\xFF\0\0\0", 6)};

struct ShotOperation {
    std::string name;
    std::function<bool()> run;
    std::set<std::string> may_go = {}; // pictures that it replaces or deletes
};

class ShotKillPoints : public ShotsHome {
  protected:
    void SetUp() override {
        if (!CanTrace()) GTEST_SKIP() << "no process can be traced here";
        user.MayAnswer("Replace file", "yes");
        user.MayAnswer("Do you want overwrite old image?", "yes");
        user.MayAnswer("Delete screen-shot", "yes");
        user.MayBeTold("");
    }
    // Three pictures that can be told from each other by their bytes, and one outside.
    void Arrange() {
        static_cast<void>(core::RefreshArchive()); // the last run has saved it
        std::filesystem::remove_all(folder);
        Take("a.bmp", WithLastByte(1), 1000);
        Take("b.bmp", WithLastByte(2), 2000);
        Take("c.bmp", WithLastByte(3), 3000);
        MakeFile(drive / "b.bmp", WithLastByte(4));
    }
    static std::string WithLastByte(char byte) {
        std::string bytes = kRedBlue;
        bytes.back() = byte;
        return bytes;
    }
    std::vector<ShotOperation> Operations() {
        const auto answering = [this](const std::string& title, const std::string& answer) {
            user.WillAnswer(title, answer);
        };
        const auto renamed = [=](const std::string& name, const std::string& to) {
            answering("Rename screen-shot", to);
            std::string path = PathOf(name);
            return companion::RenameShot(1, path);
        };
        return {{"add over another",
                 [=] {
                     answering("Select an image to add", "C:\\b.bmp");
                     std::string added;
                     return companion::AddScreenshot(1, added);
                 },
                 {"b.bmp"}},
                {"delete", [] { return companion::DeleteShot(1, PathOf("a.bmp")); }, {"a.bmp"}},
                {"rename", [=] { return renamed("a.bmp", "new"); }},
                {"rename by case", [=] { return renamed("a.bmp", "A"); }},
                {"rename over another", [=] { return renamed("a.bmp", "b"); }, {"b.bmp"}},
                {"save as over another",
                 [=] {
                     answering("Save current screenshot", PathOf("b.bmp"));
                     return companion::SaveShotAs(1, PathOf("a.bmp"));
                 },
                 {"b.bmp"}},
                {"save as a JPEG",
                 [=] {
                     answering("Save current screenshot", PathOf("d.jpg"));
                     return companion::SaveShotAs(1, PathOf("a.bmp"));
                 }},
                {"resize over itself",
                 [=] {
                     answering("Save resized scree-shot", PathOf("a.bmp"));
                     return companion::SaveResized(1, PathOf("a.bmp"), kPicture, 90,
                                                   [](const std::string&) {});
                 },
                 {"a.bmp"}},
                {"capture",
                 [] { return companion::CaptureShot(1, kPicture).End == companion::CaptureEnd::Saved; }}};
    }
    void ExpectAll(const std::set<std::string>& may_go) const {
        std::multiset<std::string> found;
        for (const std::string& path : companion::Screenshots(core::PlaceOf(1))) {
            EXPECT_TRUE(companion::ReadShot(path)) << path;
            found.insert(BytesOf(NativePath(path)));
        }
        const std::vector<std::string> names = {"a.bmp", "b.bmp", "c.bmp"};
        for (std::size_t i = 0; i < names.size(); ++i)
            if (may_go.count(names[i]) == 0) {
                EXPECT_GE(found.count(WithLastByte(static_cast<char>(i + 1))), 1U) << names[i] << " is gone";
            }
    }
};

TEST_F(ShotKillPoints, LoseNoPicture) {
    for (const ShotOperation& operation : Operations()) {
        const auto body = [&] { return operation.run() ? 0 : 1; };
        Arrange();
        const TracedRun whole = RunTraced(body, {});
        ASSERT_EQ(whole.exit_code, 0) << operation.name;
        ASSERT_GT(whole.calls, 0) << operation.name;
        for (int at = 1; at <= whole.calls && !HasFailure(); ++at) {
            SCOPED_TRACE(operation.name + " killed at call " + std::to_string(at) + " of " +
                         std::to_string(whole.calls));
            Arrange();
            ASSERT_TRUE(RunTraced(body, {Fault::Kill, at}).killed);
            ExpectAll(operation.may_go);
            EXPECT_EQ(companion::CaptureShot(1, kPicture).End, companion::CaptureEnd::Saved);
            ExpectAll(operation.may_go);
            EXPECT_FALSE(Exists(folder / "Kelvash.tmp")) << "what was left is in the way";
        }
        std::cout << "  " << whole.calls << " kill points in " << operation.name << "\n";
    }
}

TEST_F(ShotKillPoints, AFailingCallLosesNoneEither) {
    for (const ShotOperation& operation : Operations()) {
        const auto body = [&] { return operation.run() ? 0 : 1; };
        Arrange();
        const int calls = RunTraced(body, {}).calls;
        int failed = 0;
        for (int at = 1; at <= calls && !HasFailure(); ++at) {
            SCOPED_TRACE(operation.name + " without room from call " + std::to_string(at) + " on");
            Arrange();
            failed += RunTraced(body, {Fault::Fail, at, ENOSPC, true}).exit_code == 0 ? 0 : 1;
            ExpectAll(operation.may_go);
        }
        EXPECT_GT(failed, 0) << operation.name;
    }
}

} // namespace
} // namespace kelvash::test
