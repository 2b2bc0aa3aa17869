#include "foundation/mail.h"

#include <cstdlib>

#include "support/foundation_home.h"

namespace kelvash {
namespace {

namespace fs = std::filesystem;

class Mailing : public test::FoundationHome {
  protected:
    Mailing() : old_path_(std::getenv("PATH")) { UsePath((root / "bin").string() + ":" + old_path_); }
    ~Mailing() override { UsePath(old_path_); }
    static void UsePath(const std::string& path) { test::SetEnvironment("PATH", path); }

    // A mail program that writes down its words, one a line, then ends like this.
    void MakeMailer(int exit_code) {
        const fs::path mailer = root / "bin/xdg-email";
        test::MakeFile(mailer, "#!/bin/sh\nfor word; do printf '%s\\n' \"$word\"; done > '" +
                                   (root / "words").string() + "'\nexit " + std::to_string(exit_code) + "\n");
        fs::permissions(mailer, fs::perms::owner_all);
    }
    std::string Words() const { return test::BytesOf(root / "words"); }

  private:
    std::string old_path_;
};

TEST_F(Mailing, HandsSubjectTextAndFilesToTheMailProgram) {
    MakeMailer(0);
    test::MakeFile(drive / "my saves/savegame.0", "x");
    test::MakeFile(drive / "b.jpg", "y");
    EXPECT_TRUE(SendMail(
        {"A \"subject\" of 'two' kinds", "one\r\ntwo\r\n", {"C:\\my saves\\savegame.0", "C:\\b.jpg"}}));
    EXPECT_EQ(Words(), "--utf8\n--subject\nA \"subject\" of 'two' kinds\n--body\none\ntwo\n\n--attach\n" +
                           (drive / "my saves/savegame.0").string() + "\n--attach\n" +
                           (drive / "b.jpg").string() + "\n");
}

TEST_F(Mailing, FailsWithoutAProgramOrWhenItRefuses) {
    MakeMailer(3);
    EXPECT_FALSE(SendMail({"s", "t"}));
    UsePath((root / "empty").string());
    EXPECT_FALSE(SendMail({"s", "t"}));
}

TEST_F(Mailing, FailsForAFileThatIsNotThere) {
    MakeMailer(0);
    EXPECT_FALSE(SendMail({"s", "t", {"C:\\gone\\savegame.0"}}));
    EXPECT_FALSE(test::Exists(root / "words"));
}

} // namespace
} // namespace kelvash
