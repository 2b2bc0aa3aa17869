// The folder of TRLE as the registry of a Wine prefix knows it.
#include <gmock/gmock.h>

#include "core/profile.h"
#include "trle/find_trle_home.h"

namespace kelvash::trle {
namespace {

using core::profile;

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
