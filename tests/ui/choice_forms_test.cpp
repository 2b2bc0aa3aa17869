// The forms by which the logic has something chosen.
#include <gmock/gmock.h>

#include <QLineEdit>
#include <QTest>

#include "cd/cd_access.h"
#include "core/profile.h"
#include "foundation/drives.h"
#include "program/start_up.h"
#include "support/trle_sandbox.h"
#include "support/ui_home.h"
#include "trle/find_trle.h"
#include "ui/Dialog_InsertCd.h"
#include "ui/Dialog_NewArc.h"
#include "ui/Dialog_TrovaTrle.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

class ChoiceForms : public UiHome<TestHome> {
  protected:
    // What is chosen; nothing if the form is given up.
    static std::optional<bool> MakeNew() {
        program::FirstArchiveChoice choice{" First execution: Missing last archive"};
        return ShowForm(choice) ? std::optional(choice.MakeNew) : std::nullopt;
    }
    static std::optional<std::string> TrleFolder(const std::string& start) {
        trle::TrleFolderChoice choice{"Folder of Tomb Raider Level Editor", start};
        return ShowForm(choice) ? std::optional(choice.Folder) : std::nullopt;
    }
    static std::optional<std::string> CdDrive(const std::string& start) {
        cd::CdDriveChoice choice{" Cd Request", "Please, insert CD # 3", start};
        return ShowForm(choice) ? std::optional(choice.Drive) : std::nullopt;
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

TEST_F(ChoiceForms, NewArcTellsTheButton) {
    robot.WillPress("Dialog_NewArc", "Pul_New");
    EXPECT_EQ(MakeNew(), true);
    robot.WillPress("Dialog_NewArc", "Pul_Load");
    EXPECT_EQ(MakeNew(), false);
    robot.Will("Dialog_NewArc", [](QWidget* window) { window->close(); });
    EXPECT_EQ(MakeNew(), std::nullopt);
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
    EXPECT_EQ(TrleFolder("C:\\trle"), "C:\\trle");
}

TEST_F(ChoiceForms, TrovaTrleSaysWhatIsWrongWithTheFolderItStartsFrom) {
    MakeTrle(drive / "trle");
    const auto note = [this](const std::string& start) {
        std::string said;
        robot.Will("Dialog_TrovaTrle", [&said](QWidget* window) {
            said = ui::WithoutWraps(window->findChild<QLabel*>(QStringLiteral("Note_Path"))->text())
                       .toStdString();
            Press(window, "Pul_Cancel");
        });
        TrleFolder(start);
        return said;
    };
    EXPECT_EQ(note(""), "");
    EXPECT_EQ(note("C:\\trle"), "");
    EXPECT_EQ(note("C:\\gone"), "The Level Editor isn't whole in this folder");
    core::profile.TrleFolder = "C:\\lost";
    EXPECT_EQ(note(""), "The folder of the settings isn't there any more: C:\\lost");
    std::filesystem::create_directories(drive / "lost");
    EXPECT_EQ(note(""), "In the folder of the settings the Level Editor isn't whole: C:\\lost");
    EXPECT_EQ(note("C:\\trle"), "") << "another one is found";
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
    EXPECT_EQ(TrleFolder(""), "C:\\trle");
}

TEST_F(ChoiceForms, TrovaTrleCanBeGivenUp) {
    robot.WillPress("Dialog_TrovaTrle", "Pul_Cancel");
    EXPECT_EQ(TrleFolder(""), std::nullopt);
    robot.Will("Dialog_TrovaTrle", [](QWidget* window) { window->close(); });
    EXPECT_EQ(TrleFolder(""), std::nullopt);
}

// --- Dialog_InsertCd ---

TEST_F(ChoiceForms, InsertCdOffersTheReaders) {
    for (const char letter : {'E', 'F'}) {
        std::filesystem::create_directories(root / std::string(1, letter));
        ASSERT_TRUE(SetDrive(letter, root / std::string(1, letter), DriveType::CdRom));
    }
    robot.Will("Dialog_InsertCd\n Cd Request", [](QWidget* window) {
        EXPECT_EQ(window->findChild<QLabel*>(QStringLiteral("Label_Mex"))->text().toStdString(),
                  "Please, insert CD # 3");
        auto* const drives = window->findChild<QComboBox*>(QStringLiteral("Combo_Unita"));
        EXPECT_EQ(drives->currentText().toStdString(), "F:");
        drives->setCurrentIndex(drives->findText(QStringLiteral("E:")));
        Press(window, "Pul_Ok");
    });
    EXPECT_EQ(CdDrive("F:"), "E:");
    robot.WillPress("Dialog_InsertCd", "Pul_Cancel");
    EXPECT_EQ(CdDrive("F:"), std::nullopt);
}

} // namespace
} // namespace kelvash::test
