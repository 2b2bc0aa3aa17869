// The whole road of a new player through the window, and a second start.
#include <gmock/gmock.h>

#include <QApplication>
#include <QLineEdit>
#include <QTest>

#include "core/archive.h"
#include "core/level_list.h"
#include "core/profile.h"
#include "foundation/state.h"
#include "support/built.h"
#include "support/trle_sandbox.h"
#include "support/ui_home.h"
#include "trle_state/trle_state.h"
#include "ui/Dialog_Splash.h"
#include "ui/Principale.h"
#include "ui/first_start.h"
#include "ui/shipped_files.h"
#include "ui/start_screen.h"
#include "ui/window_state.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class FirstRun : public UiHome<TestHome> {
  protected:
    FirstRun() {
        MakeTrle(trle);
        fs::copy_file(test::Built("share/kelvash/standin-game"), trle / "tomb4.exe",
                      fs::copy_options::overwrite_existing);
        fs::create_directories(drive / "Levels");
        SetEnvironment("KELVASH_GAME_MS", "100");
    }
    void WillFindTrle() {
        robot.WillPress("Dialog_TrovaTrle", "Pul_Sfoglia");
        WillChooseFolder("Choose TR Level Editor folder", "C:\\trle");
        robot.WillPress("Dialog_TrovaTrle", "Pul_Ok");
    }
    // A level as an Archive keeps it; adding one through the window is another road.
    void PutLevel() {
        MakeFile(drive / "Levels/LEVEL_0001/FILES/city.tr4", "city");
        core::LevelRecord level;
        level.Code = 1;
        level.Name = "City";
        core::archive.Table.Append(level);
        core::ArchiveTouched();
        core::RefreshLevelList();
    }
    // The program's state as in a process of its own.
    void EndProgram() {
        ResetProgramState();
        MapDrives();
    }

    fs::path trle = drive / "trle";
};

TEST_F(FirstRun, GoesFromNothingToAPlayedLevelAndBack) {
    {
        ui::Principale form(forms);
        WillFindTrle();
        robot.WillPress(
            "Current installed configuration of Tomb Raider Level Editor in C:\\trle is original?", "Yes");
        robot.WillPress("Do you want a full backup? (About 240 MB)", "Yes");
        robot.WillPress("Dialog_NewArc", "Pul_New");
        WillChooseFolder("Select main folder for new archive", "C:\\Levels");
        ASSERT_TRUE(form.Load(""));
        form.show();
        EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 1 (LevelArchive.kva levels)");
        EXPECT_EQ(BytesOf(home / "backup_trle/script.dat"), "original script.dat");
        EXPECT_TRUE(core::profile.FullBackup);
        EXPECT_TRUE(fs::is_directory(home / "LEVEL_0000/BACKUP_SAVEGAMES"));

        PutLevel();
        Press(&form, "Pul_Dopo");
        form.Timer1->setInterval(20);
        Press(&form, "Pul_Play");
        WaitUntil([&] { return form.centralWidget()->isEnabled(); });
        EXPECT_EQ(trle_state::CurrentLevelCode(), 1);
        EXPECT_EQ(form.Combo_Livelli->currentIndex().data().toString().toStdString(), "City (*)");

        robot.WillPress("Dialog_Restore", "Pul_Fast");
        robot.WillPress("Set in Tomb Raider Level Editor, original configuration", "OK");
        form.Command(ui::MenuEntry::mnu_SetOriginale)->trigger();
        EXPECT_EQ(trle_state::CurrentLevelCode(), 0);
        EXPECT_FALSE(Exists(trle / "data/city.tr4"));
        form.close();
    }
    EXPECT_EQ(fs::file_size(home / "Kelvash.prf"), 1588U);
    EndProgram();
    {
        ui::Principale form(forms);
        ASSERT_TRUE(form.Load(""));
        form.show();
        EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 2 (LevelArchive.kva levels)");
        EXPECT_EQ(core::profile.TrleFolder, "C:\\trle");
        EXPECT_EQ(form.Combo_Livelli->model()->rowCount(), 2);
        form.close();
    }
}

// --- the page of the first start ---

using program::FirstStep;
using ui::StepState;

