#include "cli/run.h"

#include <iostream>

#include "cli/answers.h"
#include "cli/parser.h"
#include "cli/registry.h"
#include "cli/terminal.h"
#include "core/change.h"
#include "foundation/drive_options.h"
#include "foundation/registration.h"

namespace kelvash::cli {

namespace {

int Complain(const std::string& fault) {
    std::cerr << "kelvash-cli: " << fault << '\n';
    return kWrongUsage;
}

// What an answers file leaves open is harmless; without one a person may be there to ask.
Behaviour BehaviourOf(const Options& options) {
    const bool asks = !options.json && !options.no_input && options.answers.empty();
    return {options.json ? OutputMode::Json : OutputMode::Plain,
            asks ? Fallback::Terminal : Fallback::Harmless, options.yes, options.quiet};
}

int StatusOf(const Result& result, const CliUser& user) {
    if (Interrupted()) return kStopped;
    if (result.ok) return kDone;
    return user.IsRefused() ? kRefused : kFailed;
}

} // namespace

int Run(std::vector<std::string> words) {
    const std::vector<Command> commands = MakeCommands();
    Options options;
    const Command* command = nullptr;
    if (const std::optional<int> status = ParseWords(std::move(words), commands, options, command))
        return *status;
    if (const std::string fault = SetDrives(options.drives); !fault.empty()) return Complain(fault);
    std::vector<AnswerEntry> answers;
    if (!options.answers.empty())
        if (const std::string fault = ReadAnswers(NativeFromUser(options.drives, options.answers), answers);
            !fault.empty())
            return Complain(fault);
    const std::filesystem::path home = HomeOf(options);
    if (home.empty()) return Complain("--home " + options.home + ": no such drive");

    CatchInterrupt();
    CliUser user(BehaviourOf(options), std::move(answers));
    SetUser(&user);
    core::SetLockPatience(options.wait);
    AllowRegistration(options.home.empty() || options.register_home);
    Session session{options, user, home};
    Result result = RunCommand(*command, session);
    if (core::WasRefused() || user.IsUnanswered()) result.ok = false; // something of it was left undone
    const bool told = user.TellResult(result);
    SetUser(nullptr);
    if (told) return core::WasLockedOut() && !Interrupted() ? kInUse : StatusOf(result, user);
    std::cerr << "kelvash-cli: the output can't be written\n";
    return Interrupted() ? kStopped : kFailed;
}

} // namespace kelvash::cli
