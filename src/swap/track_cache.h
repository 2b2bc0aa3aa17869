// Tracks that were decoded before, so that the second play of a level starts at once.
//
// They lie in the user's cache folder under the hashes of their mp3 file and of their own bytes: one that is
// damaged isn't taken. The oldest go when they come to more than kTrackCacheBytes. Nothing tells of an error;
// without a folder that a drive reaches nothing is kept.
#pragma once

#include <cstdint>
#include <string>

namespace kelvash::swap {

inline constexpr std::int64_t kTrackCacheBytes = std::int64_t{512} << 20;

class TrackCache {
  public:
    explicit TrackCache(std::int64_t most_bytes = kTrackCacheBytes);

    // Puts the wave of an mp3 there; false if it isn't kept.
    [[nodiscard]] bool TakeOut(const std::string& mp3, const std::string& wave) const;
    // Keeps a copy of the wave that has come of an mp3.
    void Keep(const std::string& mp3, const std::string& wave) const;

  private:
    void MakeRoom(std::int64_t bytes) const;

    std::string folder_; // empty: none
    std::int64_t most_bytes_;
};

} // namespace kelvash::swap
