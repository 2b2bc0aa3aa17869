#include "ui/Dialog_GetDir.h"

#include <gmock/gmock.h>

#include <QElapsedTimer>

#include "foundation/drives.h"
#include "ui/getdir_home.h"
#include "ui/look.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

using DialogGetDir = GetDirHome;

TEST_F(DialogGetDir, HasItsCaptions) {
    Open("C:\\");
    EXPECT_EQ(form.windowTitle().toStdString(), " Seleziona una cartella");
    EXPECT_EQ(Plain(form.Label_Drive->text()), "Drive");
    EXPECT_EQ(Plain(form.Label_PathDir->text()), "Folder");
    EXPECT_EQ(Plain(form.Label_Path->text()), "Name of the new folder");
    EXPECT_EQ(Plain(form.Pul_NuovaCartella->text()), "New folder");
    EXPECT_EQ(Plain(form.Pul_Ok->text()), "OK");
    EXPECT_EQ(Plain(form.Pul_Cancel->text()), "Cancel");
    EXPECT_EQ(Plain(form.Pul_Help->text()), "Help");
}

TEST_F(DialogGetDir, TakesTheOpenersCaption) {
    Open("C:\\", "Where the levels are");
    EXPECT_EQ(form.windowTitle().toStdString(), "Where the levels are");
}

TEST_F(DialogGetDir, OpensTheTreeDownToTheStartFolder) {
    Open("C:\\games\\BETA");
    const QTreeWidgetItem* const root_item = form.Dir1->topLevelItem(0);
    EXPECT_EQ(root_item->text(0).toStdString(), "C:\\");
    EXPECT_THAT(Below(root_item), ElementsAre("Games", "Kelvash", "Zips"));
    EXPECT_THAT(Below(root_item->child(0)), ElementsAre("Alpha", "beta", "gamma"));
    EXPECT_THAT(Below(root_item->child(0)->child(1)), ElementsAre("two"));
    EXPECT_EQ(Selected(), "beta");
    EXPECT_EQ(Shown(), "C:\\Games\\beta");
    EXPECT_EQ(form.Drive1->currentText().left(2).toStdString(), "C:");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_EQ(form.Folder, "C:\\Games\\beta");
}

TEST_F(DialogGetDir, ListsNoMoreThanWhatIsOpened) {
    Open("C:\\");
    QTreeWidgetItem* const games = form.Dir1->topLevelItem(0)->child(0);
    EXPECT_EQ(games->childCount(), 0);
    form.Dir1->setCurrentItem(games);
    QTest::keyClick(form.Dir1, Qt::Key_Right);
    EXPECT_THAT(Below(games), ElementsAre("Alpha", "beta", "gamma"));
    EXPECT_EQ(games->child(1)->childCount(), 0);
    QTest::keyClick(form.Dir1, Qt::Key_Down);
    EXPECT_EQ(Shown(), "C:\\Games\\Alpha");
}

TEST_F(DialogGetDir, DoesNotOpenAWholeDiskWithTheAsterisk) {
    Open("C:\\");
    QTest::keyClick(form.Dir1, Qt::Key_Asterisk);
    QTreeWidgetItem* const games = form.Dir1->topLevelItem(0)->child(0);
    EXPECT_FALSE(games->isExpanded());
    games->setExpanded(true);
    EXPECT_EQ(games->childCount(), 3);
}

TEST_F(DialogGetDir, ARootIsShownWithABackSlashAndGivenWithout) {
    Open("c:\\");
    EXPECT_EQ(Shown(), "C:\\");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.Folder, "C:");
}

TEST_F(DialogGetDir, AMissingStartFolderGivesItsNearestParent) {
    Open("C:\\Games\\gone\\deeper");
    EXPECT_EQ(Shown(), "C:\\Games");
}

TEST_F(DialogGetDir, AMissingDriveGivesTheBestFixedOne) {
    Open("Q:\\Games");
    EXPECT_EQ(Shown(), "C:\\");
}

TEST_F(DialogGetDir, NoStartFolderGivesTheBestFixedDrive) {
    Open("");
    EXPECT_EQ(Shown(), "C:\\");
}

