// The savegames' panel of the main form, and the form in which several are chosen.
#include "ui/savegame_panel.h"

#include <gmock/gmock.h>

#include <QLineEdit>

#include "companion/savegame_notes.h"
#include "companion/screenshots.h"
#include "foundation/files.h"
#include "support/local_time.h"
#include "support/savegame_bytes.h"
#include "ui/Dialog_InputTesto.h"
#include "ui/Dialog_ListSaveGame.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SavegamePanel : public PrincipaleHome {
  protected:
    SavegamePanel() {
        std::filesystem::remove(StashPath(1) / "savegame.0");
        for (int slot = 0; slot < 3; ++slot)
            Put(StashPath(1) / ("savegame." + std::to_string(slot)), slot + 5);
        for (int slot = 0; slot < 3; ++slot)
            Put(Archived() / ("savegame." + std::to_string(slot)), slot + 1);
        MakeFile(Archived() / "note1.txt", "the crane\r\n");
        core::SelectLevel(1);
        form.AggiornaDatiLivello(false);
        form.ShowPanel(false);
    }
    static void Put(const std::filesystem::path& file, int number) {
        MakeFile(file, SaveBytes("Gate", number));
        std::filesystem::last_write_time(file,
                                         std::chrono::file_clock::from_sys(std::chrono::sys_seconds(
                                             std::chrono::seconds(LocalSeconds(2004, 5, number, 12, 0, 0)))));
    }
    std::filesystem::path Archived() const { return LevelPath(1) / "SAVEGAMES/slot1"; }
    static std::vector<std::string> Texts(const QListWidget* list) {
        std::vector<std::string> texts;
        for (int row = 0; row < list->count(); ++row)
            texts.push_back(list->item(row)->text().toStdString());
        return texts;
    }
    static void Click(QListWidget* list, int row) {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(row)).center());
    }
    std::string Note() const { return form.Text_NoteSaveGame->toPlainText().toStdString(); }
    std::string Said() const { return form.Label_Info->text().toStdString(); }
    std::string Places() const { return form.Label_InfoDir->text().toStdString(); }
};

TEST_F(SavegamePanel, ListsSlotsAndArchivedOnes) {
    EXPECT_THAT(Texts(form.List_SaveGameTomb),
                ElementsAre("   5 Gate  (05/05/2004  12:00:00) ", "   6 Gate  (06/05/2004  12:00:00) ",
                            "   7 Gate  (07/05/2004  12:00:00) "));
    EXPECT_THAT(Texts(form.List_SaveGameArchiviati).front(), "   1 Gate  (01/05/2004  12:00:00) ");
    EXPECT_EQ(form.List_SaveGameTomb->item(2)->data(Qt::UserRole).toInt(), 2);
}

TEST_F(SavegamePanel, AClickInOneListTakesTheChoiceOfTheOther) {
    Click(form.List_SaveGameTomb, 1);
    EXPECT_EQ(form.List_SaveGameTomb->selectedItems().size(), 1);
    Click(form.List_SaveGameArchiviati, 1);
    EXPECT_TRUE(form.List_SaveGameTomb->selectedItems().isEmpty());
    EXPECT_EQ(Note(), "the crane");
    const auto selected = form.Savegames().GetSelectedSavegame();
    EXPECT_EQ(selected.path, "C:\\Levels\\LEVEL_0001\\savegames\\slot1\\savegame.1");
    EXPECT_TRUE(selected.archived);
    EXPECT_EQ(selected.index, 1);
    Click(form.List_SaveGameTomb, 2);
    EXPECT_TRUE(form.List_SaveGameArchiviati->selectedItems().isEmpty());
    EXPECT_EQ(Note(), "");
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().data, 2);
}

TEST_F(SavegamePanel, TheKeyboardChoosesToo) {
    form.List_SaveGameArchiviati->setFocus();
    QTest::keyClick(form.List_SaveGameArchiviati, Qt::Key_Home);
    QTest::keyClick(form.List_SaveGameArchiviati, Qt::Key_Down);
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().index, 1);
    EXPECT_EQ(Note(), "the crane");
}

