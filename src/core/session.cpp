#include "core/session.h"

#include "foundation/state.h"

namespace kelvash::core {

constinit SessionState& session = State<SessionState>::Get();

} // namespace kelvash::core
