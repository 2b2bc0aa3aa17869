// Reading and writing of the Archive file: one header, then LevelCount records back to back, no more.
//
// Bad contents are not refused. A file that ends early leaves the fields behind its end zero or blank; of a
// LevelCount that states more records than the file holds, or fewer than none, those count that are there, so
// that no memory is spent on a number.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "core/level_table.h"
#include "core/records.h"
#include "foundation/files.h"

namespace kelvash::core {

struct ArchiveContents {
    ArchiveHeader Header;
    LevelTable Table;
    // Levels that the file states, and those of them that it holds to their end.
    std::int32_t Stated = 0;
    std::int32_t Whole = 0;
};

// What a file held when it was read or written, its tail included, to know whether another program has
// written it since.
struct ArchiveStamp {
    std::uint64_t Size = 0;
    std::uint64_t Hash = 0;
    bool operator==(const ArchiveStamp&) const = default;
};
// Nothing if the file can't be read.
std::optional<ArchiveStamp> StampOf(std::string_view path);

// Gives the next bytes of a file: up to `size` of them, fewer only at its end.
using ByteSource = std::function<std::string_view(std::size_t size)>;
// Reads an Archive from its bytes, block by block.
ArchiveContents DecodeArchive(const ByteSource& source);
// Gives the bytes of an Archive block by block, the header first; false as soon as `write` refuses one.
[[nodiscard]] bool EncodeArchive(const ArchiveContents& contents, const WritePiece& write);

// False if the file can't be opened; `contents` is untouched then. `stamp` is that of the bytes read.
[[nodiscard]] bool ReadArchiveFile(std::string_view path, ArchiveContents& contents,
                                   ArchiveStamp* stamp = nullptr);

// Replaces the file whole. Bytes of a longer old file stay behind the last record, where no reader looks.
// False if it can't be written, or is write-protected; the old file stands then.
[[nodiscard]] bool WriteArchiveFile(std::string_view path, const ArchiveContents& contents,
                                    ArchiveStamp* stamp = nullptr);

} // namespace kelvash::core
