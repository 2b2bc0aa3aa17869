// How far a first start has come. One that is broken off, by the user or by a kill, goes on with its page at
// the next start, in the TRLE folder that had been chosen.
//
// The record is a file of the application's folder. It is flushed when a step begins, and goes when the last
// one is done; docs/formats.md has its bytes.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "foundation/record.h"

namespace kelvash::program {

struct FirstSteps {
    std::int32_t Step = 1; // the one that had begun: 1 to 3
    std::string TrleFolder;
};

inline constexpr std::size_t kFirstStepsSize = 260;
inline constexpr std::array<Field<FirstSteps>, 2> kFirstStepsFields = {{
    {"Step", 0, 4, &FirstSteps::Step},
    {"TrleFolder", 4, 256, &FirstSteps::TrleFolder},
}};
static_assert(IsLayout(kFirstStepsFields, kFirstStepsSize));

std::string EncodeFirstSteps(const FirstSteps& steps);
// Nothing for bytes of another length, or of a step that there isn't.
std::optional<FirstSteps> DecodeFirstSteps(std::string_view bytes);

// Nothing if no first start has been broken off.
std::optional<FirstSteps> ReadFirstSteps();
// False if it can't be kept: the next start asks from the beginning then.
bool KeepFirstSteps(const FirstSteps& steps);
void EndFirstSteps();

} // namespace kelvash::program
