// A picture that goes to the mail program: a script stands for it.
#include <gmock/gmock.h>

#include <cstdlib>

#include "support/bitmaps.h"
#include "ui/principale_home.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

class ScreenshotMail : public PrincipaleHome {
  protected:
    ScreenshotMail() : old_path_(std::getenv("PATH")) {
        MakeFile(Picture(), MakeBitmap({}));
        core::SelectLevel(1);
        form.AggiornaDatiLivello(false);
        SetEnvironment("PATH", (root / "bin").string() + ":" + old_path_);
    }
    ~ScreenshotMail() override { SetEnvironment("PATH", old_path_); }
    std::filesystem::path Picture() const { return LevelPath(1) / "SCREENSHOTS/Gate.bmp"; }
    void MakeMailer(const std::string& end) {
        const std::filesystem::path mailer = root / "bin/xdg-email";
        MakeFile(mailer,
                 "#!/bin/sh\nprintf '%s\\n' \"$@\" > '" + (root / "words").string() + "'\n" + end + "\n");
        std::filesystem::permissions(mailer, std::filesystem::perms::owner_all);
    }
    std::string Words() const { return BytesOf(root / "words"); }

  private:
    std::string old_path_;
};

TEST_F(ScreenshotMail, TakesTheSelectedOne) {
    MakeMailer("exit 0");
    Choose(Entry::mnu_SendScreenshotemail);
    EXPECT_THAT(Words(), HasSubstr("--subject\nScreenshot Gate.bmp of level: City of Gold\n"));
    EXPECT_THAT(Words(), HasSubstr("--body\nA screenshot is attached.\n"));
    EXPECT_THAT(Words(), HasSubstr("--attach\n" + Picture().string() + "\n"));
}

TEST_F(ScreenshotMail, AFailureIsTold) {
    MakeMailer("exit 4");
    robot.WillPress("The screenshot could not be handed to your mail program", "OK");
    Choose(Entry::mnu_SendScreenshotemail);
}

} // namespace
} // namespace kelvash::test
