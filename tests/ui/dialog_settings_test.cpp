#include "ui/Dialog_Settings.h"

#include <gtest/gtest.h>

#include <QTest>

#include "core/profile.h"
#include "core/session.h"
#include "support/swap_home.h"
#include "support/ui_home.h"

namespace kelvash::test {
namespace {

using core::profile;
using core::ProfileRecord;

class DialogSettings : public UiHome<SwapHome> {
  protected:
    void Open() {
        form.ImpostaValori();
        form.show();
    }
    void Click(QAbstractButton* box) {
        // A box answers at its mark, not in the empty room behind its caption.
        QTest::mouseClick(box, Qt::LeftButton, {}, {8, box->height() / 2});
    }
    // Steps to an item with the keyboard, as a person does.
    void Pick(QComboBox* combo, int item) {
        combo->setFocus();
        while (combo->currentIndex() != item)
            QTest::keyClick(combo, combo->currentIndex() < item ? Qt::Key_Down : Qt::Key_Up);
    }
    void TypeMinutes(const std::string& text) {
        form.Text_MinutiDifferenza->selectAll();
        QTest::keyClicks(form.Text_MinutiDifferenza, QString::fromStdString(text));
    }
    void WillChooseFolder(const std::string& title, const std::string& path) {
        robot.Will(title, [path](QWidget* window) {
            auto* const field = window->findChild<QLineEdit*>(QStringLiteral("Text_PathDir"));
            ASSERT_NE(field, nullptr);
            field->selectAll();
            QTest::keyClicks(field, QString::fromStdString(path));
            Press(window, "Pul_Ok");
        });
    }

