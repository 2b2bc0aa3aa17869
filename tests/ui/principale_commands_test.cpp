#include <gmock/gmock.h>

#include <QApplication>
#include <QDragEnterEvent>
#include <QMimeData>

#include "companion/game.h"
#include "foundation/files.h"
#include "support/built.h"
#include "swap/install.h"
#include "trle_state/trle_state.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;

namespace fs = std::filesystem;

class PrincipaleCommands : public PrincipaleHome {
  protected:
    // Puts the stand-in for the game where the game and its original are; it runs for this long.
    void PutGame(const char* milliseconds) {
        for (const fs::path& folder : {trle, backup})
            fs::copy_file(test::Built("share/kelvash/standin-game"), folder / "tomb4.exe",
                          fs::copy_options::overwrite_existing);
        SetEnvironment("KELVASH_GAME_MS", milliseconds);
    }
};

// --- playing ---

TEST_F(PrincipaleCommands, PlayPutsTheLevelInAndComesBackWhenTheGameEnds) {
    PutGame("2500");
    core::SelectLevel(2);
    form.Timer1->setInterval(20);
    Press(&form, "Pul_Play");
    EXPECT_EQ(trle_state::CurrentLevelCode(), 2);
    EXPECT_TRUE(Exists(trle / "data/alpha.tr4"));
    EXPECT_EQ(Current(), "Alpha");
    EXPECT_THAT(Shown(), Contains("- TRLE: Original configuration - (*)")) << "till the game has ended";
    EXPECT_FALSE(form.centralWidget()->isEnabled());
    EXPECT_EQ(form.Label_Info->text().toStdString(), "The game is running. Kelvash comes back when it ends.");
    WaitUntil([this] { return form.centralWidget()->isEnabled(); });
    EXPECT_FALSE(companion::game.WatcherActive);
    EXPECT_EQ(Current(), "Alpha (*)");
    EXPECT_THAT(Shown(), Contains("- TRLE: Original configuration -"));
    EXPECT_EQ(form.Label_Info->text().toStdString(), "");
}

TEST_F(PrincipaleCommands, NothingCanBeDroppedWhileTheGameRuns) {
    PutGame("1500");
    core::SelectLevel(2);
    form.Timer1->setInterval(20);
    QMimeData files;
    files.setUrls({QUrl::fromLocalFile(QString::fromStdString((drive / "a.zip").string()))});
    const auto accepted = [&] {
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &files, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(&form, &enter);
        return enter.isAccepted();
    };
    EXPECT_TRUE(accepted());
    Press(&form, "Pul_Play");
    EXPECT_FALSE(accepted());
    WaitUntil([this] { return form.centralWidget()->isEnabled(); });
    EXPECT_TRUE(accepted());
}

TEST_F(PrincipaleCommands, EnterInTheListPlays) {
    fs::remove_all(LevelPath(2) / "FILES");
    core::SelectLevel(2);
    form.Combo_Livelli->setFocus();
    robot.WillPress("Warning: this level has NO .tr4 file.", "No");
    robot.WillPress("Error while installing files to play new level", "OK");
    QTest::keyClick(form.Combo_Livelli, Qt::Key_Return);
    EXPECT_EQ(trle_state::CurrentLevelCode(), 0);
}

TEST_F(PrincipaleCommands, AGameThatDoesntStartIsTold) {
    fs::remove(trle / "tomb4.exe");
    core::SelectLevel(2);
    robot.WillPress("Is the backup of original files in C:\\Kelvash\\backup_trle that of", "Yes");
    robot.WillPress("Error attempting to launch program tomb4.exe", "OK");
    Press(&form, "Pul_Play");
    EXPECT_TRUE(form.centralWidget()->isEnabled());
    EXPECT_EQ(Current(), "Alpha (*)");
}

TEST_F(PrincipaleCommands, AVanishedTrleFolderLeavesTheWindowUsable) {
    fs::remove_all(trle);
    core::SelectLevel(2);
    robot.WillPress("The TRLE folder can't be read now. Nothing has been changed: C:\\trle", "OK");
    robot.WillPress("Error while installing files to play new level", "OK");
    Press(&form, "Pul_Play");
    EXPECT_TRUE(form.centralWidget()->isEnabled());
}

TEST_F(PrincipaleCommands, AMissingLevelFolderIsTold) {
    fs::remove_all(LevelPath(2));
    core::SelectLevel(2);
    robot.WillPress("Warning: this level has NO .tr4 file.", "No");
    robot.WillPress("Error while installing files to play new level", "OK");
    Press(&form, "Pul_Play");
    EXPECT_TRUE(form.centralWidget()->isEnabled());
}

