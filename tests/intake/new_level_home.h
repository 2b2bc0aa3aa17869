// The dialog of a new level, and the files of a good one.
#pragma once

#include "core/archive.h"
#include "intake/new_level.h"
#include "support/intake_home.h"

namespace kelvash::intake {

class NewLevelTest : public test::IntakeHome {
  protected:
    const Files kGood = {{"maze.tr4", "level data"}, {"script.dat", "script"}, {"english.dat", "words"}};
    void CancelIn(NewLevel& open) { CancelLevel(open); }
    std::int32_t Count() const { return core::archive.Table.Size(); }
};

} // namespace kelvash::intake
