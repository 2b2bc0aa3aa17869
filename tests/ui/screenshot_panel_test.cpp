// The page of the screenshots and its three forms, worked by the names of their controls.
#include "ui/screenshot_panel.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QClipboard>
#include <QInputDialog>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>

#include "companion/shot_files.h"
#include "foundation/files.h"
#include "support/bitmaps.h"
#include "swap/picture_codec.h"
#include "ui/Dialog_Cattura.h"
#include "ui/Dialog_Resize.h"
#include "ui/Dialog_ScreenShot.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ScreenshotPage : public PrincipaleHome {
  protected:
    ScreenshotPage() { core::SelectLevel(1); }
    std::filesystem::path Folder() const { return LevelPath(1) / "SCREENSHOTS"; }
    static std::string PathOf(const std::string& name) {
        return "C:\\Levels\\LEVEL_0001\\screenshots\\" + name;
    }
    void Have(std::initializer_list<const char*> names) {
        for (const char* name : names)
            MakeFile(Folder() / name, MakeBitmap({}));
        form.AggiornaDatiLivello(false);
    }
    static std::string NameIn(const ui::PictureView* view) {
        return std::filesystem::path(view->Path().toStdString()).filename().string();
    }
    std::string Selected() const {
        if (form.Image1->IsSelected()) return NameIn(form.Image1);
        return form.Image2->IsSelected() ? NameIn(form.Image2) : std::string();
    }
    static std::string Copied() { return QApplication::clipboard()->text().toStdString(); }
    void WillType(const std::string& title, const std::string& text) {
        robot.Will(title, [text](QWidget* window) {
            auto* const input = qobject_cast<QInputDialog*>(window);
            ASSERT_NE(input, nullptr);
            input->setTextValue(QString::fromStdString(text));
            input->accept();
        });
    }
};

TEST_F(ScreenshotPage, SelectsByAClick) {
    Have({"1.bmp", "2.bmp", "3.bmp"});
    EXPECT_EQ(Selected(), "1.bmp");
    QTest::mouseClick(form.Image2, Qt::LeftButton);
    EXPECT_EQ(Selected(), "2.bmp");
    EXPECT_EQ(form.Shots().Pages().SelectedImage(), PathOf("2.bmp"));
    Press(&form, "Pul_DopoScreenShot");
    EXPECT_EQ(form.Shots().Pages().SelectedImage(), PathOf("3.bmp"));
    EXPECT_EQ(Selected(), "") << "nothing to choose from";
}

TEST_F(ScreenshotPage, TheLastPageKeepsTheFocus) {
    Have({"1.bmp", "2.bmp", "3.bmp"});
    const auto press_space = [](QPushButton* button) {
        button->setFocus();
        QTest::keyClick(button, Qt::Key_Space);
        return QApplication::focusWidget()->objectName().toStdString();
    };
    EXPECT_EQ(press_space(form.Pul_DopoScreenShot), "Pul_PrimaScreenShot");
    EXPECT_EQ(press_space(form.Pul_PrimaScreenShot), "Pul_DopoScreenShot");
    EXPECT_EQ(press_space(form.Pul_UltimoShot), "Pul_PrimaScreenShot");
    EXPECT_EQ(press_space(form.Pul_PrimoShot), "Pul_DopoScreenShot");
}

TEST_F(ScreenshotPage, IsWalkedByTheArrowKeys) {
    Have({"1.bmp", "2.bmp", "3.bmp"});
    form.Image1->setFocus();
    std::vector<std::string> seen;
    for (int i = 0; i < 3; ++i) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Right);
        seen.push_back(form.Shots().Pages().SelectedImage());
    }
    EXPECT_THAT(seen, ElementsAre(PathOf("2.bmp"), PathOf("3.bmp"), PathOf("3.bmp")));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    EXPECT_EQ(Selected(), "2.bmp");
    EXPECT_EQ(QApplication::focusWidget(), form.Image2);
}

TEST_F(ScreenshotPage, OpensItsMenuAtAPicture) {
    Have({"1.bmp", "2.bmp"});
    QMenu* const menu = form.Command(Entry::mnu_Edit)->menu();
    QTest::mousePress(form.Image2, Qt::RightButton);
    QContextMenuEvent wish(QContextMenuEvent::Mouse, {5, 5}, form.Image2->mapToGlobal(QPoint(5, 5)));
    QApplication::sendEvent(form.Image2, &wish);
    EXPECT_TRUE(menu->isVisible());
    EXPECT_EQ(Selected(), "2.bmp");
    menu->close();
}

