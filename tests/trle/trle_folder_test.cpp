#include "trle/trle_folder.h"

#include <gmock/gmock.h>

#include "support/swap_home.h"

namespace kelvash::trle {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

namespace fs = std::filesystem;

class TrleFolderCheck : public test::SwapHome {};

TEST_F(TrleFolderCheck, PassesAWholeFolderSilently) {
    EXPECT_TRUE(CheckTrleFolder("C:\\trle", true));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(TrleFolderCheck, WantsTheGameFirst) {
    fs::remove(trle / "tomb4.exe");
    fs::remove_all(trle / "data");
    EXPECT_FALSE(CheckTrleFolder("C:\\trle", true));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Not right folder: Missing file 'tomb4.exe' in folder: C:\\trle"));
}

TEST_F(TrleFolderCheck, WantsALevel) {
    fs::remove_all(trle / "data");
    EXPECT_FALSE(CheckTrleFolder("C:\\trle", true));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Not right folder: Missing files '*.tr4' in folder: C:\\trle\\data"));
}

TEST_F(TrleFolderCheck, WantsADatFile) {
    for (const std::string& name : NamesIn(trle))
        if (name.ends_with(".dat")) fs::remove(trle / name);
    EXPECT_FALSE(CheckTrleFolder("C:\\trle", true));
    EXPECT_THAT(user.Told(),
                ElementsAre("critical: Not right folder: Missing files '*.dat' in folder: C:\\trle"));
}

TEST_F(TrleFolderCheck, SaysThatOneOf54WavesIsMissing) {
    fs::remove(trle / "audio" / "053.wav");
    EXPECT_FALSE(CheckTrleFolder("C:\\trle", true));
    EXPECT_THAT(user.Told(), ElementsAre("plain: Not right folder: in AUDIO folder missing 1 .wav files"));
}

TEST_F(TrleFolderCheck, SaysThatAllWavesAreMissingWithoutAnAudioFolder) {
    fs::remove_all(trle / "audio");
    EXPECT_FALSE(CheckTrleFolder("C:\\trle", true));
    EXPECT_THAT(user.Told(), ElementsAre("plain: Not right folder: in AUDIO folder missing 54 .wav files"));
}

TEST_F(TrleFolderCheck, FailsWithoutAWordWhenAskedSo) {
    fs::remove(trle / "tomb4.exe");
    EXPECT_FALSE(CheckTrleFolder("C:\\trle", false));
    EXPECT_FALSE(CheckTrleFolder("", false));
    EXPECT_FALSE(CheckTrleFolder("Q:\\nowhere", false));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(TrleFolderCheck, FindsNamesInAnyCase) {
    fs::rename(trle / "audio", trle / "AUDIO");
    fs::rename(trle / "tomb4.exe", trle / "Tomb4.EXE");
    EXPECT_TRUE(CheckTrleFolder(" C:\\TRLE ", true));
}

} // namespace
} // namespace kelvash::trle
