#include "companion/compact_slots.h"

#include "companion/slots_messages.h"
#include "companion/slots_work.h"

namespace kelvash::companion {

SlotsOutcome CompactSlots(std::int32_t code, Asker asker) {
    const SlotsWork work(msg::kDoingCompact, code, asker);
    return work ? Untouched(Compact(work)) : work.Refusal();
}

} // namespace kelvash::companion
