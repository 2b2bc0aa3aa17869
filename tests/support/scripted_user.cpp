#include "support/scripted_user.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "foundation/messages.h"

namespace kelvash::test {

namespace {

const char* StyleName(MessageStyle style) {
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
    return "";
}

} // namespace

ScriptedUser::ScriptedUser() : old_user_(SetUser(this)) {
    forms.WhenMissing([](std::string_view form) { ADD_FAILURE() << "nobody fills in: " << form; });
}

ScriptedUser::~ScriptedUser() {
    SetUser(old_user_);
    for (const Line& line : script_)
        ADD_FAILURE() << "nobody asked for: " << line.when;
    for (const Filling& filling : fills_)
        ADD_FAILURE() << "nobody opened: " << filling.form;
    FailOnSurprises();
}

void ScriptedUser::FailOnSurprises() const {
    for (std::size_t i = looked_at_; i < told_.size(); ++i)
        EXPECT_FALSE(IsSurprise(told_[i])) << "nobody looked at: " << told_[i];
}

bool ScriptedUser::IsSurprise(const std::string& message) const {
    if (!message.starts_with("critical: ") && !message.starts_with("exclamation: ")) return false;
    return std::none_of(expected_.begin(), expected_.end(), [&](const std::string& expected) {
        return message.find(expected) != std::string::npos;
    });
}

void ScriptedUser::WillAnswer(const std::string& when, const std::string& answer) {
    script_.push_back({when, answer});
}

void ScriptedUser::MayAnswer(const std::string& when, const std::string& answer) {
    standing_.push_back({when, answer});
}

void ScriptedUser::Forget() {
    FailOnSurprises();
    told_.clear();
    looked_at_ = 0;
    asked_.clear();
    shown_.clear();
}

std::optional<std::string> ScriptedUser::Take(const std::string& text) {
    asked_.push_back(text);
    for (auto line = script_.begin(); line != script_.end(); ++line) {
        if (text.find(line->when) == std::string::npos) continue;
        std::string answer = line->answer;
        script_.erase(line);
        if (answer == "cancel") return std::nullopt;
        return answer;
    }
    for (const Line& line : standing_)
        if (text.find(line.when) != std::string::npos) return line.answer;
    ADD_FAILURE() << "a question without an answer: " << text;
    return std::nullopt;
}

void ScriptedUser::Message(MessageStyle style, const MessageText& text) {
    if (when_told) when_told();
    told_.push_back(std::string(StyleName(style)) + ": " + text);
}

Answer ScriptedUser::Ask(Buttons, MessageStyle, const MessageText& text) {
    static const std::map<std::string, Answer> answers = {
        {"yes", Answer::Yes},     {"no", Answer::No},       {"ok", Answer::Ok},
        {"abort", Answer::Abort}, {"retry", Answer::Retry}, {"ignore", Answer::Ignore},
        {"nobody", Answer::None}};
    EXPECT_TRUE(HarmOf(text.id)) << "no question of the message table: " << text.text;
    const std::optional<std::string> answer = Take(text);
    return answer ? answers.at(*answer) : Answer::Cancel;
}

std::optional<std::string> ScriptedUser::Input(const std::string& title, const MessageText& text,
                                               const std::string&) {
    return Take(title + "\n" + text);
}

std::optional<std::string> ScriptedUser::OpenFile(const FileDialog& dialog) {
    last_start = dialog.folder;
    last_filter = dialog.filter;
    return Take(dialog.title);
}

std::optional<std::string> ScriptedUser::SaveFile(const FileDialog& dialog) {
    last_start = dialog.folder + "\\" + dialog.name;
    last_filter = dialog.filter;
    return Take(dialog.title);
}

std::optional<std::string> ScriptedUser::ChooseFolder(const MessageText& caption, const std::string& start) {
    last_start = start;
    return Take(caption);
}

bool ScriptedUser::Fill(const std::string& form, void* record) {
    asked_.push_back(form);
    const auto next = std::find_if(fills_.begin(), fills_.end(),
                                   [&](const Filling& filling) { return filling.form == form; });
    if (next == fills_.end()) {
        ADD_FAILURE() << "nobody fills in: " << form;
        return false;
    }
    const std::function<bool(void*)> fill = std::move(next->fill); // it may script the next one
    fills_.erase(next);
    return fill(record);
}

void ScriptedUser::OpenProgress(BarPlace, const std::string& caption) {
    shown_.push_back(caption);
}

void ScriptedUser::SetLabel(BarPlace, const std::string& text) {
    shown_.push_back(text);
}

} // namespace kelvash::test
