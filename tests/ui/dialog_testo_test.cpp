#include "ui/Dialog_Testo.h"

#include <gmock/gmock.h>

#include <QListWidget>
#include <QScrollBar>
#include <QTest>
#include <QTextBlock>

#include "support/test_home.h"
#include "support/ui_home.h"

namespace kelvash::test {
namespace {

// 400 lines "line 0" to "line 399"; some have something else behind that.
std::string LongText(const std::map<int, std::string>& extra) {
    std::string text;
    for (int i = 0; i < 400; ++i) {
        const auto found = extra.find(i);
        text += "line " + std::to_string(i) + (found == extra.end() ? "" : " " + found->second) + "\r\n";
    }
    return text;
}

class DialogTesto : public UiHome<TestHome> {
  protected:
    void Open(const std::string& text, int mark = ui::Dialog_Testo::kNoMark) {
        form.ImpostaValori(" A text", text, mark);
        form.show();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        WaitUntil([this] { return !form.Timer1->isActive(); });
    }
    int TopLine() const { return form.Text_File->cursorForPosition(QPoint(0, 0)).blockNumber(); }
    void GoToTheFirstOfTheIndex() {
        robot.Will("Dialog_Indice", [](QWidget* window) {
            Press(window, "Opt_Sub");
            window->findChild<QListWidget*>()->setCurrentRow(0);
            Press(window, "Pul_Ok");
        });
        Press(&form, "Pul_Index");
    }
    std::string TopText() const {
        return form.Text_File->cursorForPosition(QPoint(0, 0)).block().text().toStdString();
    }
    int Place() const { return form.Text_File->textCursor().selectionStart(); }
    std::string Selected() const { return form.Text_File->textCursor().selectedText().toStdString(); }
    bool HitInView() const {
        return form.Text_File->viewport()->rect().contains(form.Text_File->cursorRect());
    }
    void Type(const char* text) {
        form.Text_Trova->setFocus();
        form.Text_Trova->clear();
        form.Text_Trova->insert(QString::fromUtf8(text)); // also what no test's keyboard can type
    }
    void WillSayNotFound() { robot.WillPress("Not found", "OK"); }

