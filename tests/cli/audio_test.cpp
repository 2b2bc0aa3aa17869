// audio: what sound files are, and their conversion.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "cli/cli_home.h"
#include "support/audio_tools.h"
#include "support/sound_bytes.h"
#include "support/zip_bytes.h"

namespace kelvash::test {
namespace {

using nlohmann::json;
using testing::HasSubstr;

class AudioCommands : public CliHome {
  protected:
    AudioCommands() {
        PutAudioTools(home);
        MakeFile(drive / "in/005.wav", TrackBytes(4));
        MakeFile(drive / "in/a.wav", WaveBytes(1, 2, 44100, 16, 44100));
        MakeFile(drive / "in/b.mp3", Mp3Bytes(100));
    }
    std::string In(const std::string& name) const { return (drive / "in" / name).string(); }
    static json Result(const CliRun& run) { return json::parse(run.lines.back()); }
};

TEST_F(AudioCommands, InfoTellsWhatIsKnown) {
    const CliRun run = Json({"audio", "info", In("005.wav"), "C:\\in\\b.mp3"});
    EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
    json files = Result(run)["files"];
    ASSERT_EQ(files.size(), 2U);
    EXPECT_NEAR(files[0]["seconds"].get<double>(), 4 * 2036 / 44100.0, 1e-6);
    EXPECT_NEAR(files[1]["seconds"].get<double>(), 100 * 1152 / 44100.0, 1e-6);
    files[0].erase("seconds");
    files[1].erase("seconds");
    EXPECT_EQ(files[0], (json{{"file", In("005.wav")},
                              {"kind", 2},
                              {"format", "ADPCM 44100Hz stereo 4 bits"},
                              {"rate", 44100},
                              {"channels", 2},
                              {"bits", 4},
                              {"estimate", nullptr},
                              {"track", true}}));
    EXPECT_EQ(files[1], (json{{"file", "C:\\in\\b.mp3"},
                              {"kind", nullptr},
                              {"format", "Mp3"},
                              {"rate", nullptr},
                              {"channels", nullptr},
                              {"bits", nullptr},
                              {"estimate", 2},
                              {"track", false}}));
}

TEST_F(AudioCommands, InfoTellsATrackThatIsNoise) {
    std::string noise = TrackBytes(2);
    noise.insert(70, "LIST" + Little(4, 4) + "INFO");
    MakeFile(drive / "in/006.wav", noise);
    const CliRun run = Json({"audio", "info", In("006.wav")});
    EXPECT_EQ(run.status, 0);
    EXPECT_THAT(run.Output(), HasSubstr("The game would play this track as noise"));
}

TEST_F(AudioCommands, AMissingFileIsTold) {
    const CliRun run = Json({"audio", "info", In("none.wav")});
    EXPECT_NE(run.status, 0);
    EXPECT_THAT(run.Output(), HasSubstr("There is no such file: "));
}

TEST_F(AudioCommands, ConvertsIntoAFolder) {
    const CliRun run =
        Json({"audio", "convert", "--to", "audio", (drive / "out").string(), In("a.wav"), In("005.wav")});
    EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
    EXPECT_EQ(Result(run)["files"],
              (json::array({{{"file", In("a.wav")}, {"out", "C:\\out\\a.wav"}, {"error", nullptr}},
                            {{"file", In("005.wav")}, {"out", "C:\\out\\005.wav"}, {"error", nullptr}}})));
    EXPECT_EQ(BytesOf(drive / "out/a.wav").substr(20, 4), Little(0x00020002, 4));
    EXPECT_EQ(BytesOf(drive / "out/005.wav"), TrackBytes(4));
}

TEST_F(AudioCommands, EncodesAndDecodes) {
    CliRun run = Json({"audio", "convert", "--to", "mp3", (drive / "out").string(), In("a.wav")});
    EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
    run = Json({"audio", "convert", "--to", "samples", (drive / "out").string(), "C:\\out\\a.mp3"});
    EXPECT_EQ(run.status, 0) << run.Output() << run.errors;
    EXPECT_EQ(BytesOf(drive / "out/a.wav").substr(20, 8), Little(0x00010001, 4) + Little(22050, 4));
}

TEST_F(AudioCommands, WhatCannotBeConvertedIsTold) {
    MakeFile(drive / "in/c.wav", WaveBytes(1, 1, 22050, 16, 100));
    CliRun run = Json({"audio", "convert", "--to", "audio", (drive / "out").string(), In("c.wav")});
    EXPECT_NE(run.status, 0);
    EXPECT_THAT(run.Output(),
                HasSubstr("I cannot convert file 'c.wav' from format [PCM 22050Hz mono 16 bits] "
                          "to format [44100 stereo 4 bits]"));
    MakeFile(drive / "in/d.mp3", "no mp3");
    run = Json({"audio", "convert", "--to", "standard", (drive / "out").string(), In("d.mp3")});
    EXPECT_NE(run.status, 0);
    EXPECT_THAT(Result(run)["files"][0]["error"].get<std::string>(), HasSubstr("Error decoding 'd.mp3' : "));
}

// The whole road: a level comes with music, is kept as mp3, played, and gets its waves back.
TEST_F(AudioCommands, AnArchiveKeepsItsMusicAsMp3) {
    SetUpHome();
    const std::filesystem::path files = drive / "Levels/LEVEL_0001/FILES";
    const std::string answers =
        Answers(R"([{"when": "Compression settings have been changed", "answer": "yes", "times": 0}])");
    ASSERT_EQ(Json({"--answers", answers, "prefs", "--mp3", "on"}).status, 0);
    MakeFile(drive / "in/maze.zip",
             MakeZipBytes({MakeEntry("maze.tr4", "level data"), MakeEntry("script.dat", "s"),
                           MakeEntry("english.dat", "e"), MakeEntry("045.wav", TrackBytes(40))}));
    ASSERT_EQ(Json({"add", In("maze.zip"), "--name", "The Maze"}).status, 0);
    EXPECT_TRUE(Exists(files / "045.mp3"));
    EXPECT_FALSE(Exists(files / "045.wav"));
    CliRun run = Json({"install", "1"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_EQ(BytesOf(drive / "trle/audio/045.wav").substr(0, 4), "RIFF");
    EXPECT_EQ(BytesOf(drive / "trle/audio/045.wav").substr(12, 30), TrackBytes(1).substr(12, 30));
    EXPECT_TRUE(Exists(files / "045.mp3"));
    run = Json({"--answers", answers, "prefs", "--mp3", "off"});
    EXPECT_EQ(run.status, 0) << run.Output();
    EXPECT_FALSE(Exists(files / "045.mp3"));
    EXPECT_EQ(BytesOf(files / "045.wav").substr(12, 30), TrackBytes(1).substr(12, 30));
}

} // namespace
} // namespace kelvash::test
