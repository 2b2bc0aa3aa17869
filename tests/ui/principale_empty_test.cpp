// The main form where there is nothing to show.
#include <gmock/gmock.h>

#include <QApplication>

#include "support/bitmaps.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using PrincipaleEmpty = PrincipaleHome;

// --- where there is nothing to show ---

TEST_F(PrincipaleEmpty, SaysWhatHelpsWhereThereIsNoScreenshot) {
    core::SelectLevel(2);
    EXPECT_TRUE(form.Empty_Shots->isVisible());
    EXPECT_EQ(form.Empty_Shots->Sentence().toStdString(), "Press Print Screen in the game to take some");
    EXPECT_TRUE(form.Image1->isVisible()) << "the default picture has its place";
    MakeFile(drive / "1.bmp", MakeBitmap({}));
    robot.WillChooseFile("Select an image to add in screen-shot list", drive / "1.bmp");
    robot.WillPress("Screenshot '1.bmp' saved in screenshot list as", "OK");
    Press(&form, "Pul_AddShots");
    EXPECT_FALSE(form.Empty_Shots->isVisible());
}

TEST_F(PrincipaleEmpty, SaysWhatHelpsWhereThereIsNoSavegame) {
    core::SelectLevel(2);
    Press(&form, "Pul_SaveGames");
    EXPECT_TRUE(form.Empty_SaveGames->isVisible());
    EXPECT_FALSE(form.List_SaveGameTomb->isVisible());
    EXPECT_EQ(form.Empty_SaveGames->Sentence().toStdString(), "No savegames yet: save in the game");
    EXPECT_TRUE(form.Pul_PlayNow->isEnabled());
    MakeFile(drive / "friend/savegame.4", "Tower,");
    robot.WillChooseFile("Select savegame to import in current level", drive / "friend/savegame.4");
    Press(&form, "Pul_ImportFirst");
    EXPECT_FALSE(form.Empty_SaveGames->isVisible());
    EXPECT_EQ(form.List_SaveGameTomb->count(), 1);
    core::SelectLevel(1);
    EXPECT_FALSE(form.Empty_SaveGames->isVisible());
    EXPECT_TRUE(form.List_SaveGameTomb->isVisible());
    std::filesystem::remove_all(LevelPath(1) / "BACKUP_SAVEGAMES");
    MakeFile(LevelPath(1) / "SAVEGAMES/slot1/savegame.1", "Hall,");
    form.AggiornaDatiLivello(false);
    EXPECT_FALSE(form.Empty_SaveGames->isVisible()) << "an archived one is one too";
}

TEST_F(PrincipaleEmpty, AsksForATrleFolderThatHasGone) {
    core::SelectLevel(2);
    EXPECT_TRUE(form.Image_Level->isVisible());
    std::filesystem::rename(drive / "trle", drive / "moved");
    form.AggiornaDatiLivello(false);
    EXPECT_FALSE(form.Image_Level->isVisible());
    EXPECT_EQ(form.Empty_Trle->Sentence().toStdString(), "The TRLE folder can't be found: C:\\trle");
    robot.WillPress("Dialog_TrovaTrle", "Pul_Sfoglia");
    WillChooseFolder("Choose TR Level Editor folder", "C:\\moved");
    robot.WillPress("Dialog_TrovaTrle", "Pul_Ok");
    Press(&form, "Pul_ChooseTrle");
    EXPECT_EQ(core::profile.TrleFolder, "C:\\moved");
    EXPECT_TRUE(form.Image_Level->isVisible());
}

TEST_F(PrincipaleEmpty, WithoutAnArchiveTheLibraryHasTheWholeWindow) {
    core::archive = core::ArchiveState();
    core::RefreshLevelList();
    EXPECT_FALSE(form.Page_Level->isVisible());
    EXPECT_FALSE(form.Empty_Level->isVisible());
    EXPECT_TRUE(form.Pul_NewArchive->isVisible());
    EXPECT_TRUE(form.Pul_LoadArchive->isVisible());
}

TEST_F(PrincipaleEmpty, TheLibraryComesBackToItsWidthWithAnArchive) {
    auto* const splitter = form.findChild<QSplitter*>(QStringLiteral("Splitter1"));
    QApplication::processEvents(); // a window that is larger than the screen gets its size now
    splitter->setSizes({400, 600});
    const QList<int> sizes = splitter->sizes();
    const core::ArchiveState archive = core::archive;
    core::archive = core::ArchiveState();
    core::RefreshLevelList();
    QApplication::processEvents();
    EXPECT_EQ(splitter->sizes().at(1), 0);
    core::archive = archive;
    core::RefreshLevelList();
    QApplication::processEvents();
    EXPECT_EQ(splitter->sizes(), sizes);
}

TEST_F(PrincipaleEmpty, AnArchiveWithoutLevelsOffersToAddOne) {
    for (const std::int32_t code : {1, 2, 3})
        core::archive.Table.Remove(code);
    core::RefreshLevelList();
    EXPECT_TRUE(form.Combo_Livelli->isVisible()) << "the original configuration stands there";
    EXPECT_TRUE(form.Empty_Levels->isVisible());
    EXPECT_TRUE(form.Pul_AddLevel->isVisible());
    EXPECT_FALSE(form.Pul_ShowAll->isVisible());
}

TEST_F(PrincipaleEmpty, WhereNoLevelIsSelectedThePageSaysSo) {
    core::level_list.Selected = -1;
    form.AggiornaDatiLivello(false);
    EXPECT_TRUE(form.Empty_Level->isVisible());
    EXPECT_EQ(form.Empty_Level->Sentence().toStdString(), "No level is selected");
    EXPECT_FALSE(form.Pul_Play->isVisible());
    core::SelectLevel(1);
    EXPECT_FALSE(form.Empty_Level->isVisible());
    EXPECT_TRUE(form.Pul_Play->isVisible());
}

} // namespace
} // namespace kelvash::test