// As the window program starts.
class GuidedFirstRun : public FirstRun {
  protected:
    bool Load() {
        forms.SetBeforeWaiting([this] { screen.Show(); });
        const bool runs = form.Load("", [this](FirstStep step) { screen.Begin(step); });
        if (screen.Page() != nullptr) at_the_end = States();
        screen.Close();
        forms.SetMainWindow(&form);
        return runs;
    }
    // Of the three steps; empty without a page.
    std::vector<StepState> States() const {
        const ui::FirstStart* const page = screen.Page();
        if (page == nullptr || !page->isVisible()) return {};
        return {page->StateOf(FirstStep::TrleFolder), page->StateOf(FirstStep::Backup),
                page->StateOf(FirstStep::Archive)};
    }
    // Looks at the page under a question, then goes on as the next entry of the script says.
    void WillSee(const std::string& question, const std::vector<StepState>& states) {
        robot.Will(question, [this, states](QWidget* window) {
            EXPECT_EQ(States(), states);
            const ui::FirstStart* const page = screen.Page();
            ASSERT_NE(page, nullptr);
            EXPECT_EQ(window->parentWidget(), page);
            const int steps_end = page->mapToGlobal(page->Stage().topLeft()).y();
            EXPECT_GE(window->y(), steps_end) << "the steps are to be seen";
            constexpr int kFrame = 3; // pixels
            const QPoint middle = page->mapToGlobal(page->Stage().center());
            EXPECT_NEAR(window->geometry().center().x(), middle.x(), kFrame);
            if (window->height() <= page->Stage().height()) {
                EXPECT_NEAR(window->geometry().center().y(), middle.y(), kFrame);
                ++in_the_middle;
            }
        });
    }

    static constexpr StepState kDone = StepState::Done, kNow = StepState::Now, kToCome = StepState::ToCome;
    ui::Principale form{forms};
    ui::StartScreen screen{forms};
    std::vector<StepState> at_the_end;
    int in_the_middle = 0; // questions that had room there
};

TEST_F(GuidedFirstRun, ShowsAtEachQuestionWhichStepItBelongsTo) {
    WillSee("Dialog_TrovaTrle", {kNow, kToCome, kToCome});
    WillFindTrle();
    WillSee("is original?", {kDone, kNow, kToCome});
    robot.WillPress("is original?", "Yes");
    WillSee("Do you want a full backup?", {kDone, kNow, kToCome});
    robot.WillPress("Do you want a full backup?", "Yes");
    WillSee("Dialog_NewArc", {kDone, kDone, kNow});
    robot.WillPress("Dialog_NewArc", "Pul_New");
    WillChooseFolder("Select main folder for new archive", "C:\\Levels");
    ASSERT_TRUE(Load());
    EXPECT_EQ(at_the_end, (std::vector<StepState>{kDone, kDone, kDone}));
    EXPECT_GE(in_the_middle, 2);
    EXPECT_EQ(screen.Page(), nullptr);
}

TEST_F(GuidedFirstRun, SaysInItsTitlesThatItIsADemo) {
    screen.SetTitleNote(QStringLiteral("a demo sandbox"));
    form.SetTitleNote(QStringLiteral("a demo sandbox"));
    robot.Will("Dialog_TrovaTrle", [this](QWidget* window) {
        ASSERT_NE(screen.Page(), nullptr);
        EXPECT_EQ(screen.Page()->windowTitle().toStdString(), "Welcome to Kelvash  \u00b7  a demo sandbox");
        Press(window, "Pul_Cancel");
    });
    robot.WillPress("This program cann't run without Tomb Raider Level Editor", "OK");
    EXPECT_FALSE(Load());
    form.ShowTitle();
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash  \u00b7  a demo sandbox");
}

TEST_F(GuidedFirstRun, StopsAtTheStepThatWasGivenUp) {
    WillFindTrle();
    robot.WillPress("is original?", "No");
    robot.WillPress("Tips: ", "OK");
    robot.WillPress("You must perform a new setup of Tomb Raider Level Editor", "OK");
    ASSERT_TRUE(Load());
    EXPECT_EQ(at_the_end, (std::vector<StepState>{kDone, kNow, kToCome}));
    form.show();
    EXPECT_TRUE(form.Empty_Levels->isVisible());
}

// As a kill in the second step leaves it: without a profile.
TEST_F(GuidedFirstRun, GoesOnAtTheStepAtWhichItWasBrokenOff) {
    MakeFile(home / "first_start.prf", std::string("\2\0\0\0", 4) + "C:\\trle" + std::string(249, ' '));
    WillSee("is original?", {kDone, kNow, kToCome});
    robot.WillPress("is original?", "Yes");
    robot.WillPress("Do you want a full backup?", "Yes");
    robot.WillPress("Dialog_NewArc", "Pul_New");
    WillChooseFolder("Select main folder for new archive", "C:\\Levels");
    ASSERT_TRUE(Load());
    EXPECT_FALSE(robot.HasSeen("Dialog_TrovaTrle"));
    EXPECT_EQ(at_the_end, (std::vector<StepState>{kDone, kDone, kDone}));
    EXPECT_FALSE(Exists(home / "first_start.prf"));
}

