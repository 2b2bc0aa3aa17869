// The user port of the command line, asked as the logic asks it.
#include "cli/cli_user.h"

#include <gmock/gmock.h>

#include "companion/shot_messages.h"
#include "support/foundation_home.h"

namespace kelvash::test {
namespace {

using testing::HasSubstr;

class CliSaveDialog : public FoundationHome {
  protected:
    // What is chosen for a file that is to be saved as C:\\mine.jpg, and what was told of it.
    std::optional<std::string> Save(const std::string& answers_to_replace) {
        std::vector<cli::AnswerEntry> answers = {
            {.when = "Save current screenshot", .answer = "C:\\mine.jpg"}};
        if (!answers_to_replace.empty())
            answers.push_back({.when = "exists already", .answer = answers_to_replace});
        cli::CliUser port({.mode = cli::OutputMode::Json}, std::move(answers));
        testing::internal::CaptureStdout();
        const std::optional<std::string> chosen =
            port.SaveFile({LoadMessage(msg::kSaveShotTitle), "All|*", "C:\\", "a.jpg"});
        told = testing::internal::GetCapturedStdout();
        refused = port.IsRefused();
        return chosen;
    }
    std::string told;
    bool refused = false;
};

TEST_F(CliSaveDialog, AsksBeforeAFileIsReplaced) {
    EXPECT_EQ(Save(""), "C:\\mine.jpg");
    EXPECT_FALSE(refused);
    MakeFile(drive / "mine.jpg", "mine");
    EXPECT_EQ(Save(""), std::nullopt) << "nobody has said yes";
    EXPECT_TRUE(refused);
    EXPECT_THAT(told, HasSubstr(R"("id":4601,"buttons":"yesno","style":"question","text":)"
                                R"("This file exists already. Do you want to replace it?\r\nC:\\mine.jpg",)"
                                R"("answer":"no")"));
    EXPECT_EQ(Save("no"), std::nullopt);
    EXPECT_EQ(Save("yes"), "C:\\mine.jpg");
    EXPECT_FALSE(refused);
}

} // namespace
} // namespace kelvash::test
