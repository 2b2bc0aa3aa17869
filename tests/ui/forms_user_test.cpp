#include "ui/forms_user.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QComboBox>
#include <QFileDialog>
#include <QHeaderView>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QTreeView>

#include "foundation/drives.h"
#include "foundation/messages.h"
#include "intake/messages.h"
#include "program/messages.h"
#include "support/ui_home.h"
#include "swap/backup_messages.h"
#include "ui/Dialog_Progress.h"
#include "ui/Dialog_Wait.h"
#include "ui/Dialog_Zip.h"
#include "zip/messages.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;

class FormsUserPort : public UiHome<TestHome> {
  protected:
    // The first visible window of that class; null if there is none.
    template <class Form>
    static Form* Visible() {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* const form = qobject_cast<Form*>(window); form != nullptr && form->isVisible())
                return form;
        return nullptr;
    }
    // The captions of a box's buttons, sorted, and its icon.
    void WillLookAtBox(const std::string& when, std::vector<std::string>& buttons, QMessageBox::Icon& icon,
                       const std::string& press) {
        robot.Will(when, [&buttons, &icon, press](QWidget* window) {
            auto* const box = qobject_cast<QMessageBox*>(window);
            ASSERT_NE(box, nullptr);
            icon = box->icon();
            for (const QAbstractButton* button : box->buttons())
                buttons.push_back(Plain(button->text()));
            std::sort(buttons.begin(), buttons.end());
            Press(window, press);
        });
    }
    // Asks, and gives what each button and closing the box answer.
    std::vector<Answer> AnswersOf(Buttons kind, const std::vector<std::string>& buttons) {
        std::vector<Answer> answers;
        for (const std::string& button : buttons) {
            robot.WillPress("Well?", button);
            answers.push_back(forms.Ask(kind, MessageStyle::Question, MessageText("Well?")));
        }
        robot.Will("Well?", [](QWidget* window) { QTest::keyClick(window, Qt::Key_Escape); });
        answers.push_back(forms.Ask(kind, MessageStyle::Question, MessageText("Well?")));
        return answers;
    }
};

// --- boxes ---

TEST_F(FormsUserPort, ShowsMessagesInFourStyles) {
    const std::vector<std::pair<MessageStyle, QMessageBox::Icon>> styles = {
        {MessageStyle::Critical, QMessageBox::Critical},
        {MessageStyle::Question, QMessageBox::Question},
        {MessageStyle::Exclamation, QMessageBox::Warning},
        {MessageStyle::Plain, QMessageBox::Information}};
    for (const auto& [style, expected] : styles) {
        std::vector<std::string> buttons;
        QMessageBox::Icon icon{};
        WillLookAtBox("Look", buttons, icon, "OK");
        forms.Message(style, MessageText("Look\r\nhere"));
        EXPECT_EQ(icon, expected);
        EXPECT_THAT(buttons, ElementsAre("OK"));
    }
    EXPECT_TRUE(robot.HasSeen("MessageBox\nKelvash\nLook\nhere"));
}

TEST_F(FormsUserPort, ShowsMarkUpAsItStands) {
    robot.Will("<b>", [](QWidget* window) {
        EXPECT_EQ(qobject_cast<QMessageBox*>(window)->textFormat(), Qt::PlainText);
        Press(window, "OK");
    });
    forms.Message(MessageStyle::Plain, MessageText("<b>level</b>"));
}

TEST_F(FormsUserPort, ADialogOfFilesShowsItsColumnsWholeAndKeepsItsSize) {
    MakeFile(home / "a.kva", "x");
    const auto look = [&](const std::function<void(QFileDialog&)>& act) {
        robot.Will("Load one", [act](QWidget* window) {
            auto* const dialog = qobject_cast<QFileDialog*>(window);
            ASSERT_NE(dialog, nullptr);
            act(*dialog);
            dialog->reject();
        });
        EXPECT_FALSE(
            forms
                .OpenFile({MessageText("Load one"), MessageText("Archives (*.kva)|*.kva"), "C:\\Kelvash", {}})
                .has_value());
    };
    look([](QFileDialog& dialog) {
        dialog.resize(700, 420);
        const auto* const list = dialog.findChild<QTreeView*>(QStringLiteral("treeView"));
        ASSERT_NE(list, nullptr);
        WaitUntil([&] { return list->model()->rowCount(list->rootIndex()) > 0; });
        QTest::qWait(50);
        int whole = 0;
        for (int column = 0; column < list->model()->columnCount(); ++column) {
            if (list->isColumnHidden(column)) continue;
            const QString text = list->model()->index(0, column, list->rootIndex()).data().toString();
            EXPECT_GE(list->columnWidth(column), list->fontMetrics().horizontalAdvance(text)) << column;
            whole += list->columnWidth(column);
        }
        EXPECT_EQ(whole, list->viewport()->width()) << "the name has what is left";
    });
    look([](QFileDialog& dialog) { EXPECT_EQ(dialog.size(), QSize(700, 420)); });
}

