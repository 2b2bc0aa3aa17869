// The lines of records that must survive a killed run: the swap record, and that of moved saves.
//
// A line is a key and its values, each with its length in bytes in front, so that no sign can end one; the
// last line is the hash of all before it.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "trle_state/swap_record.h"

namespace kelvash::trle_state {

using RecordValues = std::vector<std::string>;

void AppendLine(std::string_view key, std::initializer_list<std::string_view> values, std::string& bytes);
void AppendOwner(const LevelOwner& owner, std::string& bytes);
void AppendFiles(std::string_view key, const std::vector<RecordedFile>& files, std::string& bytes);
void AppendEnd(std::string& bytes);

// Takes a line off the bytes; false if they don't begin with a whole one.
bool TakeLine(std::string_view& bytes, std::string& key, RecordValues& values);
// False for values that are none of these.
bool TakeFile(const RecordValues& values, std::vector<RecordedFile>& files);
bool TakeOwner(const RecordValues& values, LevelOwner& owner);

// Reads a record to its end, line by line; false for bytes that are damaged or cut in any way, or when
// `take` refuses a line.
template <class Take>
bool TakeRecordLines(std::string_view bytes, std::string_view first_line, const Take& take);

// The key of the last line, and whether it is right for the bytes before it.
bool IsEndLine(const std::string& key);
bool EndHolds(const RecordValues& values, std::string_view before);

template <class Take>
bool TakeRecordLines(std::string_view bytes, std::string_view first_line, const Take& take) {
    const std::string_view whole = bytes;
    if (!bytes.starts_with(first_line)) return false;
    bytes.remove_prefix(first_line.size());
    std::string key;
    RecordValues values;
    for (;;) {
        const std::string_view before = whole.substr(0, whole.size() - bytes.size());
        if (!TakeLine(bytes, key, values)) return false;
        if (IsEndLine(key)) return EndHolds(values, before) && bytes.empty();
        if (!take(key, values)) return false;
    }
}

} // namespace kelvash::trle_state
