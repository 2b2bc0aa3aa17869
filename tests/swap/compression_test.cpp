#include "swap/compression.h"

#include <gmock/gmock.h>
#include <zlib.h>

#include <algorithm>
#include <random>

#include "core/archive.h"
#include "foundation/files.h"
#include "support/bitmaps.h"
#include "support/swap_home.h"
#include "swap/picture.h"

namespace kelvash::swap {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace fs = std::filesystem;

// One zlib stream, made by zlib itself.
std::string Zl(const std::string& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string stream(size, '\0');
    compress2(reinterpret_cast<Bytef*>(stream.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
              static_cast<uLong>(bytes.size()), 9);
    stream.resize(size);
    return stream;
}

std::string Unzl(const std::string& stream) {
    std::string bytes(1 << 16, '\0');
    uLongf size = static_cast<uLongf>(bytes.size());
    EXPECT_EQ(uncompress(reinterpret_cast<Bytef*>(bytes.data()), &size,
                         reinterpret_cast<const Bytef*>(stream.data()), static_cast<uLong>(stream.size())),
              Z_OK);
    bytes.resize(size);
    return bytes;
}

// Bytes that don't pack, the same at every run.
std::string Noise(std::size_t size) {
    std::mt19937 random(1);
    std::string bytes(size, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random());
    return bytes;
}

class Compression : public test::SwapHome {
  protected:
    Compression() : temp_dec(home / "_temp_Dec") {}
    std::string FilesOf(std::int32_t code) {
        return "C:\\Levels\\LEVEL_000" + std::to_string(code) + "\\files";
    }
    fs::path temp_dec;
    std::string temp = "not looked at";
};

TEST_F(Compression, OfAPlainLevelNeedsNoCopy) {
    AddLevel(1, "Plain", {{"city.tr4", "CITY"}});
    EXPECT_TRUE(DecompressLevelFiles(FilesOf(1), temp, true));
    EXPECT_EQ(temp, "");
    EXPECT_FALSE(test::Exists(temp_dec));
}

TEST_F(Compression, IsUndoneInTheTemporaryFolder) {
    AddLevel(1, "Packed", {{"city.tr4.zl", Zl("CITY")}, {"005.wav.zl", Zl("WAVE")}, {"script.dat", "S"}});
    test::MakeFile(temp_dec / "stale.dat", "");
    ASSERT_TRUE(DecompressLevelFiles(FilesOf(1), temp, true));
    EXPECT_EQ(temp, "C:\\Kelvash\\_temp_Dec");
    EXPECT_THAT(NamesIn(temp_dec), ElementsAre("005.wav", "city.tr4", "script.dat"));
    EXPECT_EQ(test::BytesOf(temp_dec / "city.tr4"), "CITY");
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.wav.zl", "city.tr4.zl", "script.dat"));
    EXPECT_THAT(user.Shown(), ElementsAre("Decompressing files", "Copying files in progress...",
                                          "Unzipping file '005.wav.zl' in progress...",
                                          "Unzipping file 'city.tr4.zl' in progress..."));
}

// Together they are worth threads.
TEST_F(Compression, OfManyFilesIsUndoneInTheirOrder) {
    Files files;
    for (int i = 0; i < 9; ++i) {
        const std::string name = "a" + std::to_string(i) + ".tr4.zl";
        files[name] = Zl(Noise(std::size_t{100'000} * static_cast<std::size_t>(9 - i)));
    }
    AddLevel(1, "Packed", files);
    ASSERT_TRUE(DecompressLevelFiles(FilesOf(1), temp, true));
    std::vector<std::string> told;
    for (const std::string& text : user.Shown())
        if (text.find(".tr4.zl") != std::string::npos)
            told.push_back(text.substr(text.find(".tr4.zl") - 2, 2));
    EXPECT_THAT(told, ElementsAre("a0", "a1", "a2", "a3", "a4", "a5", "a6", "a7", "a8"));
    for (int i = 0; i < 9; ++i) {
        const std::string name = "a" + std::to_string(i) + ".tr4";
        EXPECT_EQ(Zl(test::BytesOf(temp_dec / name)), files[name + ".zl"]);
    }
    EXPECT_EQ(user.last_percent, 100);
}

TEST_F(Compression, OfManyFilesEndsAtTheFirstThatCannotBeUndone) {
    Files files;
    for (int i = 0; i < 9; ++i) {
        files["a" + std::to_string(i) + ".tr4.zl"] =
            i == 4 || i == 5 ? std::string(300'000, 'x') : Zl(Noise(200'000));
    }
    AddLevel(1, "Packed", files);
    EXPECT_FALSE(DecompressLevelFiles(FilesOf(1), temp, true));
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told().front(), HasSubstr("a4.tr4.zl"));
    EXPECT_TRUE(test::Exists(temp_dec / "a3.tr4"));
    EXPECT_FALSE(test::Exists(temp_dec / "a5.tr4"));
    EXPECT_FALSE(test::Exists(temp_dec / "a6.tr4"));
}

TEST_F(Compression, ThatCannotBeUndoneIsTold) {
    AddLevel(1, "Broken", {{"city.tr4.zl", "no stream"}});
    EXPECT_FALSE(DecompressLevelFiles(FilesOf(1), temp, true));
    EXPECT_THAT(user.Told(), ElementsAre("critical: Errore decompressing file 'city.tr4.zl"));
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES" / "city.tr4.zl"), "no stream");
}

TEST_F(Compression, ThatCannotBeUndoneLeavesTheTemporaryFolderTillItsNextUse) {
    AddLevel(1, "Broken", {{"city.tr4.zl", "no stream"}, {"script.dat", "S"}});
    AddLevel(2, "Sound", {{"coast.tr4.zl", Zl("COAST")}});
    EXPECT_FALSE(DecompressLevelFiles(FilesOf(1), temp, true));
    EXPECT_EQ(user.Told().size(), 1U);
    EXPECT_EQ(temp, "");
    EXPECT_THAT(NamesIn(temp_dec), ElementsAre("script.dat"));
    EXPECT_TRUE(DecompressLevelFiles(FilesOf(2), temp, true));
    EXPECT_THAT(NamesIn(temp_dec), ElementsAre("coast.tr4"));
}

TEST_F(Compression, OfALevelWithALoadJpgGoesThroughTheTemporaryFolder) {
    AddLevel(1, "Picture", {{"city.tr4", "CITY"}});
    test::MakeFile(drive / "a.bmp", test::MakeBitmap({}));
    ASSERT_TRUE(BitmapToJpeg("C:\\a.bmp", FilesOf(1) + "\\load.jpg"));
    ASSERT_TRUE(DecompressLevelFiles(FilesOf(1), temp, true));
    EXPECT_THAT(NamesIn(temp_dec), ElementsAre("city.tr4", "load.bmp"));
    EXPECT_EQ(test::BytesOf(temp_dec / "load.bmp").substr(0, 2), "BM");
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("city.tr4", "load.jpg"));
}

TEST_F(Compression, WithALoadJpgThatIsNoPictureIsNotTold) {
    AddLevel(1, "Picture", {{"city.tr4", "CITY"}, {"load.jpg", "no picture"}});
    EXPECT_TRUE(DecompressLevelFiles(FilesOf(1), temp, true));
    EXPECT_THAT(NamesIn(temp_dec), ElementsAre("city.tr4", "load.jpg"));
    EXPECT_THAT(user.Told(), IsEmpty());
}

TEST_F(Compression, LeavesMp3FilesAloneWhereTheyAreNotWanted) {
    AddLevel(1, "Song", {{"city.tr4", "CITY"}, {"005.mp3", "mp3"}});
    EXPECT_TRUE(DecompressLevelFiles(FilesOf(1), temp, false));
    EXPECT_EQ(temp, "");
}

TEST_F(Compression, UndoesOneFileForAView) {
    test::MakeFile(drive / "city.tr4.zl", Zl("CITY"));
    test::MakeFile(home / "_temp_" / "stale.tr4", "");
    EXPECT_EQ(DecompressOneFile("C:\\city.tr4.zl", false), "C:\\Kelvash\\_temp_\\city.tr4");
    EXPECT_THAT(NamesIn(home / "_temp_"), ElementsAre("city.tr4"));
}

TEST_F(Compression, TellsTheOneFileThatCannotBeUndone) {
    test::MakeFile(drive / "city.tr4.zl", "no stream");
    EXPECT_EQ(DecompressOneFile("C:\\city.tr4.zl", true), "");
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error decompressing file 'city.tr4.zl"));
}

TEST_F(Compression, StoresALevelAsItsHeaderAsks) {
    AddLevel(1, "New", {{"old.tr4", "old"}});
    core::archive.Header.CompressFiles = true;
    test::MakeFile(drive / "in" / "City.TR4", "CITY");
    test::MakeFile(drive / "in" / "005.wav", "WAVE");
    test::MakeFile(drive / "in" / "readme.txt", "read me");
    test::MakeFile(drive / "in" / "load.bmp", test::MakeBitmap({}));
    ASSERT_TRUE(CompressLevelFiles("C:\\in", core::PlaceAt(1)));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"),
                ElementsAre("005.wav.zl", "City.TR4.zl", "load.jpg", "readme.txt"));
    EXPECT_EQ(Unzl(test::BytesOf(LevelPath(1) / "FILES" / "City.TR4.zl")), "CITY");
    EXPECT_THAT(user.Shown(),
                ElementsAre("Converting load.bmp in load.jpg", "", "Compressin file '005.wav' in progress",
                            "Compressin file 'City.TR4' in progress", "File copy in progress", ""));
}

TEST_F(Compression, StoresALevelPlainWhereNothingIsAsked) {
    AddLevel(1, "New", {});
    test::MakeFile(drive / "in" / "city.tr4", "CITY");
    ASSERT_TRUE(CompressLevelFiles("C:\\in", core::PlaceAt(1)));
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES" / "city.tr4"), "CITY");
}

TEST_F(Compression, OfWavesThatCannotBeEncodedAsksWhetherToGoOn) {
    AddLevel(1, "New", {});
    core::archive.Header.EncodeWavInMp3 = true;
    test::MakeFile(drive / "in" / "005.wav", "WAVE");
    user.WillAnswer("Do you want continue in file copy?", "no");
    EXPECT_FALSE(CompressLevelFiles("C:\\in", core::PlaceAt(1)));
    EXPECT_THAT(user.Told(), Contains(HasSubstr("critical: Audio compression failed: ")));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), IsEmpty());
}

