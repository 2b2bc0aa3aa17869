#include "companion/shot_commands.h"

#include <gmock/gmock.h>

#include "companion/shots_home.h"
#include "core/profile.h"
#include "support/local_time.h"

namespace kelvash::test {
namespace {

using companion::AddScreenshot;
using companion::CopyShotPath;
using companion::DeleteShot;
using companion::OpenShotEditor;
using companion::RenameShot;
using companion::SaveShotAs;
using companion::ShowShotProperty;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string kOldDefault = "C:\\Kelvash\\default_shot.jpg";
const std::string kOriginal = "C:\\Kelvash\\LEVEL_0000\\screenshots\\Tomb Raider Level Editor.bmp";
const std::string kExists =
    "Warning: there is already a screenshot with name 'new.bmp' in screenshot list of current level.\r\n"
    "Do you want overwrite old image?\r\n"
    "(Note: if you choose NO, new image will be saved with new automatic name to avoid any overwritting)";

class ShotCommands : public ShotsHome {
  protected:
    // The user chooses this file to be added.
    bool Add(const std::string& file) {
        user.WillAnswer("Select an image to add in screen-shot list", file);
        return AddScreenshot(1, added);
    }
    bool Rename(const std::string& name, const std::string& typed) {
        user.WillAnswer("Rename screen-shot\nType new name for screenshot", typed);
        std::string path = PathOf(name);
        const bool done = RenameShot(1, path);
        renamed = path;
        return done;
    }
    bool SaveAs(const std::string& name, const std::string& target) {
        user.WillAnswer("Save current screenshot", target);
        return SaveShotAs(1, PathOf(name));
    }
    std::string added, renamed;
};

TEST_F(ShotCommands, AddAPicture) {
    MakeFile(drive / "new.bmp", kRedBlue);
    ASSERT_TRUE(SetFileDate("C:\\new.bmp", 3'000'000));
    EXPECT_TRUE(Add("C:\\new.bmp"));
    EXPECT_EQ(user.last_filter, "Images (*.jpg) (*.bmp)|*.jpg;*.bmp");
    EXPECT_EQ(added, PathOf("new.bmp"));
    EXPECT_EQ(BytesOf(folder / "new.bmp"), kRedBlue);
    EXPECT_EQ(DateOf("new.bmp"), 3'000'000);
    EXPECT_EQ(Counted(), 62);
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: Screenshot 'new.bmp' saved in screenshot list as '" + PathOf("new.bmp")));
}

TEST_F(ShotCommands, AddAPictureOverAnotherWhenTold) {
    MakeFile(drive / "new.bmp", kRedBlue);
    Take("NEW.BMP", std::string(100, 'x'));
    user.WillAnswer(kExists, "yes");
    EXPECT_TRUE(Add("C:\\new.bmp"));
    EXPECT_THAT(Names(), ElementsAre("NEW.BMP"));
    EXPECT_EQ(BytesOf(folder / "NEW.BMP"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
    user.Forget();
}

TEST_F(ShotCommands, AddAPictureUnderAnAutomaticNameOtherwise) {
    MakeFile(drive / "new.bmp", kRedBlue);
    Take("new.bmp", std::string(100, 'x'));
    user.WillAnswer(kExists, "no");
    EXPECT_TRUE(Add("C:\\new.bmp"));
    EXPECT_THAT(Names(), ElementsAre("1) City.bmp", "new.bmp"));
    EXPECT_EQ(BytesOf(folder / "new.bmp"), std::string(100, 'x'));
    EXPECT_EQ(Counted(), 162);
    user.Forget();
}

TEST_F(ShotCommands, AddAPictureOfTheListItselfWithoutHarm) {
    Take("new.bmp");
    user.WillAnswer(kExists, "yes");
    EXPECT_TRUE(Add(PathOf("new.bmp")));
    EXPECT_EQ(BytesOf(folder / "new.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
    user.Forget();
}

TEST_F(ShotCommands, AddNothingElse) {
    MakeFile(drive / "new.png", kRedBlue);
    MakeFile(drive / "text.jpg", "no picture");
    EXPECT_FALSE(Add("C:\\new.png"));
    EXPECT_FALSE(Add("C:\\text.jpg"));
    EXPECT_FALSE(Add("cancel"));
    EXPECT_THAT(Names(), IsEmpty());
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: Only .jpg and .bmp images can be added: C:\\new.png",
                                         "critical: This image can't be read: C:\\text.jpg"));
}

TEST_F(ShotCommands, TellHowToCapture) {
    companion::TellHowToCapture();
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: This command is enabled only when you are playing a level.\r\n"
                            "Press key [Print Screen] to capture game screenshots"));
}

TEST_F(ShotCommands, CopyTheNativePath) {
    Take("a.bmp");
    std::string copied;
    CopyShotPath(PathOf("a.bmp"), [&](const std::string& text) { copied = text; });
    EXPECT_EQ(copied, (folder / "a.bmp").string());
    EXPECT_THAT(user.Told(), ElementsAre("plain: Path: " + copied + "\r\nhas been copied in clipboard"));
    CopyShotPath(PathOf("gone.bmp"), [](const std::string&) { FAIL(); });
    EXPECT_EQ(user.Told().back(), "exclamation: This image isn't there any more: " + PathOf("gone.bmp"));
}

TEST_F(ShotCommands, AskForTheGraphicalProgramOnce) {
    Take("a.bmp");
    MakeFile(drive / "paint", "no program");
    user.WillAnswer("Select graphical program", "C:\\paint");
    EXPECT_FALSE(OpenShotEditor(PathOf("a.bmp")));
    EXPECT_EQ(core::profile.GraphicsProgram, "C:\\paint");
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: You have not yet set the graphical program to change images\r\n"
                            "Now you should browse your disks and select the .exe graphical program you "
                            "wish use",
                            "critical: The graphical program can't be started: C:\\paint"));
    user.Forget();
    EXPECT_FALSE(OpenShotEditor(PathOf("a.bmp")));
    EXPECT_THAT(user.Told(), ElementsAre("critical: The graphical program can't be started: C:\\paint"));
}