TEST_F(SavegamePanel, ShowsThePictureOfTheSameTime) {
    MakeFile(LevelPath(1) / "SCREENSHOTS/near.bmp", "no picture needed");
    ASSERT_TRUE(
        SetFileDate("C:\\Levels\\LEVEL_0001\\screenshots\\near.bmp", LocalSeconds(2004, 5, 6, 12, 5, 0)));
    form.AggiornaDatiLivello(false);
    Click(form.List_SaveGameTomb, 1);
    EXPECT_EQ(form.Savegames().CurrentImage(), "C:\\Levels\\LEVEL_0001\\screenshots\\near.bmp");
    EXPECT_THAT(form.Image_SaveGame->Path().toStdString(), HasSubstr("near.bmp"));
    std::string opened;
    form.Savegames().open_picture = [&](const std::string& image) { opened = image; };
    QTest::mouseDClick(form.Image_SaveGame, Qt::LeftButton);
    EXPECT_EQ(opened, "C:\\Levels\\LEVEL_0001\\screenshots\\near.bmp");
    Click(form.List_SaveGameTomb, 0);
    EXPECT_EQ(form.Savegames().CurrentImage(), "");
    QTest::mouseDClick(form.Image_SaveGame, Qt::LeftButton);
    EXPECT_EQ(opened, companion::DefaultScreenshot());
}

TEST_F(SavegamePanel, ArchivesAndTheCountsFollow) {
    EXPECT_EQ(Places(), "Path: \"C:\\Levels\\LEVEL_0001\"  -  Screenshots: 0 - Savegames: 3 + 3");
    Press(&form, "Pul_ArchiviaSavegames");
    EXPECT_EQ(form.List_SaveGameTomb->count(), 1);
    EXPECT_EQ(form.List_SaveGameArchiviati->count(), 6);
    EXPECT_TRUE(robot.Seen().empty());
    EXPECT_EQ(Places(), "Path: \"C:\\Levels\\LEVEL_0001\"  -  Screenshots: 0 - Savegames: 1 + 6");
    EXPECT_EQ(Said(), "Archived: 3 savegames");
    Press(&form, "Pul_ArchiviaSavegames");
    EXPECT_EQ(Said(), "Nothing was archived: the newest savegame always stays in the slots");
}

TEST_F(SavegamePanel, WhatNeedsAChoiceIsGreyWithoutOneAndSaysWhy) {
    struct Expected {
        QPushButton* button;
        std::string why;
    };
    const std::array<Expected, 4> all = {{{form.Pul_RestoreSaveGame, "Choose one of the old savegames first"},
                                          {form.Pul_DeleteSavegame, "Choose a savegame first"},
                                          {form.Pul_ExportSaveGame, "Choose a savegame first"},
                                          {form.Pul_ChangeScreenshot, "Choose a savegame first"}}};
    const auto enabled = [&] {
        std::vector<bool> now;
        for (const Expected& expected : all)
            now.push_back(expected.button->isEnabled());
        return now;
    };
    form.List_SaveGameTomb->clearSelection();
    form.List_SaveGameArchiviati->clearSelection();
    EXPECT_EQ(enabled(), (std::vector<bool>{false, false, false, false}));
    for (const Expected& expected : all)
        EXPECT_EQ(expected.button->toolTip().toStdString(), expected.why);
    Click(form.List_SaveGameTomb, 0);
    EXPECT_EQ(enabled(), (std::vector<bool>{false, true, true, true}));
    Click(form.List_SaveGameArchiviati, 0);
    EXPECT_EQ(enabled(), (std::vector<bool>{true, true, true, true}));
    EXPECT_EQ(form.Pul_RestoreSaveGame->toolTip().toStdString(), "");
    EXPECT_EQ(form.Pul_DeleteSavegame->toolTip(), form.Pul_DeleteSavegame->accessibleDescription());
    EXPECT_TRUE(form.Pul_ArchiviaSavegames->isEnabled());
    EXPECT_TRUE(form.Pul_ImportSavegame->isEnabled());
}

TEST_F(SavegamePanel, ListsShowWholeRowsAndAreOfOneWidth) {
    form.ShowPanel(false);
    for (const int width : {1000, 1200})
        for (const int height : {560, 571, 700, 756}) {
            form.resize(width, height);
            QTest::qWait(20);
            EXPECT_NEAR(form.List_SaveGameTomb->width(), form.List_SaveGameArchiviati->width(), 1);
            const int row = form.List_SaveGameTomb->visualItemRect(form.List_SaveGameTomb->item(0)).height();
            for (const QListWidget* list : {form.List_SaveGameTomb, form.List_SaveGameArchiviati}) {
                EXPECT_EQ(list->viewport()->height() % row, 0) << height;
                EXPECT_GE(list->viewport()->height(), 3 * row);
            }
        }
    form.resize(1212, 756);
    QTest::qWait(20);
    const int row = form.List_SaveGameTomb->visualItemRect(form.List_SaveGameTomb->item(0)).height();
    EXPECT_GE(form.List_SaveGameTomb->viewport()->height(), 6 * row);
}

