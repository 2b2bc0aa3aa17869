// The list of levels in the main form, and the search in it.
#include <gmock/gmock.h>

#include <QApplication>
#include <QTest>

#include "swap/install.h"
#include "trle_state/trle_state.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

using PrincipaleList = PrincipaleHome;

// --- the list ---

TEST_F(PrincipaleList, ListsTheLevelsByTextWithTheMark) {
    EXPECT_THAT(Shown(),
                ElementsAre("- TRLE: Original configuration - (*)", "Alpha", "beta city", "City of Gold"));
    EXPECT_EQ(form.Combo_Livelli->model()->index(3, 0).data(Qt::UserRole).toInt(), 1);
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash: 4 (test.kva levels)");
}

TEST_F(PrincipaleList, MovesTheMarkWithASwapOtherThanPlay) {
    ASSERT_TRUE(swap::InstallLevel(2));
    core::RefreshLevelList();
    EXPECT_THAT(Shown(),
                ElementsAre("- TRLE: Original configuration -", "Alpha (*)", "beta city", "City of Gold"));
}

TEST_F(PrincipaleList, ShowsTheSelectedLevel) {
    form.Combo_Livelli->setCurrentIndex(form.Combo_Livelli->model()->index(3, 0));
    EXPECT_EQ(core::SelectedLevel(), 1);
    EXPECT_EQ(form.Label_InfoLevel->text().toStdString(), "Choose the first entry");
    EXPECT_EQ(form.Label_InfoDir->text().toStdString(),
              "Path: \"C:\\Levels\\LEVEL_0001\"  -  Screenshots: 0 - Savegames: 1 + 0");
    ASSERT_EQ(form.List_SaveGameTomb->count(), 1);
    EXPECT_THAT(form.List_SaveGameTomb->item(0)->text().toStdString(), StartsWith("   0 Gate  ("));
}

TEST_F(PrincipaleList, SelectsTheFirstAfterTheSelectedIsRemoved) {
    core::SelectLevel(1);
    EXPECT_EQ(Current(), "City of Gold");
    core::archive.Table.Remove(1);
    core::RefreshLevelList();
    EXPECT_EQ(Current(), "- TRLE: Original configuration - (*)");
    EXPECT_EQ(core::level_list.Selected, 0);
}

TEST_F(PrincipaleList, IsUsableWithoutAnArchive) {
    core::archive = core::ArchiveState();
    core::profile.LastArchive.clear();
    core::RefreshLevelList();
    EXPECT_THAT(Shown(), IsEmpty());
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash");
    EXPECT_FALSE(form.Pul_Play->isEnabled());
    EXPECT_FALSE(form.Command(Entry::mnu_Save)->isEnabled());
    EXPECT_TRUE(form.Command(Entry::mnu_SetOriginale)->isEnabled()) << "the way back needs no Archive";
    Press(&form, "Pul_Dopo");
    Press(&form, "Pul_Prima");
    form.AggiornaDatiLivello(false);
    EXPECT_EQ(core::level_list.Selected, -1);
    EXPECT_EQ(form.Label_InfoLevel->text().toStdString(),
              "No Archive is open. Create a new one or load one with the menu File.");
}

TEST_F(PrincipaleList, ShowsWhichRowHasTheKeyboard) {
    const auto drawn = [this] {
        QApplication::processEvents();
        return form.Combo_Livelli->viewport()->grab(
            form.Combo_Livelli->visualRect(form.Combo_Livelli->currentIndex()));
    };
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    core::SelectLevel(1);
    form.Text_Search->setFocus();
    const QImage without = drawn().toImage();
    form.Combo_Livelli->setFocus();
    EXPECT_NE(drawn().toImage(), without);
}

TEST_F(PrincipaleList, TypingShowsTheFirstOfManyHits) {
    for (std::int32_t code = 100; code < 400; ++code) {
        core::LevelRecord level;
        level.Code = code;
        level.Name = "Hit " + std::to_string(code);
        core::archive.Table.Append(level);
    }
    core::RefreshLevelList();
    form.Combo_Livelli->scrollToBottom();
    form.Text_Search->setText(QStringLiteral("hit"));
    QApplication::processEvents();
    EXPECT_EQ(form.Combo_Livelli->indexAt({20, 20}).row(), 0);
}

// --- search and filter ---

TEST_F(PrincipaleList, FindSelectsTheFirstThatHoldsTheText) {
    core::SelectLevel(1);
    Type("CITY");
    EXPECT_EQ(Current(), "City of Gold") << "typing keeps a level that is still shown";
    Press(&form, "Pul_Search");
    EXPECT_EQ(Current(), "beta city");
}

TEST_F(PrincipaleList, FindTellsWhenNothingHoldsTheText) {
    Type("zzz");
    robot.WillPress("Not found", "OK");
    Press(&form, "Pul_Search");
}

TEST_F(PrincipaleList, FindWithoutATextDoesNothing) {
    core::SelectLevel(2);
    Type("  ");
    Press(&form, "Pul_Search");
    EXPECT_EQ(Current(), "Alpha");
}

TEST_F(PrincipaleList, NextAndPreviousGoFromHitToHit) {
    Type("city");
    EXPECT_EQ(Current(), "");
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Current(), "beta city");
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Current(), "City of Gold");
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Current(), "City of Gold");
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Current(), "beta city");
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Current(), "beta city");
}

