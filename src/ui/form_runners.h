// The forms that the logic opens: which window shows the record of each.
#pragma once

namespace kelvash::ui {

class FormsUser;

// The user must live as long as its runners may be called.
void AddFormRunners(FormsUser& user);

} // namespace kelvash::ui
