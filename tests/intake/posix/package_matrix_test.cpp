// Packages as they are published, each with what becomes of it. packages/make_package.sh makes them with the
// system's zip tools.
#include <gmock/gmock.h>

#include <cstdlib>
#include <ostream>

#include "core/archive.h"
#include "foundation/drives.h"
#include "intake/new_level.h"
#include "support/intake_home.h"

namespace kelvash::intake {
namespace {

using Names = std::vector<std::string>;

struct Package {
    std::string name;
    std::vector<std::pair<std::string, std::string>> answers; // part of the question, answer
    std::string level_name;                                   // empty: the level is not added
    Names stored;
    Names told = {}; // parts of the messages in order, the summary apart
    Names stash = {};
    Names shots = {};
};

void PrintTo(const Package& package, std::ostream* out) {
    *out << package.name;
}

class PackageMatrix : public test::IntakeHome, public testing::WithParamInterface<Package> {
  protected:
    void Make(const std::string& name) {
        std::filesystem::create_directories(drive / "in");
        const std::string command =
            std::string(KELVASH_MAKE_PACKAGE) + " '" + (drive / "in").string() + "' " + name;
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
    }
    std::string Source(const std::string& name) const {
        for (const char* extension : {".zip", "", ".tr4"})
            if (test::Exists(drive / "in" / (name + extension))) return "C:\\in\\" + name + extension;
        return {};
    }
};

TEST_P(PackageMatrix, BecomesTheExpectedLevel) {
    const Package& package = GetParam();
    Make(package.name);
    for (const auto& [question, answer] : package.answers)
        user.WillAnswer(question, answer);
    AddLevels({Source(package.name)});
    const std::vector<std::string>& told = user.Told();
    ASSERT_EQ(told.size(), package.told.size() + 1) << testing::PrintToString(told);
    for (std::size_t i = 0; i < package.told.size(); ++i)
        EXPECT_THAT(told[i], testing::HasSubstr(package.told[i]));
    const bool added = !package.level_name.empty();
    EXPECT_THAT(told.back(),
                testing::StartsWith("plain: Added levels: " + std::to_string(added ? 1 : 0) + " of 1"));
    EXPECT_EQ(core::archive.Table.Size(), added ? 2 : 1);
    EXPECT_EQ(test::Exists(levels / "LEVEL_0001"), added);
    EXPECT_FALSE(test::Exists(drive / "evil.txt"));
    EXPECT_FALSE(test::Exists(levels / "evil.txt"));
    if (!added) return;
    EXPECT_EQ(core::archive.Table[1].Name, package.level_name);
    EXPECT_EQ(StoredNames(), package.stored);
    EXPECT_EQ(NamesIn(StashPath(1)), package.stash);
    EXPECT_EQ(NamesIn(LevelPath(1) / "SCREENSHOTS"), package.shots);
}

const Names kMaze = {"english.dat", "maze.tr4", "script.dat"};

Names With(Names names, const Names& more) {
    names.insert(names.end(), more.begin(), more.end());
    std::sort(names.begin(), names.end());
    return names;
}

const std::vector<Package> kPackages = {
    {"flat", {}, "flat", With(kMaze, {"readme.txt"})},
    {"one_top_folder", {}, "one_top_folder", With(kMaze, {"readme.txt"})},
    {"data_and_audio_folders",
     {},
     "data_and_audio_folders",
     With(kMaze, {"008.wav", "105.wav", "load.bmp", "uklogo.pak"}),
     {},
     {},
     {"load.bmp"}},
    {"upper_case_names",
     {},
     "upper_case_names",
     {"105.WAV", "ENGLISH.DAT", "MAZE.TR4", "README.TXT", "SCRIPT.DAT"}},
    {"nested_zip", {}, "nested_zip", With(kMaze, {"readme.txt"})},
    {"nested_twice", {}, "nested_twice", With(kMaze, {"music.wav"})},
    {"two_languages", {}, "two_languages", kMaze},
    {"two_foreign_languages",
     {{"This level contains 2 language files", "2"}},
     "two_foreign_languages",
     {"german.dat", "maze.tr4", "script.dat"}},
    {"readme_names_standard",
     {{"Rename tr4 file from \"mylevel.tr4\" to \"city.tr4\"?", "yes"}},
     "readme_names_standard",
     {"city.tr4", "read me.txt", "script.dat"}},
    {"no_script_number",
     {{"Missing .dat file for current level", "yes"}, {"Rename .tr4 file", "7"}},
     "no_script_number",
     {"karnak.tr4", "script.dat"}},
    {"no_script_refused",
     {{"Missing .dat file for current level", "no"}},
     "",
     {},
     {"critical: Missing .dat file and .tr4 files are not standard level names"}},
    {"standard_name",
     {{"the level named: Temple of Karnak\r\n", "yes"}},
     "standard_name",
     {"karnak.tr4", "readme.txt", "script.dat"}},
    {"several_levels",
     {},
     "several_levels",
     {"english.dat", "one.tr4", "script.dat", "three.tr4", "title.tr4", "two.tr4"}},
    {"several_without_script",
     {},
     "",
     {},
     {"critical: Missing .dat file and .tr4 files are not standard level names"}},
    {"documents", {}, "documents", With(kMaze, {"hints.rtf", "manual.doc", "story.html", "walkthrough.htm"})},
    {"names_utf8", {}, "names_utf8", With(kMaze, {"Größe é.txt", "Łódź.txt"})},
    {"names_cp437", {}, "names_cp437", With(kMaze, {"Größe.txt"})},
    {"names_cp1252", {}, "names_cp1252", With(kMaze, {"Straße über.txt"})},
    {"names_with_signs",
     {},
     "names_with_signs",
     With(kMaze, {"105 - Theme [loud].wav", "The author's  notes (v1.2) & more - final!.txt"})},
    {"long_name", {}, "long_name", With(kMaze, {std::string(200, 'x') + ".txt"})},
    {"empty_files", {}, "empty_files", With(kMaze, {"empty.txt", "empty.wav"})},
    {"level_of_700_mb", {}, "level_of_700_mb", With(kMaze, {"intro.pak"})},
    {"savegames", {}, "savegames", kMaze, {}, {"savegame.0", "savegame.12", "savegame.3"}},
    {"pictures", {}, "pictures", With(kMaze, {"load.bmp"}), {}, {}, {"load.bmp", "map.bmp", "shot1.jpg"}},
    {"package_file", {}, "By its author", With(kMaze, {"story.txt"})},
    {"package_file_of_other_sizes",
     {{"Size of file 'maze.tr4 in internal file list", "yes"}},
     "By its author",
     With(kMaze, {"story.txt"})},
    {"package_file_cut_short",
     {},
     "package_file_cut_short",
     kMaze,
     {"critical: Error reading config file: "}},
    {"sources_only",
     {{"There are level files in source .tom format.", "ok"}},
     "",
     {},
     {"convert .tom files"}},
    {"no_level", {}, "", {}, {"critical: Missing file .tr4 and also file .tom"}},
    {"installer", {}, "", {}, {"critical: Missing file .tr4 and also file .tom"}},
    {"encrypted", {{"Encrypted zip file", "secret"}}, "encrypted", kMaze},
    {"encrypted_wrong",
     {{"is encrypted.", "guess"}, {"is wrong.", "cancel"}},
     "",
     {},
     {"The zip file encrypted_wrong.zip is encrypted, and its password has not been given"}},
    {"truncated",
     {},
     "",
     {},
     {"critical: Error while copying or unzipping file: truncated.zip\r\nI can not open zip file"}},
    {"damaged",
     {},
     "",
     {},
     {"critical: Error while copying or unzipping file: damaged.zip\r\nError extracting following entries"}},
    {"backslashes", {}, "backslashes", kMaze},
    {"stored", {}, "stored", With(kMaze, {"readme.txt"})},
    {"packed_with_bzip2", {}, "packed_with_bzip2", With(kMaze, {"005.wav"})},
    {"zip64", {}, "zip64", kMaze},
    {"self_extracting", {}, "self_extracting", kMaze},
    {"with_comment", {}, "with_comment", kMaze},
    {"music_as_mp3", {}, "music_as_mp3", With(kMaze, {"105.wav"})},
    {"music_that_is_none",
     {{"Would you like continue audio conversion?", "no"}},
     "",
     {},
     {"critical: Failed conversion: Error decoding '105.mp3' : "}},
    {"engine_folder",
     {},
     "engine_folder",
     With(kMaze, {"105.wav", "Play.exe", "README.txt", "load.bmp", "title.tr4", "tomb4.exe"}),
     {},
     {},
     {"load.bmp", "splash.bmp"}},
    {"same_names_in_folders",
     {},
     "same_names_in_folders",
     With(kMaze, {"readme.txt"}),
     {"there is already a file with same name"}},
    {"nameless_level", {}, "nameless_level", {".tr4", "english.dat", "script.dat"}},
    {"climbing",
     {},
     "climbing",
     kMaze,
     {"have been skipped because they should be extracted out of the level folder"}},
    {"a_folder", {{"there are also sub folders", "yes"}}, "a_folder", With(kMaze, {"105.wav"})},
    {"a_level_file",
     {{"Missing .dat file for current level", "yes"}, {"Rename .tr4 file", "1"}},
     "a_level_file",
     {"script.dat", "tut1.tr4"}},
};

INSTANTIATE_TEST_SUITE_P(AsPublished, PackageMatrix, testing::ValuesIn(kPackages),
                         [](const testing::TestParamInfo<Package>& package) { return package.param.name; });

} // namespace
} // namespace kelvash::intake
