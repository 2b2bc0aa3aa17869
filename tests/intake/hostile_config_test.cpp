// Package files of strangers who mean harm: whatever kelvash.cfg names, nothing outside the level's files is
// read in or written.
#include <gmock/gmock.h>

#include <fstream>

#include "core/archive.h"
#include "foundation/drives.h"
#include "foundation/native_text.h"
#include "foundation/text.h"
#include "intake/apply_config.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class HostileConfig : public test::IntakeHome {
  protected:
    HostileConfig() {
        LevelConfig = {};
        test::MakeFile(root / ".bashrc", "the user's own");
        test::MakeFile(root / "secret.wav", "a secret");
        test::MakeFile(drive / "x", "on the drive");
    }
    // Names that would lead out, each ending in a file of this name where it can.
    std::vector<std::string> BadNames(const std::string& file) const {
        const std::string up = "../../../../../../../../../..";
        return {GenericTextOf(root / file),
                up + GenericTextOf(root / file),
                "../../../../" + file,
                "./" + file,
                "a/../../" + file,
                "sub/" + file,
                "aux." + file,
                "NUL",
                "com1.wav",
                file + ".",
                file + " .",
                "..",
                ".",
                "kelvash.tmp",
                "\x1B[2J" + file,
                "a\n" + file,
                std::string(300, 'n') + ".wav"};
    }
    // The dialog on a new level with these files; each time it has nothing of the last one.
    void Open(const Files& files) {
        if (!level.Level.IsListed()) {
            OpenNew(files);
            return;
        }
        for (const std::string& name : WorkNames())
            fs::remove(Work() / name);
        for (const auto& [name, bytes] : files)
            test::MakeFile(Work() / name, bytes);
        BeginLevel(level, core::PlaceAt(1));
    }
    void Apply() {
        LevelConfig.FileCount = static_cast<std::int32_t>(LevelConfig.FileNames.size());
        test::MakeFile(Work() / "kelvash.cfg", ConfigBytes());
        Refresh(level);
    }
    // All files of the world with their bytes but those of the level's work folder.
    std::map<std::string, std::string> Outside() const {
        std::map<std::string, std::string> files;
        for (fs::recursive_directory_iterator at(root), end; at != end; ++at)
            if (at->is_regular_file() && !fs::equivalent(at->path().parent_path(), Work()))
                files[GenericTextOf(at->path())] = test::BytesOf(at->path());
        return files;
    }
    static std::string List(const std::vector<std::string>& items) { return Join(items, "\0"s); }
};

TEST_F(HostileConfig, TargetsOfWavesStayInTheLevel) {
    Open({{"maze.tr4", "x"}, {"002.wav", "the replacement"}});
    std::string list;
    for (const std::string& name : BadNames("evil.wav"))
        if (name.size() < 256)
            list += (list.empty() ? "" : "\0"s) + List({"TR4", "098.wav", name, "002.wav"});
    LevelConfig.ExternWaves = list;
    const auto before = Outside();
    Apply();
    EXPECT_EQ(Outside(), before);
    EXPECT_THAT(WorkNames(), ElementsAre("002.wav", "maze.tr4"));
    ASSERT_EQ(user.Told().size(), 1U);
    EXPECT_THAT(user.Told().front(),
                StartsWith("exclamation: Warning: config file of this level holds following "
                           "names, that can not be names of level files. They have been "
                           "ignored:\r\n"));
    EXPECT_THAT(user.Told().front(), HasSubstr("\r\n" + GenericTextOf(root / "evil.wav") + "\r\n"));
    EXPECT_TRUE(ConfigApplied); // the rest goes on
}

TEST_F(HostileConfig, ReplacementsOfWavesAreTakenFromTheLevelOrTrleAlone) {
    for (const std::string& name : BadNames("secret.wav")) {
        user.Forget();
        LevelConfig = {};
        LevelConfig.ExternWaves = List({"TR4", "098.wav", "105.wav", name});
        Open({{"maze.tr4", "x"}});
        Apply();
        EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4")) << name;
        EXPECT_THAT(user.Told(), Contains(HasSubstr("request extern wave file is missing (098.wav)")))
            << name;
    }
}

