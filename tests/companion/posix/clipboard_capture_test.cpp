// From the clipboard of a real display into the level's pictures.
#include <gmock/gmock.h>

#include "companion/black_test.h"
#include "companion/shot_capture.h"
#include "companion/shot_files.h"
#include "companion/shots_home.h"
#include "foundation/clipboard_picture.h"
#include "support/x_server.h"

namespace kelvash::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ClipboardCapture : public ShotsHome {
  protected:
    XServer server;
};

TEST_F(ClipboardCapture, BecomesAPictureOfTheLevel) {
    ASSERT_TRUE(PutClipboardPicture(kRedBlue));
    const ClipboardPicture content = ReadClipboardPicture();
    const std::optional<swap::Picture> picture = swap::DecodePicture(content.Bytes);
    ASSERT_TRUE(picture.has_value());
    EXPECT_TRUE(companion::IsImageNotBlack(*picture));
    EXPECT_EQ(companion::CaptureShot(1, *picture).End, companion::CaptureEnd::Saved);
    EXPECT_THAT(Names(), ElementsAre("1) City.jpg"));
}

TEST_F(ClipboardCapture, IsSavedAsAJpeg) {
    EXPECT_FALSE(companion::SaveClipboardJpeg(PathOf("a.jpg"))) << "nothing is there";
    ASSERT_TRUE(PutClipboardPicture("BM, but no picture"));
    EXPECT_FALSE(companion::SaveClipboardJpeg(PathOf("a.jpg")));
    EXPECT_THAT(Names(), IsEmpty());
    ASSERT_TRUE(PutClipboardPicture(kRedBlue));
    EXPECT_TRUE(companion::SaveClipboardJpeg(PathOf("a.jpg")));
    EXPECT_EQ(BytesOf(folder / "a.jpg").substr(0, 2), "\xFF\xD8");
}

} // namespace
} // namespace kelvash::test
