#include "trle_state/swap_record.h"

#include <array>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/fragments.h"
#include "trle_state/messages.h"
#include "trle_state/record_lines.h"
#include "trle_state/surroundings.h"

namespace kelvash::trle_state {

namespace {

// Far above what the longest work list makes; a larger file is none of ours.
constexpr std::size_t kLongestRecord = std::size_t{64} << 20;
constexpr std::string_view kFirstLine = "Kelvash swap record 1\n";
constexpr std::array<std::string_view, 5> kSteps = {"original", "leaving", "entering", "in", "restoring"};

using Values = RecordValues;

bool TakeStep(const Values& values, SwapStep& step) {
    for (std::size_t i = 0; i < kSteps.size(); ++i)
        if (values.size() == 1 && values[0] == kSteps[i]) {
            step = static_cast<SwapStep>(i);
            return true;
        }
    return false;
}

// Lines of other keys, which a later version may write, are passed over.
bool TakeField(const std::string& key, const Values& values, SwapRecord& record) {
    if (key == "step") return TakeStep(values, record.Step);
    if (key == "owner") return TakeOwner(values, record.Owner);
    if (key == "former" && !values.empty()) record.Owner.Former = values[0];
    if (key == "marker" && !values.empty()) record.MarkerHash = values[0];
    if (key == "copied") return TakeFile(values, record.Copied);
    if (key == "overwritten") return TakeFile(values, record.Overwritten);
    if (key == "overwritten-by-save") return TakeFile(values, record.OverwrittenBySaves);
    if (key == "left-copied") return TakeFile(values, record.LeftCopied);
    if (key == "left-overwritten") return TakeFile(values, record.LeftOverwritten);
    if (key == "save") return TakeFile(values, record.Saves);
    return true;
}

} // namespace

std::string EncodeSwapRecord(const SwapRecord& record, std::string_view trle) {
    std::string bytes(kFirstLine);
    AppendLine("trle", {trle}, bytes);
    AppendLine("step", {kSteps[static_cast<std::size_t>(record.Step)]}, bytes);
    AppendOwner(record.Owner, bytes);
    AppendLine("marker", {record.MarkerHash}, bytes);
    AppendFiles("copied", record.Copied, bytes);
    AppendFiles("overwritten", record.Overwritten, bytes);
    AppendFiles("overwritten-by-save", record.OverwrittenBySaves, bytes);
    AppendFiles("left-copied", record.LeftCopied, bytes);
    AppendFiles("left-overwritten", record.LeftOverwritten, bytes);
    AppendFiles("save", record.Saves, bytes);
    AppendEnd(bytes);
    return bytes;
}

std::optional<SwapRecord> DecodeSwapRecord(std::string_view bytes) {
    SwapRecord record;
    const bool sound = TakeRecordLines(bytes, kFirstLine, [&](const std::string& key, const Values& values) {
        return TakeField(key, values, record);
    });
    return sound ? std::optional<SwapRecord>(std::move(record)) : std::nullopt;
}

std::string SwapRecordPath() {
    constexpr std::size_t kDigits = 8; // enough to tell the TRLE folders of one user apart
    return AppFolder() + LoadFragment(fragment::kRecordNameStart) +
           HashOfBytes(FoldCase(TrleFolder())).substr(0, kDigits) + LoadFragment(fragment::kRecordNameEnd);
}

FoundRecord ReadSwapRecord() {
    const std::string path = SwapRecordPath();
    const std::optional<std::string> bytes = ReadFileStart(path, kLongestRecord);
    if (!bytes) return {FileExists(path) ? RecordState::Damaged : RecordState::None, {}};
    std::optional<SwapRecord> record = DecodeSwapRecord(*bytes);
    if (!record) return {RecordState::Damaged, {}};
    return {RecordState::Good, std::move(*record)};
}

bool WriteSwapRecord(const SwapRecord& record) {
    if (ReplaceFileBytes(SwapRecordPath(), EncodeSwapRecord(record, TrleFolder()), Flush::No)) return true;
    TellCritical(LoadMessage(msg::kCannotWriteRecord) + SwapRecordPath());
    return false;
}

} // namespace kelvash::trle_state
