#include "core/archive_file.h"

#include <xxhash.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/pumping.h"

namespace kelvash::core {

namespace {

// Records that pass through memory at once.
constexpr std::size_t kBlockRecords = 128;

// Makes the stamp of the bytes that go through it.
class Stamper {
  public:
    Stamper() { XXH3_64bits_reset(state_.get()); }
    void Take(std::string_view bytes) {
        PumpNowAndThen();
        size_ += bytes.size();
        XXH3_64bits_update(state_.get(), bytes.data(), bytes.size());
    }
    // The rest of a file.
    void TakeRest(std::ifstream& file) {
        std::string block(kBlockRecords * kLevelSize, '\0');
        while (file.read(block.data(), static_cast<std::streamsize>(block.size())), file.gcount() > 0)
            Take(std::string_view(block).substr(0, static_cast<std::size_t>(file.gcount())));
    }
    ArchiveStamp Stamp() const { return {size_, XXH3_64bits_digest(state_.get())}; }

  private:
    std::unique_ptr<XXH3_state_t, XXH_errorcode (*)(XXH3_state_t*)> state_{XXH3_createState(),
                                                                           XXH3_freeState};
    std::uint64_t size_ = 0;
};

// Bytes of the file at and behind `offset`, given piece by piece.
bool CopyTail(std::string_view path, std::size_t offset, const WritePiece& write) {
    std::ifstream old(NativePath(path), std::ios::binary);
    if (!old || !old.seekg(static_cast<std::streamoff>(offset))) return true;
    std::string block(kBlockRecords * kLevelSize, '\0');
    while (old.read(block.data(), static_cast<std::streamsize>(block.size())), old.gcount() > 0)
        if (!write(std::string_view(block).substr(0, static_cast<std::size_t>(old.gcount())))) return false;
    return true;
}

// What is written has this layout, whatever number the file that was loaded bore.
std::string EncodeHeader(const ArchiveContents& contents) {
    StoredHeader header{contents.Header, contents.Table.Size()};
    header.Version = kArchiveVersion;
    ByteWriter bytes;
    EncodeRecord(kHeaderFields, header, bytes);
    return bytes.Take();
}

// A write-protected file can be replaced where its folder is writable, but its owner has said no.
bool IsProtected(std::string_view path) {
    return FileExists(path) &&
           !std::fstream(NativePath(path), std::ios::binary | std::ios::in | std::ios::out);
}

} // namespace

ArchiveContents DecodeArchive(const ByteSource& source) {
    StoredHeader header;
    header.Version = 0;
    DecodeRecord(kHeaderFields, source(kHeaderSize), header);
    ArchiveContents contents{header, {}, std::max(header.LevelCount, 0), 0};
    for (std::int32_t left = header.LevelCount; left > 0; left = header.LevelCount - contents.Table.Size()) {
        std::string_view block = source(kLevelSize * std::min(kBlockRecords, static_cast<std::size_t>(left)));
        if (block.empty()) break;
        for (; !block.empty(); block.remove_prefix(std::min(block.size(), kLevelSize))) {
            LevelRecord level;
            DecodeRecord(kLevelFields, block.substr(0, kLevelSize), level);
            if (block.size() >= kLevelSize) ++contents.Whole;
            contents.Table.Append(std::move(level));
        }
    }
    return contents;
}

bool EncodeArchive(const ArchiveContents& contents, const WritePiece& write) {
    if (!write(EncodeHeader(contents))) return false;
    ByteWriter block;
    std::size_t records = 0;
    for (const LevelRecord& level : contents.Table) {
        EncodeRecord(kLevelFields, level, block);
        if (++records % kBlockRecords == 0 && !write(block.Take())) return false;
    }
    return records % kBlockRecords == 0 || write(block.Take());
}

std::optional<ArchiveStamp> StampOf(std::string_view path) {
    if (!FileExists(path)) return std::nullopt;
    std::ifstream file(NativePath(path), std::ios::binary);
    if (!file) return std::nullopt;
    Stamper stamper;
    stamper.TakeRest(file);
    if (file.bad()) return std::nullopt;
    return stamper.Stamp();
}

bool ReadArchiveFile(std::string_view path, ArchiveContents& contents, ArchiveStamp* stamp) {
    if (!FileExists(path)) return false;
    std::ifstream file(NativePath(path), std::ios::binary);
    if (!file) return false;
    Stamper stamper;
    std::string block;
    contents = DecodeArchive([&](std::size_t size) {
        block.resize(size);
        file.read(block.data(), static_cast<std::streamsize>(size));
        block.resize(static_cast<std::size_t>(file.gcount()));
        stamper.Take(block);
        return std::string_view(block);
    });
    stamper.TakeRest(file);
    if (stamp != nullptr) *stamp = stamper.Stamp();
    return true;
}

bool WriteArchiveFile(std::string_view path, const ArchiveContents& contents, ArchiveStamp* stamp) {
    if (IsProtected(path)) return false;
    const std::size_t length = kHeaderSize + static_cast<std::size_t>(contents.Table.Size()) * kLevelSize;
    Stamper stamper;
    const auto produce = [&](const WritePiece& write) {
        const WritePiece stamped = [&](std::string_view piece) {
            stamper.Take(piece);
            return write(piece);
        };
        return EncodeArchive(contents, stamped) && CopyTail(path, length, stamped);
    };
    if (!ReplaceFileBytes(path, produce, Flush::Yes)) return false;
    if (stamp != nullptr) *stamp = stamper.Stamp();
    return true;
}

} // namespace kelvash::core
