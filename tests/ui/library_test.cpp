// The library and the level's page as a player sees and works them.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QMenu>
#include <QSignalSpy>
#include <QToolBar>
#include <QToolButton>

#include "foundation/files.h"
#include "swap/install.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class Library : public PrincipaleHome {
  protected:
    const ui::LevelModel& Levels() const {
        return dynamic_cast<const ui::LevelModel&>(*form.Combo_Livelli->model());
    }
    ui::LevelRow Loaded(int row) {
        static_cast<void>(Levels().Row(row)); // asking for it starts its reading
        QTest::qWait(200);
        return Levels().Row(row);
    }
    // The buttons that the empty library offers.
    std::vector<std::string> Helping() const {
        std::vector<std::string> names;
        for (const QPushButton* button : form.Empty_Levels->findChildren<QPushButton*>())
            if (button->isVisible()) names.push_back(Plain(button->text()));
        return names;
    }
    void CloseArchive() {
        core::archive = core::ArchiveState();
        core::profile.LastArchive.clear();
        core::RefreshLevelList();
    }
};

// --- what a row tells ---

TEST_F(Library, ARowTellsWhereTheLevelIsAndWhatItHas) {
    core::archive.Table.Edit(1)->Author = "Ada Example";
    core::archive.Table.Edit(1)->CdNumber = 3;
    core::RefreshLevelList();
    const ui::LevelRow original = Levels().Row(0);
    EXPECT_TRUE(original.in_trle);
    EXPECT_EQ(original.code, 0);
    const ui::LevelRow gold = Loaded(3);
    EXPECT_EQ(gold.name.toStdString(), "City of Gold");
    EXPECT_EQ(gold.cd, 3);
    EXPECT_FALSE(gold.in_trle);
    EXPECT_THAT(gold.line.toStdString(), HasSubstr("Ada Example"));
    EXPECT_THAT(gold.line.toStdString(), HasSubstr("1 savegame"));
    EXPECT_THAT(gold.line.toStdString(), HasSubstr("Choose the first entry"));
}

TEST_F(Library, TheMarkOfTheLevelInTrleFollowsASwap) {
    ASSERT_TRUE(swap::InstallLevel(2));
    core::RefreshLevelList();
    EXPECT_FALSE(Levels().Row(0).in_trle);
    EXPECT_TRUE(Levels().Row(1).in_trle);
}

TEST_F(Library, EscEmptiesTheSearch) {
    Type("alpha");
    EXPECT_EQ(Shown().size(), 1U);
    QTest::keyClick(form.Text_Search, Qt::Key_Escape);
    EXPECT_EQ(form.Text_Search->text().toStdString(), "");
    EXPECT_EQ(Shown().size(), 4U);
}

TEST_F(Library, TilesShowTheSameLevelsInTheSameOrderWithTheSameSelection) {
    core::SelectLevel(3);
    const std::vector<std::string> before = Shown();
    Press(&form, "Pul_Tiles");
    EXPECT_EQ(form.Combo_Livelli->viewMode(), QListView::IconMode);
    EXPECT_EQ(Shown(), before);
    EXPECT_EQ(Current(), "beta city");
    Press(&form, "Pul_List");
    EXPECT_EQ(form.Combo_Livelli->viewMode(), QListView::ListMode);
    EXPECT_EQ(Current(), "beta city");
}

// --- screen readers ---

TEST_F(Library, AReaderHearsWhatARowShows) {
    core::archive.Table.Edit(1)->Author = "Ada Example";
    core::archive.Table.Edit(1)->CdNumber = 3;
    core::RefreshLevelList();
    static_cast<void>(Loaded(3));
    QAccessibleInterface* const list = QAccessible::queryAccessibleInterface(form.Combo_Livelli);
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->childCount(), 4);
    QAccessibleInterface* const gold = list->child(3);
    ASSERT_NE(gold, nullptr);
    EXPECT_EQ(gold->role(), QAccessible::ListItem);
    EXPECT_EQ(gold->text(QAccessible::Name).toStdString(), "City of Gold");
    const std::string spoken = gold->text(QAccessible::Description).toStdString();
    EXPECT_THAT(spoken, StartsWith("CD 3, Ada Example"));
    EXPECT_THAT(spoken, HasSubstr("1 savegame"));
    EXPECT_THAT(spoken, HasSubstr("Choose the first entry"));
    EXPECT_EQ(list->child(0)->text(QAccessible::Description).toStdString().substr(0, 7), "in TRLE");
}

