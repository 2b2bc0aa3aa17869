// madplay and lame are scripts here that stand in for them.
#include "audio/audio_job.h"

#include <gmock/gmock.h>

#include <filesystem>

#include "audio/audio_facts.h"
#include "audio/mp3_settings.h"
#include "audio/wave_chunks.h"
#include "support/core_home.h"
#include "support/sound_bytes.h"

namespace kelvash::audio {
namespace {

namespace fs = std::filesystem;
using test::BytesOf;
using test::Exists;
using test::MakeFile;
using test::Mp3Bytes;
using test::TrackBytes;
using test::WaveBytes;
using testing::ElementsAre;
using testing::IsEmpty;

class AudioJobs : public test::CoreHome {
  protected:
    AudioJobs() {
        user.forms.Add<AudioJob>([](AudioJob& job) {
            RunAudioJob(job, BarPlace::CallerForm);
            return true;
        });
        fs::create_directories(Out());
        WillDecodeTo(WaveBytes(1, 2, 44100, 16, 4410));
        PutTool("lame.exe", "cp in.wav out.mp3");
    }
    fs::path Out() const { return drive / "out"; }
    void PutTool(const std::string& name, const std::string& script) {
        MakeFile(home / name, "#!/bin/sh\n" + script + "\n");
        fs::permissions(home / name, fs::perms::owner_all);
    }
    void WillDecodeTo(const std::string& wave) {
        MakeFile(root / "decoded.wav", wave);
        PutTool("madplay.exe", "cp '" + (root / "decoded.wav").string() + "' temp1.wav");
    }
    AudioJob Job(AudioKind target, const std::vector<std::string>& names) {
        AudioJob job;
        for (const std::string& name : names)
            job.Files.push_back("C:\\in\\" + name);
        job.TargetFolder = "C:\\out";
        job.TargetKind = target;
        return job;
    }
    static AudioKind KindOfFile(const std::string& path) { return FactsOf(path).Kind; }
};

TEST_F(AudioJobs, AWaveThatIsInPlaceIsLeftAlone) {
    MakeFile(Out() / "a.wav", WaveBytes(1, 2, 44100, 16, 10));
    const auto before = fs::last_write_time(Out() / "a.wav");
    AudioJob job = Job(AudioKind::Standard, {});
    job.Files = {"C:\\out\\a.wav"};
    EXPECT_TRUE(ConvertAudioFiles(job));
    EXPECT_EQ(fs::last_write_time(Out() / "a.wav"), before);
    EXPECT_THAT(Entries(Out()), ElementsAre("a.wav"));
}

TEST_F(AudioJobs, AWaveOfTheFormatIsCopied) {
    MakeFile(drive / "in/a.wav", WaveBytes(1, 2, 44100, 16, 10));
    AudioJob job = Job(AudioKind::Standard, {"a.wav"});
    EXPECT_TRUE(ConvertAudioFiles(job)) << job.LastConversionError;
    EXPECT_EQ(BytesOf(Out() / "a.wav"), WaveBytes(1, 2, 44100, 16, 10));
    ASSERT_EQ(job.Converted.size(), 1U);
    EXPECT_EQ(job.Converted[0].Source, "C:\\in\\a.wav");
    EXPECT_EQ(job.Converted[0].Result, "C:\\out\\a.wav");
}

TEST_F(AudioJobs, WhatNoStepConvertsStopsTheWholeJobInTheFirstPass) {
    MakeFile(drive / "in/a.wav", WaveBytes(1, 2, 44100, 16, 4410));
    MakeFile(drive / "in/b.wav", WaveBytes(1, 1, 22050, 16, 4410));
    AudioJob job = Job(AudioKind::TrleAudio, {"a.wav", "b.wav"});
    EXPECT_FALSE(ConvertAudioFiles(job));
    EXPECT_THAT(user.Told(), ElementsAre("critical: I cannot convert file 'b.wav' from format [PCM 22050Hz "
                                         "mono 16 bits] to format [44100 stereo 4 bits]"));
    EXPECT_EQ(job.LastConversionError,
              "I cannot convert file 'b.wav' from format [PCM 22050Hz mono 16 bits] to "
              "format [44100 stereo 4 bits]");
    EXPECT_THAT(Entries(Out()), IsEmpty());
    EXPECT_THAT(user.Shown(), ElementsAre("Preparing to convert..."));
}

TEST_F(AudioJobs, AnMp3GoesToFourBitsByTwoSteps) {
    MakeFile(drive / "in/a.mp3", Mp3Bytes(100));
    MakeFile(drive / "in/b.wav", WaveBytes(1, 2, 44100, 16, 4410));
    AudioJob job = Job(AudioKind::TrleAudio, {"a.mp3", "b.wav"});
    EXPECT_TRUE(ConvertAudioFiles(job)) << job.LastConversionError;
    EXPECT_THAT(user.Shown(),
                ElementsAre("Preparing to convert...", "[1\\2]  Decode \"a.mp3\" --> WAV ~ stereo 16 bits",
                            "[1\\2]  Convert \"a.mp3\" --> 44100 stereo 4 bits",
                            "[2\\2]  Convert \"b.wav\" --> 44100 stereo 4 bits", "Conversion terminated"));
    EXPECT_EQ(user.last_percent, 100);
    EXPECT_TRUE(PlaysInGame("C:\\out\\a.wav"));
    EXPECT_TRUE(PlaysInGame("C:\\out\\b.wav"));
    EXPECT_THAT(Entries(Out()), ElementsAre("a.wav", "b.wav"));
}

TEST_F(AudioJobs, ADecodedWaveOfAnotherRateGoesThroughAStandardOne) {
    WillDecodeTo(WaveBytes(1, 2, 16000, 16, 1600));
    MakeFile(drive / "in/a.mp3", Mp3Bytes(100));
    AudioJob job = Job(AudioKind::TrleAudio, {"a.mp3"});
    EXPECT_TRUE(ConvertAudioFiles(job)) << job.LastConversionError;
    EXPECT_THAT(user.Shown(),
                ElementsAre("Preparing to convert...", "[1\\1]  Decode \"a.mp3\" --> WAV ~ stereo 16 bits",
                            "[1\\1]  Convert \"a.mp3\" --> 44100 stereo 16 bits",
                            "[1\\1]  Convert \"a.mp3\" --> 44100 stereo 4 bits", "Conversion terminated"));
    EXPECT_TRUE(PlaysInGame("C:\\out\\a.wav"));
    EXPECT_NEAR(WaveSeconds("C:\\out\\a.wav"), 0.1, 0.05);
}

TEST_F(AudioJobs, AnMp3BecomesAnEffectByOneStep) {
    WillDecodeTo(WaveBytes(1, 2, 44100, 16, 4410));
    MakeFile(drive / "in/a.mp3", Mp3Bytes(100));
    AudioJob job = Job(AudioKind::TrleSamples, {"a.mp3"});
    EXPECT_TRUE(ConvertAudioFiles(job)) << job.LastConversionError;
    EXPECT_THAT(user.Shown(),
                ElementsAre("Preparing to convert...", "[1\\1]  Decode \"a.mp3\" --> WAV ~ stereo 16 bits",
                            "[1\\1]  Convert \"a.mp3\" --> 22050 mono 16 bits", "Conversion terminated"));
    EXPECT_EQ(KindOfFile("C:\\out\\a.wav"), AudioKind::TrleSamples);
}

TEST_F(AudioJobs, EncodingPutsAStandardWaveInFront) {
    MakeFile(drive / "in/a.wav", WaveBytes(1, 2, 44100, 16, 4410));
    MakeFile(drive / "in/b.wav", TrackBytes(3));
    AudioJob job = Job(AudioKind::Mp3, {"a.wav", "b.wav"});
    mp3_settings = {64, 2, 22050};
    EXPECT_TRUE(ConvertAudioFiles(job)) << job.LastConversionError;
    EXPECT_THAT(
        user.Shown(),
        ElementsAre("Preparing to convert...", "[1\\2]  Encoding \"a.wav\" --> Mp3  22050 64 Kbps stereo",
                    "[2\\2]  Convert \"b.wav\" --> PCM 44100 stereo 16 bits",
                    "[2\\2]  Encoding \"b.wav\" --> Mp3  22050 64 Kbps stereo", "Conversion terminated"));
    EXPECT_EQ(user.last_percent, 100);
    EXPECT_THAT(Entries(Out()), ElementsAre("a.mp3", "b.mp3"));
    EXPECT_EQ(BytesOf(Out() / "a.mp3").size(), WaveBytes(1, 2, 44100, 16, 4410).size());
}

TEST_F(AudioJobs, AFailureAsksWhetherToGoOn) {
    PutTool("madplay.exe", "echo bad");
    MakeFile(drive / "in/a.mp3", "x");
    MakeFile(drive / "in/b.wav", WaveBytes(1, 2, 44100, 16, 10));
    AudioJob job = Job(AudioKind::Standard, {"a.mp3", "b.wav"});
    user.WillAnswer("Would you like continue audio conversion?", "yes");
    EXPECT_FALSE(ConvertAudioFiles(job));
    EXPECT_THAT(
        user.Asked(),
        ElementsAre("Error processing file 'a.mp3'\r\nError decoding mp3 (0) : Error decoding 'a.mp3' : "
                    "bad\r\n\r\nWould you like continue audio conversion?"));
    EXPECT_EQ(job.LastConversionError, "Error decoding 'a.mp3' : bad\r\n");
    EXPECT_FALSE(job.Stopped);
    EXPECT_THAT(Entries(Out()), ElementsAre("b.wav"));
    ASSERT_EQ(job.Failed.size(), 1U);
    EXPECT_EQ(job.Failed[0].Source, "C:\\in\\a.mp3");
}

TEST_F(AudioJobs, ANoEndsTheJob) {
    MakeFile(drive / "in/a.wav", WaveBytes(1, 2, 44100, 16, 0)); // holds nothing
    MakeFile(drive / "in/b.wav", WaveBytes(1, 2, 44100, 16, 4410));
    AudioJob job = Job(AudioKind::TrleAudio, {"a.wav", "b.wav"});
    user.WillAnswer("Error converting wav to 44100 stereo 4 bits (2) : ", "no");
    EXPECT_FALSE(ConvertAudioFiles(job));
    EXPECT_THAT(Entries(Out()), IsEmpty());
}

TEST_F(AudioJobs, AnEncoderThatFailsIsTold) {
    PutTool("lame.exe", "echo 'no luck'");
    MakeFile(drive / "in/a.wav", WaveBytes(1, 2, 44100, 16, 10));
    AudioJob job = Job(AudioKind::Mp3, {"a.wav"});
    user.WillAnswer("Error encoding wav in mp3 format (5) : Error encoding in mp3: no luck", "yes");
    EXPECT_FALSE(ConvertAudioFiles(job));
    EXPECT_THAT(Entries(Out()), IsEmpty());
}

TEST_F(AudioJobs, AStopEndsTheRunningTool) {
    PutTool("madplay.exe", "touch started; exec sleep 60");
    MakeFile(drive / "in/a.mp3", "x");
    MakeFile(drive / "in/b.mp3", "x");
    user.when_pumped = [this] { user.stop_if_offered = Exists(home / "_temp_mp3_1" / "started"); };
    AudioJob job = Job(AudioKind::Standard, {"a.mp3", "b.mp3"});
    EXPECT_FALSE(ConvertAudioFiles(job));
    EXPECT_TRUE(job.Stopped);
    EXPECT_THAT(user.Told(), ElementsAre("plain: Break user: conversion cancelled"));
    EXPECT_THAT(user.Asked(), IsEmpty());
    EXPECT_THAT(Entries(Out()), IsEmpty());
    EXPECT_FALSE(Exists(home / "_temp_mp3_1"));
}

TEST_F(AudioJobs, TwoFilesWithOneResultLeaveTheSecond) {
    MakeFile(drive / "in/a.mp3", Mp3Bytes(100));
    MakeFile(drive / "in/A.wav", WaveBytes(1, 2, 44100, 16, 20));
    AudioJob job = Job(AudioKind::Standard, {"a.mp3", "A.wav"});
    EXPECT_TRUE(ConvertAudioFiles(job));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: These audio files stay as they are, because the converted one would "
                    "take the place of another file:\r\nA.wav"));
    EXPECT_EQ(job.Converted.size(), 1U);
    EXPECT_EQ(BytesOf(Out() / "a.wav").size(), WaveBytes(1, 2, 44100, 16, 4410).size());
}

