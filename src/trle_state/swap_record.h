// The swap record: what is in the TRLE folder, to the byte, and whose the saves in its root are.
//
// It is a file of the application's folder, one for each TRLE folder, and stands from the first swap on. The
// marker in the TRLE folder is made of it for whoever reads that; it can't end a name at a "#", lose an
// alphabet or be half written. docs/formats.md has its lines.
//
// While the step isn't In or Original a swap is under way, or was cut short: what the lists name may be in
// the TRLE folder or not, and the stash of the owner may hold files that the root lacks.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "trle_state/file_stamp.h"

namespace kelvash::trle_state {

enum class SwapStep {
    Original, // no level is in; the saves in the root are level 0000's, and its stash is to be added to
    Leaving,  // the owner's saves go home, its files go, the overwritten ones come back
    Entering, // the owner's saves and files come
    In,       // the owner is in
    Restoring // everything is being made original from the backup
};

// A file of the TRLE folder.
struct RecordedFile {
    std::string Target;    // relative to it, with a leading back-slash
    FileStamp Stamp = {};  // as it lies there, or lay there before it was overwritten
    std::string Kept = {}; // where it was put before it was overwritten; mostly empty
};

// The level whose saves lie in the root: its folder, whatever Archive names it.
struct LevelOwner {
    std::string Folder;      // as a path text
    std::string FromHome;    // the same from the application's folder on, if it lies below its parent
    std::string Name;        // as the Archive has it
    std::string Tr4InfHash;  // of the level's tr4.inf when it went in; empty if it had none
    std::int32_t Code = 0;   // of the Archive that was open
    std::string Former = {}; // where it comes from while a move is under way
};

struct SwapRecord {
    SwapStep Step = SwapStep::Original;
    LevelOwner Owner = {};
    std::string MarkerHash = {}; // of the marker's bytes as they were written; empty before
    std::vector<RecordedFile> Copied = {};
    std::vector<RecordedFile> Overwritten = {};
    // By files of the stash that are no saves. The marker doesn't tell of them.
    std::vector<RecordedFile> OverwrittenBySaves = {};
    // What an earlier level has left behind: files that couldn't be deleted, and originals not yet back.
    std::vector<RecordedFile> LeftCopied = {};
    std::vector<RecordedFile> LeftOverwritten = {};
    std::vector<RecordedFile> Saves = {}; // brought in with the owner; targets without a back-slash
};

// The bytes of a record and back; nothing for bytes that are damaged or cut in any way.
std::string EncodeSwapRecord(const SwapRecord& record, std::string_view trle);
std::optional<SwapRecord> DecodeSwapRecord(std::string_view bytes);

enum class RecordState { None, Damaged, Good };
struct FoundRecord {
    RecordState State = RecordState::None;
    SwapRecord Record = {};
};
// The record of the TRLE folder in use.
FoundRecord ReadSwapRecord();
// Replaces it. False after a message if it can't be written; the old one stands then, and no swap may go on.
[[nodiscard]] bool WriteSwapRecord(const SwapRecord& record);
std::string SwapRecordPath();

} // namespace kelvash::trle_state
