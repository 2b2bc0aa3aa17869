#include "program/end.h"

#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/profile.h"
#include "core/session.h"
#include "foundation/messages.h"
#include "program/messages.h"
#include "support/test_home.h"

namespace kelvash::program {
namespace {

using namespace std::string_literals;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class End : public test::TestHome {
  protected:
    fs::path file = home / "Kelvash.prf";
};

TEST_F(End, AsksToSaveTheArchiveFirst) {
    core::profile.AutoSave = false;
    core::profile.LastArchive = "C:\\Kelvash\\a.kva";
    core::archive.ArchiveChanged = true;
    user.WillAnswer("Current archive 'a.kva' has been changed.\r\nDo you want save it?", "yes");
    EXPECT_TRUE(SaveProfile());
    EXPECT_EQ(fs::file_size(home / "a.kva"), 546U);
    EXPECT_EQ(fs::file_size(file), 1588U);
}

TEST_F(End, PutsTheWindowAnimationBack) {
    core::session.Started = true;
    core::session.WindowAnimation = true;
    desktop.animation = false;
    EXPECT_TRUE(SaveProfile());
    EXPECT_TRUE(desktop.animation);
}

TEST_F(End, PutsTheWindowAnimationBackThoughTheProfileCannotBeSaved) {
    core::session.Started = true;
    core::session.WindowAnimation = true;
    desktop.animation = false;
    fs::create_directory(file);
    EXPECT_FALSE(SaveProfile());
    EXPECT_TRUE(desktop.animation);
}

TEST_F(End, LeavesTheWindowAnimationAloneWithoutAStart) {
    EXPECT_TRUE(SaveProfile());
    EXPECT_TRUE(desktop.animation);
}

// --- the end of a window ---

TEST_F(End, SavesTheProfileBeforeAWindowCloses) {
    core::profile.SavegamesToKeep = 12;
    EXPECT_TRUE(SaveToClose());
    EXPECT_EQ(test::BytesOf(file).substr(1298, 4), "\x0C\0\0\0"s);
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(End, KeepsTheWindowWhenTheArchiveCannotBeSaved) {
    core::session.Started = true;
    core::session.WindowAnimation = true;
    desktop.animation = false;
    core::profile.LastArchive = "C:\\Kelvash\\a.kva";
    core::archive.ArchiveChanged = true;
    fs::create_directory(home / "a.kva.new");
    const std::string question =
        "The Archive 'a.kva' couldn't be saved.\r\nClose all the same and lose the changes?";
    user.WillAnswer(question, "no");
    EXPECT_FALSE(SaveToClose());
    EXPECT_TRUE(core::archive.ArchiveChanged);
    EXPECT_FALSE(desktop.animation) << "the window stays";
    user.WillAnswer(question, "yes");
    EXPECT_TRUE(SaveToClose());
    EXPECT_FALSE(core::archive.ArchiveChanged);
    EXPECT_TRUE(desktop.animation);
    EXPECT_EQ(fs::file_size(file), 1588U) << "the settings are saved all the same";
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error while saving archive: C:\\Kelvash\\a.kva",
                                         "critical: Error while saving archive: C:\\Kelvash\\a.kva"));
}

TEST_F(End, AProfileThatCannotBeSavedKeepsTheWindow) {
    fs::create_directory(home / "Kelvash.prf.new");
    const std::string question =
        "The settings couldn't be saved in C:\\Kelvash\\Kelvash.prf.\r\n"
        "Close all the same and lose the changes?";
    user.WillAnswer(question, "no");
    EXPECT_FALSE(SaveToClose());
    user.WillAnswer(question, "yes");
    EXPECT_TRUE(SaveToClose());
    EXPECT_FALSE(test::Exists(file));
}

TEST_F(End, ChangesAreLostOnlyByAYes) {
    for (const MessageId id : {msg::kCloseUnsavedArchive, msg::kCloseUnsavedProfile})
        EXPECT_EQ(HarmlessAnswer(Buttons::YesNo, LoadMessage(id, {"", ""})), Answer::No);
}

} // namespace
} // namespace kelvash::program
