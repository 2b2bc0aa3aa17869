#include "trle/find_trle.h"

#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/test_home.h"
#include "support/trle_sandbox.h"

namespace kelvash::trle {
namespace {

using core::profile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class FindTrle : public test::TestHome {
  protected:
    FindTrle() { test::MakeTrle(drive / "Games" / "trle"); }
    void WillChoose(const std::string& folder) {
        user.WillFill<TrleFolderChoice>([folder](TrleFolderChoice& choice) {
            EXPECT_EQ(choice.Title, "Folder of Tomb Raider Level Editor");
            choice.Folder = folder;
            return true;
        });
    }
    // The form is left as it is.
    void WillAccept() {
        user.WillFill<TrleFolderChoice>([](TrleFolderChoice&) { return true; });
    }
    // A registry that names the room editor.
    void Register(const std::string& escaped_program) {
        test::SetEnvironment("WINEPREFIX", (root / "prefix").string());
        test::MakeFile(root / "prefix" / "system.reg",
                       "WINE REGISTRY Version 2\n\n"
                       "[Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\App Paths\\\\winroomedit.exe] "
                       "1700000000\n@=\"" +
                           escaped_program + "\"\n");
    }
};

TEST_F(FindTrle, TakesAValidFolderOfTheProfile) {
    profile.TrleFolder = "C:\\Games\\trle";
    EXPECT_TRUE(ChooseTrleFolder());
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(FindTrle, AsksForAFolder) {
    profile.TrleFolder = "C:\\gone";
    WillChoose("C:\\Games\\trle");
    EXPECT_TRUE(ChooseTrleFolder());
    EXPECT_EQ(profile.TrleFolder, "C:\\Games\\trle");
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(FindTrle, AsksAgainAfterAWrongFolder) {
    WillChoose("C:\\Kelvash");
    WillChoose("C:\\Games\\trle");
    EXPECT_TRUE(ChooseTrleFolder());
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Not right folder: Missing file 'tomb4.exe' in folder: C:\\Kelvash"));
}

TEST_F(FindTrle, EndsWhenTheUserGivesUp) {
    user.MayBeTold("This program cann't run without Tomb Raider Level Editor");
    profile.TrleFolder = "C:\\gone";
    user.WillGiveUp<TrleFolderChoice>();
    EXPECT_FALSE(ChooseTrleFolder());
    EXPECT_THAT(user.Told(), ElementsAre("critical: This program cann't run without Tomb Raider Level "
                                         "Editor\r\nNow, Kelvash ends"));
    EXPECT_EQ(profile.TrleFolder, "C:\\gone");
}

TEST_F(FindTrle, AcceptsWhatTheRegistryKnows) {
    Register("C:\\\\Games\\\\trle\\\\winroomedit.exe");
    EXPECT_EQ(FindTrleInRegistry(), "C:\\Games\\trle");
    WillAccept();
    EXPECT_TRUE(ChooseTrleFolder());
    EXPECT_EQ(profile.TrleFolder, "C:\\Games\\trle");
}

TEST_F(FindTrle, DoesNotProposeAWrongFolderOfTheRegistry) {
    Register("C:\\\\Kelvash\\\\winroomedit.exe");
    EXPECT_EQ(FindTrleInRegistry(), "C:\\Kelvash");
    WillAccept();
    user.WillGiveUp<TrleFolderChoice>();
    EXPECT_FALSE(ChooseTrleFolder());
    EXPECT_EQ(user.Told().front(), "critical: Not right folder: Missing file 'tomb4.exe' in folder: ");
}

TEST_F(FindTrle, KnowsNothingFromAValueThatIsNoProgram) {
    EXPECT_EQ(FindTrleInRegistry(), "") << "no registry at all";
    Register("C:\\\\Games\\\\trle");
    EXPECT_EQ(FindTrleInRegistry(), "");
    Register("C:\\\\Games\\\\trle\\\\WinRoomEdit.EXE");
    EXPECT_EQ(FindTrleInRegistry(), "C:\\Games\\trle");
}

} // namespace
} // namespace kelvash::trle