TEST_F(ScreenshotPage, AddsAPictureAndSelectsIt) {
    Have({"1.bmp", "2.bmp"});
    MakeFile(drive / "new.bmp", MakeBitmap({}));
    robot.WillChooseFile("Select an image to add in screen-shot list", drive / "new.bmp");
    robot.WillPress("Screenshot 'new.bmp' saved in screenshot list as '" + PathOf("new.bmp"), "OK");
    Choose(Entry::mnu_AddScreenshot);
    EXPECT_EQ(NameIn(form.Image1), "new.bmp");
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("1.bmp", "2.bmp", "new.bmp"));
    EXPECT_TRUE(form.Label_InfoDir->text().contains(QLatin1String("3")));
}

TEST_F(ScreenshotPage, DeletesTheSelectedOne) {
    Have({"1.bmp", "2.bmp", "3.bmp"});
    QTest::mouseClick(form.Image2, Qt::LeftButton);
    robot.WillPress("Delete screen-shot 2.bmp", "Yes");
    QTest::keyClick(form.Image2, Qt::Key_Delete);
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("1.bmp", "3.bmp"));
    EXPECT_EQ(NameIn(form.Image2), "3.bmp");
}

TEST_F(ScreenshotPage, RenamesTheSelectedOne) {
    Have({"1.bmp", "2.bmp", "3.bmp"});
    WillType("Rename screen-shot", "Zoo");
    Choose(Entry::mnu_RenameShot);
    EXPECT_THAT(NamesIn(Folder()), ElementsAre("2.bmp", "3.bmp", "Zoo.bmp"));
    EXPECT_EQ(NameIn(form.Image1), "Zoo.bmp") << "on its page";
}

TEST_F(ScreenshotPage, CopiesPathAndPicture) {
    Have({"1.bmp"});
    robot.WillPress("has been copied in clipboard", "OK");
    Choose(Entry::mnu_CopyPathInClip);
    EXPECT_EQ(Copied(), (Folder() / "1.bmp").string());
    Choose(Entry::mnu_CopyShot);
    EXPECT_EQ(QApplication::clipboard()->image().size(), QSize(kWidth, kHeight));
    EXPECT_EQ(form.Label_Info->text().toStdString(), "The image is in the clipboard");
}

TEST_F(ScreenshotPage, TellsOfAPictureAndOfCapturing) {
    Have({"1.bmp"});
    robot.WillPress("Resolution: (37 X 35)", "OK");
    Choose(Entry::mnu_PropertyScreenShot);
    robot.WillPress("Press key [Print Screen] to capture game screenshots", "OK");
    Choose(Entry::mnu_CaptureScreen);
}

TEST_F(ScreenshotPage, SavesACopy) {
    Have({"1.bmp"});
    robot.WillChooseFile("Save current screenshot", drive / "copy.jpg");
    Choose(Entry::mnu_SaveShot);
    EXPECT_EQ(BytesOf(drive / "copy.jpg").substr(0, 2), "\xFF\xD8");
}

TEST_F(ScreenshotPage, RefusesTheDefaultPicture) {
    for (const auto& [entry, word] : {std::pair{Entry::mnu_DeleteShot, "delete"},
                                      {Entry::mnu_RenameShot, "rename"},
                                      {Entry::mnu_ResizeSave, "resize"},
                                      {Entry::mnu_SaveShot, "save"},
                                      {Entry::mnu_OpenEditor, "edit"}}) {
        robot.WillPress("This is a default screen-shot, you can not " + std::string(word) + " it :-)", "OK");
        Choose(entry);
    }
    robot.WillPress("This is a default screenshot. No property available", "OK");
    Choose(Entry::mnu_PropertyScreenShot);
    robot.WillPress("No screenshot available", "OK");
    Choose(Entry::mnu_SendScreenshotemail);
}

