#include "companion/shot_mail.h"

#include <gmock/gmock.h>

#include "companion/shots_home.h"

namespace kelvash::test {
namespace {

using companion::MailScreenshot;
using testing::ElementsAre;

class MailOfAShot : public ShotsHome {};

TEST_F(MailOfAShot, HasThePictureAndItsLevelInTheSubject) {
    const Mail mail = companion::ScreenshotMail(1, PathOf("1) City.jpg"));
    EXPECT_EQ(mail.Subject, "Screenshot 1) City.jpg of level: City");
    EXPECT_EQ(mail.Text, "A screenshot is attached.");
    EXPECT_THAT(mail.Attachments, ElementsAre(PathOf("1) City.jpg")));
}

TEST_F(MailOfAShot, IsNotWrittenForALevelWithoutAny) {
    EXPECT_FALSE(MailScreenshot(1, "C:\\Kelvash\\default_shot.jpg"));
    EXPECT_FALSE(MailScreenshot(1, PathOf("gone.jpg")));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: No screenshot available", "exclamation: No screenshot available"));
}

} // namespace
} // namespace kelvash::test