    ui::Dialog_Testo form{nullptr};
};

TEST_F(DialogTesto, HasItsCaptions) {
    EXPECT_EQ(form.windowTitle().toStdString(), "Text");
    EXPECT_EQ(Plain(form.Pul_Trova->text()), "Find ->");
    EXPECT_EQ(Plain(form.Pul_Dopo->text()), "Next");
    EXPECT_EQ(Plain(form.Pul_Prima->text()), "Previous");
    EXPECT_EQ(Plain(form.Check_ParolaIntera->text()), "Whole word");
    EXPECT_EQ(Plain(form.Pul_Index->text()), "Index");
    EXPECT_EQ(Plain(form.Pul_Ok->text()), "OK");
}

TEST_F(DialogTesto, ShowsTheTextUnderTheCallersCaption) {
    Open("one\r\n\r\ncaff\xE8");
    EXPECT_EQ(form.windowTitle().toStdString(), " A text");
    EXPECT_EQ(form.Text_File->toPlainText().toStdString(), "one\n\ncaffè");
    EXPECT_TRUE(form.Text_File->isReadOnly());
    form.ImpostaValori("", "two", 0);
    EXPECT_EQ(form.windowTitle().toStdString(), " A text");
    EXPECT_EQ(form.Text_File->toPlainText().toStdString(), "two");
}

TEST_F(DialogTesto, HasRoomForNinetyColumns) {
    const std::string line(90, 'W');
    Open(LongText({}) + line);
    form.Text_File->verticalScrollBar()->setValue(form.Text_File->verticalScrollBar()->maximum());
    QTest::qWait(0);
    EXPECT_EQ(form.Text_File->document()->lastBlock().lineCount(), 1);
    EXPECT_EQ(form.Text_File->horizontalScrollBar()->maximum(), 0);
}

TEST_F(DialogTesto, OpensAtTheMarkOnTheTopLine) {
    Open(LongText({{150, "#4#"}, {200, "#4#"}, {50, "#14#"}}), 4);
    EXPECT_EQ(TopText(), "line 150 #4#");
}

TEST_F(DialogTesto, ComingBackKeepsThePlace) {
    Open(LongText({{150, "#4#"}}), 4);
    form.Text_File->verticalScrollBar()->setValue(20);
    QShowEvent from_the_desktop;
    QSpontaneKeyEvent::setSpontaneous(&from_the_desktop); // as when a minimised window comes back
    QCoreApplication::sendEvent(&form, &from_the_desktop);
    EXPECT_FALSE(form.Timer1->isActive());
    form.hide();
    form.show();
    EXPECT_FALSE(form.Timer1->isActive());
    EXPECT_EQ(form.Text_File->verticalScrollBar()->value(), 20);
}

TEST_F(DialogTesto, AMissingMarkLeavesTheViewAtTheTop) {
    Open(LongText({{150, "#4#"}}), 5);
    EXPECT_EQ(TopLine(), 0);
    EXPECT_EQ(form.Text_File->verticalScrollBar()->value(), 0);
}

TEST_F(DialogTesto, WithoutAMarkTheTextOpensAtTheTop) {
    Open(LongText({{150, "#0#"}}));
    EXPECT_EQ(TopLine(), 0);
}

TEST_F(DialogTesto, AMarkBehindWrappedLinesAndAccentsIsMet) {
    std::map<int, std::string> extra;
    for (int i = 0; i < 100; ++i)
        extra[i] = std::string(300, 'x') + " è € 😀";
    extra[150] = "#4#";
    Open(LongText(extra), 4);
    EXPECT_EQ(TopText(), "line 150 #4#");
}

TEST_F(DialogTesto, AMarkNearTheEndIsInView) {
    Open(LongText({{398, "#4#"}}), 4);
    EXPECT_EQ(form.Text_File->verticalScrollBar()->value(), form.Text_File->verticalScrollBar()->maximum());
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 398);
    EXPECT_TRUE(HitInView());
}

TEST_F(DialogTesto, FindGoesFromHitToHitWithoutRegardToCase) {
    Open(LongText({{100, "CITY"}, {300, "city"}}));
    Type("City");
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Selected(), "CITY");
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 100);
    EXPECT_TRUE(HitInView());
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Selected(), "city");
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 300);
    EXPECT_TRUE(HitInView());
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Selected(), "CITY") << "from the end it goes on at the top";
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 100);
}

TEST_F(DialogTesto, FindKeepsAHitThatGrowsWithTheTypedText) {
    Open("level levels");
    Type("lev");
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Place(), 0);
    Type("level");
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Place(), 0);
    EXPECT_EQ(Selected(), "level");
}

TEST_F(DialogTesto, NextAndPreviousStepBetweenHits) {
    Open("a b a b a");
    Type("a");
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Place(), 0);
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Place(), 4);
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Place(), 8);
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Place(), 0);
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Place(), 8);
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Place(), 4);
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Place(), 0);
    EXPECT_EQ(Selected(), "a");
}

TEST_F(DialogTesto, KeysWorkTheSearch) {
    Open("one two one two one");
    Type("one");
    QTest::keyClick(form.Text_Trova, Qt::Key_Return);
    EXPECT_EQ(Place(), 0);
    QTest::keyClick(&form, Qt::Key_F3);
    EXPECT_EQ(Place(), 8);
    QTest::keyClick(form.Text_Trova, Qt::Key_Enter);
    EXPECT_EQ(Place(), 16);
    QTest::keyClick(&form, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(Place(), 8);
    EXPECT_TRUE(form.isVisible());
}

TEST_F(DialogTesto, WholeWordsPassOverLongerOnes) {
    Open("levels sublevel (level) \"level\" level");
    Type("LEVEL");
    QTest::mouseClick(form.Check_ParolaIntera, Qt::LeftButton, {},
                      QPoint(8, form.Check_ParolaIntera->height() / 2));
    ASSERT_TRUE(form.Check_ParolaIntera->isChecked());
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Place(), 17);
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Place(), 32);
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Place(), 17);
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Place(), 32);
}

