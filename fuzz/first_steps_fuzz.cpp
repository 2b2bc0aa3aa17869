// Any bytes as the record of a first start: what is taken is a step that there is, and reads the same again.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "program/first_steps.h"

namespace {

void Require(bool truth) {
    if (!truth) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using kelvash::program::FirstSteps;
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const std::optional<FirstSteps> steps = kelvash::program::DecodeFirstSteps(bytes);
    if (!steps) return 0;
    Require(size == 260 && steps->Step >= 1 && steps->Step <= 3);
    const std::string written = kelvash::program::EncodeFirstSteps(*steps);
    const std::optional<FirstSteps> again = kelvash::program::DecodeFirstSteps(written);
    Require(again && again->TrleFolder == steps->TrleFolder && again->Step == steps->Step);
    return 0;
}
