// The user port of the forms: real windows.
//
// While the logic pumps events in the middle of a job, only the modal window on top takes the user's input;
// everything else is dead until the job has ended. Progress windows appear when a job lasts long enough to be
// looked at.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "foundation/user.h"
#include "ui/progress_text.h"

class QLabel;
class QWidget;

namespace kelvash::ui {

class FormsUser final : public QObject, public User {
    Q_OBJECT

  public:
    // Puts itself in use as TheUser() for as long as it lives.
    FormsUser();
    ~FormsUser() override;

    // The window above which boxes stand when no dialog is open.
    void SetMainWindow(QWidget* window) { main_window_ = window; }
    // How long a job runs before its progress window shows, in milliseconds.
    void SetPatience(int milliseconds) { patience_ = milliseconds; }
    // What tells the time in seconds; a test's own clock in place of the system's.
    void SetClock(std::function<double()> now) { now_ = std::move(now); }
    // Called once, before the first window that waits for the user, or when events are pumped after the
    // patience from now on has passed. An empty function takes it back.
    void SetBeforeWaiting(std::function<void()> before);
    // What boxes and forms that wait for the user stand above. What is to come before them comes now.
    QWidget* ParentOfBoxes();

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
    void SetAmount(BarPlace place, const Amount& amount) override;
    void LevelListChanged() override { Q_EMIT ListChanged(); }
    void PumpEvents() override;
    // The wish of a form in which a job runs that can be stopped.
    void RequestStop() { stop_requested_ = true; }
    bool StopRequested() override { return stop_requested_ && JobCanStop(); }
    void JobBegan() override;
    void JobEnded() override;
    bool JobWaits() override;

    // A form's label and bar, in which jobs show themselves as long as it is the last of its place. They
    // nest in the order of adding.
    struct Display {
        BarPlace place;
        QLabel* label;
        std::function<void(int percent)> set_bar;
        std::function<void(const QString& words)> set_words = {}; // what is done, and how long still
        ProgressWords words = {};
    };
    void AddDisplay(Display display);
    void RemoveDisplay(const QObject* label);

  Q_SIGNALS:
    void ListChanged();
    // A key or a click has come to nothing, because a job runs.
    void InputRefused();

  private:
    struct Progress; // an open progress window
    bool eventFilter(QObject* watched, QEvent* event) override;
    QWidget* WindowOnTop() const;
    void BeforeWaiting();
    // What a box offers (Qt's flags), what Enter means, and closing it; and by what something is lost.
    struct BoxButtons {
        int offered;
        Answer willing;
        Answer harmless;
        Answer losing = Answer::None;
    };
    int RunBox(MessageStyle style, const std::string& text, const BoxButtons& buttons);
    std::optional<std::string> PathOfFile(const QString& chosen);
    Progress* Find(BarPlace place);
    Display* FindDisplay(BarPlace place);
    void Show(Progress& progress);
    void ShowOnTaskBar(BarPlace place, int percent);
    void LeaveTaskBar();

    User* old_user_;
    QPointer<QWidget> main_window_;
    int patience_;
    std::function<void()> before_waiting_;
    QElapsedTimer since_before_; // from SetBeforeWaiting on
    int pumping_ = 0;
    bool stop_requested_ = false;
    std::function<double()> now_;
    double job_began_ = 0; // the outermost one, by now_
    bool on_task_bar_ = false;
    std::vector<int> job_loops_; // the level of the event loop in which each job has begun
    std::vector<Display> displays_;
    std::vector<std::unique_ptr<Progress>> open_; // in the order of opening
};

// True if an input event may reach a widget while a job runs: it is in the modal window on top.
bool TakesInputWhileBusy(const QObject* watched);

// "Text (*.a;*.b)|*.a;*.b|..." as Qt writes filters: "Text (*.a *.b);;...".
QString QtFilter(const std::string& pipe_form);

} // namespace kelvash::ui
