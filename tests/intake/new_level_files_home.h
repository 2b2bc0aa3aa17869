// The open dialog and the files in its work folder.
#pragma once

#include "intake/new_level.h"
#include "intake/work_folder.h"
#include "support/intake_home.h"

namespace kelvash::intake {

class LevelFiles : public test::IntakeHome {
  protected:
    void Put(const std::string& name, const std::string& bytes = "x") {
        test::MakeFile(Work() / name, bytes);
    }
    std::string Bytes(const std::string& name) const { return test::BytesOf(Work() / name); }
    std::string Selected() const { return level.MoreInfoChoices[static_cast<std::size_t>(level.MoreInfo)]; }
    void Pick() {
        RefreshFileList(level);
        PickMoreInfoFile(level);
    }
};

} // namespace kelvash::intake