TEST_F(FormsUserPort, AsksWithEachSetOfButtons) {
    EXPECT_THAT(AnswersOf(Buttons::YesNo, {"Yes", "No"}), ElementsAre(Answer::Yes, Answer::No, Answer::No));
    EXPECT_THAT(AnswersOf(Buttons::YesNoCancel, {"Yes", "No", "Cancel"}),
                ElementsAre(Answer::Yes, Answer::No, Answer::Cancel, Answer::Cancel));
    EXPECT_THAT(AnswersOf(Buttons::OkCancel, {"OK", "Cancel"}),
                ElementsAre(Answer::Ok, Answer::Cancel, Answer::Cancel));
    EXPECT_THAT(AnswersOf(Buttons::AbortRetryIgnore, {"Abort", "Retry", "Ignore"}),
                ElementsAre(Answer::Abort, Answer::Retry, Answer::Ignore, Answer::Abort));
}

TEST_F(FormsUserPort, TakesATypedText) {
    robot.Will("Rename", [](QWidget* window) {
        auto* const dialog = qobject_cast<QInputDialog*>(window);
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->labelText().toStdString(), "Type a name");
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            EXPECT_EQ(label->textFormat(), Qt::PlainText);
        EXPECT_EQ(dialog->textValue().toStdString(), "old");
        dialog->setTextValue(QStringLiteral("Größe"));
        dialog->accept();
    });
    EXPECT_EQ(forms.Input("Rename", MessageText("Type a name"), "old"), "Größe");
    robot.Will("Rename", [](QWidget* window) { window->close(); });
    EXPECT_EQ(forms.Input("Rename", MessageText("Type a name"), "old"), std::nullopt);
}

// --- files and folders ---

TEST_F(FormsUserPort, GivesFilesAsPathTexts) {
    MakeFile(drive / "zips/level.zip", "zip");
    robot.WillChooseFile("Choose", drive / "zips/level.zip");
    EXPECT_EQ(forms.OpenFile({MessageText("Choose"), "Zip files|*.zip", "C:\\zips", {}}),
              "C:\\zips\\level.zip");
    robot.Will("Choose", [](QWidget* window) { window->close(); });
    EXPECT_EQ(forms.OpenFile({MessageText("Choose"), "Zip files|*.zip", "C:\\zips", {}}), std::nullopt);
}

TEST_F(FormsUserPort, CompletesANameToSaveUnder) {
    robot.WillChooseFile("Save", drive / "mine");
    EXPECT_EQ(forms.SaveFile({MessageText("Save"), "Archives (*.kva)|*.kva", "C:", "test.kva"}),
              "C:\\mine.kva");
    robot.WillChooseFile("Save", drive / "mine.old");
    EXPECT_EQ(forms.SaveFile({MessageText("Save"), "Archives (*.kva)|*.kva", "C:", "test.kva"}),
              "C:\\mine.old");
}

TEST_F(FormsUserPort, AddsNoExtensionWhereTheFilterTakesAny) {
    robot.WillChooseFile("Save", drive / "mine");
    EXPECT_EQ(forms.SaveFile({MessageText("Save"), "Savegames|savegame.*", "C:", "savegame.3"}), "C:\\mine");
}

