#include "swap/record_additions.h"

#include "core/change.h"
#include "core/profile.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "swap/messages.h"
#include "trle_state/trle_state.h"

namespace kelvash::swap {

using trle_state::HashOfFile;
using trle_state::Holds;
using trle_state::IsStill;
using trle_state::LookAtTrle;
using trle_state::RecordedFile;
using trle_state::StampOf;
using trle_state::TrleState;
using trle_state::WriteSwapRecord;

bool AddToRecord(const std::vector<std::string>& targets) {
    const core::Change change(msg::kDoingRecord, core::kHomeFolder | core::kTrleFolder);
    if (!change) return false;
    TrleState state = LookAtTrle();
    if (state.Content != Holds::Level || !state.FromRecord) return false;
    for (const std::string& target : targets)
        if (StaysInside(target))
            state.Record.Copied.push_back({target, StampOf(core::TrleFolder() + target)});
    return WriteSwapRecord(state.Record);
}

void CompleteHashes() {
    const core::Change change(msg::kDoingHashes, core::kHomeFolder | core::kTrleFolder);
    if (!change) return;
    TrleState state = LookAtTrle();
    if (state.Content != Holds::Level || !state.FromRecord) return;
    for (RecordedFile& file : state.Record.Copied) {
        const std::string path = core::TrleFolder() + file.Target;
        if (file.Stamp.Hash.empty() && IsStill(path, file.Stamp)) file.Stamp.Hash = HashOfFile(path);
    }
    static_cast<void>(WriteSwapRecord(state.Record)); // size and date hold until then
}

} // namespace kelvash::swap
