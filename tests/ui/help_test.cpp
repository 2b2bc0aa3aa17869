#include "ui/help.h"

#include <gmock/gmock.h>

#include <QPushButton>
#include <QTest>
#include <QTextBlock>
#include <algorithm>

#include "support/test_home.h"
#include "support/ui_home.h"
#include "ui/Dialog_Testo.h"
#include "ui/help_text.h"

namespace kelvash::test {
namespace {

using ui::HelpMark;
using ui::HelpTopic;
using ui::HelpTopics;
using ui::TextToShow;
using ui::TopicKind;

std::string ShippedHelp() {
    return BytesOf(std::filesystem::path(KELVASH_ASSETS) / "help_kelvash.txt");
}

// What the help window shows when the robot looks at it.
struct Shown {
    std::string caption;
    std::string text;
    std::string top_line;
};

class Help : public UiHome<TestHome> {
  protected:
    void WillReadAndClose(Shown& shown) {
        robot.Will("Dialog_Testo", [&shown](QWidget* window) {
            auto* const form = dynamic_cast<ui::Dialog_Testo*>(window);
            ASSERT_NE(form, nullptr);
            WaitUntil([form] { return !form->Timer1->isActive(); });
            EXPECT_TRUE(form->isModal());
            shown.caption = form->windowTitle().toStdString();
            shown.text = form->Text_File->toPlainText().toStdString();
            shown.top_line = form->Text_File->cursorForPosition(QPoint(0, 0)).block().text().toStdString();
            Press(form, "Pul_Ok");
        });
    }
    void PutHelp(const std::string& text) { MakeFile(home / "help_kelvash.txt", text); }
};

TEST_F(Help, AMissingFileIsTold) {
    robot.WillPress("Warning: I can not find file: \"C:\\Kelvash\\help_kelvash.txt\"", "OK");
    ui::ShowHelp(nullptr, HelpMark::MainWindow);
}

TEST_F(Help, ShowsTheWholeFileUnderItsCaption) {
    PutHelp("first\r\nsecond\r\n");
    Shown shown;
    WillReadAndClose(shown);
    ui::ShowHelp(nullptr, HelpMark::MainWindow);
    EXPECT_EQ(shown.caption, " Help");
    EXPECT_EQ(shown.text, "first\nsecond\n");
    EXPECT_EQ(shown.top_line, "first");
}

TEST_F(Help, AnEmptyFileIsShownAsItIs) {
    PutHelp("");
    Shown shown{"", "not yet read", ""};
    WillReadAndClose(shown);
    ui::ShowHelp(nullptr, HelpMark::MainWindow);
    EXPECT_EQ(shown.text, "");
}

TEST_F(Help, OpensTheShippedTextAtTheMarkOfTheForm) {
    PutHelp(ShippedHelp());
    Shown shown;
    WillReadAndClose(shown);
    ui::ShowHelp(nullptr, HelpMark::Savegames);
    EXPECT_EQ(shown.top_line, "Savegame management");
}

TEST_F(Help, AButtonAndF1OpenIt) {
    PutHelp("top\n" + std::string(200, '\n') + "#7#\nhere\n" + std::string(200, '\n'));
    QWidget form;
    QPushButton button(&form);
    ui::ConnectHelp(&button, &form, HelpMark::Archive);
    ui::ConnectHelpKey(&form, HelpMark::Archive);
    form.show();
    for (const bool by_key : {false, true}) {
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        Shown shown;
        WillReadAndClose(shown);
        if (by_key)
            QTest::keyClick(&form, Qt::Key_F1);
        else
            QTest::mouseClick(&button, Qt::LeftButton);
        EXPECT_EQ(shown.top_line, "here");
    }
}

TEST_F(Help, F1InTheHelpGoesToHowItIsRead) {
    PutHelp("top\n" + std::string(200, '\n') + "#41#\nhow to read\n" + std::string(200, '\n'));
    std::string top_line;
    robot.Will("Dialog_Testo", [&top_line](QWidget* window) {
        auto* const help = dynamic_cast<ui::Dialog_Testo*>(window);
        ASSERT_NE(help, nullptr);
        WaitUntil([help] { return !help->Timer1->isActive(); });
        QTest::keyClick(help, Qt::Key_F1);
        top_line = help->Text_File->cursorForPosition(QPoint(0, 0)).block().text().toStdString();
        Press(help, "Pul_Ok");
    });
    ui::ShowHelp(nullptr, HelpMark::MainWindow);
    EXPECT_EQ(top_line, "how to read");
    EXPECT_EQ(robot.Seen().size(), 1U) << "no second one above it";
}

TEST(ShippedHelpText, HasEveryMarkOnce) {
    const std::string text = ShippedHelp();
    for (const HelpMark mark :
         {HelpMark::MainWindow, HelpMark::FirstStart, HelpMark::Restore, HelpMark::Savegames,
          HelpMark::Questions, HelpMark::Settings, HelpMark::Archive, HelpMark::FindTrle,
          HelpMark::ChooseFolder, HelpMark::Search, HelpMark::Keyboard, HelpMark::Files, HelpMark::MoreInfo,
          HelpMark::AddLevel, HelpMark::Author, HelpMark::ArchivePreferences, HelpMark::Maintenance,
          HelpMark::SmallWindows, HelpMark::ReadingHelp}) {
        const std::string sought = "#" + std::to_string(static_cast<int>(mark)) + "#";
        const std::size_t first = text.find(sought);
        ASSERT_NE(first, std::string::npos) << sought;
        EXPECT_EQ(text.find(sought, first + 1), std::string::npos) << sought;
    }
}

TEST(ShippedHelpText, ShowsNoMarkOfItsFormat) {
    const std::string text = TextToShow(ShippedHelp());
    const ui::ShownHelp shown = ui::WithoutMarks(text);
    EXPECT_EQ(shown.text.find_first_of("[]{}#`"), std::string::npos)
        << shown.text.substr(shown.text.find_first_of("[]{}#`"), 80);
    EXPECT_EQ(shown.text.find("**"), std::string::npos);
    EXPECT_EQ(shown.text.find("\n* "), std::string::npos);
    std::size_t topics = 0;
    for (const TopicKind kind : {TopicKind::Main, TopicKind::Sub})
        for (const HelpTopic& topic : HelpTopics(text, kind)) {
            ++topics;
            EXPECT_EQ(shown.text.substr(shown.PositionOf(topic.position), topic.title.size() + 1),
                      topic.title + "\n");
        }
    EXPECT_EQ(shown.titles.size(), topics);
    EXPECT_GT(topics, 50U);
}

TEST(ShippedHelpText, EveryTopicIsALineOfItsOwnWithBalancedBrackets) {
    const std::string text = TextToShow(ShippedHelp());
    std::size_t count = 0;
    for (const TopicKind kind : {TopicKind::Main, TopicKind::Sub})
        for (const HelpTopic& topic : HelpTopics(text, kind)) {
            ++count;
            EXPECT_EQ(topic.title.find_first_of("[]{}\n"), std::string::npos) << topic.title;
            EXPECT_FALSE(topic.title.empty());
            EXPECT_TRUE(topic.position == 0 || text[topic.position - 1] == '\n') << topic.title;
            EXPECT_EQ(text.at(topic.position + topic.title.size() + 2), '\n') << topic.title;
        }
    EXPECT_GT(count, 20U);
    for (const char bracket : std::string_view("[]{}")) {
        const auto kind = bracket == '[' || bracket == ']' ? TopicKind::Main : TopicKind::Sub;
        EXPECT_EQ(std::count(text.begin(), text.end(), bracket), std::ssize(HelpTopics(text, kind)))
            << bracket;
    }
}

} // namespace
} // namespace kelvash::test