// --- Archive ---

TEST_F(PrincipaleCommands, SaveWritesTheArchive) {
    Choose(Entry::mnu_Save);
    EXPECT_EQ(fs::file_size(home / "test.kva"), 546U + 4 * 1634U);
    EXPECT_EQ(form.Label_Info->text().toStdString(),
              "The Archive of 4 levels is saved: C:\\Kelvash\\test.kva");
    for (const std::int32_t code : {1, 2, 3})
        core::archive.Table.Remove(code);
    Choose(Entry::mnu_Save);
    EXPECT_EQ(form.Label_Info->text().toStdString(),
              "The Archive of one level is saved: C:\\Kelvash\\test.kva");
}

TEST_F(PrincipaleCommands, WhereAnArchiveIsSavedLeavesTheWindowAsItIs) {
    const QSize least = form.minimumSizeHint();
    form.Say(QStringLiteral("The Archive is saved: ") + QString(400, QLatin1Char('W')));
    EXPECT_EQ(form.minimumSizeHint(), least);
    EXPECT_TRUE(form.Label_Info->toolTip().contains(QString(400, QLatin1Char('W'))));
}

TEST_F(PrincipaleCommands, AFailedSaveIsTold) {
    core::profile.LastArchive = "C:\\none\\test.kva";
    robot.WillPress("Error while saving archive: C:\\none\\test.kva", "OK");
    Choose(Entry::mnu_Save);
    EXPECT_EQ(form.Label_Info->text().toStdString(), "");
}

TEST_F(PrincipaleCommands, SaveAsTakesTheNewNameIntoTheTitle) {
    robot.WillChooseFile("Save current archive as ...", home / "second.kva");
    Choose(Entry::mnu_SaveAs);
    EXPECT_TRUE(Exists(home / "second.kva"));
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 4 (second.kva levels)");
    EXPECT_EQ(form.Label_Info->text().toStdString(),
              "The Archive of 4 levels is saved: C:\\Kelvash\\second.kva");
}

TEST_F(PrincipaleCommands, ASaveAsThatIsGivenUpSaysNothing) {
    robot.Will("Save current archive as ...", [](QWidget* window) { window->close(); });
    Choose(Entry::mnu_SaveAs);
    EXPECT_EQ(form.Label_Info->text().toStdString(), "");
}

TEST_F(PrincipaleCommands, LoadOpensAnotherArchive) {
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
    core::archive.Table.Remove(3);
    core::archive.Table.Remove(2);
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\two.kva"));
    ASSERT_TRUE(core::LoadArchive("C:\\Kelvash\\test.kva"));
    robot.WillChooseFile("Load Tomb Raider Level Archive", home / "two.kva");
    Type("alpha");
    Choose(Entry::mnu_Load);
    EXPECT_TRUE(form.Text_Search->text().isEmpty()) << "what was sought in the former one";
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 2 (two.kva levels)");
    EXPECT_THAT(BytesOf(home / "Kelvash.prf"), HasSubstr("C:\\Kelvash\\two.kva ")) << "a kill may follow";
    EXPECT_THAT(Shown(), ElementsAre("- TRLE: Original configuration - (*)", "City of Gold"));
}

TEST_F(PrincipaleCommands, LoadSelectsTheLevelInTrleThoughTheFilterHidIt) {
    ASSERT_TRUE(swap::InstallLevel(1));
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
    core::RefreshLevelList();
    core::SelectLevel(2);
    Type("alpha");
    robot.WillChooseFile("Load Tomb Raider Level Archive", home / "test.kva");
    Choose(Entry::mnu_Load);
    EXPECT_EQ(Shown().size(), 4U);
    EXPECT_EQ(Current(), "City of Gold (*)");
}

TEST_F(PrincipaleCommands, ACancelledLoadKeepsTheFilter) {
    Type("alpha");
    robot.Will("Load Tomb Raider Level Archive", [](QWidget* window) { window->close(); });
    Choose(Entry::mnu_Load);
    EXPECT_THAT(Shown(), ElementsAre("Alpha"));
}

TEST_F(PrincipaleCommands, AnArchiveThatCantBeReadIsToldAndTheOpenOneStays) {
    MakeFile(home / "locked.kva", "x");
    fs::permissions(home / "locked.kva", fs::perms::none);
    const OrdinaryUser ordinary;
    robot.WillChooseFile("Load Tomb Raider Level Archive", home / "locked.kva");
    robot.WillPress("Error loading archive: C:\\Kelvash\\locked.kva", "OK");
    Choose(Entry::mnu_Load);
    EXPECT_EQ(Shown().size(), 4U);
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 4 (test.kva levels)");
}

