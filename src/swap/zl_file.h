// The stored form of a level's bulky files: one file as one zlib stream (RFC 1950) without any header of our
// own, in a file named after it plus ".zl".
//
// A file of ordinary size is packed and unpacked whole in memory, a bigger one in blocks; both ways give and
// take the same format. No stream makes these routines use more than some 200 MB, whatever it expands to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/files.h"
#include "foundation/parallel.h"
#include "foundation/platform/large_buffer.h"

namespace kelvash::swap {

// Bytes of a file, and of a stream that it is unpacked from, that are taken into memory whole.
inline constexpr std::size_t kWholeFileLimit = std::size_t{64} << 20;
// Bytes that a stream is unpacked into in memory; what gets longer is unpacked in blocks.
inline constexpr std::size_t kWholeOutputLimit = std::size_t{128} << 20;

// What a file is to become, made in memory ahead of its writing. False where that can't be had: a file that
// can't be read or is no whole stream, or one that is too big for several at once.
struct MadeFile {
    platform::LargeBuffer Bytes;
    std::size_t Size = 0;
    std::optional<std::int64_t> Time; // of the source

    explicit operator bool() const { return static_cast<bool>(Bytes); }
};
// These two may run on any thread.
MadeFile PackInMemory(std::string_view source);
MadeFile UnpackInMemory(std::string_view source);
// How several files are packed or unpacked: so many ahead that they stay within the memory of one.
ParallelJob JobOver(const std::vector<std::string>& files);

// Pack and unpack a file, given by path texts; `made` spares the work. The target is replaced only when the
// whole result is on the disk, and gets the modification time of the source. False, with the target as it
// was, if the source can't be read or the target not be written. DecompressFile is false too for a damaged or
// truncated stream; it takes streams of any writer, also with a gzip head, and overlooks bytes behind the
// stream's end. A stream doesn't say what it unpacks to: `may_grow` is asked before each piece that is
// written, with the bytes up to its end; false makes DecompressFile fail.
using MayGrow = std::function<bool(std::int64_t bytes)>;
[[nodiscard]] bool CompressFile(std::string_view source, std::string_view target, const MadeFile& made = {});
[[nodiscard]] bool DecompressFile(std::string_view source, std::string_view target,
                                  const MayGrow& may_grow = {}, const MadeFile& made = {});

// The same from memory into `write`. False as soon as `write` refuses a piece, or if the stream is bad;
// pieces written before are worth nothing then.
[[nodiscard]] bool DeflateTo(std::string_view bytes, const WritePiece& write);
[[nodiscard]] bool InflateTo(std::string_view bytes, const WritePiece& write);

// Gives the next piece of a source, empty at its end, nothing if it can't be read. The piece is good until
// the next call.
using ReadPiece = std::function<std::optional<std::string_view>()>;
// The same in blocks, with a few megabytes of memory.
[[nodiscard]] bool DeflateBlocks(const ReadPiece& read, const WritePiece& write);
[[nodiscard]] bool InflateBlocks(const ReadPiece& read, const WritePiece& write);

} // namespace kelvash::swap
