// Any bytes as a packed file: both ways of unpacking agree, and packing gives the bytes back.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "swap/zl_file.h"

namespace {

using kelvash::WritePiece;
using kelvash::swap::DeflateBlocks;
using kelvash::swap::DeflateTo;
using kelvash::swap::InflateBlocks;
using kelvash::swap::InflateTo;
using kelvash::swap::ReadPiece;

// More than this isn't kept, so that a bomb is refused in the middle.
constexpr std::size_t kKept = std::size_t{4} << 20;

WritePiece Into(std::string& text) {
    return [&text](std::string_view piece) {
        if (text.size() + piece.size() > kKept) return false;
        text += piece;
        return true;
    };
}

ReadPiece InPieces(std::string_view bytes, std::size_t size) {
    return [bytes, size]() mutable -> std::optional<std::string_view> {
        const std::string_view piece = bytes.substr(0, size);
        bytes.remove_prefix(piece.size());
        return piece;
    };
}

void Require(bool truth) {
    if (!truth) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const std::size_t piece = size == 0 ? 1 : 1 + data[0] % 64;
    std::string whole, blocks;
    const bool whole_good = InflateTo(bytes, Into(whole));
    const bool blocks_good = InflateBlocks(InPieces(bytes, piece), Into(blocks));
    Require(whole_good == blocks_good);
    Require(!whole_good || whole == blocks);
    if (size % 8 != 0) return 0; // packing is slow, and hardly cares what the bytes are

    std::string packed, packed_in_blocks, unpacked;
    Require(DeflateTo(bytes, Into(packed)) && InflateTo(packed, Into(unpacked)) && unpacked == bytes);
    unpacked.clear();
    Require(DeflateBlocks(InPieces(bytes, piece), Into(packed_in_blocks)));
    Require(InflateTo(packed_in_blocks, Into(unpacked)) && unpacked == bytes);
    return 0;
}
