#include "core/tables.h"

#include <gmock/gmock.h>

namespace kelvash::core {
namespace {

using testing::ElementsAre;

TEST(Tables, HoldTheFixedTexts) {
    EXPECT_THAT(kSourceExtensions,
                ElementsAre(".sam", ".sfx", ".swd", ".tom", ".wad", ".was", ".cd", ".pc", ".raw", ".lar"));
    EXPECT_THAT(kEngineNames, ElementsAre("<NONE>", "Tr4 The Last Revelation", "Tr5 Chronicles"));
    EXPECT_EQ(kEngineShortNames, "<NONE>|TR4|TR5");
    EXPECT_THAT(kLevelDataExtensions, ElementsAre(".tr4", ".pak"));
    EXPECT_THAT(kMainFolderExtensions, ElementsAre(".dat", ".h", ".txt", ".bmp", ".pcx"));
    EXPECT_THAT(kTrleFileSizes, ElementsAre(38264, 403696, 1139044, 1325439));
}

} // namespace
} // namespace kelvash::core
