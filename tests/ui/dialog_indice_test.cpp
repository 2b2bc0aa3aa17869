#include "ui/Dialog_Indice.h"

#include <gmock/gmock.h>

#include <QTest>

#include "support/test_home.h"
#include "support/ui_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr const char* kText = "[One]\n{Two a}\n[Three]\n{Two b}\n{Four}\n[One [more] ]\n";

class DialogIndice : public UiHome<TestHome> {
  protected:
    void Open(const std::string& text = kText) {
        form.ImpostaValori(text);
        form.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    }
    std::vector<std::string> Listed() const {
        std::vector<std::string> items;
        for (int i = 0; i < form.List_Indice->count(); ++i)
            items.push_back(form.List_Indice->item(i)->text().toStdString());
        return items;
    }
    void Click(int row, bool twice = false) {
        QWidget* const view = form.List_Indice->viewport();
        const QPoint place = form.List_Indice->visualItemRect(form.List_Indice->item(row)).center();
        QTest::mouseClick(view, Qt::LeftButton, {}, place);
        if (twice) QTest::mouseDClick(view, Qt::LeftButton, {}, place);
    }
    std::string Selected() const {
        const auto items = form.List_Indice->selectedItems();
        return items.isEmpty() ? "" : items.front()->text().toStdString();
    }
    void Type(const char* text) {
        form.Text_Find->setFocus();
        form.Text_Find->clear();
        QTest::keyClicks(form.Text_Find, QString::fromUtf8(text));
    }

    ui::Dialog_Indice form{nullptr};
};

TEST_F(DialogIndice, HasItsCaptions) {
    EXPECT_EQ(form.windowTitle().toStdString(), "Index");
    EXPECT_EQ(Plain(form.Opt_Main->text()), "Show main topics");
    EXPECT_EQ(Plain(form.Opt_Sub->text()), "Show sub-topics");
    EXPECT_EQ(Plain(form.Pul_Find->text()), "Find ->");
    EXPECT_EQ(Plain(form.Pul_Ok->text()), "OK");
    EXPECT_EQ(Plain(form.Pul_Cancel->text()), "Cancel");
    EXPECT_EQ(form.Label_Items->text().toStdString(), "0 items");
}

TEST_F(DialogIndice, OpensWithTheMainTopicsInTheOrderOfTheText) {
    Open();
    EXPECT_TRUE(form.Opt_Main->isChecked());
    EXPECT_THAT(Listed(), ElementsAre("One", "Three", "One [more"));
    EXPECT_EQ(form.Label_Items->text().toStdString(), "3 items");
}

TEST_F(DialogIndice, ShowsTheSubTopicsAndTheMainOnesAgain) {
    Open("[One]{Two}{Three}");
    Press(&form, "Opt_Sub");
    EXPECT_THAT(Listed(), ElementsAre("Two", "Three"));
    EXPECT_EQ(form.Label_Items->text().toStdString(), "2 items");
    Press(&form, "Opt_Main");
    EXPECT_THAT(Listed(), ElementsAre("One"));
    EXPECT_EQ(form.Label_Items->text().toStdString(), "1 items");
}

TEST_F(DialogIndice, ATextWithoutTopicsGivesAnEmptyList) {
    Open("text");
    EXPECT_THAT(Listed(), IsEmpty());
    EXPECT_EQ(form.Label_Items->text().toStdString(), "0 items");
    Type("text");
    robot.WillPress("Not found", "OK");
    Press(&form, "Pul_Find");
}

TEST_F(DialogIndice, ATitleOfManyLinesIsShownInOne) {
    Open("[One\n text\n[Two]");
    EXPECT_THAT(Listed(), ElementsAre("One text [Two"));
}

TEST_F(DialogIndice, OkGivesThePositionOfTheSelectedTopic) {
    Open();
    Click(1);
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_FALSE(form.isVisible());
    EXPECT_THAT(form.Position, Optional(14U));
}

TEST_F(DialogIndice, ThePositionIsThatOfTheShownKind) {
    Open();
    Press(&form, "Opt_Sub");
    Click(1);
    Press(&form, "Pul_Ok");
    EXPECT_THAT(form.Position, Optional(22U));
}

TEST_F(DialogIndice, ADoubleClickIsOk) {
    Open();
    Click(2, true);
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_FALSE(form.isVisible());
    EXPECT_THAT(form.Position, Optional(37U));
}

TEST_F(DialogIndice, EnterInTheListIsOk) {
    Open();
    Click(0);
    QTest::keyClick(form.List_Indice, Qt::Key_Down);
    QTest::keyClick(form.List_Indice, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_THAT(form.Position, Optional(14U));
}

TEST_F(DialogIndice, OkWithoutASelectionTellsSo) {
    Open();
    robot.WillPress("No selected item", "OK");
    Press(&form, "Pul_Ok");
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(form.Position, std::nullopt);
}

TEST_F(DialogIndice, TheOtherKindHasNoSelection) {
    Open();
    Click(0);
    Press(&form, "Opt_Sub");
    robot.WillPress("No selected item", "OK");
    Press(&form, "Pul_Ok");
    EXPECT_TRUE(form.isVisible());
}

TEST_F(DialogIndice, CancelGivesNoPosition) {
    Open();
    Click(1);
    Press(&form, "Pul_Cancel");
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(form.Position, std::nullopt);
}

TEST_F(DialogIndice, FindGoesRoundTheTitlesWithoutRegardToCase) {
    Open();
    Type("ONE");
    Press(&form, "Pul_Find");
    EXPECT_EQ(Selected(), "One");
    Press(&form, "Pul_Find");
    EXPECT_EQ(Selected(), "One [more");
    Press(&form, "Pul_Find");
    EXPECT_EQ(Selected(), "One");
}

TEST_F(DialogIndice, FindStartsBehindTheSelectedTitle) {
    Open();
    Press(&form, "Opt_Sub");
    Click(0);
    Type("two");
    Press(&form, "Pul_Find");
    EXPECT_EQ(Selected(), "Two b");
    Type("two b");
    Press(&form, "Pul_Find");
    EXPECT_EQ(Selected(), "Two b"); // the only one, met again after a round
}

TEST_F(DialogIndice, ATitleThatIsNotThereIsTold) {
    Open();
    Click(1);
    Type("two"); // only among the sub-topics
    robot.WillPress("Not found", "OK");
    Press(&form, "Pul_Find");
    EXPECT_EQ(Selected(), "Three");
    EXPECT_TRUE(form.isVisible());
}

TEST_F(DialogIndice, EnterInTheSearchFieldSearches) {
    Open();
    Type("three");
    QTest::keyClick(form.Text_Find, Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(Selected(), "Three");
    form.List_Indice->setFocus();
    QTest::keyClick(form.List_Indice, Qt::Key_Return);
    EXPECT_FALSE(form.isVisible());
    EXPECT_THAT(form.Position, Optional(14U));
}

TEST_F(DialogIndice, WithoutATextFindIsDead) {
    Open();
    EXPECT_FALSE(form.Pul_Find->isEnabled());
    form.Text_Find->setFocus();
    QTest::keyClick(form.Text_Find, Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(Selected(), "");
    Type("o");
    EXPECT_TRUE(form.Pul_Find->isEnabled());
}

} // namespace
} // namespace kelvash::test