TEST_F(Compression, OfWavesThatCannotBeEncodedMayGoOnPlain) {
    AddLevel(1, "New", {});
    core::archive.Header.EncodeWavInMp3 = true;
    test::MakeFile(drive / "in" / "005.wav", "WAVE");
    test::MakeFile(drive / "in" / "city.tr4", "CITY");
    user.WillAnswer("Do you want continue in file copy?", "yes");
    EXPECT_TRUE(CompressLevelFiles("C:\\in", core::PlaceAt(1)));
    EXPECT_THAT(user.Told(), Contains(HasSubstr("critical: Audio compression failed: ")));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.wav", "city.tr4"));
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES" / "005.wav"), "WAVE");
}

TEST_F(Compression, ThatFailsLeavesTheListOfTr4FilesForThePlainCopy) {
    AddLevel(1, "New", {});
    core::archive.Header.CompressFiles = true;
    test::MakeFile(drive / "in" / "city.tr4", "CITY");
    fs::create_directories(drive / "in" / "city.tr4.zl");
    EXPECT_FALSE(CompressLevelFiles("C:\\in", core::PlaceAt(1)));
    EXPECT_TRUE(test::Exists(LevelPath(1) / "tr4.inf"));
    EXPECT_EQ(test::BytesOf(drive / "in" / "city.tr4"), "CITY");
}

