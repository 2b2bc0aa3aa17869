// The lines of records that must survive a killed run: the swap record, and that of moved saves.
//
// A line is a key and its values, each with its length in bytes in front, so that no sign can end one; the
// last line is the hash of all before it.
#pragma once

#include <functional>
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

// False for values that are none of these.
bool TakeFile(const RecordValues& values, std::vector<RecordedFile>& files);
bool TakeOwner(const RecordValues& values, LevelOwner& owner);

// Reads a record to its end, line by line; false for bytes that are damaged or cut in any way, or when
// `take` refuses a line.
using TakeRecordLine = std::function<bool(const std::string& key, const RecordValues& values)>;
bool TakeRecordLines(std::string_view bytes, std::string_view first_line, const TakeRecordLine& take);

} // namespace kelvash::trle_state
