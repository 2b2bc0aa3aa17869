// What a file was when it was last looked at, enough to know it again.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace kelvash::trle_state {

struct FileStamp {
    std::int64_t Size = -1; // bytes; below 0: nothing is known of the file, or it wasn't there
    std::int64_t Time = 0;  // modification, seconds since 1970, UTC
    std::string Hash = {};  // of its bytes, 32 hexadecimal digits; empty until somebody has read them
};

// Size and date of a file as it is now, without its hash.
FileStamp StampOf(std::string_view path);
// The XXH3 hash (128 bits) of bytes, and of a file; empty for a file that can't be read.
std::string HashOfBytes(std::string_view bytes);
std::string HashOfFile(std::string_view path);

// True if a file is the one that was stamped: the same size, and the same date or the same known hash. A copy
// to another disk may round the date; a file that was written anew has another one.
bool IsStill(std::string_view path, const FileStamp& stamp);
// True if both files exist and hold the same bytes.
bool HoldSameBytes(std::string_view a, std::string_view b);

} // namespace kelvash::trle_state