TEST_F(DialogGetDir, CancelGivesNoFolder) {
    Open("C:\\Games");
    Press(&form, "Pul_Cancel");
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_EQ(form.Folder, "");
}

TEST_F(DialogGetDir, EnterSelectsATypedPathAndASecondOneTakesIt) {
    Open("C:\\");
    Type(form.Text_PathDir, " c:/games/alpha/../beta\\ ");
    Enter(form.Text_PathDir);
    EXPECT_EQ(Shown(), "C:\\Games\\beta");
    EXPECT_EQ(Selected(), "beta");
    EXPECT_TRUE(form.isVisible());
    Enter(form.Text_PathDir);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.Folder, "C:\\Games\\beta");
}

TEST_F(DialogGetDir, TakesATypedNameBelowTheShownFolder) {
    Open("C:\\Games");
    Type(form.Text_PathDir, "beta");
    Enter(form.Text_PathDir);
    EXPECT_EQ(Shown(), "C:\\Games\\beta");
    Type(form.Text_PathDir, "\\Zips");
    Enter(form.Text_PathDir);
    EXPECT_EQ(Shown(), "C:\\Zips");
    Type(form.Text_PathDir, "..\\..\\..");
    Enter(form.Text_PathDir);
    EXPECT_EQ(Shown(), "C:\\");
}

TEST_F(DialogGetDir, OkTakesAPathThatIsOnlyTyped) {
    Open("C:\\");
    Type(form.Text_PathDir, "c:\\zips");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.Folder, "C:\\Zips");
}

TEST_F(DialogGetDir, OkRefusesAMissingFolder) {
    Open("C:\\Games");
    Type(form.Text_PathDir, "C:\\Games\\gone");
    robot.WillPress("This folder doesn't exist: C:\\Games\\gone", "OK");
    Press(&form, "Pul_Ok");
    EXPECT_TRUE(form.isVisible());
    Type(form.Text_PathDir, "Q:\\x");
    robot.WillPress("This folder doesn't exist: Q:\\x", "OK");
    Press(&form, "Pul_Ok");
    form.Text_PathDir->clear();
    robot.WillPress("This folder doesn't exist: ", "OK");
    Press(&form, "Pul_Ok");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.Folder, "");
}

TEST_F(DialogGetDir, OkRefusesAFolderThatIsGoneMeanwhile) {
    Open("C:\\Games\\gamma");
    fs::remove(drive / "Games" / "gamma");
    robot.WillPress("This folder doesn't exist: C:\\Games\\gamma", "OK");
    Press(&form, "Pul_Ok");
    EXPECT_TRUE(form.isVisible());
}

TEST_F(DialogGetDir, MakesAFolderAndSelectsIt) {
    Open("C:\\Games");
    MakeFolderNamed(" Delta ");
    EXPECT_TRUE(fs::is_directory(drive / "Games" / "Delta"));
    EXPECT_EQ(Shown(), "C:\\Games\\Delta");
    EXPECT_THAT(Below(form.Dir1->topLevelItem(0)->child(0)), ElementsAre("Alpha", "beta", "Delta", "gamma"));
    EXPECT_EQ(Selected(), "Delta");
    EXPECT_EQ(form.Text_Path->text().toStdString(), "");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.Folder, "C:\\Games\\Delta");
}

TEST_F(DialogGetDir, MakesAFolderInARootAndInAFolderThatWasNeverOpened) {
    Open("C:\\");
    MakeFolderNamed("New");
    EXPECT_TRUE(fs::is_directory(drive / "New"));
    EXPECT_EQ(Shown(), "C:\\New");
    form.Dir1->setCurrentItem(form.Dir1->topLevelItem(0)->child(0));
    Type(form.Text_Path, "Newer");
    Enter(form.Text_Path);
    EXPECT_TRUE(fs::is_directory(drive / "Games" / "Newer"));
    EXPECT_EQ(Shown(), "C:\\Games\\Newer");
    EXPECT_TRUE(form.isVisible());
}

