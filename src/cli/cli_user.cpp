#include "cli/cli_user.h"

#include <algorithm>
#include <array>
#include <iostream>

#include "cli/form_runners.h"
#include "cli/messages.h"
#include "cli/terminal.h"
#include "companion/savegame_messages.h"
#include "companion/slots_messages.h"
#include "core/level_messages.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/texts.h"
#include "intake/messages.h"
#include "program/messages.h"
#include "swap/backup_messages.h"
#include "zip/messages.h"

namespace kelvash::cli {

namespace {

using nlohmann::ordered_json;

struct Word {
    std::string_view text;
    Answer answer;
};
constexpr std::array<Word, 7> kWords = {{{"yes", Answer::Yes},
                                         {"no", Answer::No},
                                         {"ok", Answer::Ok},
                                         {"cancel", Answer::Cancel},
                                         {"abort", Answer::Abort},
                                         {"retry", Answer::Retry},
                                         {"ignore", Answer::Ignore}}};

// What stands for a password that was given.
constexpr const char* kHiddenPassword = "***";

// Questions whose No, and inputs whose Cancel, means that what the command is for isn't done.
constexpr std::array<MessageId, 12> kPermissions = {
    {msg::kOriginalNeeded, msg::kBackupNoRoom, msg::kZipNoRoom, msg::kZipTooLarge, msg::kRemoveQuestion,
     msg::kEqualQuestion, msg::kEqualFound, msg::kLanguageInput, msg::kReplaceFile, msg::kSaveDeleteQuestion,
     msg::kRestoreSlotsFull, msg::kCliReplaceFile}};

bool IsPermission(MessageId id) {
    return std::find(kPermissions.begin(), kPermissions.end(), id) != kPermissions.end();
}

// The buttons of a question, the affirming one first.
struct ButtonSet {
    std::string_view name;
    std::vector<Answer> offered;
};

ButtonSet SetOf(Buttons buttons) {
    switch (buttons) {
        case Buttons::YesNo:
            return {"yesno", {Answer::Yes, Answer::No}};
        case Buttons::YesNoCancel:
            return {"yesnocancel", {Answer::Yes, Answer::No, Answer::Cancel}};
        case Buttons::OkCancel:
            return {"okcancel", {Answer::Ok, Answer::Cancel}};
        case Buttons::AbortRetryIgnore:
            return {"abortretryignore", {Answer::Retry, Answer::Ignore, Answer::Abort}};
    }
    return {};
}

std::string_view StyleName(MessageStyle style) {
    switch (style) {
        case MessageStyle::Critical:
            return "critical";
        case MessageStyle::Question:
            return "question";
        case MessageStyle::Exclamation:
            return "exclamation";
        case MessageStyle::Plain:
            return "plain";
    }
    return {};
}

std::string WordOf(Answer answer) {
    const auto* const word = std::find_if(kWords.begin(), kWords.end(),
                                          [answer](const Word& entry) { return entry.answer == answer; });
    return std::string(word->text);
}

// True for a word that names a button and so can't be a path.
bool IsButtonWord(const std::string& text) {
    return std::any_of(kWords.begin(), kWords.end(), [&](const Word& word) { return word.text == text; });
}

std::string Choices(const std::vector<Answer>& offered) {
    std::vector<std::string> words;
    words.reserve(offered.size());
    for (const Answer answer : offered)
        words.push_back(WordOf(answer));
    return "[" + Join(words, "/") + "] ";
}

// A text that is no message of the table has none.
ordered_json IdOrNull(const MessageText& text) {
    return text.id == kNoMessage ? ordered_json(nullptr) : ordered_json(text.id.Number());
}

ordered_json OrNull(const std::optional<std::string>& text) {
    return text ? ordered_json(*text) : ordered_json(nullptr);
}

// "ok" takes what the box proposes; any other button word, or nothing, cancels.
std::optional<std::string> PathOf(const std::optional<std::string>& answer, const std::string& proposed) {
    if (!answer || answer->empty()) return std::nullopt;
    if (*answer == "ok" && !proposed.empty()) return proposed;
    if (IsButtonWord(*answer)) return std::nullopt;
    return PathFromUser(*answer);
}

} // namespace

CliUser::CliUser(const Behaviour& behaviour, std::vector<AnswerEntry> answers)
    : behaviour_(behaviour), answers_(std::move(answers)) {
    AddFormRunners(*this);
}

void CliUser::Preset(std::vector<AnswerEntry> entries) {
    presets_ = std::move(entries);
}

bool CliUser::PresetUsed(MessageId id) const {
    return std::any_of(presets_.begin(), presets_.end(),
                       [&](const AnswerEntry& entry) { return entry.id == id && entry.used > 0; });
}

void CliUser::Tell(const ordered_json& event) {
    if (!behaviour_.quiet) std::cout << JsonText(event) << '\n' << std::flush;
}

void CliUser::Print(const std::string& line) {
    if (!behaviour_.quiet) PrintLine(line);
}

bool CliUser::TellResult(const Result& result) {
    if (IsPlain()) {
        FinishBar();
        std::cout << ResultLines(result) << std::flush;
        if (!result.ok) PrintError(LoadMessage(msg::kCliFailed));
    } else {
        std::cout << ResultEvent(result) << '\n' << std::flush;
    }
    return std::cout.good();
}

std::optional<std::string> CliUser::AnswerTo(const Box& box, const std::string& otherwise) {
    if (Interrupted()) return std::nullopt;
    std::optional<std::string> answer = TakeAnswer(presets_, box.signs);
    if (!answer) answer = TakeAnswer(answers_, box.signs);
    if (!answer && !otherwise.empty()) answer = otherwise;
    if (!answer && behaviour_.fallback == Fallback::Terminal) return AskLine(box.prompt, box.password);
    if (IsPlain()) Print(box.prompt + (answer && box.password ? kHiddenPassword : answer.value_or("-")));
    return answer;
}

void CliUser::Message(MessageStyle style, const MessageText& text) {
    told_.insert(text.id);
    const bool failure = style == MessageStyle::Critical;
    if (failure) ++failures_;
    if (!IsPlain())
        Tell(
            {{"event", "message"}, {"id", IdOrNull(text)}, {"style", StyleName(style)}, {"text", text.text}});
    else if (failure)
        PrintError("! " + text);
    else
        Print(text);
}

Answer CliUser::Decide(Buttons buttons, const MessageText& text, const Box& box) {
    const std::vector<Answer> offered = SetOf(buttons).offered;
    const Answer harmless = HarmlessAnswer(buttons, text);
    const Answer willing = WillingAnswer(buttons, text);
    const bool affirm = behaviour_.yes && willing == offered.front();
    while (const std::optional<std::string> typed = AnswerTo(box, affirm ? WordOf(willing) : std::string())) {
        const auto found = std::find_if(offered.begin(), offered.end(), [&](Answer answer) {
            return EqualNoCase(WordOf(answer), Trim(*typed));
        });
        if (found != offered.end()) return *found;
        PrintError(LoadMessage(msg::kCliNoSuchAnswer, {*typed, Choices(offered)}));
        if (behaviour_.fallback == Fallback::Harmless) break;
    }
    return harmless;
}

void CliUser::NoteAnswer(const MessageText& question, Answer answer) {
    if (answer == Answer::None) {
        unanswered_ = true;
        PrintError(LoadMessage(msg::kCliNoAnswer) + question.text);
    }
    const bool declined = answer == Answer::No || answer == Answer::Cancel;
    if (declined && IsPermission(question.id)) refused_ = true;
}

Answer CliUser::Ask(Buttons buttons, MessageStyle style, const MessageText& text) {
    const ButtonSet set = SetOf(buttons);
    const Answer chosen = Decide(buttons, text, {{text.id, {text}}, text + "\n" + Choices(set.offered)});
    if (!IsPlain())
        Tell({{"event", "ask"},
              {"id", IdOrNull(text)},
              {"buttons", set.name},
              {"style", StyleName(style)},
              {"text", text.text},
              {"answer", chosen == Answer::None ? ordered_json(nullptr) : ordered_json(WordOf(chosen))}});
    NoteAnswer(text, chosen);
    return chosen;
}

std::optional<std::string> CliUser::Input(const std::string& title, const MessageText& text,
                                          const std::string& initial) {
    const bool password = AsksPassword(text.id);
    std::optional<std::string> answer =
        AnswerTo({{text.id, {title, text}}, title + "\n" + text + " [" + initial + "] ", password});
    const bool nobody = !answer;
    if (answer && *answer == "cancel") answer.reset();
    if (answer && *answer == "ok") answer = initial;
    if (!answer && IsPermission(text.id)) NoteAnswer(text, nobody ? Answer::None : Answer::Cancel);
    if (!IsPlain())
        Tell({{"event", "input"},
              {"id", IdOrNull(text)},
              {"title", title},
              {"text", text.text},
              {"default", initial},
              {"answer", OrNull(answer && password ? kHiddenPassword : answer)}});
    return answer;
}

std::optional<std::string> CliUser::AskFile(const char* event, const FileDialog& dialog) {
    const std::string start = dialog.folder;
    const std::string proposed = dialog.name.empty() ? std::string() : start + "\\" + dialog.name;
    // A folder dialog has no file name, and may be left with the folder in which it starts.
    const bool folder = std::string_view(event) == "folder";
    const std::string& taken_by_ok = folder ? start : proposed;
    const std::optional<std::string> answer = PathOf(
        AnswerTo({{dialog.title.id, {dialog.title}}, dialog.title + " [" + taken_by_ok + "] "}), taken_by_ok);
    if (!IsPlain())
        Tell({{"event", event},
              {"id", IdOrNull(dialog.title)},
              {"title", dialog.title.text},
              {"filter", dialog.filter},
              {"start", start},
              {"name", dialog.name},
              {"answer", OrNull(answer)}});
    return answer;
}

std::optional<std::string> CliUser::OpenFile(const FileDialog& dialog) {
    return AskFile("openfile", dialog);
}

std::optional<std::string> CliUser::SaveFile(const FileDialog& dialog) {
    const std::optional<std::string> target = AskFile("savefile", dialog);
    // A command has looked at what its own arguments name.
    if (!target || PresetUsed(dialog.title.id) || !FileExists(*target)) return target;
    const MessageText question = LoadMessage(msg::kCliReplaceFile, {kLineBreak + *target});
    const bool may_replace = Ask(Buttons::YesNo, MessageStyle::Question, question) == Answer::Yes;
    return may_replace ? target : std::nullopt;
}

std::optional<std::string> CliUser::ChooseFolder(const MessageText& caption, const std::string& start) {
    return AskFile("folder", {caption, {}, start, {}});
}

std::optional<std::string> CliUser::AnswerForm(const FormPrompt& form) {
    const std::optional<std::string> typed = AnswerTo(
        {{kNoMessage, {form.name, form.title}},
         form.title + " (" + form.name + ")\n[" + Join(form.buttons, "/") + "] " + form.start + " "});
    // By the last button the form is given up, though the event names it.
    const auto& buttons = form.buttons;
    const bool button = typed && std::find(buttons.begin(), buttons.end(), *typed) != buttons.end();
    const bool takes_start = typed == "ok" || typed == kOkButton;
    std::optional<std::string> chosen;
    if (takes_start)
        chosen = form.start;
    else if (!button)
        chosen = PathOf(typed, {});
    else if (*typed != buttons.back())
        chosen = typed;
    if (!IsPlain())
        Tell({{"event", "form"}, {"name", form.name}, {"answer", OrNull(button ? typed : chosen)}});
    return chosen && chosen->empty() ? std::nullopt : chosen;
}

void CliUser::OpenProgress(BarPlace, const std::string& caption) {
    if (!IsPlain())
        Tell({{"event", "progress"}, {"caption", caption}});
    else if (!caption.empty())
        Print(caption);
}

void CliUser::CloseProgress(BarPlace) {
    if (IsPlain()) FinishBar();
}

void CliUser::SetLabel(BarPlace, const std::string& text) {
    if (IsPlain() && !text.empty()) Print("  " + text);
}

void CliUser::SetBar(BarPlace, int percent) {
    if (IsPlain() && !behaviour_.quiet) PrintBar(percent);
}

bool CliUser::StopRequested() {
    return JobCanStop() && Interrupted();
}

} // namespace kelvash::cli
