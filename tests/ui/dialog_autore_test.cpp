#include "ui/Dialog_Autore.h"

#include <gmock/gmock.h>

#include <QTest>

#include "core/archive.h"
#include "support/core_home.h"
#include "support/ui_home.h"

namespace kelvash::test {
namespace {

using namespace std::string_literals;

class DialogAutore : public UiHome<CoreHome> {
  protected:
    DialogAutore() {
        AddRecord(1, "City");
        core::archive.Table.Edit(1)->Emails = "ann@a.org\0ann@b.org"s;
        core::archive.Table.Edit(1)->AuthorNote = "First line\r\nSecond line";
        form.ImpostaValori(1);
        form.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&form));
    }
    static const core::LevelRecord& Record() { return core::archive.Table[1]; }

    ui::Dialog_Autore form{nullptr};
};

TEST_F(DialogAutore, OkLeavesTheLinesOfANoteAsTheyAre) {
    EXPECT_EQ(form.Text_NoteAutore->toPlainText().toStdString(), "First line\nSecond line");
    Press(&form, "Pul_Ok");
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(Record().AuthorNote, "First line\r\nSecond line");
}

TEST_F(DialogAutore, EndsTypedLinesAlike) {
    form.Text_NoteAutore->clear();
    QTest::keyClicks(form.Text_NoteAutore, QStringLiteral("One"));
    QTest::keyClick(form.Text_NoteAutore, Qt::Key_Return);
    QTest::keyClicks(form.Text_NoteAutore, QStringLiteral("Two"));
    Press(&form, "Pul_Ok");
    EXPECT_EQ(Record().AuthorNote, "One\r\nTwo");
}

TEST_F(DialogAutore, JudgesTheNameWhereItIsTyped) {
    const auto note = [this](const QString& text) {
        form.Text_NomeAutore->setText(text);
        QTest::qWait(300);
        return form.Note_Fields->text().toStdString();
    };
    EXPECT_EQ(note(QString(79, QLatin1Char('x'))), "");
    EXPECT_EQ(note(QString(80, QLatin1Char('x'))), "No more than 79 characters can be stored");
    EXPECT_EQ(note(QStringLiteral("Ирина")), "These characters can't be stored: И р и н а");
}

TEST_F(DialogAutore, CancelStoresNothing) {
    form.Combo_Email->setCurrentIndex(0);
    Press(&form, "Pul_DelEmail");
    EXPECT_EQ(form.Combo_Email->count(), 1);
    form.Text_NomeAutore->setText(QStringLiteral("Bob"));
    QTest::keyClick(&form, Qt::Key_Escape);
    EXPECT_FALSE(form.isVisible());
    EXPECT_EQ(Record().Emails, "ann@a.org\0ann@b.org"s);
    EXPECT_EQ(Record().Author, "");
}

TEST_F(DialogAutore, TheLastItemGoneLeavesNoneSelected) {
    Press(&form, "Pul_DelEmail");
    Press(&form, "Pul_DelEmail");
    EXPECT_EQ(form.Combo_Email->currentIndex(), -1);
    robot.WillPress("No selected item", "OK");
    Press(&form, "Pul_DelEmail");
    robot.WillPress("No selected site", "OK");
    Press(&form, "Pul_GoSito");
}

// The keyboard goes through the form as the eye does.
TEST_F(DialogAutore, TabGoesFromTopToBottom) {
    form.Text_NomeAutore->setFocus();
    for (QWidget* const next : std::initializer_list<QWidget*>{
             form.Combo_Email, form.Pul_NewEmail, form.Pul_ChangeEmail, form.Pul_DelEmail, form.Pul_SendMail,
             form.Combo_Siti, form.Pul_New_Sito, form.Pul_ModSito, form.Pul_DelSito, form.Pul_GoSito,
             form.Text_NoteAutore, form.Pul_Help, form.Pul_Ok, form.Pul_Cancel}) {
        QTest::keyClick(form.focusWidget(), Qt::Key_Tab);
        EXPECT_EQ(form.focusWidget(), next) << next->objectName().toStdString();
    }
}

} // namespace
} // namespace kelvash::test
