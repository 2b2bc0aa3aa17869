#include "foundation/user.h"

#include <gmock/gmock.h>

#include "core/archive_messages.h"
#include "core/moving_messages.h"
#include "foundation/messages.h"
#include "foundation/texts.h"
#include "intake/messages.h"
#include "program/messages.h"
#include "support/scripted_user.h"
#include "swap/backup_messages.h"

namespace kelvash {
namespace {

using testing::ElementsAre;

// Keeps every change of a bar.
class BarUser final : public User {
  public:
    BarUser() : old_(SetUser(this)) {}
    ~BarUser() override { SetUser(old_); }
    void Message(MessageStyle, const MessageText&) override {}
    Answer Ask(Buttons, MessageStyle, const MessageText&) override { return Answer::Yes; }
    std::optional<std::string> Input(const std::string&, const MessageText&, const std::string&) override {
        return "x";
    }
    std::optional<std::string> OpenFile(const FileDialog&) override { return "x"; }
    std::optional<std::string> SaveFile(const FileDialog&) override { return "x"; }
    std::optional<std::string> ChooseFolder(const MessageText&, const std::string&) override { return "x"; }
    void OpenProgress(BarPlace place, const std::string& caption) override {
        events.push_back("open " + std::to_string(static_cast<int>(place)) + " " + caption);
    }
    void CloseProgress(BarPlace place) override {
        events.push_back("close " + std::to_string(static_cast<int>(place)));
    }
    void SetLabel(BarPlace, const std::string& text) override { events.push_back("label " + text); }
    void SetBar(BarPlace, int percent) override { events.push_back("bar " + std::to_string(percent)); }
    void SetAmount(BarPlace, const Amount& amount) override { amounts.push_back(amount); }
    void LevelListChanged() override {}
    void PumpEvents() override { ++pumped; }
    void JobBegan() override { NoteJobs("job begins"); }
    void JobEnded() override { NoteJobs("job ends"); }
    void NoteJobs(const std::string& what) {
        events.push_back(what + ", " + std::to_string(JobDepth()) + (JobCanStop() ? " to stop" : ""));
    }
    bool StopRequested() override { return true; }

    std::vector<std::string> events;
    std::vector<Amount> amounts;
    int pumped = 0;