TEST_F(ScreenshotPage, ShowsThePairOfAPicture) {
    Have({"1.bmp", "2.bmp", "3.bmp", "4.bmp"});
    form.Shots().ShowPairOf(PathOf("4.bmp"));
    EXPECT_EQ(NameIn(form.Image1), "3.bmp");
    EXPECT_EQ(Selected(), "4.bmp");
    form.Shots().ShowPairOf(PathOf("5.bmp"));
    EXPECT_EQ(Selected(), "4.bmp");
}

TEST_F(ScreenshotPage, NeedsALevel) {
    core::SelectLevel(-1);
    core::level_list.Selected = -1;
    form.AggiornaDatiLivello(false);
    for (const Entry entry : {Entry::mnu_AddScreenshot, Entry::mnu_Zoom, Entry::mnu_DeleteShot})
        EXPECT_FALSE(form.Command(entry)->isEnabled());
}

// --- Dialog_ScreenShot ---

TEST_F(ScreenshotPage, ShowsAPictureAtItsFullSizeByADoubleClick) {
    Have({"1.bmp", "2.bmp"});
    robot.Will("Dialog_ScreenShot", [](QWidget* window) {
        auto& zoom = dynamic_cast<ui::Dialog_ScreenShot&>(*window);
        window->activateWindow(); // as a window manager does
        WaitUntil([window] { return QApplication::activeWindow() == window; });
        EXPECT_EQ(zoom.windowTitle().toStdString(), "Screen-Shot: " + PathOf("2.bmp"));
        EXPECT_EQ(zoom.Picture1->size(), QSize(kWidth, kHeight));
        EXPECT_EQ(zoom.Label_Zoom->text().toStdString(), "100 %");
        QTest::keyClick(window, Qt::Key_Plus);
        EXPECT_EQ(zoom.Picture1->size(), QSize(46, 44));
        EXPECT_EQ(zoom.Label_Zoom->text().toStdString(), "125 %");
        Press(window, "Pul_ZoomOut");
        Press(window, "Pul_ZoomOut");
        EXPECT_EQ(zoom.Label_Zoom->text().toStdString(), "80 %");
        QTest::keyClick(window, Qt::Key_1);
        EXPECT_EQ(zoom.Label_Zoom->text().toStdString(), "100 %");
        QTest::keyClick(window, Qt::Key_Escape);
        EXPECT_FALSE(window->isVisible());
    });
    QTest::mouseDClick(form.Image2, Qt::LeftButton);
    WaitUntil([this] { return robot.HasSeen("Dialog_ScreenShot") && !QApplication::activeModalWidget(); });
}

TEST_F(ScreenshotPage, ZoomsWithinItsBounds) {
    Have({"1.bmp"});
    ui::Dialog_ScreenShot zoom(nullptr);
    ASSERT_TRUE(zoom.ImpostaValori(PathOf("1.bmp")));
    zoom.show();
    for (int i = 0; i < 20; ++i)
        zoom.Pul_ZoomIn->click();
    EXPECT_EQ(zoom.Picture1->size(), QSize(kWidth * 8, kHeight * 8));
    EXPECT_FALSE(zoom.Pul_ZoomIn->isEnabled());
    for (int i = 0; i < 40; ++i)
        zoom.Pul_ZoomOut->click();
    EXPECT_EQ(zoom.Label_Zoom->text().toStdString(), "10 %");
    EXPECT_FALSE(zoom.Pul_ZoomOut->isEnabled());
    zoom.Pul_Fit->click();
    EXPECT_EQ(zoom.Label_Zoom->text().toStdString(), "100 %") << "never larger than it is";
}

TEST_F(ScreenshotPage, ShowsNoPictureThatIsCut) {
    const std::string whole = swap::JpegFromPicture({64, 64, std::string(64 * 64 * 3, 'x')}, 90).value_or("");
    MakeFile(Folder() / "1.jpg", whole.substr(0, whole.size() / 2));
    form.AggiornaDatiLivello(false);
    robot.WillPress("This image can't be read: " + PathOf("1.jpg"), "OK");
    Choose(Entry::mnu_Zoom);
    EXPECT_FALSE(robot.HasSeen("Dialog_ScreenShot"));
}