TEST_F(AudioJobs, TargetsThatExistAreAskedAboutFirst) {
    MakeFile(drive / "in/a.wav", WaveBytes(1, 2, 44100, 16, 20));
    MakeFile(drive / "in/b.wav", WaveBytes(1, 2, 44100, 16, 20));
    MakeFile(Out() / "b.wav", "old");
    AudioJob job = Job(AudioKind::Standard, {"a.wav", "b.wav"});
    user.WillAnswer("These files stand in the target folder already:", "no");
    EXPECT_TRUE(ConvertAudioFiles(job));
    EXPECT_EQ(BytesOf(Out() / "b.wav"), "old");
    EXPECT_EQ(job.Converted.size(), 1U);
    fs::remove(Out() / "a.wav");
    AudioJob again = Job(AudioKind::Standard, {"a.wav", "b.wav"});
    user.WillAnswer("These files stand in the target folder already:", "yes");
    EXPECT_TRUE(ConvertAudioFiles(again));
    EXPECT_EQ(BytesOf(Out() / "b.wav"), WaveBytes(1, 2, 44100, 16, 20));
}

TEST_F(AudioJobs, WhoLeavesClashesIsToldOfThem) {
    MakeFile(drive / "in/a.mp3", Mp3Bytes(100));
    MakeFile(drive / "in/b.mp3", Mp3Bytes(100));
    AudioJob job = Job(AudioKind::Standard, {"a.mp3", "b.mp3"});
    job.OnClash = Clash::Leave;
    job.TakenNames = {"A.WAV"};
    EXPECT_TRUE(ConvertAudioFiles(job));
    EXPECT_THAT(
        user.Told(),
        ElementsAre("exclamation: These audio files stay as they are, because the converted one would "
                    "take the place of another file:\r\na.mp3"));
    EXPECT_THAT(Entries(Out()), ElementsAre("b.wav"));
}

