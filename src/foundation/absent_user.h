// The user port of nobody: shows nothing, and answers so that nothing can be lost. Others take of it what
// they have no answer for either.
#pragma once

#include <optional>
#include <string>

#include "foundation/user.h"

namespace kelvash {

class AbsentUser : public User {
  public:
    void Message(MessageStyle, const MessageText&) override {}
    Answer Ask(Buttons buttons, MessageStyle, const MessageText& text) override {
        return HarmlessAnswer(buttons, text);
    }
    std::optional<std::string> Input(const std::string&, const MessageText&, const std::string&) override {
        return std::nullopt;
    }
    std::optional<std::string> OpenFile(const FileDialog&) override { return std::nullopt; }
    std::optional<std::string> SaveFile(const FileDialog&) override { return std::nullopt; }
    std::optional<std::string> ChooseFolder(const MessageText&, const std::string&) override {
        return std::nullopt;
    }
    void OpenProgress(BarPlace, const std::string&) override {}
    void CloseProgress(BarPlace) override {}
    void SetLabel(BarPlace, const std::string&) override {}
    void SetBar(BarPlace, int) override {}
    void LevelListChanged() override {}
    void PumpEvents() override {}
    bool StopRequested() override { return false; }
};

} // namespace kelvash