TEST_F(Compression, OfLevelZeroOnlyCopies) {
    core::archive.Header.CompressFiles = true;
    test::MakeFile(LevelPath(0) / "FILES" / "old.pdf", "");
    test::MakeFile(drive / "in" / "manual.pdf", "PDF");
    test::MakeFile(drive / "in" / "a.wav", "W");
    ASSERT_TRUE(CompressLevelFiles("C:\\in", core::PlaceAt(0)));
    EXPECT_THAT(NamesIn(LevelPath(0) / "FILES"), ElementsAre("a.wav", "manual.pdf"));
}

class CompressionSettingsOfOldLevels : public Compression {
  protected:
    static constexpr const char* kLevelZero = "Changing level: - TRLE: Original configuration -";
    // What was shown before the sizes were counted.
    std::vector<std::string> StepsShown() const {
        const std::vector<std::string>& shown = user.Shown();
        return {shown.begin(), std::find_if(shown.begin(), shown.end(), [](const std::string& text) {
                    return text.starts_with("Computing size of archive");
                })};
    }
    static constexpr const char* kQuestion =
        "Compression settings have been changed. \r\nDo you want change compress status of old level files? "
        "\r\nNote: "
        "if you choose NO, current settings will be used only for new levels";
};

TEST_F(CompressionSettingsOfOldLevels, UnchangedAskNothing) {
    ApplyCompressionSettings({false, false});
    EXPECT_THAT(user.Asked(), IsEmpty());
}