TEST_F(DialogTesto, WhatIsNowhereIsTold) {
    Open("one two");
    Type("three");
    for (const char* button : {"Pul_Trova", "Pul_Dopo", "Pul_Prima"}) {
        WillSayNotFound();
        Press(&form, button);
    }
    EXPECT_EQ(Place(), 0);
}

TEST_F(DialogTesto, HitsBehindCharactersOfOtherLengthsAreSelectedExactly) {
    Open("è € 😀 \xC2\xA0 level\r\n😀CITTÀ level");
    Type("level");
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Selected(), "level");
    EXPECT_EQ(Place(), 9);
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(Selected(), "level");
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 1);
    Type("città");
    Press(&form, "Pul_Prima");
    EXPECT_EQ(Selected(), "CITTÀ");
}

TEST_F(DialogTesto, TheSearchGoesFromTheMark) {
    Open(LongText({{10, "city"}, {100, "#4#"}, {200, "city"}}), 4);
    Type("city");
    Press(&form, "Pul_Trova");
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 200);
}

TEST_F(DialogTesto, TheSearchGoesFromAClickInTheText) {
    Open(LongText({{1, "city"}, {20, "city"}}));
    const QTextCursor line(form.Text_File->document()->findBlockByNumber(5));
    QTest::mouseClick(form.Text_File->viewport(), Qt::LeftButton, {},
                      form.Text_File->cursorRect(line).center());
    Type("city");
    Press(&form, "Pul_Dopo");
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 20);
}

TEST_F(DialogTesto, AfterScrollingTheSearchGoesFromWhatIsSeen) {
    Open(LongText({{10, "city"}, {300, "city"}}));
    form.Text_File->verticalScrollBar()->setValue(200);
    Type("city");
    Press(&form, "Pul_Trova");
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 300);
    form.Text_File->verticalScrollBar()->setValue(200);
    Press(&form, "Pul_Prima");
    EXPECT_EQ(form.Text_File->textCursor().blockNumber(), 10);
}

TEST_F(DialogTesto, WithoutATextThereIsNothingToSearch) {
    Open("one two");
    for (const QPushButton* button : {form.Pul_Trova, form.Pul_Dopo, form.Pul_Prima})
        EXPECT_FALSE(button->isEnabled());
    QTest::keyClick(&form, Qt::Key_F3);
    QTest::keyClick(form.Text_Trova, Qt::Key_Return);
    EXPECT_TRUE(form.isVisible());
    EXPECT_EQ(Selected(), "");
    Type("t");
    for (const QPushButton* button : {form.Pul_Trova, form.Pul_Dopo, form.Pul_Prima})
        EXPECT_TRUE(button->isEnabled());
}

TEST_F(DialogTesto, PagesTurnFromTheSearchField) {
    Open(LongText({}));
    form.Text_Trova->setFocus();
    QTest::keyClick(form.Text_Trova, Qt::Key_PageDown);
    const int page = TopLine();
    EXPECT_GT(page, 20);
    QTest::keyClick(form.Text_Trova, Qt::Key_Down);
    EXPECT_EQ(TopLine(), page + 1);
    QTest::keyClick(form.Text_Trova, Qt::Key_Up);
    QTest::keyClick(form.Text_Trova, Qt::Key_PageUp);
    EXPECT_EQ(TopLine(), 0);
}

TEST_F(DialogTesto, TheIndexLeadsToATopic) {
    Open("intro\n" + LongText({{150, "{Far away}"}, {10, "[Near]"}}));
    GoToTheFirstOfTheIndex();
    EXPECT_EQ(TopText(), "line 150 {Far away}");
    EXPECT_EQ(Selected(), "{Far away}");
}