TEST_F(PrincipaleCommands, AnArchiveThatHasLostItsContentsIsToldAndTheOpenOneStays) {
    MakeFile(home / "cut.kva", "TRLE");
    robot.WillChooseFile("Load Tomb Raider Level Archive", home / "cut.kva");
    robot.WillPress("Error loading archive: C:\\Kelvash\\cut.kva", "OK");
    Choose(Entry::mnu_Load);
    EXPECT_EQ(Shown().size(), 4U);
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 4 (test.kva levels)");
}

TEST_F(PrincipaleCommands, AnArchiveWhoseFolderIsGivenUpGivesTheFormerOneBack) {
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
    core::archive.Header.MainFolder = core::archive.Header.SecondaryFolder = "C:\\gone";
    core::archive.Table.Edit(1)->Name = "Elsewhere";
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\moved.kva"));
    ASSERT_TRUE(core::LoadArchive("C:\\Kelvash\\test.kva"));
    robot.WillChooseFile("Load Tomb Raider Level Archive", home / "moved.kva");
    robot.WillPress("Warning: not found main folder of current archive: ", "OK");
    robot.WillPress("Select folder: gone", "Pul_Cancel");
    Choose(Entry::mnu_Load);
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 4 (test.kva levels)");
    EXPECT_THAT(Shown(), Contains("City of Gold"));
    EXPECT_EQ(core::archive.Header.MainFolder, "C:\\Levels");
}

TEST_F(PrincipaleCommands, ACancelledNewWithoutAFormerFileLeavesNoneOpen) {
    robot.WillPress("Select main folder for new archive", "Pul_Cancel");
    robot.WillPress("Error loading archive: C:\\Kelvash\\test.kva", "OK");
    Choose(Entry::mnu_New);
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash");
    EXPECT_TRUE(Shown().empty());
    EXPECT_FALSE(form.Pul_Play->isEnabled());
}

TEST_F(PrincipaleCommands, TheMarkFollowsANewTrleFolder) {
    fs::copy(trle, drive / "other", fs::copy_options::recursive);
    MakeFile(drive / "other/Kelvash.txt", "#LEVEL_CODE=0002#\r\n#LEVEL_NAME=Alpha#\r\n");
    robot.WillPress("Dialog_Settings", "Pul_SfogliaPathTrle");
    WillChooseFolder("Select Tomb Raider Level Editor path (trle)", "C:\\other");
    robot.WillPress("Dialog_Settings", "Pul_Ok");
    Choose(Entry::mnu_Settings);
    EXPECT_THAT(Shown(), Contains("Alpha (*)"));
}

TEST_F(PrincipaleCommands, NewStartsAnArchiveInAnEmptyFolder) {
    fs::create_directories(drive / "Fresh");
    WillChooseFolder("Select main folder for new archive", "C:\\Fresh");
    Choose(Entry::mnu_New);
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 1 (LevelArchive.kva levels)");
    EXPECT_THAT(Shown(), ElementsAre("- TRLE: Original configuration - (*)"));
}

TEST_F(PrincipaleCommands, ACancelledNewLeavesTheFormerArchiveOpen) {
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
    robot.WillPress("Select main folder for new archive", "Pul_Cancel");
    Choose(Entry::mnu_New);
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 4 (test.kva levels)");
    EXPECT_EQ(fs::file_size(home / "test.kva"), 546U + 4 * 1634U);
}

TEST_F(PrincipaleCommands, SizesAreReported) {
    robot.WillPress("Primary (only read) folder size = 13", "OK");
    Choose(Entry::mnu_CalcolaSize);
    EXPECT_EQ(core::archive.Table[1].FilesSize, 4);
}

TEST_F(PrincipaleCommands, AFullBackupIsRefreshed) {
    MakeFile(trle / "data/new.tr4", "new");
    robot.WillPress("Current backup is already FULL", "Yes");
    robot.WillPress("Current installed configuration of Tomb Raider Level Editor in C:\\trle is original?",
                    "Yes");
    Choose(Entry::mnu_FaiFullBackup);
    EXPECT_TRUE(Exists(backup / "data/new.tr4"));
    EXPECT_FALSE(form.ProgressBar1->isVisible());
    EXPECT_EQ(form.Label_Info->text().toStdString(), "The full backup is finished");
}