// The filter says what kind of file a name stands for.
TEST_F(FormsUserPort, NamesAFileByTheKindThatIsChosen) {
    const FileDialog dialog{MessageText("Save"), "Bitmaps (*.bmp)|*.bmp|Jpegs (*.jpg)|*.jpg", "C:", "a.jpg"};
    robot.Will("Save", [](QWidget* window) {
        auto* const open = qobject_cast<QFileDialog*>(window);
        ASSERT_NE(open, nullptr);
        EXPECT_EQ(open->selectedNameFilter().toStdString(), "Jpegs (*.jpg)");
        EXPECT_EQ(open->defaultSuffix().toStdString(), "jpg");
        auto* const kinds = open->findChild<QComboBox*>(QStringLiteral("fileTypeCombo"));
        ASSERT_NE(kinds, nullptr);
        kinds->setCurrentIndex(0);
        Q_EMIT kinds->activated(0); // by the user
        Q_EMIT kinds->textActivated(kinds->currentText());
        EXPECT_EQ(open->defaultSuffix().toStdString(), "bmp");
        QMetaObject::invokeMethod(open, "accept");
    });
    EXPECT_EQ(forms.SaveFile(dialog), "C:\\a.bmp");
}

TEST_F(FormsUserPort, AsksBeforeACompletedNameReplacesAFile) {
    MakeFile(drive / "mine.kva", "an Archive");
    robot.WillChooseFile("Save", drive / "mine");
    robot.WillPress("mine.kva already exists", "No");
    robot.Will("Save", [](QWidget* window) { window->close(); });
    EXPECT_EQ(forms.SaveFile({MessageText("Save"), "Archives (*.kva)|*.kva", "C:", "test.kva"}),
              std::nullopt);
    robot.WillChooseFile("Save", drive / "mine");
    robot.WillPress("mine.kva already exists", "Yes");
    EXPECT_EQ(forms.SaveFile({MessageText("Save"), "Archives (*.kva)|*.kva", "C:", "test.kva"}),
              "C:\\mine.kva");
}

TEST_F(FormsUserPort, WritesFiltersAsQtDoes) {
    EXPECT_EQ(ui::QtFilter("Images (*.jpg) (*.bmp)|*.jpg;*.bmp").toStdString(), "Images (*.jpg *.bmp)");
    EXPECT_EQ(ui::QtFilter("A|*.a|All files (*.*)|*.*").toStdString(), "A (*.a);;All files (*)");
    EXPECT_EQ(ui::QtFilter("").toStdString(), "");
}

// --- answers that can lose something ---

TEST_F(FormsUserPort, ABoxOfWhichEachAnswerCanLoseSomethingIsEndedByItsButtonsOnly) {
    robot.Will("Do you want a full backup?", [](QWidget* window) {
        QTest::keyClick(window, Qt::Key_Escape);
        window->close();
        QTest::keyClick(window, Qt::Key_Return);
        ASSERT_TRUE(window->isVisible());
        Press(window, "No");
    });
    EXPECT_EQ(forms.Ask(Buttons::YesNo, MessageStyle::Question,
                        LoadMessage(msg::kFullBackupQuestion, {kLineBreak, kLineBreak})),
              Answer::No);
}

TEST_F(FormsUserPort, EnterNeverGivesALosingAnswer) {
    const auto enter = [](QWidget* window) { QTest::keyClick(window, Qt::Key_Return); };
    robot.Will("Are you sure to want remove level", enter);
    EXPECT_EQ(forms.Ask(Buttons::YesNo, MessageStyle::Question, LoadMessage(msg::kRemoveQuestion)),
              Answer::No);
    robot.Will("also sub folders", enter);
    EXPECT_EQ(forms.Ask(Buttons::YesNo, MessageStyle::Question, LoadMessage(msg::kAddSubFolders)),
              Answer::Yes);
}

TEST_F(FormsUserPort, EscapeNeverGivesALosingAnswer) {
    robot.Will("However, would you like add",
               [](QWidget* window) { QTest::keyClick(window, Qt::Key_Escape); });
    EXPECT_EQ(forms.Ask(Buttons::YesNo, MessageStyle::Question, LoadMessage(msg::kEqualQuestion)),
              Answer::Yes);
}

