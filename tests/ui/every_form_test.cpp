// What holds for every form: each control has a name that a screen reader can say, and a letter of its own.
#include <gmock/gmock.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QMenuBar>
#include <QSet>

#include "foundation/drives.h"
#include "ui/forms_home.h"
#include "ui/look_style.h"

namespace kelvash::test {
namespace {

using testing::IsEmpty;
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

TEST_F(EveryForm, SaysWhatItsDestructiveButtonsTakeAway) {
    std::vector<std::string> marked, silent;
    ForEach([&](QWidget& open) {
        for (const QAbstractButton* button : open.findChildren<QAbstractButton*>()) {
            if (!button->property(ui::kDestructiveMark).toBool()) continue;
            marked.push_back(button->objectName().toStdString());
            if (button->toolTip().isEmpty() || button->accessibleDescription() != button->toolTip())
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
