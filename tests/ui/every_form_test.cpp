// What holds for every form: each control has a name that a screen reader can say, and a letter of its own.
#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QCryptographicHash>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QRadioButton>
#include <QSet>
#include <QTextBlock>
#include <map>
#include <memory>
#include <set>

#include "foundation/drives.h"
#include "ui/forms_home.h"
#include "ui/look_style.h"
#include "ui/message_box.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

class EveryForm : public FormsHome {
  protected:
    // Those that the tabulator key reaches.
    static QList<QWidget*> Focusable(const QWidget& form) {
        QList<QWidget*> found;
        for (QWidget* widget : form.findChildren<QWidget*>())
            if (widget->window() == &form && (widget->focusPolicy() & Qt::TabFocus) != 0 &&
                widget->focusProxy() == nullptr)
                found << widget;
        return found;
    }
    static QString Spoken(QWidget* widget) {
        QAccessibleInterface* const known = QAccessible::queryAccessibleInterface(widget);
        return known == nullptr ? QString() : known->text(QAccessible::Name).trimmed();
    }
    static std::string NameOf(const QObject& form, const QObject* control) {
        return (form.objectName() + QLatin1Char('.') + control->objectName() + QLatin1Char(' ') +
                QLatin1String(control->metaObject()->className()))
            .toStdString();
    }
    // The letter behind a mark; null without one.
    static QChar Letter(QString text) {
        text.remove(QStringLiteral("&&"));
        const qsizetype at = text.indexOf(QLatin1Char('&'));
        return at < 0 ? QChar() : text.at(at + 1).toUpper();
    }
    // The captions with letters by which the keyboard reaches something that is enabled.
    static QStringList MarkedCaptions(const QWidget& form) {
        QStringList captions;
        for (const QAbstractButton* button : form.findChildren<QAbstractButton*>())
            if (button->isEnabledTo(&form)) captions << button->text();
        for (const QLabel* label : form.findChildren<QLabel*>())
            if (label->buddy() != nullptr && label->buddy()->isEnabledTo(&form)) captions << label->text();
        if (const auto* const bar = form.findChild<QMenuBar*>())
            for (const QAction* action : bar->actions())
                if (action->isEnabled()) captions << action->text();
        return captions.filter(QStringLiteral("&"));
    }
};

TEST_F(EveryForm, HasANameForEachControl) {
    std::vector<std::string> nameless;
    int controls = 0;
    ForEach([&](QWidget& open) {
        for (QWidget* widget : Focusable(open)) {
            ++controls;
            if (Spoken(widget).isEmpty()) nameless.push_back(NameOf(open, widget));
        }
    });
    EXPECT_THAT(nameless, IsEmpty());
    EXPECT_GT(controls, 120);
}

// All but those that only end a form: where the desktop's have icons, they get theirs by FootRow.
TEST_F(EveryForm, HasAnIconOnEachButtonOfSubstance) {
    const std::set<std::string> answers = {"Pul_Ok", "Pul_Cancel", "Pul_Annulla"};
    std::vector<std::string> bare;
    int buttons = 0;
    ForEach([&](QWidget& open) {
        for (const QAbstractButton* button : open.findChildren<QAbstractButton*>()) {
            const bool chooses = qobject_cast<const QCheckBox*>(button) != nullptr ||
                                 qobject_cast<const QRadioButton*>(button) != nullptr;
            if (chooses || button->objectName().startsWith(QStringLiteral("qt_")) ||
                answers.contains(button->objectName().toStdString()))
                continue;
            ++buttons;
            if (button->icon().isNull()) bare.push_back(NameOf(open, button));
        }
    });
    EXPECT_THAT(bare, IsEmpty());
    EXPECT_GT(buttons, 60);
}

// All but the menus themselves: those of the bar, and the two that pop up.
TEST_F(EveryForm, HasAnIconBeforeEachCommand) {
    const QList<QAction*> bar = form.menuBar()->actions();
    std::vector<std::string> bare;
    int commands = 0;
    for (int entry = 0; entry < static_cast<int>(Entry::Count); ++entry) {
        QAction* const command = form.Command(static_cast<Entry>(entry));
        const auto at = static_cast<Entry>(entry);
        if (bar.contains(command) || at == Entry::mnu_SaveGameHid || at == Entry::mnu_SaveGameHid2) continue;
        ++commands;
        if (command->icon().isNull()) bare.push_back(command->objectName().toStdString());
    }
    EXPECT_THAT(bare, IsEmpty());
    EXPECT_GT(commands, 70);
}

