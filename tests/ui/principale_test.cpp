#include "ui/Principale.h"

#include <gmock/gmock.h>

#include <QDragEnterEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QStatusBar>
#include <QTest>
#include <QTimer>
#include <QToolBar>
#include <QUrl>

#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;

namespace fs = std::filesystem;

class PrincipaleForm : public PrincipaleHome {
  protected:
    // Every level of the menu as lines, deeper ones with two blanks more.
    static void Walk(const QList<QAction*>& actions, int depth, std::vector<std::string>& lines) {
        for (const QAction* action : actions) {
            lines.push_back(std::string(static_cast<std::size_t>(depth) * 2, ' ') +
                            action->objectName().toStdString() + "=" + Plain(action->text()));
            if (action->menu() != nullptr) Walk(action->menu()->actions(), depth + 1, lines);
        }
    }
};

// --- captions and menu ---

// Names and notes of strangers are no mark-up, and one line each.
TEST_F(PrincipaleForm, TextsOfStrangersAreShownToTheLetter) {
    core::archive.Table.Edit(1)->Name = std::string("<b>Gold</b>\0\nX", 14);
    core::archive.Table.Edit(1)->Note = "<img src='file:///etc/passwd'>\r\ntwo";
    core::RefreshLevelList();
    core::SelectLevel(1);
    EXPECT_THAT(Shown(), testing::Contains("<b>Gold</b> X"));
    const QModelIndex current = form.Combo_Livelli->currentIndex();
    EXPECT_EQ(current.data(Qt::ToolTipRole).toString().toStdString(),
              "<span>&lt;b&gt;Gold&lt;/b&gt; X<br>&lt;img src='file:///etc/passwd'&gt; two</span>");
    EXPECT_EQ(form.Label_InfoLevel->textFormat(), Qt::PlainText);
    EXPECT_EQ(form.Label_InfoLevel->text().toStdString(), "<img src='file:///etc/passwd'> two");
    EXPECT_EQ(form.Label_InfoDir->textFormat(), Qt::PlainText);
    for (const QLabel* label : form.findChildren<QLabel*>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->objectName().toStdString();
}

// However long, without a blank to break them at.
TEST_F(PrincipaleForm, TextsOfStrangersLeaveTheWindowAsItIs) {
    const QSize size = form.size(), least = form.minimumSizeHint();
    core::archive.Table.Edit(1)->Name = std::string(256, 'W');
    core::archive.Table.Edit(1)->Note = std::string(256, 'W');
    core::RefreshLevelList();
    core::SelectLevel(1);
    QApplication::processEvents();
    EXPECT_EQ(form.size(), size);
    EXPECT_EQ(form.minimumSizeHint(), least);
    EXPECT_EQ(form.Label_InfoLevel->toolTip().toStdString(), std::string(256, 'W'));
    EXPECT_EQ(form.Label_InfoLevel->height(), form.Label_InfoLevel->sizeHint().height()) << "one line";
}

TEST_F(PrincipaleForm, GetsAsSmallAsAScreenMayBe) {
    form.resize(640, 480);
    EXPECT_EQ(form.size(), QSize(640, 480));
}

TEST_F(PrincipaleForm, KeysWorkWithoutTheToolBar) {
    form.findChild<QToolBar*>(QStringLiteral("Tools"))->hide();
    form.Combo_Livelli->setFocus();
    QTest::keyClick(&form, Qt::Key_L, Qt::ControlModifier);
    EXPECT_EQ(QApplication::focusWidget(), form.Text_Search);
}

TEST_F(PrincipaleForm, GreyButtonsSayWhy) {
    core::level_list.Selected = -1;
    form.AggiornaDatiLivello(false);
    EXPECT_FALSE(form.Pul_Play->isEnabled());
    EXPECT_EQ(form.Pul_Play->toolTip().toStdString(), "No level is selected");
    core::SelectLevel(1);
    EXPECT_TRUE(form.Pul_Play->isEnabled());
    EXPECT_EQ(form.Pul_Play->toolTip().toStdString(), "");
}

TEST_F(PrincipaleForm, HasItsControlsUnderTheirNames) {
    EXPECT_EQ(form.objectName().toStdString(), "Principale");
    EXPECT_EQ(form.findChild<QListView*>(QStringLiteral("Combo_Livelli")), form.Combo_Livelli);
    EXPECT_EQ(Plain(form.Pul_Play->text()), "Play");
    EXPECT_EQ(Plain(form.Pul_MoreInfo->text()), "More info");
    EXPECT_EQ(Plain(form.Pul_Search->text()), "Find");
    EXPECT_EQ(Plain(form.Pul_Dopo->text()), "Next");
    EXPECT_EQ(Plain(form.Pul_Prima->text()), "Previous");
    EXPECT_EQ(Plain(form.Pul_ScreenShots->text()), "ScreenShots");
    EXPECT_EQ(Plain(form.Pul_SaveGames->text()), "Savegames");
    EXPECT_EQ(form.Frame_Livelli->title().toStdString(), "Levels");
}

TEST_F(PrincipaleForm, HasTheWholeMenuInItsOrder) {
    std::vector<std::string> lines;
    Walk(form.menuBar()->actions(), 0, lines);
    const std::vector<std::string> expected = {
        "mnu_File=File",
        "  mnu_New=New Archive",
        "  mnu_Load=Load Archive",
        "  mnu_Save=Save Archive",
        "  mnu_SaveAs=Save Archive  as ...",
        "  Mnu_Exit=Exit",
        "mnu_Level=Levels",
        "  mnu_AddLevel=Add new level",
        "  mnu_SearchLivelli=Search custom level in zip files on your PC",
        "  mnu_Property=Properties of current level",
        "  mnu_ShowAutoreInfo=Show author notes",
        "  mnu_Language=Language of level",
        "    mnu_SetMylanguage=Set my language in current level",
        "    mnu_RestoreLanguage=Restore original language in current level",
        "  mnu_RemoveLevel=Delete current level",
        "  mnu_Export=Export all files of current level in zip file",
        "  mnu_ShowListaUrl=Show urls where download new levels",
        "mnu_SaveGames=Savegames",
        "  mnu_ShowSavegames=Show Savegames Panel",
        "  mnu_ImpSavegames=Import savegames in current level",
        "    mnu_ImportSaveGameSingle=from a single file (one savegame)",
        "    mnu_ImportSaveGame=from folder (many savegames)",
        "  mnu_SearchSavegame=Search savegames",
        "    mnu_FindSavegameNote=Find savegames with description contains  ...",
        "    mnu_FineNextSavegame=Find next savegame",
        "    mnu_FindPreviousSavegame=Find previous savegame",
        "  mnu_MandaSavegameEmail=Send savegames via email to your friends",
        "    mnu_SendSaveGameEmail=Send many savegames",
        "    mnu_SendSingoloSavegame=Send (the single) selected savegame",
        "  mnu_ExportSavegame=Export savegames from current level to other folder",
        "  mnu_BackupSavegame=Free tombraider slot and archive savegames (F9 while you are playing)",
        "  mnu_RestoreSavegames=Restore in slots old savegames (F11 while you are playing)",
        "mnu_Edit=ScreenShots",
        "  mnu_ShowScreenShot=Show ScreenShots Panel",
        "  mnu_CaptureScreen=Capture screenshot ([Print Screen] key  while you are playing)",
        "  mnu_AddScreenshot=Add new screenshot",
        "  mnu_OpenEditor=Open image with graphical program",
        "  mnu_SendScreenshotemail=Send screenshot to your friends via email",
        "  mnu_CopyPathInClip=Copy full path in clipboard",
        "  mnu_CopyShot=Copy image in clipboard",
        "  mnu_PropertyScreenShot=Property",
        "  mnu_DeleteShot=Delete",
        "  mnu_RenameShot=Rename",
        "  mnu_ResizeSave=Resize and save ...",
        "  mnu_SaveShot=Save as ...",
        "  mnu_Zoom=Zoom",
        "mnu_LevelEditor=Level-Editor",
        "  mnu_InstallTrle=Installation of Tomb Raider Level Editor",
        "    mnu_InstallTrleFolder=Install Level Editor from a TRLE folder",
        "    mnu_InstallComprTrle=Install Compress Level Editor",
        "  mnu_SetupTrle=Change graphical and audio settings of Level Editor",
        "  mnu_SetOriginale=Set original configuration in Level Editor",
        "  mnu_ImportWads=Import new/updated wads",
        "  mnu_CompareTrle=Verify changed files in Level Editor",
        "  mnu_ShowUrlList=Show url list about Level Editor's World",
        "mnu_Tools=Tools",
        "  mnu_ConvertAudio=Convert audio files ",
        "    mnu_DecodeMp3=Decode: MP3 -> WAV",
        "    mnu_EncodeMp3=Encode: WAV -> MP3",
        "    mnu_ConvertWav=Convert: WAV - >  different WAV format",
        "  mnu_Manutenzione=Archive maintenance",
        "    mnu_CorrectArchiveCD=Correction of CD archive",
        "    mnu_CalcolaSize=Re-compute archive size",
        "    mnu_MoveArc=Move Archive Folder",
        "    mnu_ControllaUguali=Check for equal levels in archive",
        "    mnu_CopiaFileInfos=Copy all [more info] files From Cd to HD",
        "    mnu_CreaInfoTr4=Create all [info tr4 files] to fast equal levels check",
        "    mnu_FaiFullBackup=Create\\Refresh full backup",
        "    mnu_Recover=Recover archive from HD folder",
        "    mnu_Kept=Take back a kept level folder",
        "    mnu_SetLanguageAll=Set my language in all levels",
        "    mnu_RestoreAll=Restore original language in all levels",
        "  mnu_MoveOnCd=Create Kelvash CD (with Levels and/or Programs)",
        "  mnu_SetupUpload=Upload level files Wizard  (for game designer)",
        "  mnu_ProvaFilmato=Perform test movie",
        "mnu_Pref=Preferences",
        "  mnu_Settings=Kelvash",
        "  mnu_PrefArchive=Current archive",
        "mnu_Help=Help",
        "  mnu_About=About Kelvash",
        "  mnu_FindHelp=Help Kelvash",
        "  mnu_HelpSaveGameMan=Help about savegame management",
        "  mnu_HelpFaq=How to solve problems (style FAQ help)",
        "  mnu_Keys=Keys"};
    EXPECT_EQ(lines, expected);
}

TEST_F(PrincipaleForm, HasTheMenusOfTheSavegamePanel) {
    std::vector<std::string> lines;
    for (const Entry entry : {Entry::mnu_SaveGameHid, Entry::mnu_SaveGameHid2})
        Walk({form.Command(entry)}, 0, lines);
    EXPECT_THAT(lines, ElementsAre("mnu_SaveGameHid=SaveGamesHid1",
                                   "  mnu_ScegliImmagine=Choose an image for current savegame",
                                   "mnu_SaveGameHid2=SaveGamesHid2", "  mnu_PropertySavegame=Property",
                                   "  mnu_DelSavegame=Delete", "  mnu_SalvaSavegame=Save as ...",
                                   "  mnu_SendSavegame=Send this savegame to your friends",
                                   "  mnu_ChangeImageSavegame=Choose/Change image for this savegames"));
}

TEST_F(PrincipaleForm, GreysTheCommandsThatCantDoAnythingYet) {
    std::vector<std::string> enabled;
    for (const QAction* action : form.findChildren<QAction*>())
        if (action->isEnabled() && action->menu() == nullptr &&
            action->objectName().startsWith(QLatin1String("mnu_"), Qt::CaseInsensitive))
            enabled.push_back(action->objectName().toStdString());
    EXPECT_THAT(
        enabled,
        testing::UnorderedElementsAre(
            "mnu_New", "mnu_Load", "mnu_Save", "mnu_SaveAs", "Mnu_Exit", "mnu_ShowSavegames",
            "mnu_ShowScreenShot", "mnu_SetOriginale", "mnu_CalcolaSize", "mnu_FaiFullBackup", "mnu_Settings",
            "mnu_About", "mnu_FindHelp", "mnu_HelpSaveGameMan", "mnu_HelpFaq", "mnu_Keys", "mnu_AddLevel",
            "mnu_Property", "mnu_ShowAutoreInfo", "mnu_RemoveLevel", "mnu_Export", "mnu_PrefArchive",
            "mnu_MoveArc", "mnu_Recover", "mnu_ControllaUguali", "mnu_CreaInfoTr4", "mnu_Kept",
            "mnu_CaptureScreen", "mnu_AddScreenshot", "mnu_OpenEditor", "mnu_CopyPathInClip", "mnu_CopyShot",
            "mnu_SendScreenshotemail", "mnu_PropertyScreenShot", "mnu_DeleteShot", "mnu_RenameShot",
            "mnu_ResizeSave", "mnu_SaveShot", "mnu_Zoom", "mnu_ImportSaveGameSingle", "mnu_ImportSaveGame",
            "mnu_FindSavegameNote", "mnu_FineNextSavegame", "mnu_FindPreviousSavegame",
            "mnu_SendSaveGameEmail", "mnu_SendSingoloSavegame", "mnu_ExportSavegame", "mnu_BackupSavegame",
            "mnu_RestoreSavegames", "mnu_ScegliImmagine", "mnu_PropertySavegame", "mnu_DelSavegame",
            "mnu_SalvaSavegame", "mnu_SendSavegame", "mnu_ChangeImageSavegame", "mnu_DecodeMp3",
            "mnu_EncodeMp3", "mnu_ConvertWav"));
}

TEST_F(PrincipaleForm, GreysAMenuInWhichNothingCanBeDone) {
    const auto greyed = [&] {
        std::vector<std::string> names;
        for (const QAction* action : form.findChildren<QAction*>())
            if (!action->isEnabled() && action->menu() != nullptr)
                names.push_back(action->objectName().toStdString());
        return names;
    };
    EXPECT_THAT(greyed(), testing::UnorderedElementsAre("mnu_Language", "mnu_InstallTrle"));
    core::CloseArchive();
    EXPECT_THAT(greyed(), testing::Contains("mnu_Level")) << "each of its commands needs an Archive";
    EXPECT_TRUE(form.Command(Entry::mnu_Manutenzione)->isEnabled()) << "an Archive can be recovered";
}

TEST_F(PrincipaleForm, AGreyMenuSaysWhy) {
    EXPECT_EQ(form.Command(Entry::mnu_Language)->statusTip().toStdString(),
              "This comes with a later version");
    EXPECT_EQ(form.Command(Entry::mnu_Level)->statusTip().toStdString(), "");
    core::CloseArchive();
    EXPECT_EQ(form.Command(Entry::mnu_Level)->statusTip().toStdString(), "No Archive is open");
    EXPECT_EQ(form.Command(Entry::mnu_Level)->toolTip().toStdString(), "No Archive is open");
}

TEST_F(PrincipaleForm, AKeyThatAJobSwallowsIsAnswered) {
    forms.SetPatience(60000);
    const JobScope job;
    QTimer::singleShot(0, &form, [this] { QTest::keyClick(form.Text_Search, Qt::Key_A); });
    forms.PumpEvents();
    EXPECT_EQ(form.Text_Search->text().toStdString(), "");
    EXPECT_EQ(form.statusBar()->currentMessage().toStdString(), "Not now: another job is running");
}

TEST_F(PrincipaleForm, BeginsNoCommandWhileTheLogicWorks) {
    forms.SetPatience(60000);
    {
        const ProgressDialog job(BarPlace::ProgressDialog, {});
        form.Command(Entry::mnu_Settings)->trigger(); // a window would fail the test
        EXPECT_EQ(form.statusBar()->currentMessage().toStdString(), "Not now: another job is running");
        robot.WillPress("About", "OK");
        form.Command(Entry::mnu_About)->trigger();
        EXPECT_TRUE(robot.HasSeen("About Kelvash"));
    }
    robot.WillPress("Dialog_Settings", "Pul_Cancel");
    form.Command(Entry::mnu_Settings)->trigger();
}

TEST_F(PrincipaleForm, LeavesTheLettersToWhatCanBeDone) {
    EXPECT_TRUE(form.Pul_DeleteSavegame->text().contains(QLatin1Char('&')));
    EXPECT_FALSE(form.Command(Entry::mnu_SearchLivelli)->text().contains(QLatin1Char('&')));
    EXPECT_EQ(form.Command(Entry::mnu_RemoveLevel)->text().toStdString(), "&Delete current level");
}

TEST_F(PrincipaleForm, HasKeysForTheNoteSearchAndTheHelp) {
    EXPECT_EQ(form.Command(Entry::mnu_FindSavegameNote)->shortcut().toString().toStdString(), "Ctrl+F");
    EXPECT_EQ(form.Command(Entry::mnu_FineNextSavegame)->shortcut().toString().toStdString(), "Ctrl+N");
    EXPECT_EQ(form.Command(Entry::mnu_FindPreviousSavegame)->shortcut().toString().toStdString(), "Ctrl+P");
    EXPECT_EQ(form.Command(Entry::mnu_FindHelp)->shortcut().toString().toStdString(), "F1");
}

TEST_F(PrincipaleForm, GivesEachButtonALetterOfItsOwn) {
    std::set<QString> letters;
    for (const QPushButton* button : {form.Pul_Search, form.Pul_Dopo, form.Pul_Prima, form.Pul_Play,
                                      form.Pul_MoreInfo, form.Pul_ScreenShots, form.Pul_SaveGames}) {
        const QString text = button->text();
        const qsizetype at = text.indexOf(QLatin1Char('&'));
        ASSERT_GE(at, 0) << text.toStdString();
        EXPECT_TRUE(letters.insert(text.mid(at + 1, 1).toUpper()).second) << text.toStdString();
    }
}

// --- panels and pictures ---

TEST_F(PrincipaleForm, SwitchesBetweenTheTwoPanels) {
    Press(&form, "Pul_SaveGames");
    EXPECT_TRUE(form.Frame_SaveGames->isVisible());
    EXPECT_FALSE(form.Frame_ScreenShots->isVisible());
    EXPECT_FALSE(core::profile.ShowScreenShots);
    Choose(Entry::mnu_ShowScreenShot);
    EXPECT_TRUE(form.Frame_ScreenShots->isVisible());
    EXPECT_FALSE(form.Frame_SaveGames->isVisible());
    EXPECT_TRUE(core::profile.ShowScreenShots);
    Choose(Entry::mnu_ShowSavegames);
    EXPECT_TRUE(form.Pul_SaveGames->isChecked());
    Press(&form, "Pul_ScreenShots");
    EXPECT_TRUE(core::profile.ShowScreenShots);
}

TEST_F(PrincipaleForm, PagesThroughScreenshotsByTwo) {
    for (const char* name : {"1.bmp", "2.bmp", "3.bmp"})
        MakeFile(LevelPath(1) / "SCREENSHOTS" / name, MakeBitmap({}));
    core::SelectLevel(1);
    WaitUntil([this] { return form.Image1->HasPicture() && form.Image2->HasPicture(); });
    EXPECT_TRUE(form.Image1->Path().endsWith(QLatin1String("1.bmp")));
    EXPECT_TRUE(form.Image2->Path().endsWith(QLatin1String("2.bmp")));
    EXPECT_FALSE(form.Pul_PrimaScreenShot->isEnabled());
    Press(&form, "Pul_DopoScreenShot");
    EXPECT_TRUE(form.Image1->Path().endsWith(QLatin1String("3.bmp")));
    EXPECT_TRUE(form.Image2->Path().isEmpty());
    EXPECT_FALSE(form.Pul_DopoScreenShot->isEnabled());
    form.AggiornaDatiLivello(true);
    EXPECT_TRUE(form.Image1->Path().endsWith(QLatin1String("3.bmp")));
    form.AggiornaDatiLivello(false);
    EXPECT_TRUE(form.Image1->Path().endsWith(QLatin1String("1.bmp")));
    Press(&form, "Pul_UltimoShot");
    EXPECT_TRUE(form.Image1->Path().endsWith(QLatin1String("3.bmp")));
    Press(&form, "Pul_PrimoShot");
    EXPECT_TRUE(form.Image1->Path().endsWith(QLatin1String("1.bmp")));
}

TEST_F(PrincipaleForm, ShowsTheNewestScreenshotInTheList) {
    MakeFile(LevelPath(1) / "SCREENSHOTS/1.bmp", MakeBitmap({}));
    core::SelectLevel(1);
    const auto* const model = dynamic_cast<const ui::LevelModel*>(form.Combo_Livelli->model());
    EXPECT_TRUE(model->Row(3).picture.isNull()) << "it is read when the program has nothing else to do";
    WaitUntil([&] { return !model->Row(3).picture.isNull(); });
    const QSize picture = model->Row(3).picture.size();
    EXPECT_GE(picture.width(), 80);
    EXPECT_GE(picture.height(), 60);
    EXPECT_TRUE(picture.width() == 80 || picture.height() == 60) << "no larger than it has to be";
}

TEST_F(PrincipaleForm, ShowsTheDefaultPictureForALevelWithoutAny) {
    core::SelectLevel(2);
    EXPECT_EQ(form.Image1->Text().toStdString(), "No screenshots yet");
    MakeFile(home / "default_shot.jpg", MakeBitmap({}));
    form.AggiornaDatiLivello(false);
    EXPECT_EQ(form.Image1->Path().toStdString(), (home / "default_shot.jpg").string());
    EXPECT_EQ(form.Image_SaveGame->Path().toStdString(), (home / "default_shot.jpg").string());
    EXPECT_FALSE(form.Image2->isVisible());
}

TEST_F(PrincipaleForm, AClickInOneSavegameListClearsTheOther) {
    MakeFile(LevelPath(1) / "SAVEGAMES/slot1/savegame.1", "Hall,");
    core::SelectLevel(1);
    Press(&form, "Pul_SaveGames");
    const auto click = [](QListWidget* list) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, list->visualItemRect(list->item(0)).center());
    };
    ASSERT_EQ(form.List_SaveGameTomb->count(), 1);
    ASSERT_EQ(form.List_SaveGameArchiviati->count(), 1);
    click(form.List_SaveGameTomb);
    EXPECT_EQ(form.List_SaveGameTomb->selectedItems().size(), 1);
    click(form.List_SaveGameArchiviati);
    EXPECT_EQ(form.List_SaveGameArchiviati->selectedItems().size(), 1);
    EXPECT_TRUE(form.List_SaveGameTomb->selectedItems().isEmpty());
    click(form.List_SaveGameTomb);
    EXPECT_EQ(form.List_SaveGameTomb->selectedItems().size(), 1);
    EXPECT_TRUE(form.List_SaveGameArchiviati->selectedItems().isEmpty());
}