TEST_F(CompressionSettingsOfOldLevels, MayStayForNewLevelsOnly) {
    AddLevel(1, "City", {{"city.tr4", "CITY"}});
    user.WillAnswer(kQuestion, "no");
    ApplyCompressionSettings({true, false});
    EXPECT_TRUE(core::archive.Header.CompressFiles);
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("city.tr4"));
}

TEST_F(CompressionSettingsOfOldLevels, PackAndUnpackAllLevelsOnDisk) {
    AddLevel(1, "City", {{"city.tr4", std::string(3000, 'c')}, {"005.wav", "W"}, {"readme.txt", "r"}});
    test::MakeFile(LevelPath(1) / "FILES" / "load.bmp", test::MakeBitmap({}));
    AddLevel(2, "Disc", {{"disc.tr4", "DISC"}});
    core::archive.Table.Edit(2)->CdNumber = 3;
    user.WillAnswer(kQuestion, "yes");
    ApplyCompressionSettings({true, false});
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"),
                ElementsAre("005.wav.zl", "city.tr4.zl", "load.jpg", "readme.txt"));
    EXPECT_THAT(NamesIn(LevelPath(2) / "FILES"), ElementsAre("disc.tr4"));
    EXPECT_THAT(user.Shown(), Contains("compression file 'city.tr4' in progress"));
    EXPECT_THAT(user.Told(), Contains(HasSubstr("plain: New size [files] folders = ")));

    user.WillAnswer(kQuestion, "yes");
    ApplyCompressionSettings({false, false});
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"),
                ElementsAre("005.wav", "city.tr4", "load.bmp", "readme.txt"));
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES" / "city.tr4"), std::string(3000, 'c'));
    EXPECT_THAT(user.Shown(), Contains("decompression file 'city.tr4.zl' in progress"));
}