// --- nothing to show ---

TEST_F(Library, WithoutAnArchiveItOffersToMakeOrLoadOne) {
    CloseArchive();
    EXPECT_EQ(form.Empty_Levels->Sentence().toStdString(),
              "No Archive is open. Create a new one or load one with the menu File.");
    EXPECT_THAT(Helping(), ElementsAre("New Archive", "Load Archive"));
    EXPECT_FALSE(form.Combo_Livelli->isVisible());
}

TEST_F(Library, ATextThatNoNameHoldsIsTakenBackByAButton) {
    Type("zzz");
    EXPECT_EQ(form.Empty_Levels->Sentence().toStdString(), "No name holds this text");
    EXPECT_THAT(Helping(), ElementsAre("Show all levels"));
    Press(&form, "Pul_ShowAll");
    EXPECT_EQ(form.Text_Search->text().toStdString(), "");
    EXPECT_TRUE(form.Combo_Livelli->isVisible());
    EXPECT_THAT(Helping(), IsEmpty());
}

// --- the level's page ---

TEST_F(Library, TheOriginalConfigurationHasASignOfItsOwn) {
    const auto head = [this] { return form.Image_Level->grab().toImage(); };
    core::SelectLevel(0);
    EXPECT_EQ(form.Image_Level->Sign(), ui::Glyph::Original);
    const QImage with = head();
    form.Image_Level->SetSign({});
    EXPECT_NE(head(), with);
    core::SelectLevel(1);
    EXPECT_EQ(form.Image_Level->Sign(), std::nullopt);
}

TEST_F(Library, TheAuthorsAddressesAreOneClickAway) {
    {
        const core::LevelEdit level = core::archive.Table.Edit(1);
        level->Emails = std::string("ann@example.org\0bob@example.org", 31);
        level->Sites = "example.org/a&b";
    }
    core::SelectLevel(1);
    form.Bar_Contacts->setFixedWidth(form.fontMetrics().averageCharWidth() * 120);
    QApplication::processEvents();
    std::vector<std::string> texts;
    for (const QPushButton* button : form.Bar_Contacts->findChildren<QPushButton*>())
        if (button->isVisible()) texts.push_back(button->text().toStdString());
    EXPECT_THAT(texts, ElementsAre("ann@example.org", "bob@example.org", "example.org/a&&b"));
    robot.WillPress("mailto:bob@example.org", "No");
    Press(&form, "Pul_Contact2");
    robot.WillPress("http://example.org/a&b", "No");
    Press(&form, "Pul_Contact3");
    core::SelectLevel(2);
    EXPECT_FALSE(form.Bar_Contacts->isVisible()) << "of this author none is known";
}

TEST_F(Library, AddressesWithoutRoomStandInAMenu) {
    core::archive.Table.Edit(1)->Emails = std::string(60, 'w') + std::string(1, '\0') + std::string(60, 'x') +
                                          std::string(1, '\0') + "ann@example.org";
    core::archive.Table.Edit(1)->Sites = "javascript:alert(1)";
    core::SelectLevel(1);
    form.Bar_Contacts->setFixedWidth(form.fontMetrics().averageCharWidth() * 60);
    QApplication::processEvents();
    auto* const more = form.Bar_Contacts->findChild<QPushButton*>(QStringLiteral("Pul_MoreContacts"));
    ASSERT_TRUE(more->isVisible());
    const QList<QAction*> others = more->menu()->actions();
    EXPECT_EQ(Plain(more->text()), std::to_string(others.size()) + " more");
    int shown = 0;
    for (const QPushButton* button : form.Bar_Contacts->findChildren<QPushButton*>())
        if (button->isVisible()) {
            ++shown;
            EXPECT_LE(button->geometry().right(), form.Bar_Contacts->width());
        }
    EXPECT_EQ(shown - 1 + others.size(), 4);
    robot.WillPress("javascript:alert(1)", "OK"); // refused, as everywhere
    others.constLast()->trigger();
}