TEST_F(GuidedFirstRun, ALaterStartHasNoPage) {
    core::profile = core::ProfileRecord();
    core::profile.LastArchive = "C:\\Levels\\gone.kva";
    core::profile.TrleFolder = "C:\\trle";
    ASSERT_TRUE(core::WriteProfile());
    robot.Will("Last archive not found", [this](QWidget* window) {
        EXPECT_EQ(screen.Page(), nullptr);
        Press(window, "OK");
    });
    robot.WillPress("Do you want load a different archive?", "No");
    fs::copy(trle, home / "backup_trle", fs::copy_options::recursive);
    ASSERT_TRUE(Load());
}

TEST_F(FirstRun, EndsTheProgramWithoutATrleFolder) {
    ui::Principale form(forms);
    robot.WillPress("Dialog_TrovaTrle", "Pul_Cancel");
    robot.WillPress("This program cann't run without Tomb Raider Level Editor\nNow, Kelvash ends", "OK");
    EXPECT_FALSE(form.Load(""));
}

TEST_F(FirstRun, StandsWithoutAnArchiveWhenTrleIsNotOriginal) {
    ui::Principale form(forms);
    WillFindTrle();
    robot.WillPress("is original?", "No");
    robot.WillPress("Tips: ", "OK");
    robot.WillPress("You must perform a new setup of Tomb Raider Level Editor", "OK");
    EXPECT_TRUE(form.Load(""));
    form.show();
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash");
    EXPECT_FALSE(form.Pul_Play->isEnabled());
}

TEST_F(FirstRun, ComesBackToTheSameWindow) {
    QList<int> sizes;
    {
        ui::Principale form(forms);
        form.show();
        form.findChild<QWidget*>(QStringLiteral("Scroll_Page"))->show(); // as with an Archive
        form.resize(950, 705);
        auto* const splitter = form.findChild<QSplitter*>(QStringLiteral("Splitter1"));
        splitter->setSizes({400, 500});
        sizes = splitter->sizes();
        form.Pul_Tiles->click();
        form.close();
    }
    ui::Principale form(forms);
    auto* const splitter = form.findChild<QSplitter*>(QStringLiteral("Splitter1"));
    EXPECT_EQ(ui::RestoreWindow({&form, splitter}), ui::LibraryView::Tiles);
    form.show();
    EXPECT_EQ(form.width(), 950);
    EXPECT_EQ(form.height(), 705);
    form.findChild<QWidget*>(QStringLiteral("Scroll_Page"))->show();
    QApplication::processEvents();
    EXPECT_EQ(splitter->sizes(), sizes);
}

TEST_F(FirstRun, ReadsNonsenseAboutTheWindowAsNothing) {
    MakeFile(home / "Kelvash.ini", "[window]\ngeometry=@ByteArray(nonsense)\nsplitter=7\n\xFF\xFE");
    ui::Principale form(forms);
    const QSize usual = form.size();
    EXPECT_EQ(ui::RestoreWindow({&form, form.findChild<QSplitter*>(QStringLiteral("Splitter1"))}),
              ui::LibraryView::List);
    EXPECT_EQ(form.size(), usual);
}

// --- what the program ships ---

TEST_F(FirstRun, BringsTheShippedFilesThatAreMissing) {
    MakeFile(home / "help_kelvash.txt", "my own help");
    ui::ProvideShippedFiles();
    EXPECT_EQ(BytesOf(home / "help_kelvash.txt"), "my own help");
    for (const char* name : {"splash.jpg", "default_shot.jpg", "lara.ico"})
        EXPECT_GT(fs::file_size(home / name), 1000U) << name;
}

TEST_F(FirstRun, SplashShowsThePictureWithTheVersion) {
    EXPECT_TRUE(ui::SplashPicture().isNull());
    MakeFile(home / "splash.jpg", "no picture");
    EXPECT_TRUE(ui::SplashPicture().isNull());
    fs::remove(home / "splash.jpg");
    ui::ProvideShippedFiles();
    ui::Dialog_Splash splash(ui::SplashPicture());
    splash.show();
    EXPECT_EQ(splash.size(), QSize(520, 300));
    EXPECT_EQ(splash.Label_Version->text().toStdString(), "Version 1.4");
    EXPECT_TRUE(splash.rect().contains(splash.Label_Version->geometry()));
}

} // namespace
} // namespace kelvash::test
