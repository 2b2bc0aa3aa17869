// The user port of the command line: every box becomes an event.
//
// As JSON each event is one object a line on stdout, in the order in which things happen. In plain mode the
// same is told in lines for a person, and what no entry answers is asked in the terminal.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "cli/answers.h"
#include "cli/result.h"
#include "foundation/user.h"

namespace kelvash::cli {

enum class OutputMode { Json, Plain };
// Where answers come from when no entry has one: nowhere (the harmless way is taken) or the terminal.
enum class Fallback { Harmless, Terminal };

class CliUser final : public User {
  public:
    CliUser(OutputMode mode, Fallback fallback, std::vector<AnswerEntry> answers);

    // Answers of a command's own options, tried before all others.
    void Preset(std::vector<AnswerEntry> entries);
    // True once the preset for that message has been taken.
    bool PresetUsed(MessageId id) const;
    // True if any message has been shown.
    bool HasTold() const { return told_; }
    bool IsPlain() const { return mode_ == OutputMode::Plain; }
    // The event "result". False if not all of the output could be written.
    bool TellResult(const Result& result);

    void Message(MessageStyle style, const MessageText& text) override;
    Answer Ask(Buttons buttons, MessageStyle style, const MessageText& text) override;
    std::optional<std::string> Input(const std::string& title, const MessageText& text,
                                     const std::string& initial) override;
    std::optional<std::string> OpenFile(const FileDialog& dialog) override;
    std::optional<std::string> SaveFile(const FileDialog& dialog) override;
    std::optional<std::string> ChooseFolder(const MessageText& caption, const std::string& start) override;
    std::string ShowForm(const ChoiceForm& form) override;
    void OpenProgress(BarPlace dialog, const std::string& caption) override;
    void CloseProgress(BarPlace dialog) override;
    void SetLabel(BarPlace place, const std::string& text) override;
    void SetBar(BarPlace place, int percent) override;
    void LevelListChanged() override {}
    void PumpEvents() override {}
    bool StopRequested() override;

  private:
    // What a box shows, and what stands in the terminal before the answer.
    struct Box {
        BoxSigns signs;
        std::string prompt;
    };
    // The words of an answer; nothing for the harmless way.
    std::optional<std::string> AnswerTo(const Box& box);
    std::optional<std::string> AskFile(const char* event, const FileDialog& dialog);
    void Tell(const nlohmann::ordered_json& event);

    OutputMode mode_;
    Fallback fallback_;
    std::vector<AnswerEntry> answers_;
    std::vector<AnswerEntry> presets_;
    bool told_ = false;
};

} // namespace kelvash::cli