TEST_F(DialogTesto, AnAbandonedIndexLeavesTheViewWhereItIs) {
    Open(LongText({{150, "#4#"}, {10, "[Near]"}}), 4);
    robot.WillPress("Dialog_Indice", "Pul_Cancel");
    Press(&form, "Pul_Index");
    EXPECT_EQ(TopLine(), 150);
}

TEST_F(DialogTesto, ATextWithoutTopicsHasNoIndex) {
    Open("no topics");
    EXPECT_FALSE(form.Pul_Index->isEnabled());
    form.ImpostaValori("", "{sub}", 0);
    EXPECT_TRUE(form.Pul_Index->isEnabled());
    form.ImpostaValori("", "[main]", 0);
    EXPECT_TRUE(form.Pul_Index->isEnabled());
}

TEST_F(DialogTesto, OkCloses) {
    Open("text");
    Press(&form, "Pul_Ok");
    EXPECT_FALSE(form.isVisible());
}

TEST_F(DialogTesto, EscapeCloses) {
    Open("text");
    QTest::keyClick(form.Text_Trova, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
}

// The format of a character as it is painted.
QTextCharFormat FormatAt(const QPlainTextEdit* edit, int line, int column) {
    for (const auto& range : edit->document()->findBlockByNumber(line).layout()->formats())
        if (column >= range.start && column < range.start + range.length) return range.format;
    return {};
}

TEST_F(DialogTesto, TitlesAreBoldAndOfTheThemesColour) {
    Open("#4#\n[Main]\n{Sub}\nplain [text] #4#");
    EXPECT_EQ(form.Text_File->toPlainText().toStdString(), "Main\nSub\nplain [text] #4#");
    for (const QColor& link : {QColor(1, 2, 3, 99), QColor(210, 220, 230)}) {
        QPalette theme = form.palette();
        theme.setColor(QPalette::Link, link);
        form.setPalette(theme);
        EXPECT_EQ(FormatAt(form.Text_File, 0, 0).foreground().color(), link);
        EXPECT_EQ(FormatAt(form.Text_File, 0, 3).fontWeight(), QFont::Bold);
        EXPECT_EQ(FormatAt(form.Text_File, 1, 0).fontWeight(), QFont::Bold);
        EXPECT_FALSE(FormatAt(form.Text_File, 2, 7).hasProperty(QTextFormat::ForegroundBrush));
        EXPECT_FALSE(FormatAt(form.Text_File, 2, 0).hasProperty(QTextFormat::FontWeight));
    }
    form.ImpostaValori("", "text\n[Main]", 0);
    EXPECT_FALSE(FormatAt(form.Text_File, 0, 0).hasProperty(QTextFormat::FontWeight));
    EXPECT_EQ(FormatAt(form.Text_File, 1, 0).fontWeight(), QFont::Bold);
}

TEST_F(DialogTesto, TheIndexLeadsToATitleThatStandsWithoutItsMarks) {
    Open("intro\n" + LongText({}) + "#4#\n{Far away}\n" + LongText({}));
    GoToTheFirstOfTheIndex();
    EXPECT_EQ(TopText(), "Far away");
    EXPECT_EQ(Selected(), "Far away");
}

TEST_F(DialogTesto, TheSearchMeetsNoMark) {
    Open("#4#\n[One]\ntwo");
    Type("#4#");
    WillSayNotFound();
    Press(&form, "Pul_Trova");
    Type("One");
    Press(&form, "Pul_Trova");
    EXPECT_EQ(Place(), 0);
    EXPECT_EQ(Selected(), "One");
}

TEST_F(DialogTesto, AHitHasTheColourOfASelectionWithoutTheKeyboard) {
    QPalette theme = form.palette();
    theme.setColor(QPalette::Active, QPalette::Highlight, QColor(1, 2, 3));
    theme.setColor(QPalette::Inactive, QPalette::Highlight, QColor(4, 5, 6));
    form.setPalette(theme);
    EXPECT_EQ(form.Text_File->palette().color(QPalette::Inactive, QPalette::Highlight), QColor(1, 2, 3));
}

} // namespace
} // namespace kelvash::test