TEST_F(EveryForm, HasAnIconForEachStyleOfMessage) {
    QSet<QString> drawings;
    for (const QMessageBox::Icon style :
         {QMessageBox::Critical, QMessageBox::Question, QMessageBox::Warning, QMessageBox::Information}) {
        const ui::MessageBox box(style, {}, QMessageBox::Ok, nullptr);
        const QImage drawing = box.iconPixmap().toImage();
        ASSERT_FALSE(drawing.isNull()) << style;
        drawings << QString::fromLatin1(QCryptographicHash::hash(
            QByteArray::fromRawData(reinterpret_cast<const char*>(drawing.constBits()),
                                    drawing.sizeInBytes()),
            QCryptographicHash::Md5));
    }
    EXPECT_EQ(drawings.size(), 4) << "each of its own";
}

// Those that show a job alone have none: it would stand still meanwhile.
TEST_F(EveryForm, OpensItsHelpByTheKey) {
    MakeFile(home / "help_kelvash.txt", BytesOf(std::filesystem::path(KELVASH_ASSETS) / "help_kelvash.txt"));
    const QSet<QString> of_jobs = {QStringLiteral("Dialog_ConvertiMp3"), QStringLiteral("Dialog_Progress"),
                                   QStringLiteral("Dialog_Wait"), QStringLiteral("Dialog_Zip")};
    std::map<std::string, std::string> topics;
    ForEach([&](QWidget& open) {
        if (of_jobs.contains(open.objectName())) return;
        open.show();
        open.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&open)) << open.objectName().toStdString();
        auto topic = std::make_shared<std::string>();
        robot.Will("Dialog_Testo", [topic](QWidget* window) {
            const auto* const help = dynamic_cast<const ui::Dialog_Testo*>(window);
            if (help != nullptr) {
                WaitUntil([help] { return !help->Timer1->isActive(); });
                *topic = help->Text_File->textCursor().block().text().toStdString();
            }
            window->close();
        });
        QTest::keyClick(&open, Qt::Key_F1);
        topics[open.objectName().toStdString()] = *topic;
    });
    EXPECT_THAT(
        topics,
        ElementsAre(Pair("Dialog_Autore", "Author notes"), Pair("Dialog_Cattura", "Screenshots"),
                    Pair("Dialog_ConvertAudio", "Converting music"),
                    Pair("Dialog_GetDir", "Choosing a folder"), Pair("Dialog_Indice", "Using this help"),
                    Pair("Dialog_InputTesto", "Small windows"), Pair("Dialog_InsertCd", "Small windows"),
                    Pair("Dialog_Keys", "Keyboard"), Pair("Dialog_ListSaveGame", "Savegame management"),
                    Pair("Dialog_NewArc", "The Archive"), Pair("Dialog_NewLevel", "Adding a level"),
                    Pair("Dialog_PrefArc", "Preferences of the Archive"),
                    Pair("Dialog_Resize", "Screenshots"),
                    Pair("Dialog_Restore", "Back to the original configuration"),
                    Pair("Dialog_ScreenShot", "Screenshots"), Pair("Dialog_SetMp3", "Converting music"),
                    Pair("Dialog_Settings", "The settings"), Pair("Dialog_Testo", "Using this help"),
                    Pair("Dialog_TrovaTrle", "Finding the TRLE folder"),
                    Pair("FirstStart", "The first start"), Pair("Principale", "The main window")));
}

TEST_F(EveryForm, TellsItsButtonsApart) {
    std::vector<std::string> doubled;
    ForEach([&](QWidget& open) {
        QSet<QString> names;
        for (QWidget* widget : Focusable(open)) {
            if (qobject_cast<QAbstractButton*>(widget) == nullptr) continue;
            if (names.contains(Spoken(widget))) doubled.push_back(NameOf(open, widget));
            names << Spoken(widget);
        }
    });
    EXPECT_THAT(doubled, IsEmpty());
}

TEST_F(EveryForm, GivesNoLetterTwice) {
    std::vector<std::string> doubled;
    int letters = 0;
    ForEach([&](QWidget& open) {
        QSet<QChar> taken;
        for (const QString& caption : MarkedCaptions(open)) {
            const QChar letter = Letter(caption);
            if (letter.isNull()) continue;
            ++letters;
            if (taken.contains(letter))
                doubled.push_back(open.objectName().toStdString() + ": " + caption.toStdString());
            taken << letter;
        }
    });
    EXPECT_THAT(doubled, IsEmpty());
    EXPECT_GT(letters, 80);
}

TEST_F(EveryForm, LeadsByTheLetterOfALabelToAField) {
    std::vector<std::string> astray;
    int labels = 0;
    ForEach([&](QWidget& open) {
        for (const QLabel* label : open.findChildren<QLabel*>()) {
            const QWidget* const field = label->buddy();
            const bool leads =
                field != nullptr && field->window() == &open && (field->focusPolicy() & Qt::TabFocus) != 0;
            if (leads) ++labels;
            if (!leads && (field != nullptr || !Letter(label->text()).isNull()))
                astray.push_back(NameOf(open, label));
        }
    });
    EXPECT_THAT(astray, IsEmpty());
    EXPECT_GT(labels, 15);
}