TEST_F(PrincipaleForm, ARefreshForgetsWhatWasShownOfASavegame) {
    MakeFile(home / "default_shot.jpg", MakeBitmap({}));
    MakeFile(drive / "other.bmp", MakeBitmap({}));
    core::SelectLevel(1);
    form.Text_NoteSaveGame->setPlainText(QStringLiteral("The golden key"));
    form.Image_SaveGame->ShowFile(QString::fromStdString((drive / "other.bmp").string()), {});
    form.AggiornaDatiLivello(true);
    EXPECT_EQ(form.Text_NoteSaveGame->toPlainText().toStdString(), "");
    EXPECT_EQ(form.Image_SaveGame->Path().toStdString(), (home / "default_shot.jpg").string());
}

TEST_F(PrincipaleForm, TellsAPictureThatIsNone) {
    MakeFile(LevelPath(1) / "SCREENSHOTS/broken.jpg", "no picture at all");
    core::SelectLevel(1);
    WaitUntil(
        [this] { return form.Image1->Text() == QLatin1String("This image can't be shown:\nbroken.jpg"); });
    EXPECT_FALSE(form.Image1->HasPicture());
}

TEST_F(PrincipaleForm, TellsAMissingLevelFolder) {
    fs::remove_all(LevelPath(1));
    core::SelectLevel(1);
    EXPECT_EQ(form.Image1->Text().toStdString(), "The level's folder is missing: C:\\Levels\\LEVEL_0001");
    EXPECT_TRUE(form.Pul_Play->isEnabled());
}

} // namespace
} // namespace kelvash::test
