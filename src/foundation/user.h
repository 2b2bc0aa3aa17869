// The user port: every box, question, dialog and progress display that the logic shows.
//
// The logic never knows who answers: the forms, a terminal, an answers file or a test's script. Calls are
// synchronous, on the one thread. TheUser() is the port in use. What is told or asked carries the id of its
// message (message_text.h), by which answers and events name it in any language.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "foundation/form.h"
#include "foundation/message_text.h"

namespace kelvash {

enum class MessageStyle { Critical, Question, Exclamation, Plain };
enum class Buttons { YesNo, YesNoCancel, OkCancel, AbortRetryIgnore };
// None: nobody answered a question of which every answer can lose something. Whoever asked leaves all as it
// is.
enum class Answer { Yes, No, Ok, Cancel, Abort, Retry, Ignore, None };

// What a common file dialog shows. The filter is in the pipe form "Text (*.x)|*.x"; `folder` is where it
// starts; `name` is the proposed file name.
struct FileDialog {
    MessageText title;
    std::string filter;
    std::string folder;
    std::string name;
};

// Where a label and a bar stand. StoppableDialog is the progress dialog of a job that heeds StopRequested;
// CallerForm the form on top that has a label and a bar for its jobs, nowhere if none is open.
enum class BarPlace { ProgressDialog, StoppableDialog, ZipDialog, WaitDialog, MainWindow, CallerForm };

// What a bar counts, and how far it is. Nothing: parts that say nothing to a user.
enum class Counted { Nothing, Items, Bytes };
struct Amount {
    double done = 0;
    double total = 0;
    Counted counted = Counted::Nothing;
};

// A progress bar as the logic holds it; `percent` is what it shows.
struct Bar {
    BarPlace place = BarPlace::ProgressDialog;
    int percent = -1;
};

class User {
  public:
    User() = default;
    User(const User&) = delete;
    User& operator=(const User&) = delete;
    virtual ~User() = default;

    // How the forms that the logic opens are shown.
    FormRunners forms;

    virtual void Message(MessageStyle style, const MessageText& text) = 0;
    // One of the answers that the buttons offer, or None. The text begins with a question of the message
    // table.
    virtual Answer Ask(Buttons buttons, MessageStyle style, const MessageText& text) = 0;
    // The typed text; nothing on cancel.
    virtual std::optional<std::string> Input(const std::string& title, const MessageText& text,
                                             const std::string& initial) = 0;
    // The chosen path as a path text; nothing on cancel.
    virtual std::optional<std::string> OpenFile(const FileDialog& dialog) = 0;
    virtual std::optional<std::string> SaveFile(const FileDialog& dialog) = 0;
    virtual std::optional<std::string> ChooseFolder(const MessageText& caption, const std::string& start) = 0;

    // The progress, zip and wait dialogs. They nest in the order of opening; closing one that isn't open is
    // harmless.
    virtual void OpenProgress(BarPlace dialog, const std::string& caption) = 0;
    virtual void CloseProgress(BarPlace dialog) = 0;
    virtual void SetLabel(BarPlace place, const std::string& text) = 0;
    virtual void SetBar(BarPlace place, int percent) = 0;
    // Told with each step, before the bar.
    virtual void SetAmount(BarPlace, const Amount&) {}

    // The list of levels, the title or the selection has changed: core/level_list.h holds what to show.
    virtual void LevelListChanged() = 0;

    // Lets the interface work between two steps of a long job.
    virtual void PumpEvents() = 0;
    // True once the user has asked the running job to stop, until the outermost of those that can be stopped
    // ends.
    virtual bool StopRequested() = 0;

    // A job has begun, or ended: JobDepth counts it already, or no more.
    virtual void JobBegan() {}
    virtual void JobEnded() {}
    // True while a form or a box waits for the user in the middle of a job: what is done for it then, a list
    // that is read for instance, isn't the job's work.
    virtual bool JobWaits() { return false; }
};

// The port in use. Before SetUser it is one that answers harmlessly ("no", "cancel") and shows nothing.
User& TheUser();
// Puts another port in use and gives the old one; null puts the harmless one back. The caller owns both.
User* SetUser(User* user);

// The answer for a question that nobody answers, or whose window is closed: one that can lose nothing, by the
// message table; None where each can.
Answer HarmlessAnswer(Buttons buttons, const MessageText& question);
// The affirmative answer where it can lose nothing, else the harmless one: the default of a window.
Answer WillingAnswer(Buttons buttons, const MessageText& question);

// Shorthands for the commonest calls. AskYesNo is false for None, so it isn't for questions whose No can lose
// something.
void ShowMessage(MessageStyle style, const MessageText& text);
void TellCritical(const MessageText& text);
bool AskYesNo(MessageStyle style, const MessageText& text);
// Shows a form of form.h; false if it was given up.
template <FormRecord Record>
[[nodiscard]] bool ShowForm(Record& record) {
    return TheUser().forms.Run(record);
}

// Sets a bar to the whole percentage of done in total, and looks after the interface. A total of 0 counts as
// 1, done above total as total. The bar is only redrawn on a change.
void ProgressPercent(Bar& bar, double done, double total, Counted counted = Counted::Items);

// --- jobs ---

// Whether the user can stop a job.
enum class Stop { Never, Offered };

// Says for the length of a scope that a job runs: a command, or a part of one. Jobs stand in each other; only
// where none runs may a command, a timer, a drop or another start of the program begin one (in a form, where
// none has begun since it was opened). The outermost one that can be stopped begins without any wish to stop.
class JobScope {
  public:
    explicit JobScope(Stop stop = Stop::Never);
    ~JobScope();
    JobScope(const JobScope&) = delete;
    JobScope& operator=(const JobScope&) = delete;

  private:
    Stop stop_;
};

// How many jobs stand in each other now.
int JobDepth();
// True if one of them can be stopped.
bool JobCanStop();

// A job that has a progress dialog, open for the length of its scope.
class ProgressDialog {
  public:
    ProgressDialog(BarPlace dialog, const std::string& caption);
    ~ProgressDialog();
    ProgressDialog(const ProgressDialog&) = delete;
    ProgressDialog& operator=(const ProgressDialog&) = delete;

    void Label(const std::string& text) { TheUser().SetLabel(bar.place, text); }

  private:
    JobScope job_;

  public:
    Bar bar;
};

} // namespace kelvash
