// A package file that the user may not read.
#include <gmock/gmock.h>

#include "intake/level_config_home.h"

namespace kelvash::intake {
namespace {

using test::MakeFile;
using testing::ElementsAre;

TEST_F(LevelConfigFile, ThatCantBeOpenedIsTold) {
    MakeFile(home / "kelvash.cfg", Header("City", std::string(4, '\0')));
    std::filesystem::permissions(home / "kelvash.cfg", std::filesystem::perms::none);
    const test::OrdinaryUser ordinary;
    EXPECT_FALSE(ReadLevelConfig("C:\\Kelvash\\kelvash.cfg"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error opening config file: C:\\Kelvash\\kelvash.cfg"));
}

} // namespace
} // namespace kelvash::intake
