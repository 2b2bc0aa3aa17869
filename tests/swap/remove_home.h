// A TRLE folder and two levels, the first of which is to be taken out.
#pragma once

#include "support/swap_home.h"
#include "swap/install.h"
#include "swap/remove.h"

namespace kelvash::swap {

class Removal : public test::SwapHome {
  protected:
    Removal() {
        AddLevel(1, "City", {{"city.tr4", "CITY"}, {"045.wav", "new wave"}, {"script.dat", "city script"}});
        AddLevel(2, "Coast", {{"coast.tr4", "COAST"}});
    }
    void MarkLevelOne(const std::string& lists) {
        test::MakeFile(trle / "Kelvash.txt", "#LEVEL_CODE=0001#\r\n#LEVEL_NAME=City#\r\n" + lists);
    }
    void InstallOne() { ASSERT_TRUE(InstallLevel(1)); }
};

} // namespace kelvash::swap