TEST_F(HostileConfig, WavesOfADiscComeFromItsAudioFolderAlone) {
    test::MakeFile(root / "cd/secret.wav", "beside");
    test::MakeFile(root / "cd/audio/098.wav", "wave");
    ASSERT_TRUE(SetDrive('E', root / "cd", DriveType::CdRom));
    for (const std::string& name : {"../secret.wav"s, "..\\secret.wav"s, GenericTextOf(root / "secret.wav"),
                                    "sub\\098.wav"s, "E:\\audio\\098.wav"s, "098.wav:stream"s}) {
        user.Forget();
        LevelConfig = {};
        LevelConfig.ExternWaves = List({"TR4", name, "105.wav", ""});
        Open({{"maze.tr4", "x"}});
        Apply();
        EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4")) << name;
        EXPECT_THAT(user.Told(), Contains(HasSubstr("They have been ignored:\r\n" + name))) << name;
        EXPECT_THAT(user.Asked(), IsEmpty()) << name; // no disc is asked for
    }
}

TEST_F(HostileConfig, CopiesStayInTheLevel) {
    user.MayBeTold("that can not be names of level files");
    for (const std::string& name : BadNames("evil")) {
        LevelConfig = {};
        LevelConfig.Duplications = List({"*.wad", name});
        LevelConfig.UseWads = List({name, "city.*"});
        Open({{"maze.tr4", "x"}, {"city.wad", "wad"}});
        const auto before = Outside();
        Apply();
        EXPECT_EQ(Outside(), before) << name;
        for (const std::string& stays : WorkNames())
            EXPECT_TRUE(fs::path(stays).filename() == stays && stays.find('/') == std::string::npos);
    }
}

TEST_F(HostileConfig, MasksOfCopiesReadTheirOwnFoldersAlone) {
    test::MakeFile(levels / "other.wad", "of another");
    for (const std::string& mask : {"../../*.wav"s, "..\\*"s, GenericTextOf(root / "*"), "C:\\*"s, "\\*"s}) {
        LevelConfig = {};
        LevelConfig.Duplications = List({mask, "copy"});
        LevelConfig.UseWads = List({"copy", mask});
        Open({{"maze.tr4", "x"}});
        Apply();
        EXPECT_THAT(WorkNames(), ElementsAre("maze.tr4")) << mask;
    }
}

// Whether a file is there or how large it is can't be found out by the list.
TEST_F(HostileConfig, TheListOfFilesLooksIntoTheLevelAlone) {
    for (const std::string& name :
         {"../../../../secret.wav"s, "..\\..\\..\\x"s, GenericTextOf(root / "secret.wav"), "C:\\x"s}) {
        LevelConfig = {};
        LevelConfig.FileNames = {name};
        LevelConfig.FileSizes = {1};
        Open({{"maze.tr4", "x"}});
        level.ConfigFound = true;
        user.WillAnswer("it's not present", "no");
        EXPECT_FALSE(CheckLevelConfigFiles(level, Loudness::Loud)) << name;
    }
}

TEST_F(HostileConfig, WadsAreProvedInTheirFolderAlone) {
    test::MakeFile(trle / "graphics/wads/desert.wad", "x");
    EXPECT_TRUE(WadsInstalled("desert.wad", "http://x.org/a.zip"));
    for (const std::string& proof : {"..\\..\\tomb4.exe"s, "../../tomb4.exe"s, "/etc/passwd"s, "."s, ""s})
        EXPECT_FALSE(WadsInstalled(proof, "http://x.org/a.zip")) << proof;
}

TEST_F(HostileConfig, TheDocumentIsANameOrNone) {
    for (const std::string& name :
         {"../../.bashrc"s, "..\\maze.tr4"s, "/etc/passwd"s, "read\0me.txt"s, "aux.txt"s}) {
        user.Forget();
        LevelConfig = {};
        LevelConfig.MoreInfoFile = name;
        Open({{"maze.tr4", "x"}});
        Apply();
        EXPECT_EQ(Record().MoreInfoFile, "") << name;
        EXPECT_EQ(user.Told().size(), 1U) << name;
    }
}

