// The door through which work begins in a window: a command, the tick of a timer, files that were dropped,
// the wish of another start of the program. Never two within each other: what a user does while a job runs is
// refused, what comes by itself waits.
#pragma once

#include <QObject>
#include <QTimer>
#include <deque>
#include <functional>

class QWidget;

namespace kelvash::ui {

class JobDoor final : public QObject {
    Q_OBJECT

  public:
    using Work = std::function<void()>;
    // The door of a form that is about to open; the job that opens it is none of those that keep it shut.
    // `is_ready` says whether the form would take what waits.
    explicit JobDoor(QWidget* form, std::function<bool()> is_ready = {});

    // True where no job has begun since the form was made.
    bool IsFree() const;
    // True where no job, no other window and no menu is at work, and the form is ready.
    bool MayInterrupt() const;
    // Does it now, as a job. False, with nothing done, while one runs.
    bool Try(const Work& work);
    // Does it as a job at the end of this event, or once no job, no other window and no menu is at work.
    void WhenFree(Work work);

  Q_SIGNALS:
    // Try has refused: another job runs.
    void Refused();

  private:
    void Look();

    QWidget* form_;
    std::function<bool()> is_ready_;
    int depth_;
    std::deque<Work> waiting_; // in the order in which they came
    QTimer timer_;
};

} // namespace kelvash::ui
