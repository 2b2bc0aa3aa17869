#include "program/first_steps.h"

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "program/fragments.h"

namespace kelvash::program {

namespace {

constexpr std::int32_t kLastStep = 3;

std::string FirstStepsPath() {
    return AppFolder() + LoadFragment(fragment::kFirstStepsName);
}

} // namespace

std::string EncodeFirstSteps(const FirstSteps& steps) {
    ByteWriter bytes;
    EncodeRecord(kFirstStepsFields, steps, bytes);
    return bytes.Take();
}

std::optional<FirstSteps> DecodeFirstSteps(std::string_view bytes) {
    if (bytes.size() != kFirstStepsSize) return std::nullopt;
    FirstSteps steps;
    DecodeRecord(kFirstStepsFields, bytes, steps);
    if (steps.Step < 1 || steps.Step > kLastStep) return std::nullopt;
    return steps;
}

std::optional<FirstSteps> ReadFirstSteps() {
    // One byte more than the record tells a longer file without reading it whole.
    const std::optional<std::string> bytes = ReadFileStart(FirstStepsPath(), kFirstStepsSize + 1);
    return bytes ? DecodeFirstSteps(*bytes) : std::nullopt;
}

bool KeepFirstSteps(const FirstSteps& steps) {
    return ReplaceFileBytes(FirstStepsPath(), EncodeFirstSteps(steps), Flush::Yes);
}

void EndFirstSteps() {
    DeleteFile(FirstStepsPath());
}

} // namespace kelvash::program
