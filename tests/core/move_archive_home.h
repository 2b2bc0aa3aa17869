// An Archive with two levels and a folder that it may move to.
#pragma once

#include "core/maintenance.h"
#include "support/maintenance_home.h"

namespace kelvash::core {

class Moving : public test::MaintenanceHome {
  protected:
    Moving() {
        AddSized(1, "One");
        AddSized(2, "Two");
        std::filesystem::create_directories(drive / "new");
    }
    bool MoveTo(const std::string& target) {
        user.WillAnswer("Select target folder", target);
        return MoveArchive();
    }
};

} // namespace kelvash::core