TEST_F(ShotCommands, DoWithoutAGraphicalProgramThatIsNotChosen) {
    Take("a.bmp");
    user.WillAnswer("Select graphical program", "cancel");
    EXPECT_FALSE(OpenShotEditor(PathOf("a.bmp")));
    EXPECT_EQ(core::profile.GraphicsProgram, "");
    user.Forget();
}

TEST_F(ShotCommands, TellWhatAPictureIs) {
    Take("a.bmp");
    ASSERT_TRUE(SetFileDate(PathOf("a.bmp"), LocalSeconds(2004, 12, 31, 23, 59, 8)));
    ShowShotProperty(PathOf("a.bmp"));
    EXPECT_THAT(user.Told(),
                ElementsAre("plain: Path: " + PathOf("a.bmp") +
                            "\r\nDate: 31/12/2004  23:59:08\r\nSize: 62\r\nResolution: (2 X 1)"));
}

// Such a name looks like a mark of the message.
TEST_F(ShotCommands, TellItOfAShortNameToo) {
    Take("a~2.bmp");
    ShowShotProperty(PathOf("a~2.bmp"));
    ASSERT_EQ(user.Told().size(), 1U);
    const std::string told = user.Told().front();
    EXPECT_EQ(told.substr(0, told.find("Date: ") + 6), "plain: Path: " + PathOf("a~2.bmp") + "\r\nDate: ");
    EXPECT_EQ(told.substr(told.find("\r\nSize")), "\r\nSize: 62\r\nResolution: (2 X 1)");
}

TEST_F(ShotCommands, RefuseTheDefaultPictures) {
    for (const std::string& path : {kOldDefault, kOriginal}) {
        std::string renaming = path;
        EXPECT_FALSE(DeleteShot(1, path));
        EXPECT_FALSE(RenameShot(1, renaming));
        EXPECT_FALSE(SaveShotAs(1, path));
        EXPECT_FALSE(OpenShotEditor(path));
        ShowShotProperty(path);
        EXPECT_THAT(user.Told(),
                    ElementsAre("exclamation: This is a default screen-shot, you can not delete it :-)",
                                "exclamation: This is a default screen-shot, you can not rename it :-)",
                                "exclamation: This is a default screen-shot, you can not save it :-)",
                                "exclamation: This is a default screen-shot, you can not edit it :-)",
                                "exclamation: This is a default screenshot. No property available"));
        user.Forget();
    }
}

TEST_F(ShotCommands, DeleteAPictureAndItsSize) {
    Take("a.bmp");
    Take("b.bmp");
    user.WillAnswer("Delete screen-shot a.bmp", "no");
    EXPECT_FALSE(DeleteShot(1, PathOf("a.bmp")));
    EXPECT_THAT(Names(), ElementsAre("a.bmp", "b.bmp"));
    user.WillAnswer("Delete screen-shot a.bmp", "yes");
    EXPECT_TRUE(DeleteShot(1, PathOf("a.bmp")));
    EXPECT_THAT(Names(), ElementsAre("b.bmp"));
    EXPECT_EQ(Counted(), 62);
    EXPECT_FALSE(DeleteShot(1, PathOf("a.bmp")));
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: This image isn't there any more: " + PathOf("a.bmp")));
}