TEST_F(DialogGetDir, MakesAFolderInAPathThatIsOnlyTyped) {
    Open("C:\\");
    Type(form.Text_PathDir, "C:\\Zips");
    MakeFolderNamed("old");
    EXPECT_TRUE(fs::is_directory(drive / "Zips" / "old"));
    Type(form.Text_PathDir, "C:\\gone");
    robot.WillPress("This folder doesn't exist: C:\\gone", "OK");
    MakeFolderNamed("x");
    EXPECT_FALSE(Exists(drive / "gone"));
}

TEST_F(DialogGetDir, AsksForTheNameOfANewFolder) {
    Open("C:\\Games");
    robot.WillPress("You have to type a name for new folder", "OK");
    MakeFolderNamed("  ");
    EXPECT_EQ(Shown(), "C:\\Games");
}

TEST_F(DialogGetDir, TellsOfAFolderThatExists) {
    Open("C:\\Games");
    robot.WillPress("Folder:C:\\Games\\ALPHA already exists", "OK");
    MakeFolderNamed("ALPHA");
    EXPECT_EQ(Shown(), "C:\\Games");
}

TEST_F(DialogGetDir, RefusesNamesThatNoFolderCanHave) {
    Open("C:\\Games");
    for (const char* name :
         {"a/b", "a\\b", "a<b", "a>b", "a:b", "a?b", "a|b", "a\"b", "a*b", ".", "..", "a."}) {
        robot.WillPress(std::string("I can not create 'C:\\Games\\") + name + "' folder", "OK");
        MakeFolderNamed(name);
    }
    EXPECT_EQ(std::distance(fs::directory_iterator(drive / "Games"), {}), 3);
    EXPECT_FALSE(Exists(drive / "Games" / "a"));
}

TEST_F(DialogGetDir, TellsOfAFolderThatCannotBeMade) {
    MakeFile(drive / "Games" / "file", "in the way");
    Open("C:\\Games");
    robot.WillPress("I can not create 'C:\\Games\\file' folder", "OK");
    MakeFolderNamed("file");
    const std::string long_name(300, 'x');
    robot.WillPress("I can not create 'C:\\Games\\" + long_name + "' folder", "OK");
    MakeFolderNamed(long_name);
    EXPECT_EQ(Shown(), "C:\\Games");
}

TEST_F(DialogGetDir, ChangesTheDrive) {
    fs::create_directories(root / "d" / "Disc");
    ASSERT_TRUE(SetDrive('D', root / "d", DriveType::CdRom));
    ui::Dialog_GetDir both(nullptr);
    both.ImpostaValori("", "C:\\Games");
    both.show();
    QTest::keyClick(both.Drive1, Qt::Key_Down);
    EXPECT_EQ(both.Text_PathDir->text().toStdString(), "D:\\");
    EXPECT_EQ(both.Dir1->topLevelItemCount(), 1);
    EXPECT_THAT(Below(both.Dir1->topLevelItem(0)), ElementsAre("Disc"));
    Type(both.Text_PathDir, "C:\\Zips");
    Enter(both.Text_PathDir);
    EXPECT_EQ(both.Drive1->currentData().toString().toStdString(), "C:");
    EXPECT_EQ(both.Dir1->currentItem()->text(0).toStdString(), "Zips");
}

TEST_F(DialogGetDir, StaysOnItsDriveWhenAnotherIsNotReady) {
    fs::create_directories(root / "d");
    ASSERT_TRUE(SetDrive('D', root / "d", DriveType::CdRom));
    ui::Dialog_GetDir both(nullptr);
    both.ImpostaValori("", "C:\\Games");
    both.show();
    fs::remove(root / "d");
    robot.WillPress("Drive not ready", "OK");
    QTest::keyClick(both.Drive1, Qt::Key_Down);
    EXPECT_EQ(both.Drive1->currentData().toString().toStdString(), "C:");
    EXPECT_EQ(both.Text_PathDir->text().toStdString(), "C:\\Games");
}

