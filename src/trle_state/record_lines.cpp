#include "trle_state/record_lines.h"

#include <charconv>

#include "trle_state/file_stamp.h"

namespace kelvash::trle_state {

namespace {

constexpr std::string_view kEndKey = "end";

template <class Number>
bool TakeNumber(std::string_view text, Number& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size();
}

// Takes a line off the bytes; false if they don't begin with a whole one.
bool TakeLine(std::string_view& bytes, std::string& key, RecordValues& values) {
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

bool EndHolds(const RecordValues& values, std::string_view before) {
    return values.size() == 1 && values[0] == HashOfBytes(before);
}

} // namespace

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

bool TakeFile(const RecordValues& values, std::vector<RecordedFile>& files) {
    constexpr std::size_t kValues = 5;
    if (values.size() < kValues) return false;
    RecordedFile file{values[0], {0, 0, values[3]}, values[4]};
    if (!TakeNumber(values[1], file.Stamp.Size) || !TakeNumber(values[2], file.Stamp.Time)) return false;
    files.push_back(std::move(file));
    return true;
}

bool TakeOwner(const RecordValues& values, LevelOwner& owner) {
    constexpr std::size_t kValues = 5;
    if (values.size() < kValues || !TakeNumber(values[4], owner.Code)) return false;
    owner.Folder = values[0];
    owner.FromHome = values[1];
    owner.Name = values[2];
    owner.Tr4InfHash = values[3];
    return true;
}

void AppendOwner(const LevelOwner& owner, std::string& bytes) {
    AppendLine("owner",
               {owner.Folder, owner.FromHome, owner.Name, owner.Tr4InfHash, std::to_string(owner.Code)},
               bytes);
    if (!owner.Former.empty()) AppendLine("former", {owner.Former}, bytes);
}

void AppendEnd(std::string& bytes) {
    AppendLine(kEndKey, {HashOfBytes(bytes)}, bytes);
}

bool TakeRecordLines(std::string_view bytes, std::string_view first_line, const TakeRecordLine& take) {
    const std::string_view whole = bytes;
    if (!bytes.starts_with(first_line)) return false;
    bytes.remove_prefix(first_line.size());
    std::string key;
    RecordValues values;
    for (;;) {
        const std::string_view before = whole.substr(0, whole.size() - bytes.size());
        if (!TakeLine(bytes, key, values)) return false;
        if (key == kEndKey) return EndHolds(values, before) && bytes.empty();
        if (!take(key, values)) return false;
    }
}

} // namespace kelvash::trle_state