TEST_F(SavegamePanel, TheMenuTellsThatItHasArchivedAndRestored) {
    robot.WillPress("Current savegames archvied", "OK");
    Choose(Entry::mnu_BackupSavegame);
    EXPECT_EQ(form.List_SaveGameTomb->count(), 1);
    robot.WillPress("There was nothing to archive", "OK");
    Choose(Entry::mnu_BackupSavegame);
    robot.WillPress("Restored last savegames in tomb raider slots", "OK");
    Choose(Entry::mnu_RestoreSavegames);
    EXPECT_EQ(form.List_SaveGameTomb->count(), 3);
}

TEST_F(SavegamePanel, MovesAnArchivedOneIntoTheSlots) {
    robot.WillPress(
        "You must select a savegame from [Old Recorded Savegames] list and then click on this button "
        "to move this savegame in [Current Savegames in tomb raider slots] list",
        "OK");
    form.Savegames().RestoreToSlots(); // its button is grey
    Click(form.List_SaveGameArchiviati, 1);
    Press(&form, "Pul_RestoreSaveGame");
    EXPECT_EQ(Said(), "In the slots now: 2 Gate  (02/05/2004  12:00:00)");
    EXPECT_EQ(form.List_SaveGameTomb->count(), 4);
    EXPECT_EQ(BytesOf(StashPath(1) / "note0.txt"), "the crane\r\n");
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().index, 1); // chosen again
}

TEST_F(SavegamePanel, DeletesAndChoosesTheNextOrTheLast) {
    robot.WillPress("No savegame selected", "OK");
    Choose(Entry::mnu_DelSavegame); // the button is grey
    Click(form.List_SaveGameArchiviati, 2);
    robot.WillPress("Delete savegame [3 Gate  (03/05/2004  12:00:00)] ?", "Yes");
    Press(&form, "Pul_DeleteSavegame");
    EXPECT_EQ(form.List_SaveGameArchiviati->count(), 2);
    EXPECT_EQ(Said(), "Deleted: 3 Gate  (03/05/2004  12:00:00)");
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().index, 1);
    Click(form.List_SaveGameTomb, 0);
    robot.WillPress("Delete savegame [5 Gate", "Yes");
    Choose(Entry::mnu_DelSavegame);
    EXPECT_EQ(BytesOf(StashPath(1) / "savegame.0"), SaveBytes("Gate", 6));
}

TEST_F(SavegamePanel, ADoubleClickChangesTheNote) {
    Click(form.List_SaveGameArchiviati, 1);
    robot.Will("Insert / Change savegame description", [](QWidget* window) {
        auto* const input = dynamic_cast<ui::Dialog_InputTesto*>(window);
        ASSERT_NE(input, nullptr);
        EXPECT_EQ(input->Text1->toPlainText(), QStringLiteral("the crane"));
        input->Text1->setPlainText(QStringLiteral("the boiler"));
        Press(window, "Pul_Ok");
    });
    QTest::mouseDClick(form.Text_NoteSaveGame->viewport(), Qt::LeftButton);
    WaitUntil([&] { return Note() == "the boiler"; });
    EXPECT_EQ(BytesOf(Archived() / "note1.txt"), "the boiler\r\n");
    EXPECT_EQ(form.focusWidget(), form.List_SaveGameArchiviati);
    robot.Will("Insert / Change savegame description", [](QWidget* window) {
        Press(window, "Pul_Svuota");
        Press(window, "Pul_Ok");
    });
    form.Text_NoteSaveGame->setFocus();
    QTest::keyClick(form.Text_NoteSaveGame, Qt::Key_Return);
    WaitUntil([&] { return Note().empty(); });
    EXPECT_FALSE(Exists(Archived() / "note1.txt"));
}

