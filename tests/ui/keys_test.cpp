// The sheet of keys tells what the keys do, and all of them.
#include "ui/keys.h"

#include <gmock/gmock.h>

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QScrollBar>
#include <QShortcut>

#include "ui/Dialog_Keys.h"
#include "ui/Dialog_Testo.h"
#include "ui/help.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class Keys : public PrincipaleHome {
  protected:
    // "Title: key, key = words".
    std::vector<std::string> Told() const {
        std::vector<std::string> told;
        for (const ui::KeyGroup& group : ui::KeysOf(form))
            for (const ui::KeyLine& line : group.lines)
                told.push_back((group.title + QStringLiteral(": ") + line.keys.join(QStringLiteral(", ")) +
                                QStringLiteral(" = ") + line.words)
                                   .toStdString());
        return told;
    }
    static std::vector<std::string> Texts(const QWidget& sheet) {
        std::vector<std::string> texts;
        for (const QLabel* label : sheet.findChildren<QLabel*>())
            texts.push_back(label->text().toStdString());
        return texts;
    }
};

TEST_F(Keys, OfTheMainFormAreTold) {
    EXPECT_THAT(
        Told(),
        ElementsAre("File: Ctrl+O = Load Archive", "File: Ctrl+S = Save Archive", "File: Ctrl+Q = Exit",
                    "Levels: Ins = Add new level", "Levels: F2 = Properties of current level",
                    "Levels: Return, Enter = Play the selected level", "Levels: Del = Delete current level",
                    "Savegames: Ctrl+F = Find savegames with description contains  ...",
                    "Savegames: Ctrl+N = Find next savegame", "Savegames: Ctrl+P = Find previous savegame",
                    "Help: F1 = Help Kelvash", "Help: ? = Keys", "Tool bar: Ctrl+Return, Ctrl+Enter = Play",
                    "Tool bar: Ctrl+L = Search", "Find: Esc = Empty the search"));
}

TEST_F(Keys, AChangedKeyIsToldAsItIs) {
    form.Command(Entry::mnu_Save)->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+S")));
    EXPECT_THAT(Told(), Contains("File: Ctrl+Shift+S = Save Archive"));
    EXPECT_THAT(Told(), Not(Contains("File: Ctrl+S = Save Archive")));
}

TEST_F(Keys, NoneHasNoWords) {
    std::vector<std::string> wordless;
    const ui::Dialog_Testo help(nullptr);
    int keys = 0;
    for (const QWidget* window : std::initializer_list<const QWidget*>{&form, &help})
        for (const QShortcut* shortcut : window->findChildren<QShortcut*>()) {
            if (shortcut->key() == QKeySequence(ui::kHelpKey)) continue; // told once, as one of every form
            ++keys;
            if (shortcut->whatsThis().isEmpty()) wordless.push_back(shortcut->key().toString().toStdString());
        }
    EXPECT_THAT(wordless, IsEmpty());
    EXPECT_EQ(keys, 7);
}

TEST_F(Keys, TheSheetComesByItsOwnKey) {
    robot.Will("Dialog_Keys", [](QWidget* sheet) {
        EXPECT_THAT(Texts(*sheet), testing::IsSupersetOf({"File", "Ctrl+O", "Load Archive", "Everywhere",
                                                          "In the help", "F3", "Shift+F3", "Previous"}));
        Press(sheet, "Pul_Ok");
    });
    form.Combo_Livelli->setFocus();
    QTest::keyClick(form.Combo_Livelli, Qt::Key_Question);
    EXPECT_TRUE(robot.HasSeen("Dialog_Keys"));
}

// As with the fonts of another system.
TEST_F(Keys, TheSheetFitsASmallScreenWithWideLetters) {
    const QFont usual = QApplication::font();
    QFont wide = usual;
    wide.setStretch(200);
    wide.setPointSizeF(usual.pointSizeF() * 1.5);
    QApplication::setFont(wide);
    {
        ui::Dialog_Keys sheet(nullptr);
        sheet.ImpostaValori(form);
        sheet.show();
        QApplication::processEvents();
        const QSize least = sheet.minimumSizeHint();
        EXPECT_LE(least.width(), 800);
        EXPECT_LE(least.height(), 600);
        const QSize room = sheet.screen()->availableSize();
        EXPECT_LE(sheet.width(), room.width());
        EXPECT_LE(sheet.height(), room.height());
        EXPECT_TRUE(sheet.rect().contains(sheet.Pul_Ok->geometry()));
        EXPECT_GT(sheet.Scroll_Keys->verticalScrollBar()->maximum(), 0);
        QTest::keyClick(sheet.Scroll_Keys, Qt::Key_PageDown);
        EXPECT_GT(sheet.Scroll_Keys->verticalScrollBar()->value(), 0);
    }
    QApplication::setFont(usual);
}

TEST_F(Keys, AQuestionMarkCanBeTypedIntoTheSearch) {
    form.Text_Search->setFocus();
    QTest::keyClick(form.Text_Search, Qt::Key_Question);
    EXPECT_EQ(form.Text_Search->text().toStdString(), "?");
}

TEST_F(Keys, TheSheetTellsTheHelpKeyOnce) {
    for (const ui::KeyLine& line : ui::AddedKeys(ui::Dialog_Testo(nullptr)))
        EXPECT_FALSE(line.words.isEmpty()) << line.keys.join(QLatin1Char(' ')).toStdString();
    const ui::Dialog_Keys sheet(&form); // its own key is none of the window's
    for (const ui::KeyGroup& group : ui::KeysOf(form))
        for (const ui::KeyLine& line : group.lines)
            EXPECT_FALSE(line.words.isEmpty()) << line.keys.join(QLatin1Char(' ')).toStdString();
}

TEST_F(Keys, TheMenuOpensTheSheetToo) {
    robot.WillPress("Dialog_Keys", "Pul_Ok");
    Choose(Entry::mnu_Keys);
    EXPECT_TRUE(robot.HasSeen("Dialog_Keys"));
}

} // namespace
} // namespace kelvash::test
