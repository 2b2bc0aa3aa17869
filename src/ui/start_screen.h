// What stands on the screen until the main window does: the splash picture, or, at the first start, the page
// that leads through its questions.
#pragma once

#include <QString>
#include <memory>
#include <optional>

#include "program/start_up.h"

class QWidget;

namespace kelvash::ui {

class FirstStart;
class FormsUser;

class StartScreen {
  public:
    // Boxes stand above the page while it is shown.
    explicit StartScreen(FormsUser& user);
    ~StartScreen();
    StartScreen(const StartScreen&) = delete;
    StartScreen& operator=(const StartScreen&) = delete;

    // Told what StartUp tells of the first start.
    void Begin(program::FirstStep step);
    // To be called when the start takes its time or asks something: the usual one is over before anybody
    // could look at it.
    void Show();
    void Close();

    // Behind the page's title.
    void SetTitleNote(const QString& note) { title_note_ = note; }

    const FirstStart* Page() const { return page_.get(); }

  private:
    FormsUser& user_;
    std::optional<program::FirstStep> step_;
    QString title_note_;
    bool shown_ = false;
    std::unique_ptr<FirstStart> page_;
    std::unique_ptr<QWidget> splash_;
};

} // namespace kelvash::ui