TEST_F(SavegamePanel, ADescriptionThatIsChangedMeanwhileStaysUnlessItMayGo) {
    Click(form.List_SaveGameArchiviati, 1);
    const auto type = [this](QWidget* window) {
        auto* const input = dynamic_cast<ui::Dialog_InputTesto*>(window);
        ASSERT_NE(input, nullptr);
        MakeFile(Archived() / "note1.txt", "the winch\r\n");
        input->Text1->setPlainText(QStringLiteral("the boiler"));
        Press(window, "Pul_Ok");
    };
    robot.Will("Insert / Change savegame description", type);
    robot.WillPress("Another program has changed this description meanwhile. Now it is:\nthe winch", "No");
    robot.Will("Insert / Change savegame description", [](QWidget* window) {
        auto* const input = dynamic_cast<ui::Dialog_InputTesto*>(window);
        EXPECT_EQ(input->Text1->toPlainText(), QStringLiteral("the boiler")) << "what was typed is lost";
        Press(window, "Pul_Annulla");
    });
    QTest::mouseDClick(form.Text_NoteSaveGame->viewport(), Qt::LeftButton);
    WaitUntil([this] { return robot.Seen().size() == 3; });
    EXPECT_EQ(BytesOf(Archived() / "note1.txt"), "the winch\r\n");
}

TEST_F(SavegamePanel, TheChoiceStaysWhenOthersChangeTheLevel) {
    EXPECT_TRUE(core::WriteArchive("C:\\Kelvash\\test.kva"));
    form.Timer_Beside->setInterval(20);
    Click(form.List_SaveGameTomb, 1);
    QTest::qWait(150);
    ASSERT_TRUE(companion::WriteNote("C:\\Levels\\LEVEL_0001\\backup_savegames\\savegame.1", "the boiler"));
    Put(StashPath(1) / "savegame.7", 9);
    WaitUntil([this] { return form.List_SaveGameTomb->count() == 4; });
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().index, 1);
    EXPECT_EQ(Note(), "the boiler");
    Put(StashPath(1) / "savegame.1", 11); // another one in its place
    std::filesystem::remove(StashPath(1) / "savegame.7");
    WaitUntil([this] { return form.List_SaveGameTomb->count() == 3; });
    EXPECT_TRUE(form.List_SaveGameTomb->selectedItems().isEmpty());
    EXPECT_EQ(Note(), "");
}

TEST_F(SavegamePanel, TellsWhatARestoreHasPutAside) {
    MakeFile(Archived() / "savegame.2", SaveBytes("Gate", 5, "another"));
    robot.WillPress(
        "These have been put aside, because the slots hold others of the same number:\n"
        "C:\\Levels\\LEVEL_0001\\REPEATED\\savegame.0\nThey can be imported again.",
        "OK");
    robot.WillPress("Restored last savegames in tomb raider slots", "OK");
    Choose(Entry::mnu_RestoreSavegames);
    EXPECT_EQ(form.List_SaveGameTomb->count(), 5);
}

TEST_F(SavegamePanel, FindsADescription) {
    form.ShowPanel(true);
    robot.Will("Find savegame", [](QWidget* window) {
        window->findChild<QLineEdit*>()->setText(QStringLiteral("CRANE"));
        Press(window, "OK");
    });
    Choose(Entry::mnu_FindSavegameNote);
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().index, 1);
    EXPECT_TRUE(form.Frame_SaveGames->isVisible());
    form.List_SaveGameArchiviati->setCurrentRow(2);
    Choose(Entry::mnu_FineNextSavegame);
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().index, 1);
    form.List_SaveGameArchiviati->setCurrentRow(0);
    Choose(Entry::mnu_FindPreviousSavegame);
    EXPECT_EQ(form.Savegames().GetSelectedSavegame().index, 1);
}

TEST_F(SavegamePanel, TellsWhatIsKnown) {
    Click(form.List_SaveGameArchiviati, 1);
    robot.WillPress("Description: \"C:\\Levels\\LEVEL_0001\\savegames\\slot1\\note1.txt\"", "OK");
    Choose(Entry::mnu_PropertySavegame);
}

TEST_F(SavegamePanel, SavesACopyUnderAnyName) {
    Click(form.List_SaveGameArchiviati, 1);
    robot.WillChooseFile("Save savegame", drive / "before boss");
    Choose(Entry::mnu_SalvaSavegame);
    EXPECT_EQ(BytesOf(drive / "before boss"), SaveBytes("Gate", 2));
}

