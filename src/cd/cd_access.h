// Reaching levels that lie on CDs.
#pragma once

#include <cstdint>

namespace kelvash::cd {

// Has the CD of a level inserted. A reader that already holds the level's files is taken without a question.
// On success the Archive's main folder begins with the reader's drive. True for a level with no CD; false if
// the user gives up.
[[nodiscard]] bool RequestCd(std::int32_t code);

} // namespace kelvash::cd
