// The private world of a test, with the whole program's state as at its start.
#pragma once

#include "support/foundation_home.h"

namespace kelvash::test {

using TestHome = FoundationHome;

} // namespace kelvash::test
