// A media configuration whose name no other platform has.
#include <gmock/gmock.h>

#include "swap/overwriting_home.h"

namespace kelvash::swap {
namespace {

using testing::HasSubstr;

TEST_F(Overwriting, NeedsAPlainNameOfAMediaConfigurationToo) {
    AddLevel(1, "City", {{"a.tr4", ""}, {"aux.mcf", Title("title.txt")}, {"title.txt", "t"}});
    ASSERT_TRUE(InstallLevel(1));
    EXPECT_THAT(Marker(), HasSubstr("#COPIED_FILES=\\title.txt|\\data\\a.tr4#\r\n"));
}

} // namespace
} // namespace kelvash::swap
