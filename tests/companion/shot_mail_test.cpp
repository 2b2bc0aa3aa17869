#include "companion/shot_mail.h"

#include <gmock/gmock.h>

#include "companion/shots_home.h"

namespace kelvash::test {
namespace {

using companion::MailScreenshot;
using companion::ShotMail;
using testing::ElementsAre;

class MailOfAShot : public ShotsHome {};

TEST_F(MailOfAShot, HasThePictureAndItsLevelInTheSubject) {
    Take("1) City.jpg");
    ShotMail sent;
    EXPECT_TRUE(MailScreenshot(1, PathOf("1) City.jpg"), [&](const ShotMail& mail) {
        sent = mail;
        return true;
    }));
    EXPECT_EQ(sent.Subject, "Screenshot 1) City.jpg of level: City");
    EXPECT_EQ(sent.Attachment, PathOf("1) City.jpg"));
    EXPECT_EQ(sent.Text, "A screenshot is attached.");
    EXPECT_FALSE(MailScreenshot(1, PathOf("1) City.jpg"), [](const ShotMail&) { return false; }));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: The screenshot could not be handed to your mail program"));
}

TEST_F(MailOfAShot, IsNotWrittenForALevelWithoutAny) {
    const auto never = [](const ShotMail&) {
        ADD_FAILURE();
        return true;
    };
    EXPECT_FALSE(MailScreenshot(1, "C:\\Kelvash\\default_shot.jpg", never));
    EXPECT_FALSE(MailScreenshot(1, PathOf("gone.jpg"), never));
    EXPECT_THAT(user.Told(),
                ElementsAre("exclamation: No screenshot available", "exclamation: No screenshot available"));
}

} // namespace
} // namespace kelvash::test
