// The forms by which the logic has something chosen.
#include <gmock/gmock.h>

#include <QLineEdit>
#include <QTest>

#include "foundation/drives.h"
#include "support/trle_sandbox.h"
#include "support/ui_home.h"
#include "ui/Dialog_InsertCd.h"
#include "ui/Dialog_NewArc.h"
#include "ui/Dialog_TrovaTrle.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

class ChoiceForms : public UiHome<TestHome> {
  protected:
    std::string Run(const ChoiceForm& form) { return forms.ShowForm(form); }
    static ChoiceForm NewArc() {
        return {"Dialog_NewArc", " First execution: Missing last archive", {}, {"Pul_New", "Pul_Load"}};
    }
    static ChoiceForm TrovaTrle(const std::string& start) {
        return {"Dialog_TrovaTrle", "Folder of Tomb Raider Level Editor", start, {"Pul_Ok", "Pul_Cancel"}};
    }
};

// --- Dialog_NewArc ---

TEST_F(ChoiceForms, NewArcHasItsCaptions) {
    const ui::Dialog_NewArc form(nullptr);
    EXPECT_EQ(form.windowTitle().toStdString(), " First execution: Missing last archive");
    EXPECT_EQ(Plain(form.Pul_Load->text()), "Load archive");
    EXPECT_EQ(Plain(form.Pul_New->text()), "Create new archive");
    EXPECT_THAT(form.Label_Info->text().toStdString(), HasSubstr("one small index file"));
}

TEST_F(ChoiceForms, NewArcNamesTheButton) {
    robot.WillPress("Dialog_NewArc", "Pul_New");
    EXPECT_EQ(Run(NewArc()), "Pul_New");
    robot.WillPress("Dialog_NewArc", "Pul_Load");
    EXPECT_EQ(Run(NewArc()), "Pul_Load");
    robot.Will("Dialog_NewArc", [](QWidget* window) { window->close(); });
    EXPECT_EQ(Run(NewArc()), "");
}

// --- Dialog_TrovaTrle ---

TEST_F(ChoiceForms, TrovaTrleHasItsCaptions) {
    const ui::Dialog_TrovaTrle form(nullptr);
    EXPECT_EQ(form.windowTitle().toStdString(), "Folder of Tomb Raider Level Editor");
    EXPECT_EQ(form.Label_Path->text().toStdString(), "(no folder chosen yet)");
    EXPECT_EQ(Plain(form.Pul_InstallTrleCD->text()), "Install Level Editor from a TRLE folder");
    EXPECT_EQ(Plain(form.Pul_InstallCompresso->text()), "Install Compress Level Editor");
    EXPECT_FALSE(form.Pul_InstallTrleCD->isEnabled());
    EXPECT_FALSE(form.Pul_InstallCompresso->isEnabled());
    EXPECT_FALSE(form.Pul_Ok->isEnabled());
}

TEST_F(ChoiceForms, TrovaTrleAcceptsTheFolderItStartsFrom) {
    MakeTrle(drive / "trle");
    robot.Will("Dialog_TrovaTrle", [](QWidget* window) {
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("Label_Path"))->text().toStdString(), "C:\\trle");
        Press(window, "Pul_Ok");
    });
    EXPECT_EQ(Run(TrovaTrle("C:\\trle")), "C:\\trle");
}

TEST_F(ChoiceForms, TrovaTrleTakesOnlyARightFolder) {
    MakeTrle(drive / "trle");
    std::filesystem::create_directories(drive / "wrong");
    robot.WillPress("Dialog_TrovaTrle", "Pul_Sfoglia");
    WillChooseFolder("Choose TR Level Editor folder", "C:\\wrong");
    robot.WillPress("Not right folder: Missing file 'tomb4.exe' in folder: C:\\wrong", "OK");
    robot.Will("Dialog_TrovaTrle", [](QWidget* window) {
        EXPECT_FALSE(window->findChild<QPushButton*>(QStringLiteral("Pul_Ok"))->isEnabled());
        Press(window, "Pul_Sfoglia");
    });
    WillChooseFolder("Choose TR Level Editor folder", "C:\\trle");
    robot.WillPress("Dialog_TrovaTrle", "Pul_Ok");
    EXPECT_EQ(Run(TrovaTrle("")), "C:\\trle");
}

TEST_F(ChoiceForms, TrovaTrleCanBeGivenUp) {
    robot.WillPress("Dialog_TrovaTrle", "Pul_Cancel");
    EXPECT_EQ(Run(TrovaTrle("")), "Pul_Cancel");
    robot.Will("Dialog_TrovaTrle", [](QWidget* window) { window->close(); });
    EXPECT_EQ(Run(TrovaTrle("")), "");
}

// --- Dialog_InsertCd ---

TEST_F(ChoiceForms, InsertCdOffersTheReaders) {
    for (const char letter : {'E', 'F'}) {
        std::filesystem::create_directories(root / std::string(1, letter));
        ASSERT_TRUE(SetDrive(letter, root / std::string(1, letter), DriveType::CdRom));
    }
    const ChoiceForm form{
        "Dialog_InsertCd", " Cd Request", "F:", {"Pul_Ok", "Pul_Cancel"}, "Please, insert CD # 3"};
    robot.Will("Dialog_InsertCd\n Cd Request", [](QWidget* window) {
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("Label_Mex"))->text().toStdString(),
                  "Please, insert CD # 3");
        auto* const drives = window->findChild<QComboBox*>(QStringLiteral("Combo_Unita"));
        EXPECT_EQ(drives->currentText().toStdString(), "F:");
        drives->setCurrentIndex(drives->findText(QStringLiteral("E:")));
        Press(window, "Pul_Ok");
    });
    EXPECT_EQ(Run(form), "E:");
    robot.WillPress("Dialog_InsertCd", "Pul_Cancel");
    EXPECT_EQ(Run(form), "Pul_Cancel");
}

} // namespace
} // namespace kelvash::test
