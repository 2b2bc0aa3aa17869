// The tools are scripts here that stand in for them, and the system's own where that is said.
#include "audio/mp3_tools.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

#include "audio/mp3_frames.h"
#include "audio/tool_folder.h"
#include "audio/wave_chunks.h"
#include "foundation/user.h"
#include "support/core_home.h"
#include "support/sound_bytes.h"

namespace kelvash::audio {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::Mp3Bytes;
using test::WaveBytes;
using testing::HasSubstr;
using testing::IsEmpty;

TEST(ToolTexts, StandToTheBlank) {
    EXPECT_EQ(MadPlayText("in.mp3"), "in.mp3 -v --bit-depth=16 -S -otemp1.wav");
    EXPECT_EQ(LameText({24, 1, 0}, "a b", "c"), " -b 24 -a  \"a b\" \"c\"");
    EXPECT_EQ(LameText({8, 2, 0}, "a", "c"), " -b 8  \"a\" \"c\"");
    EXPECT_EQ(LameText({64, 2, 22050}, "a", "c"), " -b 64 --resample 22050  \"a\" \"c\"");
    EXPECT_EQ(LameText({128, 1, 44100}, "a", "c"), " -b 128 -a --resample 44100  \"a\" \"c\"");
}

TEST(ToolTexts, BlanksPartWordsOutsideQuotes) {
    EXPECT_EQ(WordsOf(" -b 24 -a  \"C:\\a b\\in.wav\" \"\" x\"y z\""),
              (Arguments{"-b", "24", "-a", "C:\\a b\\in.wav", "", "xy z"}));
    EXPECT_THAT(WordsOf("  "), IsEmpty());
}

class Mp3Tools : public test::CoreHome {
  protected:
    Mp3Tools() {
        MakeFile(drive / "music" / "a b.mp3", Mp3Bytes(400)); // 10.4 seconds, 9 by the estimate
        MakeFile(drive / "music" / "a.wav", WaveBytes(1, 2, 44100, 16, 20));
    }
    ~Mp3Tools() override { test::SetEnvironment("PATH", path); }

    void PutTool(const std::string& name, const std::string& script) {
        MakeFile(home / name, "#!/bin/sh\n" + script + "\n");
        fs::permissions(home / name, fs::perms::owner_all);
    }
    static std::string Quoted(const fs::path& file) { return '"' + file.string() + '"'; }
    // True if nothing of a run is left.
    bool IsClean() const {
        for (const auto& entry : fs::directory_iterator(home))
            if (entry.path().filename().string().starts_with("_temp_mp3")) return false;
        return true;
    }
    bool Decode(bool quiet = true) {
        return DecodeMp3("C:\\music\\a b.mp3", "C:\\music\\out.wav", progress, quiet);
    }
    bool Encode(bool quiet = true) {
        return EncodeMp3("C:\\music\\a.wav", "C:\\music\\out.mp3", progress, quiet);
    }

