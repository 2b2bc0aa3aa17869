// A zip in a folder that the user may not write.
#include <gmock/gmock.h>

#include "zip/zip_home.h"

namespace kelvash::zip {
namespace {

TEST_F(Zip, AFolderThatMayNotBeWrittenIsAnError) {
    test::OrdinaryUser ordinary;
    std::filesystem::create_directories(drive / "locked");
    std::filesystem::permissions(drive / "locked", std::filesystem::perms(0555));
    EXPECT_FALSE(ZipFolder("C:\\in", "C:\\locked\\a.zip", entries, Recurse::No, bar, message));
    std::filesystem::permissions(drive / "locked", std::filesystem::perms(0755));
    EXPECT_TRUE(std::filesystem::is_empty(drive / "locked"));
}

} // namespace
} // namespace kelvash::zip
