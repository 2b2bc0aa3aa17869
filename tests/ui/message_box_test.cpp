#include "ui/message_box.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>

#include "program/messages.h"
#include "support/ui_home.h"
#include "ui/form_support.h"
#include "ui/look.h"
#include "ui/look_style.h"

namespace kelvash::test {
namespace {

using ui::MessageBox;

class MessageBoxes : public UiHome<TestHome> {
  protected:
    // Tells a text, looks at its box and closes that.
    void Tell(const std::string& text, const std::function<void(MessageBox& box)>& look) {
        robot.Will("MessageBox", [&look](QWidget* window) {
            auto* const box = qobject_cast<MessageBox*>(window);
            ASSERT_NE(box, nullptr);
            look(*box);
            if (box->isVisible()) Press(box, "OK");
        });
        forms.Message(MessageStyle::Plain, MessageText(text));
    }
    static QLabel* Headline(const MessageBox& box) {
        return box.findChild<QLabel*>(QStringLiteral("qt_msgbox_label"));
    }
    static QLabel* Rest(const MessageBox& box) {
        return box.findChild<QLabel*>(QStringLiteral("qt_msgbox_informativelabel"));
    }
    static std::string Copied() { return QGuiApplication::clipboard()->text().toStdString(); }
    static QAction* CopyText(const QWidget& widget) {
        for (QAction* action : widget.actions())
            if (Plain(action->text()) == "Copy text") return action;
        return nullptr;
    }
    static bool IsMarked(const QWidget* button, const char* mark) { return button->property(mark).toBool(); }
};

TEST_F(MessageBoxes, SetTheFirstLineOfALongTextAsItsHeadline) {
    Tell("I can't copy this file:\r\nC:\\Games\\trle\\tomb4.exe\r\n\r\nIs it in use?", [](MessageBox& box) {
        EXPECT_EQ(box.text().toStdString(), "I can't copy this file:");
        EXPECT_EQ(Headline(box)->font(), ui::FontOf(ui::Type::Title));
        EXPECT_EQ(ui::WithoutWraps(box.informativeText()).toStdString(),
                  "C:\\Games\\trle\\tomb4.exe\n\nIs it in use?");
        EXPECT_LT(Rest(box)->font().pointSizeF(), Headline(box)->font().pointSizeF());
    });
    EXPECT_TRUE(robot.HasSeen("I can't copy this file:\nC:\\Games\\trle\\tomb4.exe\n\nIs it in use?"));
}

TEST_F(MessageBoxes, LeaveATextOfOneLineAsItIs) {
    for (const std::string text : {"Level removed", "Level removed\r\n", "\r\nLevel removed"})
        Tell(text, [](MessageBox& box) {
            EXPECT_EQ(box.text().trimmed().toStdString(), "Level removed");
            EXPECT_EQ(Rest(box), nullptr);
            EXPECT_NE(Headline(box)->font(), ui::FontOf(ui::Type::Title));
        });
}

TEST_F(MessageBoxes, MakeNoHeadlineOfAWholeParagraph) {
    Tell(std::string(161, 'x') + "\r\nmore", [](MessageBox& box) {
        EXPECT_EQ(Rest(box), nullptr);
        EXPECT_TRUE(box.text().endsWith(QLatin1String("x\nmore")));
    });
}

TEST_F(MessageBoxes, DrawTheirIconInTheColoursOfTheMoment) {
    const auto colours = [](const MessageBox& box) {
        const QImage icon = box.iconPixmap().toImage();
        return icon.pixelColor(icon.width() / 2, icon.height() / 8);
    };
    Tell("Told", [&](MessageBox& box) {
        EXPECT_EQ(colours(box), ui::ColourOf(ui::Role::Accent));
        const QColor light = colours(box);
        ui::TakeLook(true);
        QCoreApplication::processEvents();
        EXPECT_EQ(colours(box), ui::ColourOf(ui::Role::Accent));
        EXPECT_NE(colours(box), light);
        ui::TakeLook(false);
    });
}

// A path goes on in the next line, and is the file's name all the same.
TEST_F(MessageBoxes, CopyALongPathAsItIs) {
    const std::string path = "C:\\" + std::string(70, 'W') + "\\" + std::string(90, 'M') + "\\tomb4.exe";
    Tell("No such file:\r\n" + path, [&path](MessageBox& box) {
        EXPECT_LE(Rest(box)->minimumSizeHint().width(), Rest(box)->width());
        CopyText(box)->trigger();
        EXPECT_EQ(Copied(), "No such file:\n" + path);
        QGuiApplication::clipboard()->clear();
        Rest(box)->setFocus();
        QTest::keyClick(Rest(box), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(Rest(box), Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(Copied(), path);
    });
    EXPECT_TRUE(robot.HasSeen(path));
}

// What another program has put there, which counts how often it is asked for.
class ForeignText final : public QMimeData {
  public:
    explicit ForeignText(int& asked) : asked_(asked) {}
    QStringList formats() const override { return {QStringLiteral("text/plain")}; }

  protected:
    QVariant retrieveData(const QString&, QMetaType) const override {
        ++asked_;
        return QStringLiteral("foreign");
    }

  private:
    int& asked_;
};

TEST_F(MessageBoxes, LeaveWhatOthersCopyUnread) {
    int asked = 0;
    Tell("No such file", [&asked](MessageBox&) {
        QGuiApplication::clipboard()->setMimeData(new ForeignText(asked));
        QCoreApplication::processEvents();
        EXPECT_EQ(asked, 0);
    });
    QGuiApplication::clipboard()->clear();
}

TEST_F(MessageBoxes, ShowMarkUpInBothPartsAsItStands) {
    Tell("<b>one</b>\r\n<b>two</b>", [](MessageBox& box) {
        EXPECT_EQ(Headline(box)->textFormat(), Qt::PlainText);
        EXPECT_EQ(Rest(box)->textFormat(), Qt::PlainText);
    });
}

TEST_F(MessageBoxes, ScrollATextThatIsHigherThanTheScreen) {
    std::string files;
    for (int i = 0; i < 200; ++i)
        files += "\r\nC:\\Games\\trle\\file" + std::to_string(i) + ".dat";
    for (const std::string& text : {"These files are in the way:" + files, std::string(170, 'x') + files})
        Tell(text, [](MessageBox& box) {
            EXPECT_LE(box.height(), box.screen()->availableSize().height());
            const QWidget* const ok = box.button(QMessageBox::Ok);
            EXPECT_TRUE(box.rect().contains(QRect(ok->mapTo(&box, QPoint()), ok->size())));
            const auto* const page = box.findChild<QScrollArea*>(QStringLiteral("Scroll"));
            ASSERT_NE(page, nullptr);
            EXPECT_GT(page->height(), box.height() / 2);
            EXPECT_EQ(page->horizontalScrollBar()->maximum(), 0);
            QLabel* const label = Rest(box) != nullptr ? Rest(box) : Headline(box);
            QTest::keyClick(label, Qt::Key_PageDown);
            EXPECT_GT(page->verticalScrollBar()->value(), 0);
        });
}

TEST_F(MessageBoxes, KeepTheTextBelowItsHeadlineBesideAHighPicture) {
    MessageBox box(QMessageBox::NoIcon, QStringLiteral("About"), QMessageBox::Ok, nullptr);
    box.Say("Kelvash 1.4\r\nKeeps levels");
    QPixmap picture(96, 200);
    picture.fill(Qt::red);
    box.setIconPixmap(picture);
    box.setModal(false);
    box.show();
    QTest::qWait(20);
    EXPECT_LE(Rest(box)->y() - Headline(box)->geometry().bottom(), ui::space::kWide);
    EXPECT_LE(Headline(box)->height(), 2 * Headline(box)->fontMetrics().height());
}

TEST_F(MessageBoxes, DoNotScrollATextThatHasRoom) {
    Tell("Not there:\r\nC:\\a b\\c.tr4",
         [](MessageBox& box) { EXPECT_EQ(box.findChild<QScrollArea*>(QStringLiteral("Scroll")), nullptr); });
}

TEST_F(MessageBoxes, CopyTheirWholeTextByMenuAndKey) {
    Tell("Not there:\r\nC:\\a b\\c.tr4", [](MessageBox& box) {
        for (const QWidget* part : {static_cast<QWidget*>(&box), static_cast<QWidget*>(Headline(box)),
                                    static_cast<QWidget*>(Rest(box))}) {
            QGuiApplication::clipboard()->clear();
            EXPECT_EQ(part->contextMenuPolicy(), Qt::ActionsContextMenu);
            ASSERT_NE(CopyText(*part), nullptr);
            CopyText(*part)->trigger();
            EXPECT_EQ(Copied(), "Not there:\nC:\\a b\\c.tr4");
        }
        QGuiApplication::clipboard()->clear();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&box));
        QTest::keyClick(&box, Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(Copied(), "Not there:\nC:\\a b\\c.tr4");
    });
}

TEST_F(MessageBoxes, CopyAPathThatIsSelected) {
    Tell("Not there:\r\nC:\\a b\\c.tr4", [](MessageBox& box) {
        Rest(box)->setSelection(4, 3); // behind the drive stands a mark that is not seen
        CopyText(box)->trigger();
        EXPECT_EQ(Copied(), "a b");
    });
}

TEST_F(MessageBoxes, LetTheKeyboardIntoTheTextAndBeginAtTheAnswer) {
    Tell("Not there:\r\nC:\\a b\\c.tr4", [](MessageBox& box) {
        EXPECT_EQ(box.focusWidget(), box.button(QMessageBox::Ok));
        for (int i = 0; i < 3 && box.focusWidget() != Rest(box); ++i)
            QTest::keyClick(box.focusWidget(), Qt::Key_Tab);
        ASSERT_EQ(box.focusWidget(), Rest(box));
        QTest::keyClick(Rest(box), Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(Rest(box), Qt::Key_C, Qt::ControlModifier);
        EXPECT_EQ(Copied(), "C:\\a b\\c.tr4");
        QTest::keyClick(Rest(box), Qt::Key_Return);
        EXPECT_FALSE(box.isVisible()) << "Enter means OK wherever the keyboard is";
    });
}

TEST_F(MessageBoxes, MarkTheAnswerThatLosesSomethingAndTheOneThatEnterGives) {
    robot.Will("remove level", [](QWidget* window) {
        const auto* const box = qobject_cast<MessageBox*>(window);
        ASSERT_NE(box, nullptr);
        EXPECT_TRUE(IsMarked(box->button(QMessageBox::Yes), ui::kDestructiveMark));
        EXPECT_FALSE(IsMarked(box->button(QMessageBox::No), ui::kDestructiveMark));
        EXPECT_TRUE(IsMarked(box->button(QMessageBox::No), ui::kMainActionMark));
        Press(window, "No");
    });
    forms.Ask(Buttons::YesNo, MessageStyle::Question, LoadMessage(msg::kRemoveQuestion));
}

} // namespace
} // namespace kelvash::test