    LineProgress progress;
    const std::string path = std::getenv("PATH");
};

TEST_F(Mp3Tools, DecodingGivesWhatTheToolWrites) {
    PutTool("madplay.exe", "echo \"$@\" >&2; cmp -s in.mp3 " + Quoted(drive / "music" / "a b.mp3") +
                               " && cp " + (drive / "music" / "a.wav").string() + " temp1.wav");
    MakeFile(drive / "music" / "out.wav", "old");
    EXPECT_TRUE(Decode()) << mp3_run.Mp3LastError;
    EXPECT_EQ(BytesOf(drive / "music" / "out.wav"), BytesOf(drive / "music" / "a.wav"));
    EXPECT_EQ(mp3_run.Mp3LastOutput, "in.mp3 -v --bit-depth=16 -S -otemp1.wav\r\n");
    EXPECT_TRUE(IsClean());
}

TEST_F(Mp3Tools, EncodingTakesTheSettings) {
    PutTool("lame.exe", "printf '[%s]' \"$@\"; cp in.wav out.mp3");
    mp3_settings = {8, 2, 16000};
    EXPECT_TRUE(Encode()) << mp3_run.Mp3LastError;
    EXPECT_EQ(BytesOf(drive / "music" / "out.mp3"), BytesOf(drive / "music" / "a.wav"));
    const std::string folder = (home / "_temp_mp3_1").string();
    EXPECT_EQ(mp3_run.Mp3LastOutput,
              "[-b][8][--resample][16000][" + folder + "/in.wav][" + folder + "/out.mp3]\r\n");
    EXPECT_TRUE(IsClean());
}

TEST_F(Mp3Tools, TheBarFollowsMadplay) {
    PutTool("madplay.exe",
            "printf ' 00:00:03 Layer III\\r 00:00:09 Layer III\\r 00:00:10 Layer III\\r'\n"
            "cp " +
                (drive / "music" / "a.wav").string() + " temp1.wav");
    EXPECT_TRUE(Decode(false));
    EXPECT_EQ(user.percents, (std::vector<int>{0, 33, 100, 0})); // 9 seconds by the estimate
    EXPECT_THAT(user.Shown(), testing::ElementsAre("", " 00:00:03 Layer III", " 00:00:09 Layer III",
                                                   " 00:00:10 Layer III", ""));
}

TEST_F(Mp3Tools, AQuietRunMovesItsPartOfTheBarAlone) {
    PutTool("lame.exe", "printf '\\r  50/100   (50%%)|\\n 100/100   (100%%)|\\n'; cp in.wav out.mp3");
    progress.from = 0.5;
    progress.share = 0.25;
    EXPECT_TRUE(Encode());
    EXPECT_EQ(user.percents, (std::vector<int>{50, 62, 75}));
    EXPECT_THAT(user.Shown(), IsEmpty());
}

TEST_F(Mp3Tools, AMissingSourceIsTold) {
    EXPECT_FALSE(DecodeMp3("C:\\music\\none.mp3", "C:\\music\\out.wav", progress, true));
    EXPECT_EQ(mp3_run.Mp3LastError, "Mp3 file not found in: C:\\music\\none.mp3");
}

TEST_F(Mp3Tools, MissingToolsAreTold) {
    test::SetEnvironment("PATH", root.string());
    EXPECT_FALSE(Decode());
    EXPECT_EQ(mp3_run.Mp3LastError,
              "Missing mp3 decoder 'madplay.exe'. This utility is necessary to decode mp3 files");
    EXPECT_FALSE(Encode());
    EXPECT_EQ(mp3_run.Mp3LastError,
              "Error: missing 'lame.exe' encoder in 'C:\\Kelvash' folder.\r\nlame.exe is "
              "necessary to encode wavs in mp3 format");
}

TEST_F(Mp3Tools, OnlyStandardWavesAreEncoded) {
    PutTool("lame.exe", "cp in.wav out.mp3");
    MakeFile(drive / "music" / "a.wav", WaveBytes(0xFFFE, 2, 44100, 16, 100));
    EXPECT_FALSE(Encode());
    EXPECT_EQ(mp3_run.Mp3LastError, "Error: file 'a.wav' is not standard waw 44100 stereo 16 bits");
    EXPECT_FALSE(Exists(drive / "music" / "out.mp3"));
}

TEST_F(Mp3Tools, AToolThatCannotBeStartedIsTold) {
    MakeFile(home / "madplay.exe", "no program");
    EXPECT_FALSE(Decode());
    EXPECT_EQ(mp3_run.Mp3LastError, "Error executing utility: C:\\Kelvash\\madplay.exe");
    EXPECT_TRUE(IsClean());
}

TEST_F(Mp3Tools, WhatTheToolSaysIsTheError) {
    PutTool("madplay.exe", "echo 'in.mp3: bad luck'; exit 4");
    EXPECT_FALSE(Decode());
    EXPECT_EQ(mp3_run.Mp3LastError, "in.mp3: bad luck\r\n");
    PutTool("lame.exe", "exit 255");
    EXPECT_FALSE(Encode());
    EXPECT_EQ(mp3_run.Mp3LastError, "The encoder has given no mp3.");
}

TEST_F(Mp3Tools, AWaveWithoutSoundIsNone) {
    MakeFile(drive / "music" / "out.wav", "old");
    PutTool("madplay.exe", "head -c 44 " + (drive / "music" / "a.wav").string() + " > temp1.wav");
    EXPECT_FALSE(Decode());
    EXPECT_EQ(mp3_run.Mp3LastError, "The decoder has found no sound in it.");
    EXPECT_EQ(BytesOf(drive / "music" / "out.wav"), "old");
    EXPECT_TRUE(IsClean());
}

TEST_F(Mp3Tools, ATargetThatCannotBeWrittenIsTold) {
    PutTool("madplay.exe", "cp " + (drive / "music" / "a.wav").string() + " temp1.wav");
    EXPECT_FALSE(DecodeMp3("C:\\music\\a b.mp3", "C:\\none\\out.wav", progress, true));
    EXPECT_EQ(mp3_run.Mp3LastError, "Error copying temporary wav files in : C:\\none\\out.wav");
    EXPECT_TRUE(IsClean());
}

TEST_F(Mp3Tools, AStopEndsATool) {
    PutTool("madplay.exe", "touch started; exec sleep 60");
    const JobScope job(Stop::Offered);
    user.when_pumped = [this] { user.stop_if_offered = Exists(home / "_temp_mp3_1" / "started"); };
    EXPECT_FALSE(Decode());
    EXPECT_EQ(mp3_run.Mp3LastError, "Break user");
    EXPECT_TRUE(IsClean());
}

TEST_F(Mp3Tools, FoldersOfKilledRunsAreSweptAndOthersAreNot) {
    MakeFile(home / "_temp_mp3_7" / "temp1.wav", "left");
    const ToolFolder mine;
    EXPECT_EQ(mine.Path(), "C:\\Kelvash\\_temp_mp3_1");
    EXPECT_FALSE(Exists(home / "_temp_mp3_7"));
    const ToolFolder another;
    EXPECT_EQ(another.Path(), "C:\\Kelvash\\_temp_mp3_2");
    EXPECT_TRUE(Exists(home / "_temp_mp3_1"));
}

TEST_F(Mp3Tools, AReadOnlySourceStaysOne) {
    const fs::path source = drive / "music" / "a b.mp3";
    fs::permissions(source, fs::perms::owner_read);
    PutTool("madplay.exe", "cp " + (drive / "music" / "a.wav").string() + " temp1.wav");
    EXPECT_TRUE(Decode());
    EXPECT_EQ(fs::status(source).permissions(), fs::perms::owner_read);
}

// What is said of the two programs holds for those that are installed.
TEST_F(Mp3Tools, TheSystemsProgramsGiveTheSourcesLength) {
    PutTool("madplay.exe", "exec /usr/bin/madplay \"$@\"");
    PutTool("lame.exe", "exec /usr/bin/lame \"$@\"");
    MakeFile(drive / "music" / "a.wav", WaveBytes(1, 2, 44100, 16, 5 * 44100));
    ASSERT_TRUE(Encode()) << mp3_run.Mp3LastError;
    EXPECT_NEAR(Mp3TrueSeconds("C:\\music\\out.mp3"), 5, 0.2);
    ASSERT_TRUE(DecodeMp3("C:\\music\\out.mp3", "C:\\music\\out.wav", progress, true))
        << mp3_run.Mp3LastError;
    EXPECT_NEAR(WaveSeconds("C:\\music\\out.wav"), Mp3TrueSeconds("C:\\music\\out.mp3"), 0.05);
    EXPECT_EQ(user.last_percent, 100);
    MakeFile(drive / "music" / "none.mp3", std::string(5000, 'x'));
    EXPECT_FALSE(DecodeMp3("C:\\music\\none.mp3", "C:\\music\\out.wav", progress, true));
    EXPECT_THAT(mp3_run.Mp3LastError, HasSubstr("lost synchronization"));
}

} // namespace
} // namespace kelvash::audio
