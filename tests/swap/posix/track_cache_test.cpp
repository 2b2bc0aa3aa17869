#include "swap/track_cache.h"

#include <gmock/gmock.h>

#include <optional>

#include "audio/wave_chunks.h"
#include "foundation/cache_folder.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "support/audio_tools.h"
#include "support/sound_bytes.h"
#include "support/swap_home.h"
#include "swap/level_audio.h"

namespace kelvash::swap {
namespace {

using test::BytesOf;
using test::Exists;
using test::MakeFile;
using testing::SizeIs;

class TrackCacheTest : public test::SwapHome {
  protected:
    TrackCacheTest() {
        test::SetEnvironment("XDG_CACHE_HOME", (root / "cache").string());
        EXPECT_TRUE(SetDrive('X', root, DriveType::Fixed));
        cache.emplace(10'000);
        for (const char* name : {"a", "b", "c"}) {
            MakeFile(drive / "in" / (std::string(name) + ".mp3"), std::string("mp3 ") + name);
            MakeFile(drive / "in" / (std::string(name) + ".wav"), std::string(4000, *name));
        }
    }
    void Keep(const std::string& name) const {
        cache->Keep("C:\\in\\" + name + ".mp3", "C:\\in\\" + name + ".wav");
    }
    bool TakeOut(const std::string& name) const {
        return cache->TakeOut("C:\\in\\" + name + ".mp3", "C:\\out.wav");
    }
    static std::vector<std::string> Kept() { return ListFiles(DosPath(CacheFolder() / "tracks"), "*"); }

    std::optional<TrackCache> cache; // once there is a folder for it
};

TEST_F(TrackCacheTest, GivesTheWaveOfTheSameBytes) {
    EXPECT_FALSE(TakeOut("a"));
    Keep("a");
    EXPECT_TRUE(TakeOut("a"));
    EXPECT_EQ(BytesOf(drive / "out.wav"), std::string(4000, 'a'));
    EXPECT_FALSE(TakeOut("b"));
    EXPECT_FALSE(cache->TakeOut("C:\\in\\none.mp3", "C:\\out.wav"));
}

TEST_F(TrackCacheTest, WhatIsDamagedGoes) {
    Keep("a");
    ASSERT_THAT(Kept(), SizeIs(1));
    MakeFile(NativePath(Kept().front()), std::string(4000, 'x'));
    EXPECT_FALSE(TakeOut("a"));
    EXPECT_FALSE(Exists(drive / "out.wav"));
    EXPECT_THAT(Kept(), SizeIs(0));
}

TEST_F(TrackCacheTest, TheOldestGoForNewOnes) {
    Keep("a");
    ASSERT_TRUE(SetFileDate(Kept().front(), 1000));
    Keep("b");
    Keep("c");
    EXPECT_FALSE(TakeOut("a"));
    EXPECT_TRUE(TakeOut("b"));
    EXPECT_TRUE(TakeOut("c"));
    MakeFile(drive / "in/a.wav", std::string(10'001, 'a'));
    Keep("a"); // more than all of it
    EXPECT_THAT(Kept(), SizeIs(2));
}

TEST_F(TrackCacheTest, ASecondPlayNeedsNoDecoder) {
    test::PutAudioTools(home);
    MakeFile(drive / "wave/a.wav", test::TrackBytes(40));
    ASSERT_EQ(ChangeTracks("C:\\wave", "C:\\wave", audio::AudioKind::Mp3).Result, Tracks::Ready);
    const std::string mp3 = BytesOf(drive / "wave/a.mp3");
    ASSERT_EQ(DecodeCopies("C:\\wave").Result, Tracks::Ready);
    const std::string wave = BytesOf(drive / "wave/a.wav");
    EXPECT_TRUE(audio::PlaysInGame("C:\\wave\\a.wav"));
    test::PutScript(home, "madplay.exe", "exit 1");
    MakeFile(drive / "again/b.mp3", mp3);
    EXPECT_EQ(DecodeCopies("C:\\again").Result, Tracks::Ready);
    EXPECT_EQ(BytesOf(drive / "again/b.wav"), wave);
    EXPECT_FALSE(Exists(drive / "again/b.mp3"));
}

} // namespace
} // namespace kelvash::swap
