#include "ui/Dialog_InputTesto.h"

#include <gtest/gtest.h>

#include <QTest>

#include "support/test_home.h"
#include "support/ui_home.h"

namespace kelvash::test {
namespace {

class DialogInputTesto : public UiHome<TestHome> {
  protected:
    void Open(const std::string& caption, const std::string& text) {
        form.ImpostaValori(caption, text);
        form.show();
    }

    ui::Dialog_InputTesto form{nullptr};
};

TEST_F(DialogInputTesto, HasItsCaptions) {
    Open("", "");
    EXPECT_EQ(form.windowTitle().toStdString(), "Kelvash");
    EXPECT_EQ(Plain(form.Pul_Ok->text()), "OK");
    EXPECT_EQ(Plain(form.Pul_Annulla->text()), "Cancel");
    EXPECT_EQ(Plain(form.Pul_Svuota->text()), "Clear");
}

TEST_F(DialogInputTesto, ShowsTheOpenersCaptionAndText) {
    Open(" Note", "one\r\ntwo\nthree");
    EXPECT_EQ(form.windowTitle().toStdString(), " Note");
    EXPECT_EQ(form.Text1->toPlainText().toStdString(), "one\ntwo\nthree");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.Testo, "one\r\ntwo\r\nthree");
}

TEST_F(DialogInputTesto, TakesTypedLinesBehindTheText) {
    Open("", "one <b>");
    QTest::keyClick(form.Text1, Qt::Key_Return);
    QTest::keyClicks(form.Text1, QStringLiteral("two"));
    EXPECT_TRUE(form.isVisible());
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_EQ(form.Testo, "one <b>\r\ntwo");
}

TEST_F(DialogInputTesto, ClearEmptiesTheTextAndCanBeUndone) {
    Open("", "one\ntwo");
    Press(&form, "Pul_Svuota");
    EXPECT_EQ(form.Text1->toPlainText().toStdString(), "");
    QTest::keyClick(form.Text1, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(form.Text1->toPlainText().toStdString(), "one\ntwo");
    Press(&form, "Pul_Svuota");
    Press(&form, "Pul_Ok");
    EXPECT_EQ(form.result(), QDialog::Accepted);
    EXPECT_EQ(form.Testo, "");
}

TEST_F(DialogInputTesto, CancelGivesNoText) {
    Open("", "one");
    QTest::keyClicks(form.Text1, QStringLiteral(" more"));
    Press(&form, "Pul_Annulla");
    EXPECT_EQ(form.result(), QDialog::Rejected);
    EXPECT_EQ(form.Testo, "");
}

TEST_F(DialogInputTesto, TheTabulatorLeavesTheText) {
    Open("", "one");
    QTest::keyClick(form.Text1, Qt::Key_Tab);
    EXPECT_EQ(form.focusWidget(), form.Pul_Svuota);
    EXPECT_EQ(form.Text1->toPlainText().toStdString(), "one");
}

} // namespace
} // namespace kelvash::test
