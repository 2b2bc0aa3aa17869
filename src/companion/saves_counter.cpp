#include "companion/saves_counter.h"

#include "companion/fragments.h"
#include "foundation/bytes.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/state.h"

namespace kelvash::companion {

namespace {

struct SavesCounter {
    std::int32_t Value = 0;
};
constinit SavesCounter& counter = State<SavesCounter>::Get();

} // namespace

std::string EncodeSavesCounter(std::int32_t value) {
    constexpr std::size_t kUnused = 4 * 256 + 2; // four texts and a number
    ByteWriter writer;
    writer.Zeros(kUnused);
    writer.Put<std::int32_t>(value);
    return writer.Take();
}

void LowerSavesCounter(const core::LevelPlace& level, std::int32_t savegames) {
    counter.Value -= savegames;
    // Nobody reads it, so nobody misses it.
    static_cast<void>(
        ReplaceFileBytes(core::SavegamesFolder(level.Folder) + LoadFragment(fragment::kSavesCounterFile),
                         EncodeSavesCounter(counter.Value), Flush::No));
}

} // namespace kelvash::companion
