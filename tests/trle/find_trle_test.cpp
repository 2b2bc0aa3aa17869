#include "trle/find_trle.h"

#include <gmock/gmock.h>

#include "core/profile.h"
#include "support/test_home.h"
#include "support/trle_sandbox.h"
#include "trle/find_trle_home.h"

namespace kelvash::trle {
namespace {

using core::profile;
using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

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

} // namespace
} // namespace kelvash::trle