TEST_F(AudioJobs, AnOriginalThatIsReplacedIsKept) {
    const std::string wave = WaveBytes(1, 2, 44100, 16, 4410);
    MakeFile(Out() / "a.wav", wave);
    MakeFile(Out() / "a.original.wav", "an earlier one");
    AudioJob job = Job(AudioKind::TrleAudio, {});
    job.Files = {"C:\\out\\a.wav"};
    user.WillAnswer("These files stand in the target folder already:", "yes");
    EXPECT_TRUE(ConvertAudioFiles(job)) << job.LastConversionError;
    EXPECT_TRUE(PlaysInGame("C:\\out\\a.wav"));
    EXPECT_EQ(BytesOf(Out() / "a.original2.wav"), wave);
    EXPECT_EQ(BytesOf(Out() / "a.original.wav"), "an earlier one");
}

TEST_F(AudioJobs, ATrackThatTheGamePlaysAsNoiseIsRewritten) {
    std::string noise = TrackBytes(2);
    noise.insert(70, "LIST" + test::Little(4, 4) + "INFO");
    noise.replace(4, 4, test::Little(noise.size() - 8, 4));
    MakeFile(drive / "in/005.wav", noise);
    EXPECT_TRUE(FactsOf("C:\\in\\005.wav").IsNoise);
    AudioJob job = Job(AudioKind::TrleAudio, {"005.wav"});
    EXPECT_TRUE(ConvertAudioFiles(job)) << job.LastConversionError;
    EXPECT_FALSE(FactsOf("C:\\out\\005.wav").IsNoise);
    EXPECT_NEAR(WaveSeconds("C:\\out\\005.wav"), 2 * 2036 / 44100.0, 1e-9);
}