    ui::Dialog_Settings form{nullptr};
};

TEST_F(DialogSettings, HasItsCaptions) {
    Open();
    EXPECT_EQ(form.windowTitle().toStdString(), " Kelvash settings");
    EXPECT_EQ(form.Frame_Folders->title().toStdString(), "Folders and programs");
    EXPECT_EQ(form.Frame_Playing->title().toStdString(), "Playing");
    EXPECT_EQ(form.Frame_Archive->title().toStdString(), "Archive and levels");
    EXPECT_EQ(Plain(form.Label_TitlePathTrle->text()), "TR Level editor Path:");
    EXPECT_EQ(Plain(form.Label_TitleLoadDir->text()), "Default download folder:");
    EXPECT_EQ(Plain(form.Label_TitleEditor->text()), "Graphical program");
    EXPECT_EQ(Plain(form.Label_TitleBackup->text()), "Full backup:");
    for (const QPushButton* button :
         {form.Pul_SfogliaPathTrle, form.Pul_SfogliaLoadDir, form.Pul_ScegliEditor})
        EXPECT_EQ(Plain(button->text()), "Browse ...");
    EXPECT_EQ(Plain(form.Opt_NonPrompt->text()),
              "Don't prompt me. Save screen-shot with progressive name: counter + level name");
    EXPECT_EQ(Plain(form.Opt_PromptCapture->text()),
              "Prompt me after capture to choose a name for new screen-shot");
    EXPECT_EQ(Plain(form.Check_ArchiviaSavegame->text()),
              " When tomb raider slots are full, move and archive  automatically");
    EXPECT_EQ(Plain(form.Label_NSavegame->text()), "savegames");
    EXPECT_EQ(Plain(form.Label_Associate->text()),
              "Associate Savegame with screenshot if difference between their dates is <= than");
    EXPECT_EQ(Plain(form.Label_Minutes->text()), "minutes");
    EXPECT_EQ(Plain(form.Label_Interval->text()),
              "Interval time to check pressing keys and screenshot capture");
    EXPECT_EQ(Plain(form.Check_AggiornamentoUrl->text()), "Automatic request  for update online database");
    EXPECT_EQ(Plain(form.Check_VerifyImage->text()),
              "Verify and ignore captured images (screnshots) all blacks");
    EXPECT_EQ(Plain(form.Check_NonDecomprimere->text()), " Don't decompress to show level properties");
    EXPECT_EQ(Plain(form.Check_TestCOntrollaUguali->text()), " Check for equal levels in [add level] phase");
    EXPECT_EQ(Plain(form.Check_NoAutoCompila->text()), " Disable auto-compile for tom files");
    EXPECT_EQ(Plain(form.Check_AutoSave->text()), " Auto save (save archive after every change)");
    EXPECT_EQ(Plain(form.Check_EnableJoystick->text()), "Use also JoyStick to command Kelvash");
    EXPECT_EQ(Plain(form.Pul_SetJoy->text()), "Change joystick settings");
    EXPECT_EQ(Plain(form.Pul_Ok->text()), "OK");
    EXPECT_EQ(Plain(form.Pul_Cancel->text()), "Cancel");
    EXPECT_EQ(Plain(form.Pul_Help->text()), "Help");
}

TEST_F(DialogSettings, HasItsItems) {
    Open();
    ASSERT_EQ(form.Combo_Decimi->count(), 9);
    EXPECT_EQ(form.Combo_Decimi->itemText(0).toStdString(), "1  /10 per second");
    EXPECT_EQ(form.Combo_Decimi->itemData(0).toInt(), 1);
    EXPECT_EQ(form.Combo_Decimi->itemText(8).toStdString(), "9  /10 per second");
    EXPECT_EQ(form.Combo_Decimi->itemData(8).toInt(), 9);
    ASSERT_EQ(form.Combo_NSavegame->count(), 15);
    EXPECT_EQ(form.Combo_NSavegame->itemText(0).toStdString(), "1");
    EXPECT_EQ(form.Combo_NSavegame->itemText(14).toStdString(), "15");
}

TEST_F(DialogSettings, ShowsTheProfile) {
    profile.DownloadFolder = "C:\\zips";
    profile.PromptCapture = true;
    profile.ScreenshotMinutes = 12;
    profile.VerifyImage = false;
    profile.FullBackup = false;
    Open();
    EXPECT_EQ(form.Label_PathTrle->text().toStdString(), "C:\\trle");
    EXPECT_EQ(form.Label_PathTrle->toolTip().toStdString(), "C:\\trle");
    EXPECT_EQ(form.Label_DefaultLoadDir->text().toStdString(), "C:\\zips");
    EXPECT_EQ(form.Label_EditorGrafico->text().toStdString(), "(none)");
    EXPECT_EQ(form.Label_EditorGrafico->toolTip().toStdString(), "");
    EXPECT_EQ(form.Label_FullBackup->text().toStdString(), "NO");
    EXPECT_TRUE(form.Opt_PromptCapture->isChecked());
    EXPECT_FALSE(form.Opt_NonPrompt->isChecked());
    EXPECT_TRUE(form.Check_ArchiviaSavegame->isChecked());
    EXPECT_EQ(form.Combo_NSavegame->currentText().toStdString(), "5");
    EXPECT_EQ(form.Text_MinutiDifferenza->text().toStdString(), "12");
    EXPECT_EQ(form.Combo_Decimi->currentText().toStdString(), "5  /10 per second");
    EXPECT_FALSE(form.Check_VerifyImage->isChecked());
    EXPECT_TRUE(form.Check_AutoSave->isChecked());
    EXPECT_FALSE(form.Pul_SetJoy->isEnabled());
    profile.FullBackup = true;
    form.ImpostaValori();
    EXPECT_EQ(form.Label_FullBackup->text().toStdString(), "YES");
}

TEST_F(DialogSettings, EachBoxHasItsFieldAndNoOther) {
    const std::pair<QCheckBox*, bool ProfileRecord::*> boxes[] = {
        {form.Check_ArchiviaSavegame, &ProfileRecord::ArchiveSavegames},
        {form.Check_AggiornamentoUrl, &ProfileRecord::UrlUpdateReminder},
        {form.Check_VerifyImage, &ProfileRecord::VerifyImage},
        {form.Check_NonDecomprimere, &ProfileRecord::NoDecompress},
        {form.Check_TestCOntrollaUguali, &ProfileRecord::CheckEqualLevels},
        {form.Check_NoAutoCompila, &ProfileRecord::NoAutoCompile},
        {form.Check_AutoSave, &ProfileRecord::AutoSave},
        {form.Check_EnableJoystick, &ProfileRecord::EnableJoystick}};
    for (const auto& [box, field] : boxes) {
        ProfileRecord expected = profile;
        expected.*field = !(expected.*field);
        Open();
        Click(box);
        Press(&form, "Pul_Ok");
        EXPECT_FALSE(form.isVisible());
        EXPECT_EQ(core::EncodeProfile(profile), core::EncodeProfile(expected))
            << box->objectName().toStdString();
    }
}

TEST_F(DialogSettings, ChangesTheNumbersAndThePrompt) {
    Open();
    Click(form.Opt_PromptCapture);
    Pick(form.Combo_NSavegame, 14);
    Pick(form.Combo_Decimi, 1);
    TypeMinutes("30");
    Press(&form, "Pul_Ok");
    EXPECT_TRUE(profile.PromptCapture);
    EXPECT_EQ(profile.SavegamesToKeep, 15);
    EXPECT_EQ(profile.TimerTenths, 2);
    EXPECT_EQ(core::session.TimerInterval, 200);
    EXPECT_EQ(profile.ScreenshotMinutes, 30);
    Open();
    Click(form.Opt_NonPrompt);
    Press(&form, "Pul_Ok");
    EXPECT_FALSE(profile.PromptCapture);
}

TEST_F(DialogSettings, WithoutArchivingTheNumberStays) {
    Open();
    Pick(form.Combo_NSavegame, 9);
    Click(form.Check_ArchiviaSavegame);
    EXPECT_FALSE(form.Combo_NSavegame->isEnabled());
    Press(&form, "Pul_Ok");
    EXPECT_FALSE(profile.ArchiveSavegames);
    EXPECT_EQ(profile.SavegamesToKeep, 5);
    Open();
    EXPECT_FALSE(form.Combo_NSavegame->isEnabled());
    Click(form.Check_ArchiviaSavegame);
    EXPECT_TRUE(form.Combo_NSavegame->isEnabled());
}

TEST_F(DialogSettings, NumbersWithoutAnItemAreShownAndStay) {
    profile.TimerTenths = 10;
    profile.SavegamesToKeep = 20;
    profile.ScreenshotMinutes = -1;
    const std::string before = core::EncodeProfile(profile);
    Open();
    EXPECT_EQ(form.Combo_Decimi->currentIndex(), -1);
    EXPECT_EQ(form.Combo_Decimi->placeholderText().toStdString(), "10  /10 per second");
    EXPECT_EQ(form.Combo_NSavegame->placeholderText().toStdString(), "20");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(core::EncodeProfile(profile), before);
    EXPECT_EQ(core::session.TimerInterval, 1000);
}

TEST_F(DialogSettings, TypedTextForMinutesKeepsTheFormOpenAndChangesNothing) {
    const std::string before = core::EncodeProfile(profile);
    Open();
    Click(form.Check_AutoSave);
    Pick(form.Combo_Decimi, 0);
    TypeMinutes("ten");
    robot.WillPress(
        "You must type a numeric value (digits) in field: Associate savegame with screenshot if ...", "OK");
    Press(&form, "Pul_Ok");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(core::EncodeProfile(profile), before);
    EXPECT_EQ(core::session.TimerInterval, 0);
    EXPECT_EQ(form.focusWidget(), form.Text_MinutiDifferenza);
    QTest::keyClicks(form.Text_MinutiDifferenza, QStringLiteral("10"));
    QTest::keyClick(form.Text_MinutiDifferenza, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(profile.ScreenshotMinutes, 10);
    EXPECT_FALSE(profile.AutoSave);
}

TEST_F(DialogSettings, SaysAtOnceThatMinutesAreNoNumber) {
    Open();
    TypeMinutes("ten");
    QTest::qWait(300);
    EXPECT_EQ(form.Note_Minutes->text().toStdString(), "Only digits count here");
    TypeMinutes("10");
    QTest::qWait(300);
    EXPECT_EQ(form.Note_Minutes->text().toStdString(), "");
}

TEST_F(DialogSettings, SaysThatTheTrleFolderHasGone) {
    Open();
    EXPECT_EQ(form.Note_Trle->text().toStdString(), "");
    std::filesystem::rename(trle, drive / "elsewhere");
    Open();
    EXPECT_EQ(form.Note_Trle->text().toStdString(), "This folder isn't there any more");
}

TEST_F(DialogSettings, CancelAndEscapePutTheProfileBack) {
    const std::string before = core::EncodeProfile(profile);
    Open();
    Click(form.Check_AutoSave);
    Pick(form.Combo_Decimi, 0);
    profile.JoyButtonA = 8; // as the form of the joystick leaves it
    Press(&form, "Pul_Cancel");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_EQ(core::EncodeProfile(profile), before);
    Open();
    EXPECT_TRUE(form.Check_AutoSave->isChecked());
    Click(form.Check_AutoSave);
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(core::EncodeProfile(profile), before);
}

TEST_F(DialogSettings, OkKeepsWhatOtherFormsChangedMeanwhile) {
    Open();
    profile.JoyButtonA = 8;
    profile.JoyFlagA = true;
    Press(&form, "Pul_Ok");
    EXPECT_EQ(profile.JoyButtonA, 8);
    EXPECT_TRUE(profile.JoyFlagA);
}

TEST_F(DialogSettings, TakesATrleFolderThatPassesTheTest) {
    std::filesystem::copy(trle, drive / "second", std::filesystem::copy_options::recursive);
    Open();
    WillChooseFolder("Select Tomb Raider Level Editor path (trle)", "C:\\second");
    Press(&form, "Pul_SfogliaPathTrle");
    EXPECT_EQ(form.Label_PathTrle->text().toStdString(), "C:\\second");
    EXPECT_EQ(profile.TrleFolder, "C:\\trle");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(profile.TrleFolder, "C:\\second");
}

TEST_F(DialogSettings, KeepsTheTrleFolderWhenAnotherFailsTheTest) {
    Open();
    WillChooseFolder("Select Tomb Raider Level Editor path (trle)", "C:\\Levels");
    robot.WillPress("MessageBox", "OK");
    Press(&form, "Pul_SfogliaPathTrle");
    EXPECT_TRUE(robot.HasSeen("C:\\Levels"));
    EXPECT_EQ(form.Label_PathTrle->text().toStdString(), "C:\\trle");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(profile.TrleFolder, "C:\\trle");
}

TEST_F(DialogSettings, ChoosesTheDownloadFolderAndTheGraphicalProgram) {
    std::filesystem::create_directories(drive / "zips");
    MakeFile(drive / "art" / "paint.exe", "MZ");
    Open();
    WillChooseFolder("Select folder where you download level zip files", "C:\\zips");
    Press(&form, "Pul_SfogliaLoadDir");
    robot.WillChooseFile("Select graphical program", drive / "art" / "paint.exe");
    Press(&form, "Pul_ScegliEditor");
    EXPECT_EQ(form.Label_DefaultLoadDir->text().toStdString(), "C:\\zips");
    EXPECT_EQ(form.Label_EditorGrafico->text().toStdString(), "C:\\art\\paint.exe");
    EXPECT_EQ(form.Label_EditorGrafico->toolTip().toStdString(), "C:\\art\\paint.exe");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(profile.DownloadFolder, "C:\\zips");
    EXPECT_EQ(profile.GraphicsProgram, "C:\\art\\paint.exe");
}

TEST_F(DialogSettings, ReadsTheRestPositionOfTheJoystickOnOk) {
    desktop.joysticks[0] = {100, 200, 0};
    Open();
    Press(&form, "Pul_Ok");
    EXPECT_EQ(companion::joystick_rest.X, 100);
    EXPECT_EQ(companion::joystick_rest.Y, 200);
}

TEST_F(DialogSettings, ALongPathDoesNotWidenTheForm) {
    Open();
    const int width = form.sizeHint().width();
    profile.DownloadFolder = "C:\\" + std::string(250, 'x');
    form.ImpostaValori();
    EXPECT_EQ(form.sizeHint().width(), width);
    EXPECT_EQ(form.Label_DefaultLoadDir->toolTip().toStdString(), profile.DownloadFolder);
}

TEST_F(DialogSettings, APathThatLooksLikeMarkUpIsShownAsItIs) {
    profile.DownloadFolder = "C:\\<b>x</b>";
    Open();
    EXPECT_EQ(form.Label_DefaultLoadDir->text().toStdString(), "C:\\<b>x</b>");
    EXPECT_EQ(form.Label_DefaultLoadDir->toolTip().toStdString(), "<span>C:\\&lt;b&gt;x&lt;/b&gt;</span>");
}

TEST_F(DialogSettings, HelpTellsWhenThereIsNone) {
    Open();
    robot.WillPress("Warning: I can not find file: \"C:\\Kelvash\\help_kelvash.txt\"", "OK");
    Press(&form, "Pul_Help");
}

} // namespace
} // namespace kelvash::test