TEST_F(EveryForm, HasALabelOrASpokenNameForEachField) {
    std::vector<std::string> bare;
    int fields = 0;
    ForEach([&](QWidget& open) {
        QSet<const QWidget*> labelled;
        for (const QLabel* label : open.findChildren<QLabel*>())
            labelled << label->buddy();
        for (const QWidget* widget : Focusable(open)) {
            const bool is_field = widget->inherits("QLineEdit") || widget->inherits("QComboBox") ||
                                  widget->inherits("QPlainTextEdit") || widget->inherits("QTextEdit") ||
                                  widget->inherits("QAbstractItemView") ||
                                  widget->inherits("QAbstractSpinBox");
            if (!is_field) continue;
            ++fields;
            if (!labelled.contains(widget) && widget->accessibleName().isEmpty())
                bare.push_back(NameOf(open, widget));
        }
    });
    EXPECT_THAT(bare, IsEmpty());
    EXPECT_GT(fields, 25);
}

TEST_F(EveryForm, LetsTheTabulatorKeyReachAllOfIt) {
    std::vector<std::string> missed;
    int reached_in_all = 0;
    ForEach([&](QWidget& open) {
        open.show();
        open.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&open)) << open.objectName().toStdString();
        QList<QWidget*> wanted = Focusable(open);
        wanted.removeIf([](const QWidget* widget) {
            const auto* const button = qobject_cast<const QAbstractButton*>(widget);
            // Of those that exclude each other the arrows choose.
            const bool of_several = button != nullptr && button->autoExclusive() && !button->isChecked();
            return !widget->isVisible() || !widget->isEnabled() || of_several;
        });
        QSet<QWidget*> reached;
        for (qsizetype i = 0; i <= wanted.size(); ++i) {
            QWidget* const focus = QApplication::focusWidget();
            reached << focus;
            QTest::keyClick(focus != nullptr ? focus : &open, Qt::Key_Tab);
        }
        for (const QWidget* widget : wanted)
            if (!reached.contains(const_cast<QWidget*>(widget))) missed.push_back(NameOf(open, widget));
        reached_in_all += static_cast<int>(reached.size());
    });
    EXPECT_THAT(missed, IsEmpty());
    EXPECT_GT(reached_in_all, 80);
}

TEST_F(EveryForm, SaysWhatItsDestructiveButtonsTakeAway) {
    std::vector<std::string> marked, silent;
    ForEach([&](QWidget& open) {
        for (const QAbstractButton* button : open.findChildren<QAbstractButton*>()) {
            if (!button->property(ui::kDestructiveMark).toBool()) continue;
            marked.push_back(button->objectName().toStdString());
            const bool told = button->isEnabled() ? button->accessibleDescription() == button->toolTip()
                                                  : !button->accessibleDescription().isEmpty();
            if (button->toolTip().isEmpty() || !told) // a grey one's tip says why it is grey
                silent.push_back(NameOf(open, button));
        }
    });
    EXPECT_THAT(silent, IsEmpty());
    EXPECT_THAT(marked,
                UnorderedElementsAre("Pul_DeleteSavegame", "Pul_DelEmail", "Pul_DelSito", "Pul_Svuota",
                                     "Check_Elimina", "Pul_Full", "Pul_Remove", "Pul_RimuoviTutti"));
}

TEST_F(EveryForm, ReadsOutWhatTheListsHold) {
    EXPECT_EQ(Spoken(form.List_SaveGameTomb).toStdString(), "Current Savegames in tomb raider slots");
    EXPECT_EQ(Spoken(form.List_SaveGameArchiviati).toStdString(), "Old Recorded Savegames");
    EXPECT_EQ(Spoken(form.Text_NoteSaveGame).toStdString(), "Description");
    ui::Dialog_GetDir folders(nullptr);
    EXPECT_EQ(Spoken(folders.Dir1).toStdString(), "Folders");
}

TEST_F(EveryForm, LetsTheTabulatorKeyLeaveTheSavegamesNote) {
    form.Pul_SaveGames->click();
    form.Text_NoteSaveGame->setFocus();
    ASSERT_EQ(QApplication::focusWidget(), form.Text_NoteSaveGame);
    QTest::keyClick(form.Text_NoteSaveGame, Qt::Key_Tab);
    EXPECT_NE(QApplication::focusWidget(), form.Text_NoteSaveGame);
}

} // namespace
} // namespace kelvash::test
