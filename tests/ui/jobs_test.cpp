// What comes while a job runs: nothing begins within it.
#include <gmock/gmock.h>

#include <QDropEvent>
#include <QMimeData>
#include <QTimer>

#include "companion/game.h"
#include "support/pump_clock.h"
#include "ui/Dialog_NewLevel.h"
#include "ui/job_door.h"
#include "ui/level_cards.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;

class WindowAtWork : public PrincipaleHome {
  protected:
    WindowAtWork() {
        EXPECT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
        core::ArchiveContents other = core::archive;
        while (other.Table.Size() > 2)
            other.Table.Remove(other.Table.Size() - 1);
        EXPECT_TRUE(core::WriteArchiveFile("C:\\Kelvash\\other.kva", other));
        files_.setUrls({QUrl::fromLocalFile(QString::fromStdString((drive / "a.tr4").string()))});
        MakeFile(drive / "a.tr4", "a");
    }
    // Computes the Archive's size, and does something in the middle of it, while it pumps.
    void DuringAJob(const std::function<void()>& act) {
        bool acted = false;
        robot.WillPress("Primary (only read) folder size", "OK");
        QTimer::singleShot(0, &form, [&] {
            EXPECT_GT(JobDepth(), 0);
            EXPECT_FALSE(forms.JobWaits());
            acted = true;
            act();
        });
        Choose(Entry::mnu_CalcolaSize);
        EXPECT_TRUE(acted);
        EXPECT_EQ(JobDepth(), 0);
    }
    // True if the window takes it.
    bool Drop() {
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &files_, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&form, &enter);
        QDropEvent drop({10, 10}, Qt::CopyAction, &files_, Qt::LeftButton, Qt::NoModifier);
        drop.ignore();
        QCoreApplication::sendEvent(&form, &drop);
        return enter.isAccepted() && drop.isAccepted();
    }
    static std::string Other() { return "C:\\Kelvash\\other.kva"; }

  private:
    QMimeData files_;
};

TEST_F(WindowAtWork, BeginsNoCommandOfTheMenu) {
    DuringAJob([this] {
        form.Command(Entry::mnu_Settings)->trigger(); // a window would fail the test
        form.Command(Entry::mnu_AddLevel)->trigger();
    });
    robot.WillPress("Dialog_Settings", "Pul_Cancel");
    Choose(Entry::mnu_Settings);
}

TEST_F(WindowAtWork, BeginsNothingByItsButtons) {
    DuringAJob([this] {
        form.Pul_Play->click();
        form.Pul_MoreInfo->click();
    });
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\test.kva");
}

TEST_F(WindowAtWork, RefusesADrop) {
    DuringAJob([this] { EXPECT_FALSE(Drop()); });
    robot.WillPress("Dialog_NewLevel", "Pul_Cancel");
    EXPECT_TRUE(Drop());
    WaitUntil([this] { return robot.HasSeen("Dialog_NewLevel") && JobDepth() == 0; });
}

TEST_F(WindowAtWork, ADropFromBeforeWaits) {
    EXPECT_TRUE(Drop()); // it is taken at the end of this event, which is in the middle of the job
    DuringAJob([this] { EXPECT_FALSE(robot.HasSeen("Dialog_NewLevel")); });
    EXPECT_FALSE(robot.HasSeen("Dialog_NewLevel"));
    robot.WillPress("Dialog_NewLevel", "Pul_Cancel");
    WaitUntil([this] { return robot.HasSeen("Dialog_NewLevel") && JobDepth() == 0; });
}

TEST_F(WindowAtWork, ATickOfTheWatcherWaits) {
    companion::game.GameProcess.id = 2'000'000'000; // of a game that has ended
    companion::game.WatcherActive = true;
    form.Timer1->start(0);
    DuringAJob([this] {
        QTest::qWait(20);
        EXPECT_FALSE(companion::game.WatcherActive) << "the end is seen, the lists wait";
        EXPECT_TRUE(form.Timer1->isActive());
    });
    EXPECT_TRUE(form.Timer1->isActive());
    WaitUntil([this] { return !form.Timer1->isActive(); });
}

