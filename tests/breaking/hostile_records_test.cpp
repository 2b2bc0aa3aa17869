// Records that lie where they stand: in the TRLE folder, in a level's folder, in the application's folder.
#include <array>

#include "breaking/hostile_home.h"
#include "breaking/hostile_names.h"
#include "breaking/packages.h"
#include "support/record_bytes.h"

namespace kelvash::test {
namespace {

namespace fs = std::filesystem;

class HostileRecords : public HostileHome {
  protected:
    // Runs a command that may do to TRLE what it is for, but to nobody else.
    Told Swap(const Words& words, Answers answers = Answers::Yes) {
        const Snapshot before = SnapshotOf(ground);
        Told told = Run(words, answers);
        ExpectSane(told);
        const auto allowed = [](const std::string& path) {
            for (const char* start : {"runtime", "tmp/", "box/drive_c/Kelvash", "box/drive_c/Levels",
                                      "box/drive_c/Program Files/Core Design/trle"})
                if (path.starts_with(start)) return true;
            // An Archive may say that its levels lie anywhere.
            return path.find("/LEVEL_") != std::string::npos;
        };
        EXPECT_EQ(Differences(before, SnapshotOf(ground), allowed), "") << told.Story();
        return told;
    }
    // Every save of the levels' stashes is somewhere in the sandbox.
    void ExpectSaves(const FileMap& saves) const {
        std::set<std::string> found;
        for (const auto& folder : {levels, home, trle})
            for (const auto& [name, bytes] : TreeOf(folder))
                found.insert(bytes);
        for (const auto& [name, bytes] : saves)
            EXPECT_EQ(found.count(bytes), 1U) << "the save " << name << " is gone";
    }
    FileMap Saves() const {
        FileMap saves;
        for (const auto& [name, bytes] : TreeOf(levels))
            if (name.find("savegames/") != std::string::npos) saves[name] = bytes;
        return saves;
    }
};

std::vector<std::pair<std::string, std::string>> LyingMarkers(const fs::path& outside) {
    std::vector<std::pair<std::string, std::string>> markers = {
        {"empty", ""},
        {"one NUL", std::string(1, '\0')},
        {"no text", std::string(5000, '\xFF')},
        {"10 MB", std::string(std::size_t{10} << 20, '#')},
        {"all of TRLE",
         MarkerBytes("0001", "x", "", "\\tomb4.exe|\\data\\title.tr4|\\audio\\000.wav|\\script.dat")},
        {"a folder", MarkerBytes("0001", "x", "", "\\data|\\audio|\\.|\\")},
        {"masks", MarkerBytes("0001", "x", "", "\\*|\\*.*|\\data\\*.tr4|\\audio\\?*.wav")},
        {"a level that there isn't", MarkerBytes("0999", "x", "", "\\data\\none.tr4")},
        {"a negative level", MarkerBytes("-001", "x", "", "")},
        {"a huge level", MarkerBytes("99999999999999999999", "x", "", "")},
        {"no level", MarkerBytes("abc", "x", "", "")},
        {"level 0", MarkerBytes("0000", "x", "\\script.dat", "\\script.dat")},
        {"a name with signs", MarkerBytes("0001", "a|b\\c:d", "", "")},
        {"no end", "#LEVEL_CODE=0001#\r\n#COPIED_FILES=\\tomb4.exe"},
        {"twice", MarkerBytes("0001", "x", "", "") + MarkerBytes("0002", "y", "", "\\tomb4.exe")},
        {"saves", MarkerBytes("0001", "x", "", "\\savegame.0|\\savegame.1")},
        {"the marker itself", MarkerBytes("0001", "x", "\\Kelvash.txt", "\\Kelvash.txt")},
        {"a million entries", MarkerBytes("0001", "x", "", std::string(std::size_t{1} << 20, '|'))},
    };
    for (const HostileName& name : HostileFieldNames(outside))
        if (name.label.starts_with("climb") || name.label.starts_with("absolute") ||
            name.label.starts_with("rooted") || name.label.starts_with("on drive"))
            markers.emplace_back("names " + name.label, MarkerBytes("0001", "x", "\\" + name.name,
                                                                    "\\" + name.name + "|" + name.name));
    return markers;
}

TEST_F(HostileRecords, AMarkerTakesNothingOfOthers) {
    for (const auto& [label, bytes] : Sampled(LyingMarkers(outside), 5, 1)) {
        SCOPED_TRACE(label);
        Begin();
        const FileMap saves = Saves();
        MakeFile(trle / "savegame.0", "played before");
        MakeFile(trle / "Kelvash.txt", bytes);
        Swap({"status"});
        Swap({"install", "2"});
        Swap({"restore", "fast"});
        Swap({"restore", "full"});
        ExpectOriginal("a full restore");
        ExpectSaves(saves);
        ExpectSaves({{"savegame.0", "played before"}});
    }
    EXPECT_GT(figures.Of("cases"), LongForm() ? 40 : 7);
}

TEST_F(HostileRecords, ATr4InfoOnlyDescribes) {
    const std::string huge(std::size_t{30} << 20, 'h');
    std::vector<std::pair<std::string, std::string>> infos = {
        {"empty", ""},
        {"three bytes", "abc"},
        {"30 MB", huge},
        {"no such file", Tr4InfoBytes({{"none.tr4", 5}})}};
    for (const std::uint32_t count : {2U, 1000U, 0x7FFFFFFFU, 0xFFFFFFFFU})
        infos.emplace_back("states " + std::to_string(count), Tr4InfoBytes({{"maze.tr4", 5}}, count));
    for (const char* name : {"..\\..\\x.tr4", "/etc/passwd", "C:\\Other\\savegame.0", "a#b|c.tr4", "\x1B[2J"})
        infos.emplace_back(std::string("names ") + name, Tr4InfoBytes({{name, -1}, {name, 5}}));
    for (const auto& [label, bytes] : Sampled(infos, 3)) {
        SCOPED_TRACE(label);
        Begin();
        const FileMap saves = Saves();
        MakeFile(Level(1) / "tr4.inf", bytes);
        MakeFile(Level(2) / "tr4.inf", bytes);
        for (const Words& words :
             {Words{"levels"}, Words{"equal"}, Words{"install", "1"}, Words{"install", "2"},
              Words{"level", "set", "2", "--note", "x"}, Words{"restore", "fast"}})
            Swap(words);
        ExpectOriginal("a fast restore");
        ExpectSaves(saves);
    }
    EXPECT_GT(figures.Of("cases"), LongForm() ? 12 : 3);
}

// Fields of an Archive: folders that aren't the user's to give, counts, and codes.
std::vector<std::pair<std::string, std::string>> LyingArchives(const std::string& sound,
                                                               const fs::path& outside) {
    constexpr std::size_t kHeader = 546;
    constexpr std::size_t kRecord = 1634;
    std::vector<std::pair<std::string, std::string>> lies;
    const auto put = [&](const std::string& label, std::size_t at, const std::string& piece) {
        std::string bytes = sound;
        Put(bytes, at, piece);
        lies.emplace_back(label, bytes);
    };
    for (const std::size_t length : {0U, 1U, 4U, 260U, 515U, 545U, 546U, 547U, 1000U, 2180U, 3000U})
        lies.emplace_back("cut at " + std::to_string(length), sound.substr(0, length));
    lies.emplace_back("zeros", std::string(6000, '\0'));
    lies.emplace_back("all bits", std::string(6000, '\xFF'));
    lies.emplace_back("20 MB behind the levels", sound + std::string(std::size_t{20} << 20, 'x'));
    for (const std::uint32_t count : {0U, 2U, 4U, 100U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU})
        put("states " + std::to_string(count) + " levels", 516, NumberBytes(count, 4));
    for (const std::uint32_t count : {1U, 99U, 0xFFFFFFFFU})
        put("states " + std::to_string(count) + " CDs", 520, NumberBytes(count, 4));
    for (const std::string& folder :
         {std::string("C:\\"), std::string("C:\\Kelvash"), std::string("C:\\Other"),
          std::string("C:\\Program Files\\Core Design\\trle"), std::string(""),
          std::string("Z:") + outside.string(), std::string("C:\\..\\..\\..\\outside"),
          std::string("Q:\\none"), std::string("C:\\Levels\\..\\Other"), std::string("C:/Levels"),
          std::string("#|\x01\x1B[2J")}) {
        put("writable folder " + folder, 260, TextField(folder, 256));
        std::string both = sound;
        Put(both, 4, TextField(folder, 256) + TextField(folder, 256));
        lies.emplace_back("both folders " + folder, both);
    }
    for (const std::uint32_t code : {0U, 2U, 9999U, 10000U, 123456789U, 0xFFFFFFFFU})
        put("a level's code " + std::to_string(code), kHeader + 1360, NumberBytes(code, 4));
    put("a level's CD", kHeader + kRecord + 1364, NumberBytes(7, 4));
    put("a document outside", kHeader + 1368, TextField("..\\..\\..\\Other\\savegame.0", 256));
    put("a name that breaks the marker", kHeader, TextField("City#COPIED_FILES=\\tomb4.exe#", 256));
    put("a name of a folder", kHeader, TextField("..\\..\\x", 256));
    return lies;
}

TEST_F(HostileRecords, AnArchiveNamesFoldersButTakesNothing) {
    Renew();
    const std::string sound = BytesOf(home / "LevelArchive.kva");
    for (const auto& [label, bytes] : Sampled(LyingArchives(sound, outside), 7)) {
        SCOPED_TRACE(label);
        Begin();
        const FileMap saves = Saves();
        fs::remove(home / "LevelArchive.kva");
        MakeFile(home / "LevelArchive.kva", bytes);
        for (const Words& words : {Words{"levels"}, Words{"status"}, Words{"install", "1"}, Words{"sizes"},
                                   Words{"restore", "fast"}})
            Swap(words);
        ExpectOriginal("a fast restore");
        ExpectSaves(saves);
    }
    EXPECT_GT(figures.Of("cases"), LongForm() ? 50 : 6);
}

TEST_F(HostileRecords, AProfileCostsNothing) {
    Renew();
    const std::string sound = BytesOf(home / "Kelvash.prf");
    std::vector<std::pair<std::string, std::string>> lies;
    for (const std::size_t length : {0U, 1U, 265U, 1000U, 1296U, 1500U, 1587U})
        lies.emplace_back("cut at " + std::to_string(length), sound.substr(0, length));
    lies.emplace_back("zeros", std::string(1588, '\0'));
    lies.emplace_back("all bits", std::string(1588, '\xFF'));
    lies.emplace_back("longer", sound + std::string(100, 'x'));
    for (const char* folder :
         {"", "C:\\", "C:\\Kelvash", "C:\\Levels", "Q:\\none", "C:\\Other", "..\\..", "\x1B[2J"}) {
        std::string bytes = sound;
        Put(bytes, 266, TextField(folder, 256));
        lies.emplace_back(std::string("TRLE is ") + folder, bytes);
    }
    std::string program = sound;
    Put(program, 778, TextField("..\\..\\Other\\savegame.0", 256));
    lies.emplace_back("another game", program);
    for (const auto& [label, bytes] : Sampled(lies, 4)) {
        SCOPED_TRACE(label);
        Begin();
        const FileMap saves = Saves();
        fs::remove(home / "Kelvash.prf");
        MakeFile(home / "Kelvash.prf", bytes);
        for (const Words& words : {Words{"status"}, Words{"levels"}, Words{"install", "1"},
                                   Words{"restore", "fast"}, Words{"restore", "full"}})
            Swap(words, Answers::None);
        ExpectOriginal("both restores");
        ExpectSaves(saves);
    }
    EXPECT_EQ(figures.Of("cases"), LongForm() ? 19 : 5);
}

// A sign in the folder's path switched the journal off.
TEST_F(HostileRecords, TheTrleFolderMayBeCalledAnything) {
    const fs::path usual = trle;
    for (const char* name : {"trle #1", "a#COPIED_FILES=b#", "100%", "it's", "trle.dat", "tr\xC3\xA9le"}) {
        SCOPED_TRACE(name);
        Begin();
        trle = usual.parent_path() / name;
        fs::rename(usual, trle);
        std::string profile = BytesOf(home / "Kelvash.prf");
        std::string path = Dos(trle);
        if (const std::size_t letter = path.find("\xC3\xA9"); letter != std::string::npos)
            path.replace(letter, 2, "\xE9"); // as Windows-1252
        Put(profile, 266, TextField(path, 256));
        fs::remove(home / "Kelvash.prf");
        MakeFile(home / "Kelvash.prf", profile);
        Succeed({"install", "2"});
        MakeFile(trle / "savegame.3", "played");
        Succeed({"install", "1"});
        EXPECT_EQ(BytesOf(Level(2) / "BACKUP_SAVEGAMES/savegame.3"), "played");
        Succeed({"restore", "fast"});
        ExpectOriginal("a fast restore");
        trle = usual;
    }
    EXPECT_EQ(figures.Of("cases"), 6);
}

TEST_F(HostileRecords, StoredFilesThatLieAreTold) {
    std::vector<std::pair<std::string, std::string>> files;
    const std::string stream = ZerosStream(1);
    for (const auto& [label, bytes] : std::vector<std::pair<std::string, std::string>>{
             {"empty", ""},
             {"no stream", "This is no stream."},
             {"cut", stream.substr(0, stream.size() / 2)},
             {"wrong checksum", stream.substr(0, stream.size() - 1) + "x"},
             {"more behind", stream + "behind"},
             {"half a gzip head", std::string("\x1F\x8B\x08\xFF", 4)},
             {"a head that needs a dictionary", "\x78\xBB\x00\x00\x00\x01"}}) {
        SCOPED_TRACE(label);
        Begin();
        MakeFile(Level(1) / "FILES" / "bad.tr4.zl", bytes);
        MakeFile(Level(1) / "FILES" / "104.wav.zl", bytes);
        MakeFile(Level(1) / "FILES" / "load.jpg", bytes);
        fs::remove(Level(1) / "FILES" / "load.bmp");
        const Told told = Swap({"install", "1"});
        if (told.status() == 0) {
            EXPECT_TRUE(Exists(trle / "data/bad.tr4")) << "said to be in\n" << told.Story();
        }
        Swap({"restore", "fast"});
        ExpectOriginal("a fast restore");
    }
}

TEST_F(HostileRecords, PicturesThatLieAreHarmless) {
    const std::string jpeg = GreyJpeg();
    std::string wide = jpeg;
    const std::size_t frame = wide.find("\xFF\xC0");
    ASSERT_NE(frame, std::string::npos);
    Put(wide, frame + 5, "\xFF\xFF\xFF\xFF"); // height and width
    std::string bitmap = GreyBitmap();
    std::string far_bitmap = bitmap;
    Put(far_bitmap, 10, "\xFF\xFF\xFF\x7F"); // where the pixels begin
    std::string wide_bitmap = bitmap;
    Put(wide_bitmap, 18, "\xFF\xFF\xFF\x7F\xFF\xFF\xFF\x7F");
    std::string negative = bitmap;
    Put(negative, 18, std::string("\x08\x00\x00\x00\x00\x00\x00\x80", 8));
    for (const auto& [label, name, bytes] :
         std::vector<std::array<std::string, 3>>{{"a jpeg of 65535 x 65535", "load.jpg", wide},
                                                 {"half a jpeg", "load.jpg", jpeg.substr(0, jpeg.size() / 2)},
                                                 {"a jpeg's head alone", "load.jpg", "\xFF\xD8\xFF"},
                                                 {"a bitmap with pixels far away", "load.bmp", far_bitmap},
                                                 {"a bitmap of 2 G x 2 G", "load.bmp", wide_bitmap},
                                                 {"a bitmap upside down without end", "load.bmp", negative},
                                                 {"half a bitmap", "load.bmp", bitmap.substr(0, 60)}}) {
        SCOPED_TRACE(label);
        Begin();
        for (const char* old : {"load.bmp", "load.jpg"})
            fs::remove(Level(1) / "FILES" / old);
        MakeFile(Level(1) / "FILES" / name, bytes);
        Swap({"prefs", "--compress", "on"});
        Swap({"install", "1"});
        Swap({"restore", "fast"});
        ExpectOriginal("a fast restore");
    }
    EXPECT_EQ(figures.Of("cases"), 7);
}

// A translation replaces texts; no line of it makes a command delete or write anything else.
TEST_F(HostileRecords, ATranslationMovesNoFiles) {
    std::string all_empty;
    std::string all_dots;
    std::string all_stars;
    for (int id = 1; id < 4000; ++id) {
        all_empty += std::to_string(id) + "\t\n";
        all_dots += std::to_string(id) + "\t\\..\\..\\Other\n";
        all_stars += std::to_string(id) + "\t*\n";
    }
    for (const auto& [label, bytes] :
         std::vector<std::pair<std::string, std::string>>{{"an empty 1201", "1201\t\n"},
                                                          {"everything empty", all_empty},
                                                          {"everything outside", all_dots},
                                                          {"everything a mask", all_stars},
                                                          {"no table", std::string(100000, '\xFF')},
                                                          {"NULs", std::string(1000, '\0')}}) {
        SCOPED_TRACE(label);
        Begin();
        const FileMap saves = Saves();
        MakeFile(home / "messages.txt", bytes);
        for (const Words& words :
             {Words{"export", "1", Dos(zips / "out.zip")}, Words{"install", "1"}, Words{"restore", "fast"},
              Words{"add", (zips / "Clockwork Pass.zip").string()}, Words{"restore", "full"}}) {
            const Told told = Run(words, Answers::Yes);
            ExpectSane(told);
            EXPECT_TRUE(Exists(home / "Kelvash.prf")) << told.Story();
            EXPECT_TRUE(Exists(home / "backup_trle/script.dat")) << told.Story();
            EXPECT_EQ(BytesOf(drive / "Other/savegame.0"), "of another program") << told.Story();
        }
        ExpectOriginal("a full restore");
        ExpectSaves(saves);
        fs::remove(home / "messages.txt");
        Succeed({"status"});
    }
}

} // namespace
} // namespace kelvash::test
