// The user port of the command line: every box becomes an event.
//
// As JSON each event is one object a line on stdout, in the order in which things happen. In plain mode the
// same is told in lines for a person, and what no entry answers is asked in the terminal.
#pragma once

#include <initializer_list>
#include <set>
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

struct Behaviour {
    OutputMode mode = OutputMode::Plain;
    Fallback fallback = Fallback::Harmless;
    bool yes = false;   // affirms what can lose nothing, before anybody is asked
    bool quiet = false; // tells failures and the result alone
};

// A form as it stands in the terminal: what it is called, its title, what it starts from, and the names of
// the buttons that can end it, the harmless one last.
struct FormPrompt {
    std::string name;
    std::string title;
    std::string start;
    std::vector<std::string> buttons;
};

class CliUser final : public User {
  public:
    CliUser(const Behaviour& behaviour, std::vector<AnswerEntry> answers);

    // Answers of a command's own options, tried before all others.
    void Preset(std::vector<AnswerEntry> entries);
    // True once the preset for that message has been taken.
    bool PresetUsed(MessageId id) const;
    // True if any message has been shown, or this one.
    bool HasTold() const { return !told_.empty(); }
    bool HasTold(MessageId id) const { return told_.contains(id); }
    // How many failures have been told until now.
    int Failures() const { return failures_; }
    // True if a question whose answers can all lose something found nobody: what it was about isn't done.
    bool IsUnanswered() const { return unanswered_; }
    // True if that was so, or if an answer forbade what the command is for.
    bool IsRefused() const { return unanswered_ || refused_; }
    bool IsPlain() const { return behaviour_.mode == OutputMode::Plain; }
    // The button or the path that ends a form; what it starts from for the button OK. Nothing if it is given
    // up, by the last of its buttons too.
    std::optional<std::string> AnswerForm(const FormPrompt& form);
    // The event "result". False if not all of the output could be written.
    bool TellResult(const Result& result);

    void Message(MessageStyle style, const MessageText& text) override;
    Answer Ask(Buttons buttons, MessageStyle style, const MessageText& text) override;
    std::optional<std::string> Input(const std::string& title, const MessageText& text,
                                     const std::string& initial) override;
    std::optional<std::string> OpenFile(const FileDialog& dialog) override;
    std::optional<std::string> SaveFile(const FileDialog& dialog) override;
    std::optional<std::string> ChooseFolder(const MessageText& caption, const std::string& start) override;
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
        bool password = false;
    };
    // The words of an answer: written down before the run, else the given one, else typed in the terminal.
    // Nothing for the harmless way.
    std::optional<std::string> AnswerTo(const Box& box, const std::string& otherwise = {});
    Answer Decide(Buttons buttons, const MessageText& text, const Box& box);
    void NoteAnswer(const MessageText& question, Answer answer);
    std::optional<std::string> AskFile(const char* event, const FileDialog& dialog);
    void Tell(const nlohmann::ordered_json& event);
    void Print(const std::string& line);

    Behaviour behaviour_;
    std::vector<AnswerEntry> answers_;
    std::vector<AnswerEntry> presets_;
    std::set<MessageId> told_;
    int failures_ = 0;
    bool unanswered_ = false;
    bool refused_ = false;
};

} // namespace kelvash::cli