TEST_F(PrincipaleList, NextAndPreviousStepWithoutAText) {
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Current(), "Alpha");
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Current(), "beta city");
    Press(&form, "Pul_Prima");
    Press(&form, "Pul_Prima");
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Current(), "- TRLE: Original configuration - (*)");
    EXPECT_EQ(core::SelectedLevel(), 0);
}

TEST_F(PrincipaleList, TypingShowsOnlyWhatHoldsTheText) {
    Type(" CITY");
    EXPECT_THAT(Shown(), ElementsAre("beta city", "City of Gold"));
    EXPECT_EQ(Current(), "") << "none is chosen in the place of the hidden one";
    form.Text_Search->clear();
    EXPECT_EQ(Shown().size(), 4U);
    EXPECT_EQ(Current(), "- TRLE: Original configuration - (*)");
}

// What is typed chooses rows, not the level that is looked at.
TEST_F(PrincipaleList, ThePageOfALevelThatTheFilterHidesStays) {
    core::SelectLevel(2);
    EXPECT_EQ(Current(), "Alpha");
    Type("city");
    EXPECT_EQ(Current(), "");
    EXPECT_TRUE(form.Page_Level->isVisible());
    EXPECT_EQ(form.Image_Level->Name().toStdString(), "Alpha");
    EXPECT_TRUE(form.Label_InfoDir->text().startsWith(QLatin1String("Path: \"C:\\Levels\\LEVEL_0002\"")));
    for (const Entry entry :
         {Entry::mnu_Property, Entry::mnu_ShowAutoreInfo, Entry::mnu_RemoveLevel, Entry::mnu_Export})
        EXPECT_TRUE(form.Command(entry)->isEnabled()) << form.Command(entry)->objectName().toStdString();
    EXPECT_TRUE(form.Pul_Play->isEnabled());
    core::RefreshLevelList(); // as after a change of the Archive
    EXPECT_EQ(Current(), "");
    EXPECT_EQ(form.Image_Level->Name().toStdString(), "Alpha");
    form.Text_Search->clear();
    EXPECT_EQ(Current(), "Alpha");
    EXPECT_EQ(core::SelectedLevel(), 2);
}

// Without a row the keys of the list have nothing that they could mean.
TEST_F(PrincipaleList, TheKeysOfTheListDoNothingWithALevelThatTheFilterHides) {
    Type("city");
    form.Combo_Livelli->setFocus();
    core::SelectLevel(2);
    EXPECT_EQ(Current(), "");
    for (const int key : {Qt::Key_Return, Qt::Key_Delete}) // a box would fail the test
        QTest::keyClick(form.Combo_Livelli, static_cast<Qt::Key>(key));
    EXPECT_EQ(trle_state::CurrentLevelCode(), 0);
    EXPECT_EQ(core::SelectedLevel(), 2);
}

TEST_F(PrincipaleList, NextAndPreviousGoFromTheLevelThatTheFilterHides) {
    core::SelectLevel(3); // "beta city"
    Type("o");
    EXPECT_THAT(Shown(), ElementsAre("- TRLE: Original configuration - (*)", "City of Gold"));
    EXPECT_EQ(Current(), "");
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Current(), "City of Gold");
    core::SelectLevel(3);
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Current(), "- TRLE: Original configuration - (*)");
}

TEST_F(PrincipaleList, TheMarkCanBeSearched) {
    Type("(*)");
    EXPECT_THAT(Shown(), ElementsAre("- TRLE: Original configuration - (*)"));
}

TEST_F(PrincipaleList, AFilterThatHidesAllSaysSoInTheLibraryAndLeavesThePage) {
    core::SelectLevel(2);
    Type("zzz");
    EXPECT_THAT(Shown(), IsEmpty());
    EXPECT_TRUE(form.Empty_Levels->isVisible());
    EXPECT_EQ(form.Empty_Levels->Sentence().toStdString(), "No name holds this text");
    EXPECT_EQ(form.Image_Level->Name().toStdString(), "Alpha");
    EXPECT_TRUE(form.Pul_Play->isVisible());
    Press(&form, "Pul_ShowAll");
    EXPECT_FALSE(form.Empty_Levels->isVisible());
    EXPECT_EQ(Current(), "Alpha");
}

TEST_F(PrincipaleList, EnterTwiceInTheSearchFindsAndStartsNothing) {
    Type("city");
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(form.focusWidget(), Qt::Key_Return);
    EXPECT_EQ(Current(), "beta city");
    EXPECT_EQ(form.focusWidget(), form.Text_Search);
    EXPECT_EQ(trle_state::CurrentLevelCode(), 0);
}

TEST_F(PrincipaleList, TheButtonOfTheSearchGoesToTheList) {
    Type("city");
    Press(&form, "Pul_Search");
    EXPECT_EQ(form.focusWidget(), form.Combo_Livelli);
}

TEST_F(PrincipaleList, AToolTipShowsANameThatLooksLikeMarkUp) {
    core::archive.Table.Edit(1)->Name = "<b>Gold</b>";
    core::RefreshLevelList();
    const auto* const model = form.Combo_Livelli->model();
    std::vector<std::string> tips;
    for (int row = 0; row < model->rowCount(); ++row)
        tips.push_back(model->index(row, 0).data(Qt::ToolTipRole).toString().toStdString());
    EXPECT_THAT(tips, testing::Contains(testing::HasSubstr("&lt;b&gt;Gold&lt;/b&gt;")));
}

} // namespace
} // namespace kelvash::test
