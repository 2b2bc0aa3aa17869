#include "foundation/mail.h"

#include "support/stand_in_mailer.h"

namespace kelvash {
namespace {

class Mailing : public test::FoundationHome {
  protected:
    test::StandInMailer mailer{root};
};

TEST_F(Mailing, HandsSubjectTextAndFilesToTheMailProgram) {
    mailer.Make(0);
    test::MakeFile(drive / "my saves/savegame.0", "x");
    test::MakeFile(drive / "b.jpg", "y");
    EXPECT_TRUE(SendMail(
        {"A \"subject\" of 'two' kinds", "one\r\ntwo\r\n", {"C:\\my saves\\savegame.0", "C:\\b.jpg"}}));
    EXPECT_EQ(mailer.Words(),
              "--utf8\n--subject\nA \"subject\" of 'two' kinds\n--body\none\ntwo\n\n--attach\n" +
                  (drive / "my saves/savegame.0").string() + "\n--attach\n" + (drive / "b.jpg").string() +
                  "\n");
}

TEST_F(Mailing, FailsWithoutAProgramOrWhenItRefuses) {
    mailer.Make(3);
    EXPECT_FALSE(SendMail({"s", "t"}));
    test::SetEnvironment("PATH", (root / "empty").string());
    EXPECT_FALSE(SendMail({"s", "t"}));
}

TEST_F(Mailing, FailsForAFileThatIsNotThere) {
    mailer.Make(0);
    EXPECT_FALSE(SendMail({"s", "t", {"C:\\gone\\savegame.0"}}));
    EXPECT_FALSE(test::Exists(root / "words"));
}

} // namespace
} // namespace kelvash