TEST_F(FormsUserPort, APasswordIsNotShown) {
    robot.Will("InputBox", [](QWidget* window) {
        auto* const field = window->findChild<QLineEdit*>();
        ASSERT_NE(field, nullptr);
        EXPECT_EQ(field->echoMode(), QLineEdit::Password);
        field->setText(QStringLiteral("secret"));
        qobject_cast<QDialog*>(window)->accept();
    });
    EXPECT_EQ(forms.Input("Zip", LoadMessage(msg::kZipPassword, {"<b>a.zip</b>", kLineBreak}), {}), "secret");
}

// --- progress ---

TEST_F(FormsUserPort, ShowsProgressOnceAJobLasts) {
    forms.SetPatience(60);
    forms.OpenProgress(BarPlace::ProgressDialog, "Copying files");
    forms.SetBar(BarPlace::ProgressDialog, 10);
    EXPECT_EQ(Visible<ui::Dialog_Progress>(), nullptr);
    QTest::qSleep(80);
    forms.SetLabel(BarPlace::ProgressDialog, "one.tr4");
    auto* const window = Visible<ui::Dialog_Progress>();
    ASSERT_NE(window, nullptr);
    EXPECT_EQ(window->windowTitle().toStdString(), "Copying files");
    EXPECT_EQ(window->Label_Info->text().toStdString(), "one.tr4");
    EXPECT_TRUE(window->Label_Info->isVisible());
    forms.SetLabel(BarPlace::ProgressDialog, {});
    EXPECT_FALSE(window->Label_Info->isVisible()) << "no empty line above the bar";
    EXPECT_EQ(window->ProgressBar1->value(), 10);
    forms.CloseProgress(BarPlace::ProgressDialog);
    EXPECT_EQ(Visible<ui::Dialog_Progress>(), nullptr);
    forms.CloseProgress(BarPlace::ProgressDialog);
}

TEST_F(FormsUserPort, NestsProgressWindows) {
    forms.SetPatience(0);
    forms.OpenProgress(BarPlace::ProgressDialog, "outer");
    forms.OpenProgress(BarPlace::ZipDialog, "zip");
    forms.OpenProgress(BarPlace::WaitDialog, "wait");
    forms.SetLabel(BarPlace::WaitDialog, "Please wait");
    forms.SetLabel(BarPlace::ZipDialog, "file");
    forms.SetBar(BarPlace::ZipDialog, 40);
    ASSERT_NE(Visible<ui::Dialog_Wait>(), nullptr);
    EXPECT_EQ(Visible<ui::Dialog_Wait>()->Label_Mex->text().toStdString(), "Please wait");
    EXPECT_EQ(Visible<ui::Dialog_Zip>()->ZlibTool1->value(), 40);
    EXPECT_EQ(Visible<ui::Dialog_Zip>()->Label_Info->text().toStdString(), "file");
    forms.CloseProgress(BarPlace::WaitDialog);
    forms.CloseProgress(BarPlace::ZipDialog);
    EXPECT_NE(Visible<ui::Dialog_Progress>(), nullptr);
    forms.CloseProgress(BarPlace::ProgressDialog);
}

TEST_F(FormsUserPort, ClosingAProgressWindowAsksTheJobToStop) {
    forms.SetPatience(0);
    {
        const ProgressDialog job(BarPlace::StoppableDialog, "job");
        EXPECT_FALSE(forms.StopRequested());
        Visible<ui::Dialog_Progress>()->close();
        EXPECT_TRUE(forms.StopRequested());
        EXPECT_NE(Visible<ui::Dialog_Progress>(), nullptr) << "it goes when the job has ended";
    }
    const ProgressDialog next_job(BarPlace::StoppableDialog, "next job");
    EXPECT_FALSE(forms.StopRequested());
}

TEST_F(FormsUserPort, AStopHoldsTillTheEndOfAllThatItIsOf) {
    forms.SetPatience(0);
    const JobScope command;
    {
        const JobScope transfer(Stop::Offered);
        {
            const ProgressDialog copying(BarPlace::StoppableDialog, "copying");
            Visible<ui::Dialog_Progress>()->close();
        }
        EXPECT_TRUE(forms.StopRequested()) << "what is told of it comes behind the dialog";
    }
    EXPECT_FALSE(forms.StopRequested()) << "the command goes on with something else";
    const JobScope another(Stop::Offered);
    EXPECT_FALSE(forms.StopRequested());
}

