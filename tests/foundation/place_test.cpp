#include "foundation/place.h"

#include "foundation/drives.h"
#include "support/foundation_home.h"

namespace kelvash {
namespace {

class Place : public test::FoundationHome {
  protected:
    Place() { std::filesystem::create_directories(drive / "levels" / "one"); }
};

TEST_F(Place, IsTheSameInEverySpelling) {
    EXPECT_TRUE(IsSamePlace("C:\\levels", "c:\\LEVELS"));
    EXPECT_TRUE(IsSamePlace("C:\\levels", "C:\\levels\\one\\.."));
    EXPECT_TRUE(IsSamePlace("C:\\not there", "C:\\Not there"));
    EXPECT_FALSE(IsSamePlace("C:\\levels", "C:\\levels\\one"));
    EXPECT_FALSE(IsSamePlace("C:\\levels", "C:\\not there"));
}

TEST_F(Place, IsTheSameUnderAnotherDrive) {
    ASSERT_TRUE(SetDrive('E', drive / "levels", DriveType::Fixed));
    EXPECT_TRUE(IsSamePlace("E:", "C:\\levels"));
    EXPECT_TRUE(IsSamePlace("E:\\new", "C:\\levels\\new"));
    EXPECT_TRUE(LiesIn("E:\\one", "C:\\levels"));
    EXPECT_TRUE(LiesIn("C:\\levels\\one\\new.zip", "E:"));
}

TEST_F(Place, LiesInItselfAndInWhatHoldsIt) {
    EXPECT_TRUE(LiesIn("C:\\levels", "C:\\levels"));
    EXPECT_TRUE(LiesIn("C:\\levels\\one\\two\\three", "C:\\LEVELS"));
    EXPECT_FALSE(LiesIn("C:\\levels2", "C:\\levels"));
    EXPECT_FALSE(LiesIn("C:\\levels", "C:\\levels\\one"));
}

} // namespace
} // namespace kelvash
