// Names that only a POSIX disk can hold.
#include <gmock/gmock.h>

#include <QTest>

#include "support/bitmaps.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using StrangeNames = PrincipaleHome;

TEST_F(StrangeNames, APictureWhoseNameIsNoTextIsNoneAndHarmless) {
    MakeFile(LevelPath(1) / "SCREENSHOTS" / "bad\xFF\xFE.bmp", MakeBitmap({}));
    core::SelectLevel(1);
    QTest::qWait(50);
    EXPECT_TRUE(form.Pul_Play->isEnabled());
}

} // namespace
} // namespace kelvash::test