TEST_F(AudioJobs, AResultStandsForASourceOfItsLength) {
    MakeFile(drive / "in/a.mp3", Mp3Bytes(100)); // 2.61 seconds
    MakeFile(Out() / "a.wav", WaveBytes(1, 2, 44100, 16, 44100 * 27 / 10));
    EXPECT_TRUE(StandsFor({"C:\\in\\a.mp3", "C:\\out\\a.wav"}));
    MakeFile(Out() / "a.wav", WaveBytes(1, 2, 44100, 16, 44100 * 23 / 10));
    EXPECT_FALSE(StandsFor({"C:\\in\\a.mp3", "C:\\out\\a.wav"}));
    EXPECT_FALSE(StandsFor({"C:\\in\\a.mp3", "C:\\out\\none.wav"}));
    MakeFile(drive / "in/none.mp3", "x");
    MakeFile(Out() / "none.wav", WaveBytes(1, 2, 44100, 16, 0));
    EXPECT_FALSE(StandsFor({"C:\\in\\none.mp3", "C:\\out\\none.wav"}));
}

TEST_F(AudioJobs, WhatAKilledRunHasLeftGoes) {
    for (const char* name : {"_temp1.wav", "_temp2.wav", "_temp3.wav", "_finale_.wav", "_finale_.mp3"})
        MakeFile(Out() / name, "left");
    AudioJob job = Job(AudioKind::Standard, {});
    EXPECT_TRUE(ConvertAudioFiles(job));
    EXPECT_THAT(Entries(Out()), IsEmpty());
}

TEST_F(AudioJobs, AFolderThatCannotBeMadeIsTold) {
    AudioJob job = Job(AudioKind::Standard, {});
    job.TargetFolder = "C:\\none\\out";
    EXPECT_FALSE(ConvertAudioFiles(job));
    EXPECT_THAT(user.Told(), ElementsAre("critical: The target folder can't be made: C:\\none\\out"));
}

} // namespace
} // namespace kelvash::audio
