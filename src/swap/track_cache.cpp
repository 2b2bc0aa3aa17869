#include "swap/track_cache.h"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <system_error>
#include <vector>

#include "foundation/cache_folder.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "swap/fragments.h"
#include "trle_state/file_stamp.h"

namespace kelvash::swap {

namespace {

using trle_state::HashOfFile;

// "mp3's hash"_"wave's hash".wav.
std::string NameOf(const std::string& mp3_hash, const std::string& wave_hash) {
    return mp3_hash + "_" + wave_hash + LoadFragment(fragment::kKeptTrackEnd);
}

std::int64_t Now() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

TrackCache::TrackCache(std::int64_t most_bytes) : most_bytes_(most_bytes) {
    const std::filesystem::path native = CacheFolder() / LoadFragment(fragment::kKeptTracksFolder);
    std::error_code error;
    std::filesystem::create_directories(native, error);
    if (!error) folder_ = DosPath(native);
}

bool TrackCache::TakeOut(const std::string& mp3, const std::string& wave) const {
    const std::string hash = folder_.empty() ? std::string() : HashOfFile(mp3);
    if (hash.empty()) return false;
    for (const std::string& kept : ListFiles(folder_, NameOf(hash, "*"))) {
        if (CopyFile(kept, wave) && NameOf(hash, HashOfFile(wave)) == FileNameOf(kept)) {
            SetFileDate(kept, Now());
            return true;
        }
        DeleteFile(wave);
        DeleteFile(kept);
    }
    return false;
}

void TrackCache::Keep(const std::string& mp3, const std::string& wave) const {
    const std::string hash = folder_.empty() ? std::string() : HashOfFile(mp3);
    const std::int64_t bytes = FileSize(wave);
    if (hash.empty() || bytes <= 0 || bytes > most_bytes_) return;
    MakeRoom(bytes);
    const std::string kept = folder_ + "\\" + NameOf(hash, HashOfFile(wave));
    if (CopyFileWhole(wave, kept)) SetFileDate(kept, Now());
}

void TrackCache::MakeRoom(std::int64_t bytes) const {
    std::vector<std::pair<std::int64_t, std::string>> by_time;
    std::int64_t sum = bytes;
    for (const std::string& file : ListFiles(folder_, "*")) {
        by_time.emplace_back(FileTime(file).value_or(0), file);
        sum += FileSize(file);
    }
    std::sort(by_time.begin(), by_time.end());
    for (const auto& [time, file] : by_time) {
        if (sum <= most_bytes_) return;
        sum -= FileSize(file);
        DeleteFile(file);
    }
}

} // namespace kelvash::swap