TEST_F(ShotCommands, RenameAPicture) {
    Take("a.bmp", kRedBlue, 5000);
    EXPECT_TRUE(Rename("a.bmp", "Door"));
    EXPECT_EQ(renamed, PathOf("Door.bmp"));
    EXPECT_THAT(Names(), ElementsAre("Door.bmp"));
    EXPECT_EQ(DateOf("Door.bmp"), 5000);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotCommands, RenameAPictureByItsCaseAlone) {
    Take("a.bmp");
    EXPECT_TRUE(Rename("a.bmp", "A.bmp"));
    EXPECT_THAT(Names(), ElementsAre("A.bmp"));
    EXPECT_TRUE(Rename("A.bmp", "A.bmp"));
    EXPECT_THAT(Names(), ElementsAre("A.bmp"));
}

TEST_F(ShotCommands, RenameOverAnotherOnlyWhenTold) {
    Take("a.bmp");
    Take("b.bmp", std::string(100, 'x'));
    user.WillAnswer("b.bmp", "no");
    EXPECT_FALSE(Rename("a.bmp", "b"));
    EXPECT_THAT(Names(), ElementsAre("a.bmp", "b.bmp"));
    user.WillAnswer("b.bmp", "yes");
    EXPECT_TRUE(Rename("a.bmp", "b"));
    EXPECT_THAT(Names(), ElementsAre("b.bmp"));
    EXPECT_EQ(BytesOf(folder / "b.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotCommands, RenameToPlainNamesOnly) {
    Take("a.bmp");
    EXPECT_FALSE(Rename("a.bmp", "..\\a"));
    EXPECT_FALSE(Rename("a.bmp", "con"));
    EXPECT_FALSE(Rename("a.bmp", "cancel"));
    EXPECT_THAT(Names(), ElementsAre("a.bmp"));
    EXPECT_THAT(user.Told(), ElementsAre("exclamation: No image can have this name: ..\\a",
                                         "exclamation: No image can have this name: con"));
}

TEST_F(ShotCommands, SaveACopyOfTheSameKind) {
    Take("a.bmp", kRedBlue, 5000);
    EXPECT_TRUE(SaveAs("a.bmp", "C:\\copy.BMP"));
    EXPECT_EQ(user.last_filter, "File bitmap (*.bmp)|*.bmp|File jpeg (*.jpg)|*.jpg");
    EXPECT_EQ(BytesOf(drive / "copy.BMP"), kRedBlue);
    EXPECT_EQ(FileTime("C:\\copy.BMP").value_or(0), 5000);
    EXPECT_TRUE(SaveAs("a.bmp", "C:\\plain"));
    EXPECT_EQ(BytesOf(drive / "plain.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotCommands, SaveInTheOtherKind) {
    Take("a.bmp", kRedBlue, 5000);
    EXPECT_TRUE(SaveAs("a.bmp", PathOf("b.jpg")));
    EXPECT_EQ(BytesOf(folder / "b.jpg").substr(0, 2), "\xFF\xD8");
    EXPECT_EQ(DateOf("b.jpg"), 5000);
    EXPECT_EQ(Counted(), 62 + FileSize(PathOf("b.jpg")));
    EXPECT_TRUE(SaveAs("b.jpg", "C:\\c.bmp"));
    EXPECT_EQ(BytesOf(drive / "c.bmp").substr(0, 2), "BM");
    EXPECT_EQ(FileSize("C:\\c.bmp"), 62);
}

TEST_F(ShotCommands, SaveAPictureOntoItselfWithoutHarm) {
    Take("a.bmp");
    EXPECT_TRUE(SaveAs("a.bmp", PathOf("a.bmp")));
    EXPECT_TRUE(SaveAs("a.bmp", PathOf("a")));
    EXPECT_EQ(BytesOf(folder / "a.bmp"), kRedBlue);
    EXPECT_EQ(Counted(), 62);
}

TEST_F(ShotCommands, TellWhatCanNotBeSaved) {
    Take("a.bmp");
    Take("bad.bmp", "no picture");
    EXPECT_FALSE(SaveAs("a.bmp", "C:\\nowhere\\a.bmp"));
    MakeFile(drive / "old.jpg", "old");
    EXPECT_FALSE(SaveAs("bad.bmp", "C:\\old.jpg"));
    EXPECT_EQ(BytesOf(drive / "old.jpg"), "old");
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: Error while copying file from: " + PathOf("a.bmp") + " to: C:\\nowhere\\a.bmp",
                    "critical: Error while copying file from: " + PathOf("bad.bmp") + " to: C:\\old.jpg"));
}

} // namespace
} // namespace kelvash::test
