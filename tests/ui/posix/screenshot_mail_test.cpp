// A picture that goes to the mail program: a script stands for it.
#include <gmock/gmock.h>

#include "support/bitmaps.h"
#include "support/stand_in_mailer.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

class ScreenshotMail : public PrincipaleHome {
  protected:
    ScreenshotMail() {
        MakeFile(Picture(), MakeBitmap({}));
        core::SelectLevel(1);
        form.AggiornaDatiLivello(false);
    }
    std::filesystem::path Picture() const { return LevelPath(1) / "SCREENSHOTS/Gate.bmp"; }
    StandInMailer mailer{root};
};

TEST_F(ScreenshotMail, TakesTheSelectedOne) {
    mailer.Make(0);
    Choose(Entry::mnu_SendScreenshotemail);
    EXPECT_THAT(mailer.Words(), HasSubstr("--subject\nScreenshot Gate.bmp of level: City of Gold\n"));
    EXPECT_THAT(mailer.Words(), HasSubstr("--body\nA screenshot is attached.\n"));
    EXPECT_THAT(mailer.Words(), HasSubstr("--attach\n" + Picture().string() + "\n"));
}

TEST_F(ScreenshotMail, AFailureIsTold) {
    mailer.Make(4);
    robot.WillPress("The screenshot could not be handed to your mail program", "OK");
    Choose(Entry::mnu_SendScreenshotemail);
}

} // namespace
} // namespace kelvash::test