TEST_F(FormsUserPort, AJobBehindABoxWaits) {
    EXPECT_FALSE(forms.JobWaits());
    const JobScope job;
    EXPECT_FALSE(forms.JobWaits());
    robot.Will("Well?", [this](QWidget* window) {
        EXPECT_TRUE(forms.JobWaits()) << "what the box does is none of its work";
        {
            const JobScope of_the_box;
            EXPECT_FALSE(forms.JobWaits());
        }
        Press(window, "OK");
    });
    forms.Message(MessageStyle::Plain, MessageText("Well?"));
    EXPECT_FALSE(forms.JobWaits());
}

TEST_F(FormsUserPort, AWindowWithoutAStopButtonCannotBeClosed) {
    forms.SetPatience(0);
    for (const BarPlace place : {BarPlace::ProgressDialog, BarPlace::ZipDialog, BarPlace::WaitDialog}) {
        forms.OpenProgress(place, "job");
        QWidget* const window = QApplication::activeModalWidget();
        ASSERT_NE(window, nullptr);
        QTest::keyClick(window, Qt::Key_Escape);
        window->close();
        EXPECT_FALSE(forms.StopRequested());
        EXPECT_TRUE(window->isVisible());
        forms.CloseProgress(place);
    }
}

TEST_F(FormsUserPort, DropsInputForOtherWindowsWhileAJobPumps) {
    QPushButton button(QStringLiteral("Play"));
    button.show();
    int clicks = 0;
    QObject::connect(&button, &QPushButton::clicked, &button, [&] { ++clicks; });
    QTimer::singleShot(0, &button, [&] {
        QTest::mouseClick(&button, Qt::LeftButton);
        QTest::keyClick(&button, Qt::Key_Space);
        button.close();
    });
    forms.PumpEvents();
    EXPECT_EQ(clicks, 0);
    EXPECT_TRUE(button.isVisible());
    QTest::mouseClick(&button, Qt::LeftButton);
    EXPECT_EQ(clicks, 1) << "behind the job it works again";
}

TEST_F(FormsUserPort, TellsTheFormsOfTheirOwnLabelsAndBars) {
    QLabel label;
    std::vector<int> bar;
    forms.AddDisplay({BarPlace::CallerForm, &label, [&](int percent) { bar.push_back(percent); }});
    forms.SetLabel(BarPlace::CallerForm, "a\r\nb");
    forms.SetBar(BarPlace::CallerForm, 7);
    forms.SetLabel(BarPlace::MainWindow, "other");
    EXPECT_EQ(label.text().toStdString(), "a\nb");
    EXPECT_THAT(bar, ElementsAre(7));
    forms.RemoveDisplay(&label);
    forms.SetLabel(BarPlace::CallerForm, "c");
    EXPECT_EQ(label.text().toStdString(), "a\nb");
}

// --- what comes before the first wait ---

TEST_F(FormsUserPort, ABoxIsPrecededOnceByWhatComesBeforeWaiting) {
    int shown = 0;
    forms.SetBeforeWaiting([&shown] { ++shown; });
    robot.Will("first", [&shown](QWidget* window) {
        EXPECT_EQ(shown, 1);
        Press(window, "OK");
    });
    ShowMessage(MessageStyle::Plain, MessageText("first"));
    robot.WillPress("second", "OK");
    ShowMessage(MessageStyle::Plain, MessageText("second"));
    EXPECT_EQ(shown, 1);
}

TEST_F(FormsUserPort, AQuickStartWaitsForNothing) {
    int shown = 0;
    forms.SetPatience(60000);
    forms.SetBeforeWaiting([&shown] { ++shown; });
    forms.PumpEvents();
    forms.OpenProgress(BarPlace::WaitDialog, {});
    forms.CloseProgress(BarPlace::WaitDialog);
    EXPECT_EQ(shown, 0);
    forms.SetPatience(0);
    forms.PumpEvents();
    EXPECT_EQ(shown, 1) << "it has lasted long enough to be looked at";
    forms.SetBeforeWaiting([&shown] { ++shown; });
    forms.SetBeforeWaiting({});
    forms.PumpEvents();
    EXPECT_EQ(shown, 1) << "taken back";
}

} // namespace
} // namespace kelvash::test
