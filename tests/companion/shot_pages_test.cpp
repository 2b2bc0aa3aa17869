#include "companion/shot_pages.h"

#include <gmock/gmock.h>

#include "support/test_home.h"

namespace kelvash::companion {
namespace {

class ShotPagesOf : public test::TestHome {
  protected:
    static ShotPages Of(int count) {
        ShotPages pages;
        for (int i = 0; i < count; ++i)
            pages.ImageNames.push_back("C:\\" + std::to_string(i) + ".jpg");
        return pages;
    }
};

TEST_F(ShotPagesOf, FivePicturesAreTurnedByTwo) {
    ShotPages pages = Of(5);
    EXPECT_FALSE(pages.CanGoBack());
    pages.Next();
    EXPECT_EQ(pages.FirstShownImage, 2U);
    EXPECT_TRUE(pages.CanGoBack());
    EXPECT_TRUE(pages.CanGoOn());
    pages.Next();
    EXPECT_EQ(pages.FirstShownImage, 4U);
    EXPECT_FALSE(pages.CanGoOn());
    pages.Next();
    EXPECT_EQ(pages.FirstShownImage, 4U);
    pages.Previous();
    EXPECT_EQ(pages.FirstShownImage, 2U);
    pages.First();
    pages.Previous();
    EXPECT_EQ(pages.FirstShownImage, 0U);
    pages.Last();
    EXPECT_EQ(pages.FirstShownImage, 4U);
}

TEST_F(ShotPagesOf, FourPicturesEndWithAFullPair) {
    ShotPages pages = Of(4);
    pages.Last();
    EXPECT_EQ(pages.FirstShownImage, 2U);
    pages.ShowFrom(3);
    EXPECT_EQ(pages.FirstShownImage, 2U);
}

TEST_F(ShotPagesOf, TheSelectedOneIsThatOfItsSide) {
    ShotPages pages = Of(3);
    EXPECT_EQ(pages.SelectedImage(), "C:\\0.jpg");
    pages.SelectedSide = 1;
    EXPECT_EQ(pages.SelectedImage(), "C:\\1.jpg");
    pages.Next();
    EXPECT_EQ(pages.SelectedImage(), "C:\\2.jpg"); // there is no right one
    pages.Select("c:\\1.JPG");
    EXPECT_EQ(pages.FirstShownImage, 0U);
    EXPECT_EQ(pages.SelectedSide, 1);
}

TEST_F(ShotPagesOf, NothingAreTheDefaultOne) {
    ShotPages pages;
    EXPECT_EQ(pages.SelectedImage(), "C:\\Kelvash\\default_shot.jpg");
    pages.Next();
    pages.Last();
    EXPECT_EQ(pages.FirstShownImage, 0U);
    EXPECT_FALSE(pages.CanGoOn());
}

} // namespace
} // namespace kelvash::companion