TEST_F(SavegamePanel, LinksAnImageThatIsChosen) {
    MakeFile(LevelPath(1) / "SCREENSHOTS/far.bmp", "no picture needed");
    ASSERT_TRUE(SetFileDate("C:\\Levels\\LEVEL_0001\\screenshots\\far.bmp", 1000));
    form.AggiornaDatiLivello(false);
    Click(form.List_SaveGameTomb, 1);
    EXPECT_EQ(form.Savegames().CurrentImage(), "");
    robot.WillChooseFile("Choose image (screenshot) to link at current savegame",
                         LevelPath(1) / "SCREENSHOTS/far.bmp");
    Press(&form, "Pul_ChangeScreenshot");
    EXPECT_THAT(form.Savegames().CurrentImage(), testing::EndsWith("far.bmp"));
}

TEST_F(SavegamePanel, ALevelWithoutSavegamesHasNoneToExportOrSend) {
    core::SelectLevel(2);
    for (const Entry entry : {Entry::mnu_ExportSavegame, Entry::mnu_SendSaveGameEmail}) {
        robot.WillPress("The level has no savegames", "OK");
        Choose(entry);
    }
}

TEST_F(SavegamePanel, AsksForAnImageWhereThereIsNone) {
    Click(form.List_SaveGameTomb, 0);
    robot.WillPress("You have no images (screenshots) in current level", "OK");
    Press(&form, "Pul_ChangeScreenshot");
}

TEST_F(SavegamePanel, ImportsOneFile) {
    Put(drive / "friend/savegame.4", 40);
    robot.WillChooseFile("Select savegame to import in current level", drive / "friend/savegame.4");
    Press(&form, "Pul_ImportSavegame");
    EXPECT_EQ(form.List_SaveGameTomb->count(), 4);
}

TEST_F(SavegamePanel, ImportsFromAFolder) {
    for (int slot = 0; slot < 3; ++slot)
        Put(drive / ("friend/savegame." + std::to_string(slot)), slot + 40);
    WillChooseFolder("Select source folder with savegames to import", "C:\\friend");
    robot.WillPress("Dialog_ListSaveGame", "Pul_Ok");
    robot.WillPress("No savegame selected", "OK");
    robot.Will("Dialog_ListSaveGame", [](QWidget* window) {
        auto* const list = dynamic_cast<ui::Dialog_ListSaveGame*>(window);
        EXPECT_FALSE(list->Check_Elimina->isVisible());
        EXPECT_EQ(list->List_Shot->count(), 3);
        list->List_Shot->item(0)->setSelected(true);
        list->List_Shot->item(2)->setSelected(true);
        Press(window, "Pul_Ok");
    });
    Choose(Entry::mnu_ImportSaveGame);
    EXPECT_EQ(form.List_SaveGameTomb->count(), 5);
}

TEST_F(SavegamePanel, AnEmptyFolderIsTold) {
    std::filesystem::create_directories(drive / "empty");
    WillChooseFolder("Select source folder with savegames to import", "C:\\empty");
    robot.WillPress("No savegames in folder: C:\\empty", "OK");
    Choose(Entry::mnu_ImportSaveGame);
}

TEST_F(SavegamePanel, ExportsAllAndTakesThemOut) {
    std::filesystem::create_directories(drive / "out");
    robot.Will("Dialog_ListSaveGame", [](QWidget* window) {
        auto* const list = dynamic_cast<ui::Dialog_ListSaveGame*>(window);
        EXPECT_TRUE(list->Check_Elimina->isVisible());
        EXPECT_EQ(list->List_Shot->count(), 6);
        Press(window, "Pul_All");
        list->Check_Elimina->setChecked(true);
        Press(window, "Pul_Ok");
    });
    WillChooseFolder("Select folder where save savegames", "C:\\out");
    Choose(Entry::mnu_ExportSavegame);
    EXPECT_EQ(form.List_SaveGameTomb->count(), 0);
    EXPECT_EQ(form.List_SaveGameArchiviati->count(), 0);
    EXPECT_TRUE(Exists(drive / "out/savegame.2"));
    EXPECT_TRUE(Exists(drive / "out/slot1/savegame.1"));
    EXPECT_EQ(BytesOf(drive / "out/slot1/note1.txt"), "the crane\r\n");
}

TEST_F(SavegamePanel, CommandsWantALevel) {
    core::level_list.Selected = -1;
    form.AggiornaDatiLivello(false);
    for (const Entry entry :
         {Entry::mnu_BackupSavegame, Entry::mnu_RestoreSavegames, Entry::mnu_ImportSaveGame,
          Entry::mnu_ExportSavegame, Entry::mnu_DelSavegame, Entry::mnu_FindSavegameNote})
        EXPECT_FALSE(form.Command(entry)->isEnabled());
}

} // namespace
} // namespace kelvash::test