TEST_F(CompressionSettingsOfOldLevels, TellEachStepAndBothSizes) {
    AddLevel(1, "City", {{"city.tr4", std::string(3000, 'c')}});
    test::MakeFile(LevelPath(1) / "FILES" / "load.bmp", test::MakeBitmap({}));
    core::archive.Header.MainFolderSize = 5000;
    const auto size = [&](const char* name) { return fs::file_size(LevelPath(1) / "FILES" / name); };
    user.WillAnswer(kQuestion, "yes");
    EXPECT_TRUE(ApplyCompressionSettings({true, false}));
    EXPECT_THAT(StepsShown(),
                ElementsAre("Change compression status", kLevelZero, "Changing level: City", "Zipping files",
                            "compression file 'city.tr4' in progress", "Converting load.bmp in load.jpg"));
    ASSERT_LT(size("city.tr4.zl") + size("load.jpg"), 1024U * 10);
    EXPECT_THAT(
        user.Told(),
        ElementsAre("plain: New size [files] folders = " +
                    FormatSize(static_cast<std::int64_t>(size("city.tr4.zl") + size("load.jpg"))) +
                    "\r\nOld size [files] folders = 4 Kb\r\nNote: levels on cd have been not changed"));
    user.Forget();
    user.WillAnswer(kQuestion, "yes");
    EXPECT_TRUE(ApplyCompressionSettings({false, false}));
    EXPECT_THAT(StepsShown(), ElementsAre("Change compression status", kLevelZero, "Changing level: City",
                                          "Unzipping files", "decompression file 'city.tr4.zl' in progress",
                                          "Converting load.jpg in load.bmp"));
}

TEST_F(CompressionSettingsOfOldLevels, TellAPictureThatCannotBeConverted) {
    AddLevel(1, "City", {{"load.bmp", "no picture"}});
    AddLevel(2, "Coast", {{"coast.tr4", "COAST"}});
    user.WillAnswer(kQuestion, "yes");
    EXPECT_FALSE(ApplyCompressionSettings({true, false}));
    EXPECT_THAT(
        user.Told(),
        Contains("critical: The load picture of this level can't be converted. It stays as it is: City"));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("load.bmp"));
    EXPECT_EQ(test::BytesOf(LevelPath(1) / "FILES" / "load.bmp"), "no picture");
    EXPECT_THAT(NamesIn(LevelPath(2) / "FILES"), ElementsAre("coast.tr4.zl"));
}

TEST_F(CompressionSettingsOfOldLevels, AskWhereAFileCannotBeCompressed) {
    AddLevel(1, "City", {{"a.tr4", "A"}, {"b.tr4", "B"}});
    fs::create_directory(LevelPath(1) / "FILES" / "a.tr4.zl");
    user.WillAnswer(kQuestion, "yes");
    user.WillAnswer("Error compression file: a.tr4Do you want continue?", "yes");
    EXPECT_FALSE(ApplyCompressionSettings({true, false}));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("a.tr4", "b.tr4.zl"));
}

TEST_F(CompressionSettingsOfOldLevels, StopAtAFileThatFailsWhenTheUserSaysSo) {
    core::archive.Header.CompressFiles = true;
    AddLevel(1, "City", {{"bad.tr4.zl", "no stream"}});
    AddLevel(2, "Coast", {{"coast.tr4.zl", Zl("COAST")}});
    user.WillAnswer(kQuestion, "yes");
    user.WillAnswer("Error decompression file: bad.tr4.zlDo you want continue?", "no");
    ApplyCompressionSettings({false, false});
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("bad.tr4.zl"));
    EXPECT_THAT(NamesIn(LevelPath(2) / "FILES"), ElementsAre("coast.tr4.zl"));
}

TEST_F(CompressionSettingsOfOldLevels, AskAboutAudioThatCannotBeConverted) {
    AddLevel(1, "Song", {{"005.wav", "W"}});
    user.WillAnswer(kQuestion, "yes");
    user.WillAnswer("Error converting audio files for level: \r\nDo you want continue?", "no");
    ApplyCompressionSettings({false, true});
    EXPECT_THAT(user.Told(),
                Contains("critical: I cannot convert file '005.wav' from format [UNKNOWN 0Hz   0 "
                         "bits] to format [Mp3 24 Kbps mono]"));
    EXPECT_THAT(NamesIn(LevelPath(1) / "FILES"), ElementsAre("005.wav"));
}

} // namespace
} // namespace kelvash::swap
