// What a package file, a media configuration and a level's other records may lie about.
#include "breaking/hostile_home.h"
#include "breaking/hostile_names.h"
#include "breaking/packages.h"
#include "support/built.h"
#include "support/record_bytes.h"

namespace kelvash::test {
namespace {

class HostileConfig : public HostileHome {
  protected:
    static std::string Package(const PackageConfig& config, std::vector<ZipBytes> more = {}) {
        more.push_back(MakeEntry("kelvash.cfg", ConfigBytes(config)));
        return PackageWith(std::move(more));
    }
    // Adds a level with that package file; the road of one that comes in is gone in some of the cases, as it
    // doesn't depend on the name much.
    Told AddConfig(const PackageConfig& config, std::vector<ZipBytes> more = {}) {
        Begin();
        Told told = Add(Package(config, std::move(more)));
        EXPECT_FALSE(Holds("outside secret.wav")) << "read from outside\n" << told.Story();
        EXPECT_FALSE(Holds("outside secret.txt")) << "read from outside\n" << told.Story();
        constexpr int kEach = 4;
        const bool walks = LongForm() || figures.Of("roads") == 0 || figures.Of("cases") % kEach == 0;
        if (const int code = CodeOf(told); code > 0 && walks) WalkRoad(code);
        return told;
    }
    // In the short form each of the tests has other names, from the `first` on.
    void AddEachName(std::size_t first, const std::function<PackageConfig(const std::string&)>& config_of) {
        constexpr std::size_t kNamesEach = 15;
        for (const HostileName& name : Sampled(HostileFieldNames(outside), kNamesEach, first)) {
            SCOPED_TRACE(name.label);
            AddConfig(config_of(name.name));
        }
        EXPECT_GT(figures.Of("cases"), LongForm() ? 90 : 5);
        EXPECT_GT(figures.Of("roads"), 0);
    }
};

TEST_F(HostileConfig, AWaveIsWrittenNowhereElse) {
    AddEachName(0, [](const std::string& name) {
        PackageConfig config;
        config.extern_waves = Items({"TR4", "one.wav", name, "000.wav"});
        return config;
    });
}

TEST_F(HostileConfig, AWaveIsReadFromNowhereElse) {
    AddEachName(3, [](const std::string& name) {
        PackageConfig config;
        config.extern_waves = Items({"TR4", name, "leak.wav", name});
        return config;
    });
    for (const std::filesystem::path& secret : {outside / "secret.wav", user / ".bashrc"}) {
        std::string up;
        for (int i = 0; i < 16; ++i)
            up += "../";
        PackageConfig config;
        config.extern_waves = Items({"XX", "a", "leak1.wav", secret.string(), "XX", "a", "leak2.wav",
                                     up + secret.string().substr(1)});
        AddConfig(config);
        EXPECT_FALSE(Holds("the user's .bashrc"));
    }
}

TEST_F(HostileConfig, ADuplicateIsWrittenNowhereElse) {
    AddEachName(6, [](const std::string& name) {
        PackageConfig config;
        config.duplications = Items({"maze.tr4", name});
        return config;
    });
}

TEST_F(HostileConfig, ADuplicateIsReadFromNowhereElse) {
    std::vector<std::string> masks = {"*", "*.*", "?", "", "*.tr4/../*", "**"};
    for (const char* file : {"secret.wav", "secret.*", "*"})
        for (const std::string& folder : {outside.string(), "../../../../../../.." + outside.string()})
            masks.push_back(folder + "/" + file);
    for (const std::string& mask : Sampled(masks, 2)) {
        SCOPED_TRACE(mask);
        PackageConfig config;
        config.duplications = Items({mask, "leak"});
        config.use_wads = Items({"leak", mask});
        AddConfig(config);
    }
}

TEST_F(HostileConfig, AWadIsWrittenNowhereElse) {
    AddEachName(9, [](const std::string& name) {
        PackageConfig config;
        config.use_wads = Items({name, "tut1.*"});
        return config;
    });
}

TEST_F(HostileConfig, DocumentsAndListsNameNothingElse) {
    AddEachName(12, [](const std::string& name) {
        PackageConfig config;
        config.more_info = name;
        config.files = {{name, 7}, {"maze.tr4", 15}};
        config.import_wads = {};
        return config;
    });
}

TEST_F(HostileConfig, TextsThatActAreOnlyTexts) {
    const std::vector<std::pair<std::string, std::string>> texts = {
        {"breaks the marker", "City#COPIED_FILES=\\tomb4.exe#"},
        {"breaks the marker with lines", "City#\r\n#COPIED_FILES=\\tomb4.exe|\\data\\title.tr4#\r\n"},
        {"breaks the list", "a|\\tomb4.exe|b"},
        {"escape sequences", "\x1B[2J\x1B]0;owned\x07 level"},
        {"NULs", Literal("a\0b\0c")},
        {"line ends", "one\r\ntwo\nthree\rfour"},
        {"mark-up", "<a href=\"file:///etc/passwd\">x</a><img src=x>"},
        {"marks of messages", "~1~2~3~9 %s %n {0}"},
        {"JSON", "\",\"ok\":true,\"x\":\""},
        {"blanks alone", std::string(256, ' ')},
        {"256 letters", std::string(256, 'W')},
        {"no Windows-1252", "\x81\x8D\x8F\x90\x9D"},
        {"a folder's name", "../../Other"},
        {"a device", "CON"},
    };
    for (const auto& [label, text] : Sampled(texts, 3)) {
        SCOPED_TRACE(label);
        Begin();
        PackageConfig config;
        config.name = config.note = config.author = config.message = config.import_notes = text;
        config.emails = config.sites = text;
        config.exe_kind = text;
        const Told told = Add(Package(config));
        if (CodeOf(told) > 0) WalkRoad(CodeOf(told));
        EXPECT_EQ(figures.Of("roads"), figures.Of("cases")) << told.Story();
    }
}

TEST_F(HostileConfig, LyingCountsAndLengthsAreHarmless) {
    std::vector<std::pair<std::string, std::string>> files;
    const auto add = [&](const std::string& label, const std::function<void(PackageConfig&)>& lie) {
        PackageConfig config;
        config.files = {{"maze.tr4", 15}, {"script.dat", 18}};
        config.use_wads = Items({"x", "tut1.*"});
        lie(config);
        files.emplace_back(label, ConfigBytes(config));
    };
    for (const std::int32_t count : {-1, -2147483647 - 1, 0, 1, 3, 1000, 0x7FFFFFFF})
        add("states " + std::to_string(count) + " files", [&](auto& c) { c.file_count = count; });
    for (const int length : {0, 1, 0x7FFF, 0x8000, 0xFFFF})
        add("states a text of " + std::to_string(length),
            [&](auto& c) { c.use_wads_length = static_cast<std::uint16_t>(length); });
    add("negative sizes", [](auto& c) { c.files = {{"maze.tr4", -1}, {"script.dat", -2147483647 - 1}}; });
    add("a name of 60000", [](auto& c) { c.files = {{std::string(60000, 'n'), 1}}; });
    add("half groups", [](auto& c) { c.extern_waves = Items({"TR4", "a", "b"}); });
    add("a thousand groups", [](auto& c) {
        for (int i = 0; i < 1000; ++i)
            c.extern_waves += "X" + std::string(1, '\0');
    });
    const std::string sound = ConfigBytes({});
    for (const std::size_t length : {0U, 1U, 4U, 255U, 256U, 257U, 1360U, 5456U, 7504U, 8016U, 8616U, 8696U,
                                     8705U, 8706U, 8707U, 8709U, 8710U, 8711U})
        files.emplace_back("cut at " + std::to_string(length), sound.substr(0, length));
    files.emplace_back("a longer end", sound + std::string(100000, 'e'));
    files.emplace_back("zeros", std::string(9000, '\0'));
    files.emplace_back("all bits", std::string(9000, '\xFF'));
    for (const auto& [label, bytes] : Sampled(files, 4)) {
        SCOPED_TRACE(label);
        Begin();
        MakeFile(zips / "kelvash.cfg", bytes);
        Check({"config", (zips / "kelvash.cfg").string()}, May::Nothing);
        const Told told = Add(PackageWith({MakeEntry("kelvash.cfg", bytes)}));
        if (CodeOf(told) > 0 && (LongForm() || figures.Of("cases") % 3 == 0)) WalkRoad(CodeOf(told));
    }
    EXPECT_GT(figures.Of("cases"), LongForm() ? 30 : 7);
}

TEST_F(HostileConfig, AHugeOneTakesLittleMemory) {
    Begin(); // a kelvash.cfg of 300 MB
    PackageConfig config;
    config.file_count = 0x7FFFFFFF;
    MakeFile(zips / "kelvash.cfg", ConfigBytes(config));
    std::filesystem::resize_file(zips / "kelvash.cfg", std::uintmax_t{300} << 20);
    const std::int64_t most = Slowness() * (std::int64_t{150} << 20);
    const Told told = Run({"config", (zips / "kelvash.cfg").string()});
    ExpectSane(told);
    EXPECT_LT(told.end.memory, most) << told.command;
}

TEST_F(HostileConfig, PlainLinesHoldNoControls) {
    const std::string text = "\x1B[31mred\x1B[0m\x07\x08\x7F \xC2\x9B";
    const auto expect_plain = [&](const Words& words) {
        ProgramStart start = Command(words, Answers::Yes);
        std::erase(start.words, "--json");
        const ProgramEnd end = RunProgram(start);
        for (const char c : end.output + end.errors) {
            const auto byte = static_cast<unsigned char>(c);
            ASSERT_TRUE(byte >= 0x20 || c == '\n' || c == '\r' || c == '\t')
                << "the sign " << int{byte} << " in\n"
                << words.front() << ": " << testing::PrintToString(end.output + end.errors);
            ASSERT_NE(byte, 0x7F) << words.front();
        }
        figures.Count("cases");
    };
    PackageConfig config;
    config.name = config.note = config.author = config.message = text;
    config.more_info = text + ".txt";
    config.extern_waves = Items({text, text, text, text});
    config.exe_kind = text;
    MakeFile(zips / "kelvash.cfg", ConfigBytes(config));
    MakeFile(zips / "case.zip",
             Package(config, {MakeEntry(text + ".wav", "x"), MakeEntry("../" + text, "x")}));
    expect_plain({"config", (zips / "kelvash.cfg").string()});
    expect_plain({"add", (zips / "case.zip").string()});
    expect_plain({"levels"});
    expect_plain({"install", "5"});
    expect_plain({"status"});
    expect_plain({"remove", "5"});
    EXPECT_EQ(figures.Of("cases"), 6);
}

class HostileMedia : public HostileHome {
  protected:
    void Install(const std::string& label, const std::string& media, std::vector<ZipBytes> more = {}) {
        SCOPED_TRACE(label);
        Begin();
        more.push_back(MakeEntry("media.mcf", media));
        const Told told = Add(PackageWith(std::move(more)));
        if (const int code = CodeOf(told); code > 0) WalkRoad(code);
    }
};

TEST_F(HostileMedia, FileNamesLeadNowhere) {
    for (const HostileName& name : Sampled(HostileFieldNames(outside), 14, 7))
        Install(name.label, MediaBytes({name.name}));
    EXPECT_GT(figures.Of("roads"), LongForm() ? 90 : 5);
}

TEST_F(HostileMedia, OwnFilesOfTrleAreNotTaken) {
    const std::vector<ZipBytes> taken = {MakeEntry("tomb4.exe", "hostile"), MakeEntry("winmm.dll", "hostile"),
                                         MakeEntry("savegame.0", "hostile"),
                                         MakeEntry("kelvash.txt", "hostile")};
    for (const char* name : {"tomb4.exe", "winmm.dll", "savegame.0", "kelvash.txt", "Kelvash.tmp"})
        Install(name, MediaBytes({name}), taken);
}

TEST_F(HostileMedia, LyingCountsAreHarmless) {
    for (const std::uint32_t count :
         Sampled<std::uint32_t>({0U, 2U, 1000U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}, 2, 1))
        Install("states " + std::to_string(count), MediaBytes({"intro.avi"}, count));
    const std::string sound = MediaBytes({"intro.avi"});
    for (const std::size_t length : Sampled<std::size_t>({0, 3, 4, 19, 20, 276, 290, 1375}, 3))
        Install("cut at " + std::to_string(length), sound.substr(0, length));
    Install("ten thousand events", MediaBytes(std::vector<std::string>(10000, "../x")));
}

} // namespace
} // namespace kelvash::test
