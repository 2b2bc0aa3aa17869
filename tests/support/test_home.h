// The private world of a test, with the whole program's state as at its start.
#pragma once

#include "support/foundation_home.h"

namespace kelvash::test {

class TestHome : public FoundationHome {
  protected:
    TestHome();
    ~TestHome() override;
};

} // namespace kelvash::test
