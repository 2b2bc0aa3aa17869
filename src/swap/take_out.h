// The files of a removal: deleting what a level brought, bringing back what it overwrote.
//
// Both may run again after they were cut short: what is gone counts as deleted, and an original that stands
// is left alone.
#pragma once

#include <string>
#include <vector>

#include "swap/kept_files.h"
#include "trle_state/swap_record.h"

namespace kelvash::swap {

// Deletes what the record says was copied in; what was changed since is kept first. A compact backup holds no
// waves, so without a full one they stay. Stops at the first file that can't be deleted, after a message.
[[nodiscard]] bool DeleteCopied(const trle_state::SwapRecord& record, KeptFiles& kept);
// Brings back from the backup what the level overwrote. A file that the backup lacks is gone after this,
// without a word: the copy deletes its target first. That is meant; it was kept before it was overwritten.
// `from_kept` brings such files back from there, where the backup as a whole is gone. Gives those that
// couldn't be copied, or whose place holds a file that can't be kept: they are still to come back.
std::vector<trle_state::RecordedFile> RestoreOverwritten(const trle_state::SwapRecord& record, bool from_kept,
                                                         KeptFiles& kept);
// Tells of a file of the TRLE folder that couldn't be deleted.
void TellCannotDelete(const std::string& file);
// True if each overwritten file stands in the backup, was kept, or is still in its place. What a marker alone
// lists (not `stamped`) must stand in the backup.
bool CanRestoreAll(const trle_state::SwapRecord& record, bool stamped);

} // namespace kelvash::swap