  private:
    User* old_;
};

struct AnyForm {
    static constexpr const char* kForm = "Dialog_Any";
};

TEST(AbsentUser, TakesTheHarmlessWay) {
    User& user = TheUser();
    EXPECT_EQ(user.Ask(Buttons::YesNo, MessageStyle::Question, MessageText("?")), Answer::No);
    EXPECT_EQ(user.Ask(Buttons::YesNoCancel, MessageStyle::Question, MessageText("?")), Answer::Cancel);
    EXPECT_EQ(user.Ask(Buttons::OkCancel, MessageStyle::Question, MessageText("?")), Answer::Cancel);
    EXPECT_EQ(user.Ask(Buttons::AbortRetryIgnore, MessageStyle::Critical, MessageText("?")), Answer::Abort);
    EXPECT_EQ(user.Input("", MessageText(""), "proposal"), std::nullopt);
    EXPECT_EQ(user.OpenFile({}), std::nullopt);
    EXPECT_EQ(user.SaveFile({}), std::nullopt);
    EXPECT_EQ(user.ChooseFolder(MessageText(""), ""), std::nullopt);
    AnyForm form;
    EXPECT_FALSE(ShowForm(form)) << "nobody shows it";
    EXPECT_FALSE(user.StopRequested());
}

struct Answers {
    Answer harmless;
    Answer willing;
    bool operator==(const Answers&) const = default;
};

Answers AnswersTo(Buttons buttons, MessageId question) {
    const MessageText text = LoadMessage(question);
    return {HarmlessAnswer(buttons, text), WillingAnswer(buttons, text)};
}

TEST(QuestionAnswers, AYesThatCanLoseSomethingIsNeverGivenForNobody) {
    const Answers no{Answer::No, Answer::No};
    EXPECT_EQ(AnswersTo(Buttons::YesNo, msg::kRemoveQuestion), no);
    EXPECT_EQ(AnswersTo(Buttons::YesNo, msg::kReplaceFile), no);
    EXPECT_EQ(AnswersTo(Buttons::YesNo, msg::kBreakUser), no) << "no question of the table";
}

TEST(QuestionAnswers, ANoThatCanLoseSomethingIsNeverGivenForNobody) {
    const Answers yes{Answer::Yes, Answer::Yes};
    EXPECT_EQ(AnswersTo(Buttons::YesNo, msg::kEqualQuestion), yes);
}

TEST(QuestionAnswers, WhereNothingIsLostTheWillingOneAffirms) {
    EXPECT_EQ(AnswersTo(Buttons::YesNo, msg::kAddSubFolders), (Answers{Answer::No, Answer::Yes}));
    EXPECT_EQ(AnswersTo(Buttons::OkCancel, msg::kTomQuestion), (Answers{Answer::Cancel, Answer::Ok}));
}

TEST(QuestionAnswers, WhereEachCanLoseSomethingThereIsNone) {
    const Answers none{Answer::None, Answer::None};
    for (const MessageId question :
         {msg::kFullBackupQuestion, msg::kOriginalNeeded, msg::kArchiveChangedQuestion}) {
        EXPECT_EQ(AnswersTo(Buttons::YesNo, question), none);
        EXPECT_EQ(AnswersTo(Buttons::YesNoCancel, question), (Answers{Answer::Cancel, Answer::Cancel}));
    }
}

TEST(UserPort, SetUserGivesTheOldOneBack) {
    BarUser first;
    {
        BarUser second;
        EXPECT_EQ(&TheUser(), &second);
    }
    EXPECT_EQ(&TheUser(), &first);
    EXPECT_EQ(SetUser(nullptr), &first);
    EXPECT_NE(&TheUser(), &first);
    EXPECT_EQ(SetUser(&first), nullptr);
}

TEST(UserPort, ShorthandsReachTheUser) {
    test::ScriptedUser user;
    user.WillAnswer("Really", "yes");
    user.WillAnswer("Sure", "no");
    EXPECT_TRUE(AskYesNo(MessageStyle::Question, {msg::kRecoverOnCd, "Really?"}));
    EXPECT_FALSE(AskYesNo(MessageStyle::Question, {msg::kRecoverOnCd, "Sure?"}));
    ShowMessage(MessageStyle::Critical, MessageText("Failed"));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Failed"));
}

TEST(MessageText, KeepsTheIdOfTheMessageThatItBeginsWith) {
    const std::string name = "C:\\a.kva";
    const MessageText text =
        LoadMessage(msg::kErrorLoadingArchive) + name + '!' + " " + LoadMessage(msg::kLoadDifferentArchive);
    EXPECT_EQ(text.id, msg::kErrorLoadingArchive);
    EXPECT_EQ(text.text, "Error loading archive: C:\\a.kva! Do you want load a different archive?");
    EXPECT_EQ(MessageText("foreign").id, kNoMessage);
}

TEST(MessageText, BehindAPlainTextItIsNone) {
    const std::string text = "1" + LoadMessage(msg::kGigabytes);
    EXPECT_EQ(text, "1 Gb");
}

TEST(ProgressPercent, ShowsTheWholePercentage) {
    BarUser user;
    Bar bar;
    ProgressPercent(bar, 0, 200);
    ProgressPercent(bar, 1, 200);
    ProgressPercent(bar, 199, 200);
    ProgressPercent(bar, 200, 200);
    EXPECT_THAT(user.events, ElementsAre("bar 0", "bar 99", "bar 100"));
}

TEST(ProgressPercent, IsExactForEveryPercent) {
    for (int done = 0; done <= 100; ++done) {
        Bar bar;
        ProgressPercent(bar, done, 100);
        EXPECT_EQ(bar.percent, done);
    }
}

TEST(ProgressPercent, TheBarIsDrawnOnlyOnAChange) {
    BarUser user;
    Bar bar;
    for (int i = 0; i < 5; ++i)
        ProgressPercent(bar, 50, 100);
    EXPECT_THAT(user.events, ElementsAre("bar 50"));
    EXPECT_EQ(user.pumped, 1);
}

TEST(ProgressPercent, TellsTheAmountWithEachStep) {
    BarUser user;
    Bar bar;
    ProgressPercent(bar, 1, 1000);
    ProgressPercent(bar, 2, 1000);
    ProgressPercent(bar, 5e9, 4e9, Counted::Bytes);
    ASSERT_EQ(user.amounts.size(), 3U);
    EXPECT_EQ(user.amounts[1].done, 2);
    EXPECT_EQ(user.amounts[1].total, 1000);
    EXPECT_EQ(user.amounts[1].counted, Counted::Items);
    EXPECT_EQ(user.amounts[2].done, 4e9);
    EXPECT_EQ(user.amounts[2].counted, Counted::Bytes);
}

TEST(ProgressPercent, ATotalOfNothingCountsAsOne) {
    Bar bar;
    ProgressPercent(bar, 0, 0);
    EXPECT_EQ(bar.percent, 0);
    ProgressPercent(bar, 1, 0);
    EXPECT_EQ(bar.percent, 100);
    ProgressPercent(bar, 5, -3);
    EXPECT_EQ(bar.percent, 100);
}

TEST(ProgressPercent, MoreThanTheTotalCountsAsTheTotal) {
    Bar bar;
    ProgressPercent(bar, 300, 200);
    EXPECT_EQ(bar.percent, 100);
    ProgressPercent(bar, -5, 200);
    EXPECT_EQ(bar.percent, 0);
    ProgressPercent(bar, 9e15, 1e16);
    EXPECT_EQ(bar.percent, 90);
}

TEST(ProgressDialog, IsOpenForTheLengthOfItsScope) {
    BarUser user;
    {
        ProgressDialog dialog(BarPlace::ZipDialog, "Caption");
        dialog.Label("one");
        ProgressPercent(dialog.bar, 1, 2);
    }
    EXPECT_THAT(user.events, ElementsAre("job begins, 1", "open 2 Caption", "label one", "bar 50", "close 2",
                                         "job ends, 0"));
}

TEST(ProgressDialog, CanBeStoppedWhereItSaysSo) {
    const BarUser user;
    const ProgressDialog outer(BarPlace::ProgressDialog, "");
    EXPECT_FALSE(JobCanStop());
    {
        const ProgressDialog inner(BarPlace::StoppableDialog, "");
        EXPECT_TRUE(JobCanStop());
    }
    EXPECT_FALSE(JobCanStop());
}

TEST(JobScope, StandsInOthersAndTellsTheUser) {
    BarUser user;
    EXPECT_EQ(JobDepth(), 0);
    {
        const JobScope command;
        {
            const JobScope part(Stop::Offered);
            const JobScope smaller_part;
            EXPECT_EQ(JobDepth(), 3);
            EXPECT_TRUE(JobCanStop()) << "what the part can be stopped in belongs to it";
        }
        EXPECT_EQ(JobDepth(), 1);
    }
    EXPECT_THAT(user.events, ElementsAre("job begins, 1", "job begins, 2 to stop", "job begins, 3 to stop",
                                         "job ends, 2 to stop", "job ends, 1", "job ends, 0"));
}

} // namespace
} // namespace kelvash
