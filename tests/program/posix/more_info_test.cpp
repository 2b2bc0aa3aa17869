#include <gmock/gmock.h>

#include "core/archive.h"
#include "core/level_list.h"
#include "foundation/drives.h"
#include "foundation/lock.h"
#include "program/level_view.h"
#include "support/swap_home.h"

namespace kelvash::program {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;
using namespace std::string_literals;

// A level with a document, a disc that may hold it, and an opener that writes down what it was given.
class MoreInfo : public test::SwapHome {
  protected:
    MoreInfo() {
        AddLevel(1, "City", {{"city.tr4", "city"}});
        core::archive.Table.Edit(1)->MoreInfoFile = "readme.txt ";
        core::RefreshLevelList();
        core::SelectLevel(1);
        SetOpener("echo \"$1\" > " + (root / "opened").string() + "\n");
    }
    void SetOpener(const std::string& script) {
        const fs::path opener = root / "bin" / "xdg-open";
        MakeFile(opener, "#!/bin/sh\n" + script);
        fs::permissions(opener, fs::perms::owner_all);
        test::SetEnvironment("PATH", (root / "bin").string() + ":/usr/bin:/bin");
    }
    fs::path InsertDisc() {
        const fs::path disc = root / "disc";
        fs::create_directories(disc);
        EXPECT_TRUE(SetDrive('E', disc, DriveType::CdRom));
        core::archive.Table.Edit(1)->CdNumber = 2;
        core::archive.Header.CdCount = 2;
        MakeFile(disc / "Archive/LEVEL_0001/FILES/city.tr4", "city");
        return disc / "Archive/LEVEL_0001/FILES";
    }
    std::string Opened() {
        const std::string line = BytesOf(root / "opened");
        return line.substr(0, line.find('\n'));
    }
};

TEST_F(MoreInfo, OpensTheDocumentOnDisk) {
    MakeFile(LevelPath(1) / "FILES/Readme.txt", "read me");
    ShowMoreInfo();
    EXPECT_EQ(Opened(), (LevelPath(1) / "FILES/Readme.txt").string());
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(MoreInfo, ExplainsItselfWhenThereIsNoDocument) {
    core::archive.Table.Edit(1)->MoreInfoFile = "   ";
    ShowMoreInfo();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("plain: Sorry, there is not any doc file\r\nIf you wish link a doc file at [More info] "
                    "button, select menu [Level->Properties current level] and add a doc/txt/html files "
                    "and then link it as [More info] button"));
}

TEST_F(MoreInfo, TellsAnUnknownLevel) {
    core::level_list.Items[static_cast<std::size_t>(core::level_list.Selected)].Code = 44;
    ShowMoreInfo();
    EXPECT_THAT(user.Told(), ElementsAre("critical: Internal error: unknown level code: 44"));
}

TEST_F(MoreInfo, CopiesNothingWhileAnotherProgramIsAtWork) {
    MakeFile(InsertDisc() / "readme.txt", "read me");
    fs::create_directory(RuntimeFolder() / (FolderIdentity("C:\\Levels") + ".lock"));
    ShowMoreInfo();
    EXPECT_FALSE(Exists(LevelPath(1) / "FILES/readme.txt"));
    EXPECT_EQ(user.Told().size(), 1U);
}

TEST_F(MoreInfo, TellsADocumentThatIsNowhere) {
    ShowMoreInfo();
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error, file 'C:\\Levels\\LEVEL_0001\\files\\readme.txt' not found"));
}

TEST_F(MoreInfo, TellsARefusedDisc) {
    core::archive.Table.Edit(1)->CdNumber = 2;
    ShowMoreInfo();
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error: no cd reader available in this pc",
                                         "critical: Cd not available"));
}

TEST_F(MoreInfo, TellsADocumentThatIsNotOnTheDisc) {
    InsertDisc();
    ShowMoreInfo();
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Error, file 'E:\\Archive\\LEVEL_0001\\files\\readme.txt' not found"));
}

TEST_F(MoreInfo, CopiesADocumentFromTheDiscAndFindsItThereNextTime) {
    MakeFile(InsertDisc() / "readme.txt", "on the disc");
    fs::remove_all(LevelPath(1) / "FILES");
    ShowMoreInfo();
    EXPECT_EQ(BytesOf(LevelPath(1) / "files/readme.txt"), "on the disc");
    EXPECT_EQ(Opened(), (LevelPath(1) / "files/readme.txt").string());
    fs::remove_all(root / "disc");
    ShowMoreInfo();
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(MoreInfo, CopiesAPageWithTheFilesThatItNames) {
    const fs::path disc = InsertDisc();
    core::archive.Table.Edit(1)->MoreInfoFile = "page.htm";
    MakeFile(disc / "page.htm", "<img src=\"PICTURE.gif\">");
    MakeFile(disc / "picture.gif", "a picture");
    ShowMoreInfo();
    EXPECT_EQ(BytesOf(LevelPath(1) / "FILES/picture.gif"), "a picture");
    EXPECT_FALSE(Exists(LevelPath(1) / "FILES/readme.txt"));
}

TEST_F(MoreInfo, TellsACopyThatFails) {
    MakeFile(InsertDisc() / "readme.txt", "on the disc");
    fs::remove_all(LevelPath(1));
    MakeFile(LevelPath(1), "a file where the folder was");
    ShowMoreInfo();
    EXPECT_THAT(
        user.Told(),
        ElementsAre("critical: Error copying file from [E:\\Archive\\LEVEL_0001\\files\\readme.txt] to "
                    "[C:\\Levels\\LEVEL_0001\\files\\readme.txt"));
}

TEST_F(MoreInfo, TellsADocumentThatNothingOpens) {
    MakeFile(LevelPath(1) / "FILES/readme.txt", "read me");
    SetOpener("exit 3\n");
    ShowMoreInfo();
    EXPECT_THAT(user.Told(), ElementsAre("critical: I cannot find a program that opens: "
                                         "C:\\Levels\\LEVEL_0001\\files\\readme.txt"));
}

// An Archive of a stranger: what its record names is a name or nothing.
TEST_F(MoreInfo, NothingOutsideTheLevelIsOpened) {
    MakeFile(root / "secret.txt", "secret");
    for (const std::string& name :
         {"../../../../secret.txt"s, "..\\..\\LEVEL_0000\\files\\load.bmp"s, "C:\\trle\\tomb4.exe"s,
          (root / "secret.txt").string(), "city.tr4:x"s, "city.tr4."s, "a\0b"s}) {
        user.Forget();
        core::archive.Table.Edit(1)->MoreInfoFile = name;
        ShowMoreInfo();
        EXPECT_THAT(user.Told(), ElementsAre("critical: Error, file '" + name + "' not found")) << name;
    }
    EXPECT_FALSE(Exists(root / "opened"));
}

TEST_F(MoreInfo, AProgramIsNotOpenedWithoutAYes) {
    MakeFile(LevelPath(1) / "FILES/Readme.txt", "MZ");
    user.WillAnswer("LEVEL_0001\\files\\readme.txt", "no");
    ShowMoreInfo();
    EXPECT_FALSE(Exists(root / "opened"));
    EXPECT_THAT(user.Told(), IsEmpty());
}

} // namespace
} // namespace kelvash::program