TEST_F(ScreenshotPage, TellsAPictureThatCanNotBeShown) {
    MakeFile(Folder() / "1.bmp", "no picture");
    form.AggiornaDatiLivello(false);
    robot.WillPress("This image can't be read: " + PathOf("1.bmp"), "OK");
    Choose(Entry::mnu_Zoom);
    EXPECT_FALSE(robot.HasSeen("Dialog_ScreenShot"));
}

// --- Dialog_Resize ---

TEST_F(ScreenshotPage, ResizesAPicture) {
    Have({"1.bmp"});
    ASSERT_TRUE(SetFileDate(PathOf("1.bmp"), 5000));
    robot.WillChooseFile("Save resized scree-shot", drive / "small.bmp");
    robot.WillPress("Copied full path in clipboard", "OK");
    robot.Will("Dialog_Resize", [](QWidget* window) {
        auto& resize = dynamic_cast<ui::Dialog_Resize&>(*window);
        std::vector<std::string> sizes;
        for (int i = 0; i < resize.Combo_Resize->count(); ++i)
            sizes.push_back(resize.Combo_Resize->itemText(i).toStdString());
        EXPECT_THAT(sizes, ElementsAre("   480 X 360", "   440 X 330", "   400 X 300", "   360 X 270",
                                       "   320 X 240", "   240 X 180", "   200 X 150", "   160 X 120"));
        EXPECT_EQ(resize.Combo_JpgQuality->itemText(0).toStdString(), "Highest");
        EXPECT_EQ(resize.Combo_JpgQuality->itemData(4).toInt(), 20);
        resize.Combo_Resize->setCurrentIndex(7);
        EXPECT_TRUE(resize.Picture1->HasPicture());
        Press(window, "Pul_Save");
        EXPECT_TRUE(window->isVisible()) << "for another size";
        Press(window, "Pul_Cancel");
    });
    Choose(Entry::mnu_ResizeSave);
    EXPECT_EQ(BytesOf(drive / "small.bmp").size(), 54U + 160 * 120 * 3);
    EXPECT_EQ(FileTime("C:\\small.bmp").value_or(0), 5000);
    EXPECT_EQ(Copied(), (drive / "small.bmp").string());
}

// --- Dialog_Cattura ---

class CaptureForm : public ScreenshotPage {
  protected:
    CaptureForm() {
        core::profile.PromptCapture = true;
        capture.emplace(nullptr);
        swap::Picture picture{2, 1, std::string("\xFF\0\0\0\0\xFF", 6)};
        capture->ImpostaValori(1, picture);
        picture.Pixels.clear(); // the form has its own
        capture->show();
    }
    std::optional<ui::Dialog_Cattura> capture;
};

TEST_F(CaptureForm, SavesThePictureItWasGiven) {
    EXPECT_TRUE(capture->Picture1->HasPicture());
    EXPECT_FALSE(capture->Check_AutoSave->isChecked());
    robot.WillChooseFile("Save captured screenshot", Folder() / "Door.jpg");
    Press(&*capture, "Pul_Save");
    EXPECT_EQ(capture->SavedPath, "C:\\Levels\\LEVEL_0001\\SCREENSHOTS\\Door.jpg");
    EXPECT_FALSE(capture->isVisible());
    EXPECT_TRUE(companion::ReadShot(PathOf("Door.jpg")).has_value());
}

TEST_F(CaptureForm, ComesBackFromADialogThatIsGivenUp) {
    robot.Will("Save captured screenshot", [](QWidget* window) { window->close(); });
    Press(&*capture, "Pul_Save");
    EXPECT_TRUE(capture->isVisible());
    Press(&*capture, "Pul_Cancel");
    EXPECT_FALSE(capture->isVisible());
    EXPECT_EQ(capture->SavedPath, "");
    EXPECT_THAT(NamesIn(Folder()), IsEmpty());
}

TEST_F(CaptureForm, IsAskedForNoMore) {
    QTest::mouseClick(capture->Check_AutoSave, Qt::LeftButton, {},
                      {5, capture->Check_AutoSave->height() / 2});
    EXPECT_FALSE(core::profile.PromptCapture);
    QTest::mouseClick(capture->Check_AutoSave, Qt::LeftButton, {},
                      {5, capture->Check_AutoSave->height() / 2});
    EXPECT_TRUE(core::profile.PromptCapture);
}

} // namespace
} // namespace kelvash::test