TEST_F(DialogGetDir, OpensAFolderOfTenThousandAtOnce) {
    for (int i = 0; i < 10'000; ++i)
        fs::create_directory(drive / "Zips" / std::to_string(i));
    QElapsedTimer since;
    since.start();
    Open("C:\\Zips");
    QTest::keyClick(form.Dir1, Qt::Key_Down);
    EXPECT_EQ(form.Dir1->topLevelItem(0)->child(2)->childCount(), 10'000);
    EXPECT_EQ(Shown(), "C:\\Zips\\0");
    EXPECT_LT(since.elapsed(), 5000); // milliseconds
}

TEST_F(DialogGetDir, SaysAtOnceBelowAFieldWhatIsWrongWithIt) {
    Open("C:\\Games");
    const auto note = [this](QLineEdit* field, const std::string& text) {
        Type(field, text);
        QTest::qWait(300);
        return (field == form.Text_PathDir ? form.Note_Path : form.Note_Name)->text().toStdString();
    };
    const QRect tree = form.Dir1->geometry();
    EXPECT_EQ(note(form.Text_PathDir, "C:\\Games\\delta"), "There is no such folder");
    EXPECT_EQ(form.Text_PathDir->accessibleDescription().toStdString(), "There is no such folder");
    EXPECT_TRUE(form.Note_Path->isVisible());
    EXPECT_GT(form.Note_Path->y(), form.Text_PathDir->geometry().bottom());
    EXPECT_LT(form.Note_Path->geometry().bottom(), form.Text_Path->y());
    EXPECT_EQ(form.Dir1->geometry(), tree) << "its room was kept";
    EXPECT_EQ(note(form.Text_PathDir, "alpha"), "") << "below the folder that is shown";
    EXPECT_FALSE(form.Note_Path->isVisible());
    EXPECT_EQ(note(form.Text_Path, "ALPHA"), "A folder of this name is there already");
    EXPECT_GT(form.Note_Name->y(), form.Text_Path->geometry().bottom());
    const std::string letters =
        R"(A name can't hold any of / \ < > : ? " * or a bar, and can't end with a dot)";
    EXPECT_EQ(note(form.Text_Path, "what?"), letters);
    EXPECT_EQ(note(form.Text_Path, "dot."), letters);
    EXPECT_EQ(note(form.Text_Path, "delta"), "");
}

TEST_F(DialogGetDir, ItsNoteTakesTheColourOfTheDark) {
    Open("C:\\");
    const QColor light = form.Note_Path->palette().color(QPalette::WindowText);
    EXPECT_EQ(light, ui::ColourOf(ui::Role::Danger));
    ui::TakeLook(true);
    QApplication::processEvents();
    const QColor dark = form.Note_Path->palette().color(QPalette::WindowText);
    EXPECT_EQ(dark, ui::ColourOf(ui::Role::Danger));
    EXPECT_NE(dark, light);
    ui::TakeLook(false);
}

TEST_F(DialogGetDir, DoesNotJudgeHalfAWord) {
    Open("C:\\Games");
    Type(form.Text_PathDir, "C:\\Ga");
    QApplication::processEvents();
    EXPECT_EQ(form.Note_Path->text().toStdString(), "");
}

TEST_F(DialogGetDir, AnswersAsTheUsersFolderDialog) {
    robot.Will("Choose one", [&](QWidget* window) {
        Type(window->findChild<QLineEdit*>(QStringLiteral("Text_PathDir")), "C:\\Zips");
        Press(window, "Pul_Ok");
    });
    EXPECT_EQ(forms.ChooseFolder(MessageText("Choose one"), "C:\\Games"), "C:\\Zips");
    robot.WillPress("Choose again", "Pul_Cancel");
    EXPECT_EQ(forms.ChooseFolder(MessageText("Choose again"), "C:\\Games"), std::nullopt);
}

TEST_F(DialogGetDir, HelpTellsWhenThereIsNone) {
    Open("C:\\");
    robot.WillPress("Warning: I can not find file: \"C:\\Kelvash\\help_kelvash.txt\"", "OK");
    Press(&form, "Pul_Help");
}

} // namespace
} // namespace kelvash::test
