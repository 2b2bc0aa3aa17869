// A player made of clockwork: works the modal windows of a test as they open.
//
// A test says beforehand what is to be done with each window. A window that nobody expected fails the test
// and is closed; so does one that was expected and never came.
#pragma once

#include <QObject>
#include <QWidget>
#include <deque>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace kelvash::test {

class Robot final : public QObject {
  public:
    Robot();
    ~Robot() override;

    using Act = std::function<void(QWidget* window)>;
    // The next modal window whose object name, title or text holds `when` is given to `act`, which must end
    // it, or leave it to the next entry.
    void Will(const std::string& when, Act act);
    // Presses a button of it: an object name or a caption, without its "&".
    void WillPress(const std::string& when, const std::string& button);
    // A file dialog with that title gets this file and is accepted.
    void WillChooseFile(const std::string& title, const std::filesystem::path& file);

    // What the windows said, in their order: object name, title and text with a line break between.
    const std::vector<std::string>& Seen() const { return seen_; }
    // True if a window that has come held the text.
    bool HasSeen(const std::string& text) const;

  private:
    struct Line {
        std::string when;
        Act act;
    };
    void Look();
    void Arm();

    std::deque<Line> script_;
    std::vector<std::string> seen_;
    std::vector<QWidget*> acting_;
};

// Clicks a control of a window with the mouse; fails the test unless it is there, visible and enabled.
void Press(QWidget* window, const std::string& button);
// A caption without the marks of mnemonics.
std::string Plain(const QString& caption);
// Runs the event loop until the condition holds; fails the test after ten seconds.
void WaitUntil(const std::function<bool()>& condition);

} // namespace kelvash::test
