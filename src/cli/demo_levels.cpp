#include "cli/demo_levels.h"

#include "cli/demo_audio.h"
#include "cli/demo_files.h"

namespace kelvash::cli {

namespace {

using Files = std::vector<std::pair<std::string, std::string>>;

const std::vector<std::string>& EnglishWords() {
    static const std::vector<std::string> words = {"New Game", "Load Game", "Save Game", "Options",
                                                   "Exit Game"};
    return words;
}

std::string Readme(const core::LevelRecord& level, const std::string& story) {
    return level.Name + "\r\nby " + level.Author + "\r\n\r\n" + story + "\r\n\r\n" +
           "This level is part of a demonstration. Its files have the right form, but nobody can walk in "
           "it.\r\n";
}

core::LevelRecord Record(std::int32_t code, const std::string& name, const std::string& author,
                         const std::string& note) {
    core::LevelRecord record;
    record.Code = code;
    record.Name = name;
    record.Author = author;
    record.Note = note;
    record.MoreInfoFile = "readme.txt";
    return record;
}

// The files that every level has: level, script, load screen, readme.
Files CommonFiles(const core::LevelRecord& record, const std::string& file, int track, unsigned seed,
                  const std::vector<std::string>& languages, const std::string& story) {
    const std::vector<ScriptLevel> script = {{record.Name, file, track}};
    return {{file + ".tr4", LevelData(seed)},
            {"script.dat", ScriptData(script, languages)},
            {"load.bmp", LandscapeBitmap(seed)},
            {"readme.txt", Readme(record, story)}};
}

std::string English(const std::string& title) {
    return LanguageData(StringsOf({{title, {}, 0}}, EnglishWords()));
}

DemoLevel PlainLevel() {
    DemoLevel level;
    level.record = Record(1, "The Drowned Gate", "Ada Example", "Choose 'The Drowned Gate' in the list");
    level.record.Emails = std::string("ada@example.com") + '\0' + "ada@example.org";
    level.record.Sites = "http://levels.example.com/drowned-gate";
    level.record.AuthorNote = "My first level. Be kind to the frogs.";
    level.files = CommonFiles(level.record, "gate", 104, 11, {"ENGLISH.DAT"},
                              "The gate has stood under water for a hundred years. The key has not.");
    level.files.emplace_back("english.dat", English(level.record.Name));
    level.files.emplace_back("objects.h", "#define DROWNED_GATE 1\r\n");
    level.shots = {21, 22, 23};
    return level;
}

DemoLevel CompressedLevel() {
    DemoLevel level;
    level.record = Record(2, "Harbour of Brass", "Bert Example", "Two ways lead to the lighthouse");
    level.record.Emails = "bert@example.com";
    level.record.Sites = std::string("http://brass.example.com") + '\0' + "http://mirror.example.org/brass";
    level.record.AuthorNote = "Thanks to all who tested the cranes.";
    level.files = CommonFiles(level.record, "harbour", 5, 12, {"ENGLISH.DAT"},
                              "A town of pipes and cranes waits for a ship that nobody has ordered.");
    level.files.emplace_back("english.dat", English(level.record.Name));
    level.files.emplace_back("021.wav", TrackWave(180, 0.5));
    level.compressed = true;
    level.saves = {{"savegame.0", SavegameData(level.record.Name, 1, 12)},
                   {"savegame.1", SavegameData(level.record.Name, 2, 47)},
                   {"note1.txt", "The crane's switch is behind the third boiler.\r\n"}};
    level.shots = {31};
    return level;
}

DemoLevel ItalianLevel() {
    DemoLevel level;
    level.record = Record(3, "La Torre del Vento", "Carla Esempio", "In Italian");
    level.record.Emails = "carla@example.com";
    level.record.AuthorNote = "La torre è alta: salvare spesso.";
    level.files = CommonFiles(level.record, "torre", 8, 13, {"ENGLISH.DAT", "ITALIAN.DAT"},
                              "A tower that hums. The language file is Italian, and the game's own makes "
                              "room for it.");
    level.files.emplace_back(
        "italian.dat", LanguageData({level.record.Name, "Nuova partita", "Carica", "Salva", "Opzioni"}));
    level.shots = {41, 42};
    return level;
}

DemoLevel MusicLevel() {
    DemoLevel level;
    level.record = Record(4, "Songs of the Quarry", "Dora Example", "Turn the music on");
    level.record.Emails = "dora@example.com";
    level.record.Sites = "http://quarry.example.com";
    level.files = CommonFiles(level.record, "quarry", 107, 14, {"ENGLISH.DAT"},
                              "Every stone has a tone. Two tracks and the logo are new.");
    level.files.emplace_back("english.dat", English(level.record.Name));
    level.files.emplace_back("uklogo.pak", LogoData(14));
    level.files.emplace_back("005.wav", TrackWave(660, 0.4));
    level.files.emplace_back("107.wav", TrackWave(220, 1.0));
    return level;
}

DemoLevel ZippedLevel(const std::string& name, const std::string& author, const std::string& file,
                      unsigned seed, const std::string& story) {
    DemoLevel level;
    level.record = Record(0, name, author, {});
    level.files = CommonFiles(level.record, file, 9, seed, {"ENGLISH.DAT"}, story);
    level.files.emplace_back("english.dat", English(name));
    level.files.emplace_back("009.wav", TrackWave(300 + seed, 0.3));
    return level;
}

const std::vector<ScriptLevel>& OriginalLevels() {
    static const std::vector<ScriptLevel> levels = {{"Title", "title", 104},
                                                    {"Training Grounds", "tut1", 1},
                                                    {"Temple by the River", "karnak", 2},
                                                    {"Ruins by the Sea", "coastal", 3}};
    return levels;
}

void AddRoot(Files& files) {
    files.emplace_back("script.dat", ScriptData(OriginalLevels(), {"ENGLISH.DAT"}));
    files.emplace_back("english.dat", LanguageData(StringsOf(OriginalLevels(), EnglishWords())));
    files.emplace_back("load.bmp", LandscapeBitmap(1));
    files.emplace_back("objects.h", "#define LARA 0\r\n#define FROG 1\r\n");
    files.emplace_back("edgeptr.pcx", GridPcx());
    files.emplace_back("autosave.prj", "A stand-in for the room editor's own copy.\r\n");
    files.emplace_back("uninst.isu", "A stand-in for the set-up's log.\r\n");
    for (const char* log : {"box.log", "tom.log", "zone.log", "error.log"})
        files.emplace_back(log, "A stand-in for a tool's log.\r\n");
}

void AddData(Files& files) {
    unsigned seed = 1;
    for (const ScriptLevel& level : OriginalLevels())
        files.emplace_back("data\\" + level.file + ".tr4", LevelData(seed++));
    files.emplace_back("data\\uklogo.pak", LogoData(1));
}

// The whole set of 54: the first tracks and the title's.
void AddAudio(Files& files) {
    constexpr int kTracks = 54;
    constexpr int kTitleTrack = 104;
    for (int i = 0; i < kTracks; ++i) {
        const int track = i == kTracks - 1 ? kTitleTrack : i;
        const std::string number = std::to_string(1000 + track).substr(1);
        files.emplace_back("audio\\" + number + ".wav", TrackWave(220 + 8.0 * track, 0.5));
    }
}

void AddSources(Files& files) {
    const std::string wads = "graphics\\wads\\";
    files.emplace_back(wads + "font.pc", std::string(2048, '\x11'));
    files.emplace_back(wads + "pcsky.raw", std::string(196608, '\x60'));
    for (const char* extension : {"wad", "swd", "was", "sfx", "tom", "lar", "raw"})
        files.emplace_back(wads + "tut1." + extension,
                           std::string("A stand-in for a source of the level.\r\n"));
    for (const char* extension : {"sam", "cd"}) // these may be empty
        files.emplace_back(wads + "tut1." + extension, std::string());
    files.emplace_back("maps\\tut1\\tut1.prj", "A stand-in for a project.\r\n");
    files.emplace_back("script\\SCRIPT.TXT", ScriptText(OriginalLevels()));
    files.emplace_back("script\\ENGLISH.TXT", LanguageText(StringsOf(OriginalLevels(), EnglishWords())));
    files.emplace_back("script\\SCRIPT.DAT", ScriptData(OriginalLevels(), {"ENGLISH.DAT"}));
    files.emplace_back("script\\ENGLISH.DAT", LanguageData(StringsOf(OriginalLevels(), EnglishWords())));
    for (const char* name : {"splash", "creak", "step1", "step2", "frog"})
        files.emplace_back("sound\\samples\\" + std::string(name) + ".wav",
                           SampleWave(150 + 40.0 * name[0], 0.2));
    files.emplace_back("sound\\LevelSFX Creator\\sounds.txt",
                       "splash\r\ncreak\r\nstep1\r\nstep2\r\nfrog\r\n");
}

} // namespace

std::vector<DemoLevel> ArchiveLevels() {
    return {PlainLevel(), CompressedLevel(), ItalianLevel(), MusicLevel()};
}

std::vector<DemoLevel> ZippedLevels() {
    return {ZippedLevel("The Lantern Caves", "Emil Example", "caves", 21,
                        "Bring oil. The lanterns are there, but somebody has used them all night."),
            ZippedLevel("Clockwork Pass", "Fay Example", "pass", 22,
                        "The bridge opens every nine minutes. The other one never does.")};
}

Files TrleFiles() {
    const std::vector<std::string> manual = {"Stand-in for the manual of the level editor.",
                                             "This folder was made by kelvash-cli demo."};
    Files files;
    AddRoot(files);
    AddData(files);
    AddAudio(files);
    AddSources(files);
    files.emplace_back("manual\\manual.pdf", PagePdf(manual));
    files.emplace_back("manual\\manual.htm",
                       "<html><body><p>" + manual[0] + "</p><p>" + manual[1] + "</p></body></html>\r\n");
    return files;
}

const std::vector<std::string>& TrleFolders() {
    static const std::vector<std::string> folders = {
        "data", "graphics",   "graphics\\wads", "audio", "extra texture",           "logo",          "manual",
        "maps", "maps\\tut1", "script",         "sound", "sound\\LevelSFX Creator", "sound\\samples"};
    return folders;
}

} // namespace kelvash::cli