TEST_F(Library, ThePageSaysWhatPlayTakesOut) {
    core::SelectLevel(1);
    EXPECT_EQ(form.Label_Play->text().toStdString(), "");
    ASSERT_TRUE(swap::InstallLevel(2));
    core::RefreshLevelList();
    EXPECT_EQ(form.Label_Play->text().toStdString(), "Takes out \"Alpha\" first");
    core::SelectLevel(2);
    EXPECT_EQ(form.Label_Play->text().toStdString(), "Is in TRLE now");
    EXPECT_EQ(form.Image_Level->Name().toStdString(), "Alpha");
}

// --- keys, tools, menus ---

TEST_F(Library, HasItsKeys) {
    EXPECT_EQ(form.Command(Entry::mnu_Property)->shortcut().toString().toStdString(), "F2");
    EXPECT_EQ(form.Command(Entry::mnu_AddLevel)->shortcut().toString().toStdString(), "Ins");
    form.Combo_Livelli->setFocus();
    QTest::keyClick(&form, Qt::Key_L, Qt::ControlModifier);
    EXPECT_TRUE(form.Text_Search->hasFocus());
}

TEST_F(Library, DeleteInTheListAsksBeforeALevelGoes) {
    core::SelectLevel(2);
    form.Combo_Livelli->setFocus();
    robot.WillPress("Are you sure to want remove level", "No");
    QTest::keyClick(form.Combo_Livelli, Qt::Key_Delete);
    EXPECT_EQ(core::LevelIndex(2), 2);
}

TEST_F(Library, DeleteInTheSearchDeletesALetter) {
    Type("be");
    QTest::keyClick(form.Text_Search, Qt::Key_Home);
    QTest::keyClick(form.Text_Search, Qt::Key_Delete);
    EXPECT_EQ(form.Text_Search->text().toStdString(), "e");
}

TEST_F(Library, TheToolsAreTheMenusCommands) {
    auto* const tools = form.findChild<QToolBar*>(QStringLiteral("Tools"));
    ASSERT_NE(tools, nullptr);
    std::vector<std::string> captions;
    for (const QAction* action : tools->actions())
        if (!action->isSeparator()) captions.push_back(action->iconText().toStdString());
    EXPECT_THAT(captions, ElementsAre("Play", "Add level", "Restore", "Properties", "Search"));
    CloseArchive();
    EXPECT_FALSE(tools->actions().constFirst()->isEnabled());
    EXPECT_FALSE(form.Command(Entry::mnu_Property)->isEnabled());
    tools->toggleViewAction()->trigger();
    EXPECT_FALSE(tools->isVisible());
}

TEST_F(Library, ALevelsMenuBeginsWithPlayAndMoreInfo) {
    core::SelectLevel(1);
    std::vector<std::string> captions;
    QTimer::singleShot(100, &form, [&] {
        auto* const menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        ASSERT_NE(menu, nullptr);
        for (const QAction* action : menu->actions())
            if (!action->isSeparator()) captions.push_back(Plain(action->text()));
        menu->close();
    });
    const QRect row = form.Combo_Livelli->visualRect(form.Combo_Livelli->currentIndex());
    Q_EMIT form.Combo_Livelli->customContextMenuRequested(row.center());
    EXPECT_THAT(captions,
                ElementsAre("Play", "More info", "Properties of current level", "Show author notes",
                            "Export all files of current level in zip file", "Delete current level"));
}

TEST_F(Library, WhatIsGreySaysWhy) {
    EXPECT_EQ(form.Command(Entry::mnu_MoveOnCd)->statusTip().toStdString(),
              "This comes with a later version");
    core::level_list.Selected = -1;
    form.AggiornaDatiLivello(false);
    EXPECT_EQ(form.Command(Entry::mnu_Property)->statusTip().toStdString(), "No level is selected");
    CloseArchive();
    EXPECT_EQ(form.Command(Entry::mnu_Property)->statusTip().toStdString(), "No Archive is open");
    EXPECT_EQ(form.Command(Entry::mnu_Save)->statusTip().toStdString(), "No Archive is open");
    EXPECT_EQ(form.Command(Entry::mnu_New)->statusTip().toStdString(), "");
}

} // namespace
} // namespace kelvash::test
