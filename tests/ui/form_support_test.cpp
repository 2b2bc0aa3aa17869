#include "ui/form_support.h"

#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTextLayout>

#include "ui/theme.h"

namespace kelvash::ui {
namespace {

TEST(Mnemonics, TakeBeginningsOfWordsFirst) {
    QWidget form;
    QPushButton play(QStringLiteral("Play"), &form);
    QPushButton previous(QStringLiteral("Previous page"), &form);
    QPushButton page(QStringLiteral("Page"), &form);
    AssignMnemonics(&form);
    EXPECT_EQ(play.text().toStdString(), "&Play");
    EXPECT_EQ(previous.text().toStdString(), "P&revious page");
    EXPECT_EQ(page.text().toStdString(), "P&age");
}

TEST(Mnemonics, AreLeftOutWhenAllLettersAreTaken) {
    QWidget form;
    QPushButton first(QStringLiteral("A"), &form);
    QPushButton second(QStringLiteral("a a"), &form);
    AssignMnemonics(&form);
    EXPECT_EQ(first.text().toStdString(), "&A");
    EXPECT_EQ(second.text().toStdString(), "a a");
}

TEST(Mnemonics, ReachLabelledFields) {
    QWidget form;
    QLabel label(QStringLiteral("Name"), &form);
    QLineEdit field(&form);
    label.setBuddy(&field);
    QLabel plain(QStringLiteral("R & D"), &form);
    AssignMnemonics(&form);
    EXPECT_EQ(label.text().toStdString(), "&Name");
    EXPECT_EQ(plain.text().toStdString(), "R & D");
}

TEST(Mnemonics, GoPastWhatIsNotYetThere) {
    QWidget form;
    QPushButton later(QStringLiteral("Play"), &form);
    QPushButton now(QStringLiteral("Pause"), &form);
    NotYet({&later});
    AssignMnemonics(&form);
    EXPECT_FALSE(later.isEnabled());
    EXPECT_EQ(later.text().toStdString(), "Play");
    EXPECT_EQ(now.text().toStdString(), "&Pause");
}

TEST(Captions, ComeWithLineBreaksAsQtHasThem) {
    EXPECT_EQ(ShownText("a\r\nb").toStdString(), "a\nb");
    EXPECT_EQ(FromUtf8("Größe").size(), 5);
    EXPECT_EQ(ToUtf8(QStringLiteral("Größe")), "Größe");
}

TEST(Captions, OfStrangersAreLettersAlone) {
    EXPECT_EQ(ShownText("a\x1B[2J\r\nb\u202E").toStdString(), "a\nb");
    EXPECT_EQ(ShownLine(std::string("a\0b\r\nc", 6)).toStdString(), "a b c");
}

// In any width.
TEST(Captions, ALineDoesNotEndBetweenADriveAndItsFolders) {
    const std::string told = "I can't overwrite (or create) file: C:\\Kelvash\\Swap_92786727.rec";
    const QString text = WrappedText(told);
    EXPECT_EQ(WithoutWraps(text).toStdString(), told);
    int lines = 0;
    for (int width = 40; width < 500; width += 5) {
        QTextLayout layout(text, QApplication::font());
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(width);
            const QString shown = WithoutWraps(text.mid(line.textStart(), line.textLength()));
            EXPECT_FALSE(shown.endsWith(QLatin1String("C:"))) << width;
            ++lines;
        }
        layout.endLayout();
    }
    EXPECT_GT(lines, 100);
}

TEST(Captions, AToolTipShowsMarkUpToTheLetter) {
    EXPECT_EQ(ToolTipText(QStringLiteral("City of Gold")).toStdString(), "City of Gold");
    EXPECT_EQ(ToolTipText(QStringLiteral("<img src='x'> & <b>Gold</b>")).toStdString(),
              "<span>&lt;img src='x'&gt; &amp; &lt;b&gt;Gold&lt;/b&gt;</span>");
}

TEST(Themes, SwitchBetweenDarkAndLight) {
    EXPECT_FALSE(Theme::IsDark());
    Theme::SetDark(true);
    EXPECT_TRUE(Theme::IsDark());
    Theme::SetDark(false);
    EXPECT_FALSE(Theme::IsDark());
}

} // namespace
} // namespace kelvash::ui
