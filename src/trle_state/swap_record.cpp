#include "trle_state/swap_record.h"

#include <array>
#include <charconv>
#include <initializer_list>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/fragments.h"
#include "trle_state/messages.h"
#include "trle_state/surroundings.h"

namespace kelvash::trle_state {

namespace {

// Far above what the longest work list makes; a larger file is none of ours.
constexpr std::size_t kLongestRecord = std::size_t{64} << 20;
constexpr std::string_view kFirstLine = "Kelvash swap record 1\n";
constexpr std::array<std::string_view, 5> kSteps = {"original", "leaving", "entering", "in", "restoring"};
constexpr std::string_view kEndKey = "end";

using Values = std::vector<std::string>;

// A line is a key and its values, each with its length in bytes in front, so that no sign can end one.
void AppendLine(std::string_view key, std::initializer_list<std::string_view> values, std::string& bytes) {
    bytes.append(key).append(" ");
    for (const std::string_view value : values)
        bytes.append(std::to_string(value.size())).append(":").append(value).append(",");
    bytes += '\n';
}

void AppendFiles(std::string_view key, const std::vector<RecordedFile>& files, std::string& bytes) {
    for (const RecordedFile& file : files)
        AppendLine(key,
                   {file.Target, std::to_string(file.Stamp.Size), std::to_string(file.Stamp.Time),
                    file.Stamp.Hash, file.Kept},
                   bytes);
}

template <class Number>
bool TakeNumber(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// Takes a line off the bytes; false if they don't begin with a whole one.
bool TakeLine(std::string_view& bytes, std::string& key, Values& values) {
    const std::size_t blank = bytes.find(' ');
    if (blank == std::string_view::npos) return false;
    key = bytes.substr(0, blank);
    bytes.remove_prefix(blank + 1);
    values.clear();
    while (!bytes.empty() && bytes.front() != '\n') {
        const std::size_t colon = bytes.find(':');
        std::size_t length = 0;
        if (colon == std::string_view::npos || !TakeNumber(bytes.substr(0, colon), length)) return false;
        bytes.remove_prefix(colon + 1);
        if (length >= bytes.size() || bytes[length] != ',') return false;
        values.emplace_back(bytes.substr(0, length));
        bytes.remove_prefix(length + 1);
    }
    if (bytes.empty()) return false;
    bytes.remove_prefix(1);
    return true;
}

bool TakeFile(const Values& values, std::vector<RecordedFile>& files) {
    constexpr std::size_t kValues = 5;
    if (values.size() < kValues) return false;
    RecordedFile file{values[0], {0, 0, values[3]}, values[4]};
    if (!TakeNumber(values[1], file.Stamp.Size) || !TakeNumber(values[2], file.Stamp.Time)) return false;
    files.push_back(std::move(file));
    return true;
}

bool TakeOwner(const Values& values, LevelOwner& owner) {
    constexpr std::size_t kValues = 5;
    if (values.size() < kValues || !TakeNumber(values[4], owner.Code)) return false;
    owner.Folder = values[0];
    owner.FromHome = values[1];
    owner.Name = values[2];
    owner.Tr4InfHash = values[3];
    return true;
}

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
    AppendLine("owner",
               {record.Owner.Folder, record.Owner.FromHome, record.Owner.Name, record.Owner.Tr4InfHash,
                std::to_string(record.Owner.Code)},
               bytes);
    if (!record.Owner.Former.empty()) AppendLine("former", {record.Owner.Former}, bytes);
    AppendLine("marker", {record.MarkerHash}, bytes);
    AppendFiles("copied", record.Copied, bytes);
    AppendFiles("overwritten", record.Overwritten, bytes);
    AppendFiles("overwritten-by-save", record.OverwrittenBySaves, bytes);
    AppendFiles("left-copied", record.LeftCopied, bytes);
    AppendFiles("left-overwritten", record.LeftOverwritten, bytes);
    AppendFiles("save", record.Saves, bytes);
    AppendLine(kEndKey, {HashOfBytes(bytes)}, bytes);
    return bytes;
}

std::optional<SwapRecord> DecodeSwapRecord(std::string_view bytes) {
    const std::string_view whole = bytes;
    if (!bytes.starts_with(kFirstLine)) return std::nullopt;
    bytes.remove_prefix(kFirstLine.size());
    SwapRecord record;
    std::string key;
    Values values;
    for (;;) {
        const std::string_view before = whole.substr(0, whole.size() - bytes.size());
        if (!TakeLine(bytes, key, values)) return std::nullopt;
        if (key == kEndKey) {
            const bool sound = values.size() == 1 && values[0] == HashOfBytes(before) && bytes.empty();
            return sound ? std::optional<SwapRecord>(std::move(record)) : std::nullopt;
        }
        if (!TakeField(key, values, record)) return std::nullopt;
    }
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