TEST_F(HostileConfig, TextsLoseWhatWorksOnATerminal) {
    Open({{"maze.tr4", "x"}});
    LevelConfig.LevelName = "Maze\r\n\x1B[2Jline";
    LevelConfig.LevelNote = "a\0b\u0081c"s;
    LevelConfig.AuthorName = "Ada\x1B]0;t\a\nL";
    LevelConfig.AuthorMessage = "one\r\ntwo\x1B[1m";
    Apply();
    EXPECT_EQ(level.Name, "Maze line");
    EXPECT_EQ(level.Note, "a bc");
    EXPECT_EQ(Record().Author, "Ada L");
    EXPECT_EQ(Record().AuthorNote, "one\r\ntwo");
}

TEST_F(HostileConfig, AFileOfManyMegabytesIsNoPackageFile) {
    Open({{"maze.tr4", "x"}});
    const fs::path config = Work() / "kelvash.cfg";
    std::ofstream(config).put('x');
    fs::resize_file(config, 300U << 20); // a hole: it costs no disk
    Refresh(level);
    EXPECT_THAT(user.Told(), ElementsAre("critical: Error: config file is too large to be one of a level: " +
                                         level.WorkFolder + "\\kelvash.cfg"));
    EXPECT_FALSE(ConfigApplied);
    fs::resize_file(config, kLongestConfig);
    EXPECT_TRUE(ReadLevelConfig(level.WorkFolder + "\\kelvash.cfg"));
}

TEST_F(HostileConfig, ACountBeyondTheFileIsNoCount) {
    for (const std::uint32_t count : {1U, 1000000U, 0x7FFFFFFFU}) {
        std::string bytes(kConfigHeaderSize, ' ');
        for (int i = 0; i < 4; ++i)
            bytes[8706 + static_cast<std::size_t>(i)] = static_cast<char>(count >> (8 * i));
        LevelConfigRecord config;
        EXPECT_EQ(DecodeLevelConfig(bytes, config), ConfigFault::Entry) << count;
        EXPECT_TRUE(config.FileNames.empty());
        EXPECT_LT(config.FileNames.capacity(), 16U); // nothing is made on the strength of a number
    }
}

// Through the whole road: a zip with such a package file adds its level and touches nothing else.
TEST_F(HostileConfig, ItsLevelIsAddedAllTheSame) {
    user.MayBeTold("that can not be names of level files");
    user.MayBeTold("request extern wave file is missing");
    LevelConfig.LevelName = "Hostile";
    LevelConfig.Duplications = List({"*.tr4", GenericTextOf(root / "evil")});
    LevelConfig.ExternWaves =
        List({"TR4", "098.wav", "../../../../../.bashrc", GenericTextOf(root / "secret.wav"), "TR4",
              "098.wav", "105.wav", GenericTextOf(root / "secret.wav")});
    const std::string config = ConfigBytes();
    MakeZip("in/hostile.zip",
            {{"maze.tr4", "x"}, {"english.dat", "e"}, {"script.dat", "s"}, {"kelvash.cfg", config}});
    AddLevel(0, "Zero", {});
    const auto before = Outside();
    WillWork(&StoreLevel);
    ASSERT_TRUE(intake::AddLevel("C:\\in\\hostile.zip"));
    EXPECT_EQ(test::BytesOf(root / ".bashrc"), "the user's own");
    for (const auto& [path, bytes] : Outside())
        EXPECT_TRUE(path.find("/LEVEL_") != std::string::npos || path.ends_with(".kva") ||
                    path.ends_with(".lock") || before.contains(path))
            << path;
    const std::int32_t code = core::archive.Table[core::archive.Table.Size() - 1].Code;
    EXPECT_THAT(StoredNames(code), ElementsAre("english.dat", "maze.tr4", "script.dat"));
}

} // namespace
} // namespace kelvash::intake
