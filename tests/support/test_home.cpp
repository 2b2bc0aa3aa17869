#include "support/test_home.h"

#include "core/start_up.h"

namespace kelvash::test {

TestHome::TestHome() {
    core::ResetProgramState();
    MapDrives();
}

TestHome::~TestHome() {
    core::ResetProgramState();
}

} // namespace kelvash::test
