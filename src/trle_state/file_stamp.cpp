#include "trle_state/file_stamp.h"

#include <xxhash.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <memory>
#include <vector>

#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/pumping.h"

namespace kelvash::trle_state {

namespace {

constexpr std::size_t kBlock = std::size_t{1} << 20;

std::string Hexadecimal(const XXH128_hash_t& hash) {
    XXH128_canonical_t canonical;
    XXH128_canonicalFromHash(&canonical, hash);
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const unsigned char byte : canonical.digest) {
        text.push_back(kDigits[byte >> 4U]);
        text.push_back(kDigits[byte & 15U]);
    }
    return text;
}

// The next block of a file; empty at its end.
std::string_view NextBlock(std::ifstream& file, std::vector<char>& block) {
    file.read(block.data(), static_cast<std::streamsize>(block.size()));
    return {block.data(), static_cast<std::size_t>(file.gcount())};
}

} // namespace

FileStamp StampOf(std::string_view path) {
    std::error_code error;
    // The look for a name's case is what takes time: one for all three.
    const std::filesystem::directory_entry entry(NativePath(path), error);
    if (error || !entry.is_regular_file(error)) return {};
    const auto time = std::chrono::file_clock::to_sys(entry.last_write_time(error)).time_since_epoch();
    const auto size = static_cast<std::int64_t>(entry.file_size(error));
    return error ? FileStamp() : FileStamp{size, std::chrono::floor<std::chrono::seconds>(time).count(), {}};
}

std::string HashOfBytes(std::string_view bytes) {
    return Hexadecimal(XXH3_128bits(bytes.data(), bytes.size()));
}

std::string HashOfFile(std::string_view path) {
    if (!FileExists(path)) return {};
    std::ifstream file(NativePath(path), std::ios::binary);
    if (!file) return {};
    const std::unique_ptr<XXH3_state_t, decltype(&XXH3_freeState)> state(XXH3_createState(), XXH3_freeState);
    XXH3_128bits_reset(state.get());
    std::vector<char> block(kBlock);
    for (;;) {
        const std::string_view bytes = NextBlock(file, block);
        if (file.bad()) return {};
        if (bytes.empty()) break;
        XXH3_128bits_update(state.get(), bytes.data(), bytes.size());
        PumpNowAndThen();
    }
    return Hexadecimal(XXH3_128bits_digest(state.get()));
}

bool IsStill(std::string_view path, const FileStamp& stamp) {
    const FileStamp now = StampOf(path);
    if (stamp.Size < 0 || now.Size != stamp.Size) return false;
    return now.Time == stamp.Time || (!stamp.Hash.empty() && HashOfFile(path) == stamp.Hash);
}

bool HoldSameBytes(std::string_view a, std::string_view b) {
    const FileStamp one = StampOf(a);
    if (one.Size < 0 || one.Size != StampOf(b).Size) return false;
    std::ifstream file(NativePath(a), std::ios::binary);
    std::ifstream twin(NativePath(b), std::ios::binary);
    if (!file || !twin) return false;
    std::vector<char> block(kBlock);
    std::vector<char> twin_block(kBlock);
    for (;;) {
        const std::string_view bytes = NextBlock(file, block);
        if (file.bad() || bytes != NextBlock(twin, twin_block) || twin.bad()) return false;
        if (bytes.empty()) return true;
        PumpNowAndThen();
    }
}

} // namespace kelvash::trle_state
