// A world with real windows: the user port is that of the forms, the robot answers.
#pragma once

#include "support/robot.h"
#include "support/test_home.h"
#include "ui/forms_user.h"

namespace kelvash::test {

// Home is one of the worlds without windows (TestHome, CoreHome, SwapHome).
template <class Home>
class UiHome : public Home {
  protected:
    ui::FormsUser forms;
    Robot robot;
};

} // namespace kelvash::test