TEST_F(PrincipaleCommands, ABackupThatIsGivenUpIsNotSaidToBeFinished) {
    robot.WillPress("Current backup is already FULL", "Yes");
    robot.WillPress("Current installed configuration of Tomb Raider Level Editor in C:\\trle is original?",
                    "No");
    robot.WillPress("You must perform a new setup of Tomb Raider Level Editor", "OK");
    robot.WillPress("Tips:", "OK");
    robot.WillPress("Error creating full backup in : C:\\Kelvash\\backup_trle", "OK");
    Choose(Entry::mnu_FaiFullBackup);
    EXPECT_EQ(form.Label_Info->text().toStdString(), "");
}

// --- other forms ---

TEST_F(PrincipaleCommands, RestoreOpensItsForm) {
    ASSERT_TRUE(swap::InstallLevel(2));
    core::RefreshLevelList();
    robot.WillPress("Dialog_Restore", "Pul_Fast");
    robot.WillPress("Set in Tomb Raider Level Editor, original configuration", "OK");
    Choose(Entry::mnu_SetOriginale);
    EXPECT_EQ(form.Label_Info->text().toStdString(), "TRLE holds its original configuration");
    EXPECT_EQ(Shown().front(), "- TRLE: Original configuration - (*)");
    EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
    EXPECT_EQ(QApplication::focusWidget(), form.Combo_Livelli);
}

TEST_F(PrincipaleCommands, TheWatcherTakesItsIntervalFromTheSettings) {
    for (const int tenths : {8, 2}) {
        robot.Will("Dialog_Settings", [tenths](QWidget* window) {
            auto* const combo = window->findChild<QComboBox*>(QStringLiteral("Combo_Decimi"));
            ASSERT_NE(combo, nullptr);
            combo->setCurrentIndex(tenths - 1);
            Press(window, "Pul_Ok");
        });
        Choose(Entry::mnu_Settings);
        EXPECT_EQ(form.Timer1->interval(), tenths * 100);
    }
}

TEST_F(PrincipaleCommands, AboutTellsTheVersion) {
    robot.WillPress("Kelvash 1.4", "OK");
    Choose(Entry::mnu_About);
    EXPECT_TRUE(robot.HasSeen("About\nAbout Kelvash\nKelvash 1.4\nKeeps custom levels"));
}

TEST_F(PrincipaleCommands, MoreInfoTellsALevelWithoutADocument) {
    core::SelectLevel(2);
    robot.WillPress("Sorry, there is not any doc file\nIf you wish link a doc file", "OK");
    Press(&form, "Pul_MoreInfo");
}

TEST_F(PrincipaleCommands, ExitClosesTheWindowAndKeepsTheProfile) {
    core::profile.DownloadFolder = "C:\\zips";
    Choose(Entry::Mnu_Exit);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(fs::file_size(home / "Kelvash.prf"), 1588U);
    EXPECT_THAT(BytesOf(home / "Kelvash.prf"), HasSubstr("C:\\zips"));
    EXPECT_TRUE(Exists(home / "Kelvash.ini"));
}

TEST_F(PrincipaleCommands, ExitStaysWithAnArchiveThatCannotBeSaved) {
    core::archive.ArchiveChanged = true;
    fs::create_directory(home / "test.kva.new");
    const char* const question =
        "The Archive 'test.kva' couldn't be saved.\nClose all the same and lose the changes?";
    robot.WillPress("Error while saving archive: C:\\Kelvash\\test.kva", "OK");
    robot.WillPress(question, "No");
    form.close();
    EXPECT_TRUE(form.isVisible());
    EXPECT_TRUE(core::archive.ArchiveChanged);
    robot.WillPress("Error while saving archive: C:\\Kelvash\\test.kva", "OK");
    robot.WillPress(question, "Yes");
    form.close();
    EXPECT_FALSE(form.isVisible());
}

TEST_F(PrincipaleCommands, ExitStaysWithSettingsThatCannotBeSaved) {
    fs::create_directory(home / "Kelvash.prf.new");
    robot.WillPress("The settings couldn't be saved in C:\\Kelvash\\Kelvash.prf.", "No");
    form.close();
    EXPECT_TRUE(form.isVisible());
    EXPECT_FALSE(Exists(home / "Kelvash.ini"));
    fs::remove(home / "Kelvash.prf.new");
    form.close();
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(fs::file_size(home / "Kelvash.prf"), 1588U);
}

TEST_F(PrincipaleCommands, ExitOffersToSaveAChangedArchive) {
    core::profile.AutoSave = false;
    core::ArchiveTouched();
    robot.WillPress("Current archive 'test.kva' has been changed.\nDo you want save it?", "Yes");
    form.close();
    EXPECT_TRUE(Exists(home / "test.kva"));
}

} // namespace
} // namespace kelvash::test
