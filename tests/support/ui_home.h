// A world with real windows: the user port is that of the forms, the robot answers.
#pragma once

#include <QLineEdit>

#include "support/robot.h"
#include "support/test_home.h"
#include "ui/forms_user.h"

namespace kelvash::test {

// Home is one of the worlds without windows (TestHome, CoreHome, SwapHome).
template <class Home>
class UiHome : public Home {
  protected:
    // Types a folder into the next folder chooser with that caption and accepts it.
    void WillChooseFolder(const std::string& caption, const std::string& folder) {
        robot.Will(caption, [folder](QWidget* window) {
            auto* const path = window->findChild<QLineEdit*>(QStringLiteral("Text_PathDir"));
            ASSERT_NE(path, nullptr);
            path->setText(QString::fromStdString(folder));
            Press(window, "Pul_Ok");
        });
    }
    ui::FormsUser forms;
    Robot robot;
};

} // namespace kelvash::test