TEST_F(WindowAtWork, AWishOfAnotherStartWaits) {
    DuringAJob([this] {
        form.TakeWish("C:\\Kelvash\\nothing.kva");
        form.TakeWish(Other()); // of two the last counts
        QTest::qWait(100);
        EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\test.kva");
    });
    EXPECT_EQ(core::profile.LastArchive, "C:\\Kelvash\\test.kva");
    WaitUntil([] { return core::profile.LastArchive == "C:\\Kelvash\\other.kva"; });
}

TEST_F(WindowAtWork, ReadsTheLevelsPicturesBehindTheJob) {
    ui::LevelCards cards(&form);
    int loaded = 0;
    QObject::connect(&cards, &ui::LevelCards::Loaded, &form, [&loaded] { ++loaded; });
    {
        const JobScope job;
        cards.Of(1);
        QTest::qWait(150);
        EXPECT_EQ(loaded, 0);
    }
    WaitUntil([&] { return loaded == 1; });
}

TEST_F(WindowAtWork, StaysOpen) {
    DuringAJob([this] {
        EXPECT_FALSE(form.close());
        form.Command(Entry::Mnu_Exit)->trigger();
    });
    EXPECT_TRUE(form.isVisible());
    form.Command(Entry::Mnu_Exit)->trigger();
    EXPECT_FALSE(form.isVisible());
}

TEST_F(WindowAtWork, IsLookedAfterEvery50MillisecondsOfAJobsOwnTime) {
    DuringAJob([] {});
    for (int i = 0; i < 500; ++i)
        MakeFile(LevelPath(1) / "FILES" / std::to_string(i), "");
    int painted = 0;
    QTimer paints;
    QObject::connect(&paints, &QTimer::timeout, [&painted] { ++painted; });
    paints.start(0);
    SetPumpStep(std::chrono::milliseconds(10)); // each look at the clock, so each file
    DuringAJob([] {});
    EXPECT_GE(painted, 500 / 3) << "each third file";
}

// --- doors ---

TEST_F(WindowAtWork, AFormsDoorIsOpenInTheJobThatHasOpenedTheForm) {
    std::vector<std::string> done;
    const JobScope command;
    QDialog dialog;
    ui::JobDoor door(&dialog);
    EXPECT_TRUE(door.IsFree());
    EXPECT_TRUE(door.Try([&] {
        done.push_back("outer");
        EXPECT_FALSE(door.IsFree());
        EXPECT_FALSE(door.Try([&] { done.push_back("inner"); }));
        door.WhenFree([&] { done.push_back("later"); });
        forms.PumpEvents();
        EXPECT_THAT(done, ElementsAre("outer"));
    }));
    door.WhenFree([&] { done.push_back("last"); });
    WaitUntil([&] { return done.size() == 3; });
    EXPECT_THAT(done, ElementsAre("outer", "later", "last"));
}

TEST_F(WindowAtWork, WhatWaitsLetsABoxEndFirst) {
    int done = 0;
    ui::JobDoor door(&form);
    robot.Will("Well?", [&](QWidget* window) {
        door.WhenFree([&] { ++done; });
        QTest::qWait(120);
        EXPECT_EQ(done, 0);
        Press(window, "OK");
    });
    forms.Message(MessageStyle::Plain, MessageText("Well?"));
    WaitUntil([&] { return done == 1; });
}

TEST_F(WindowAtWork, WhatWaitsLetsTheWindowBeReady) {
    int done = 0;
    bool ready = false;
    ui::JobDoor door(&form, [&] { return ready; });
    door.WhenFree([&] { ++done; });
    QTest::qWait(120);
    EXPECT_EQ(done, 0);
    ready = true;
    WaitUntil([&] { return done == 1; });
}

} // namespace
} // namespace kelvash::test
