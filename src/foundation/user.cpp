#include "foundation/user.h"

#include <algorithm>
#include <utility>

#include "foundation/absent_user.h"
#include "foundation/messages.h"
#include "foundation/pumping.h"
#include "foundation/state.h"

namespace kelvash {

namespace {

Answer AffirmativeOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::YesNo:
        case Buttons::YesNoCancel:
            return Answer::Yes;
        case Buttons::OkCancel:
            return Answer::Ok;
        case Buttons::AbortRetryIgnore:
            return Answer::Retry;
    }
    return Answer::None;
}

Answer DecliningOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::YesNo:
            return Answer::No;
        case Buttons::YesNoCancel:
        case Buttons::OkCancel:
            return Answer::Cancel;
        case Buttons::AbortRetryIgnore:
            return Answer::Abort;
    }
    return Answer::None;
}

struct UserPort {
    User* InUse = nullptr;
};

// The scopes themselves keep it right: no reset is to touch it.
struct JobStack {
    int Depth = 0;
    int Stoppable = 0;
};

JobStack& Jobs() {
    return Lifelong<JobStack>::Get();
}

User*& CurrentUser() {
    return Lifelong<UserPort>::Get().InUse;
}

} // namespace

User& TheUser() {
    return CurrentUser() != nullptr ? *CurrentUser() : Lifelong<AbsentUser>::Get();
}

User* SetUser(User* user) {
    return std::exchange(CurrentUser(), user);
}

Answer HarmlessAnswer(Buttons buttons, const MessageText& question) {
    // A third button leaves all as it is.
    if (buttons == Buttons::YesNoCancel) return Answer::Cancel;
    switch (HarmOf(question.id).value_or(Harm::YesLoses)) {
        case Harm::AnyLoses:
            return Answer::None;
        case Harm::NoLoses:
            return AffirmativeOf(buttons);
        default:
            return DecliningOf(buttons);
    }
}

Answer WillingAnswer(Buttons buttons, const MessageText& question) {
    const Harm harm = HarmOf(question.id).value_or(Harm::YesLoses);
    if (harm == Harm::NothingLoses || harm == Harm::NoLoses) return AffirmativeOf(buttons);
    return HarmlessAnswer(buttons, question);
}

void ShowMessage(MessageStyle style, const MessageText& text) {
    TheUser().Message(style, text);
}

void TellCritical(const MessageText& text) {
    ShowMessage(MessageStyle::Critical, text);
}

bool AskYesNo(MessageStyle style, const MessageText& text) {
    return TheUser().Ask(Buttons::YesNo, style, text) == Answer::Yes;
}

void ProgressPercent(Bar& bar, double done, double total, Counted counted) {
    if (total <= 0) total = 1;
    TheUser().SetAmount(bar.place, {std::clamp(done, 0.0, total), total, counted});
    // The product first: 29 of 100 as a quotient is a little less than 0.29.
    const int percent = static_cast<int>(std::clamp(done, 0.0, total) * 100 / total);
    if (percent == bar.percent) {
        PumpNowAndThen();
        return;
    }
    bar.percent = percent;
    TheUser().SetBar(bar.place, percent);
    TheUser().PumpEvents();
}

JobScope::JobScope(Stop stop) : stop_(stop) {
    ++Jobs().Depth;
    if (stop_ == Stop::Offered) ++Jobs().Stoppable;
    TheUser().JobBegan();
}

JobScope::~JobScope() {
    --Jobs().Depth;
    if (stop_ == Stop::Offered) --Jobs().Stoppable;
    TheUser().JobEnded();
}

int JobDepth() {
    return Jobs().Depth;
}

bool JobCanStop() {
    return Jobs().Stoppable > 0;
}

ProgressDialog::ProgressDialog(BarPlace dialog, const std::string& caption)
    : job_(dialog == BarPlace::StoppableDialog ? Stop::Offered : Stop::Never), bar{dialog, -1} {
    TheUser().OpenProgress(dialog, caption);
}

ProgressDialog::~ProgressDialog() {
    TheUser().CloseProgress(bar.place);
}

} // namespace kelvash
