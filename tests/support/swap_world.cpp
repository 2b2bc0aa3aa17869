#include "support/swap_world.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "core/archive.h"
#include "core/profile.h"
#include "foundation/native_text.h"
#include "program/end.h"
#include "support/test_home.h"

namespace kelvash::test {

namespace fs = std::filesystem;

namespace {

// Files of the TRLE folder: root, then sub-folders. The first savegame is older than all others.
const std::vector<std::string>& TrleNames() {
    static const std::vector<std::string> names = {
        "savegame.0",     "tomb4.exe",           "uninst.isu",        "TRLE.lnk",
        "script.dat",     "english.dat",         "load.bmp",          "objects.h",
        "edgeptr.pcx",    "readme.wri",          "data/title.tr4",    "data/tut1.tr4",
        "audio/000.wav",  "audio/001.wav",       "audio/045.wav",     "graphics/wads/a.wad",
        "graphics/x.tga", "sound/samples/s.wav", "script/script.txt", "manual/manual.pdf"};
    return names;
}

bool InCompactBackup(const std::string& name) {
    if (name.find('/') != std::string::npos)
        return name.starts_with("data/") || name.starts_with("graphics/");
    for (const char* end : {".log", ".pcx", ".bmp", ".dat", ".h"})
        if (name.ends_with(end)) return true;
    return false;
}

std::string ReadBytes(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

fs::path KnownSpelling(const fs::path& path) {
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(path.parent_path(), error))
        if (Lower(TextOfNative(entry.path().filename())) == Lower(TextOfNative(path.filename())))
            return entry.path();
    return path;
}

core::LevelRecord RecordOf(std::int32_t code, const std::string& name) {
    core::LevelRecord record;
    record.Code = code;
    record.Name = name;
    return record;
}

std::string FromHex(std::string_view digits) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2)
        bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
    return bytes;
}

} // namespace

std::string Lower(std::string_view text) {
    std::string lower(text);
    for (char& c : lower)
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    return lower;
}

FileMap TreeOf(const fs::path& folder) {
    FileMap files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder, error))
        if (entry.is_regular_file())
            files[Lower(GenericTextOf(entry.path().lexically_relative(folder)))] = ReadBytes(entry.path());
    return files;
}

FileMap FilesIn(const fs::path& folder) {
    FileMap files;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder, error))
        if (entry.is_regular_file())
            files[Lower(TextOfNative(entry.path().filename()))] = ReadBytes(entry.path());
    return files;
}

bool IsSaveName(const std::string& name) {
    if (name.find('/') != std::string::npos) return false;
    return name.starts_with("savegame.") || (name.starts_with("shot") && name.ends_with(".jpg")) ||
           (name.starts_with("note") && name.ends_with(".txt"));
}

FileMap SavesOf(const FileMap& root) {
    FileMap saves;
    for (const auto& [name, bytes] : root)
        if (IsSaveName(name)) saves[name] = bytes;
    return saves;
}

World::World(const fs::path& drive_c)
    : drive(drive_c),
      home(drive / "Kelvash"),
      trle(drive / "trle"),
      backup(home / "backup_trle"),
      levels(drive / "Levels") {}

fs::path World::LevelPath(std::int32_t code) const {
    const std::string digits = std::to_string(code);
    return (code == 0 ? home : levels) / ("LEVEL_" + std::string(4 - digits.size(), '0') + digits);
}

std::string WriteStamped(const fs::path& path, const std::string& text) {
    static int serial = 0;
    const std::string bytes = text + " #" + std::to_string(++serial);
    const fs::path file = KnownSpelling(path);
    fs::remove(file); // its bytes may be linked elsewhere
    MakeFile(file, bytes);
    const auto start = fs::file_time_type::clock::now() - std::chrono::hours(24 * 365);
    fs::last_write_time(file, start + std::chrono::seconds(2 * serial));
    return bytes;
}

int SerialOf(const std::string& bytes) {
    const std::size_t mark = bytes.rfind('#');
    return mark == std::string::npos ? 0 : std::atoi(bytes.c_str() + mark + 1);
}

void MakeTrleWorld(const World& world, Backup backup) {
    for (const std::string& name : TrleNames()) {
        WriteStamped(world.trle / name,
                     name.starts_with("savegame") ? "level 0 first " + name : "trle " + name);
        if (backup == Backup::Full || InCompactBackup(name)) {
            fs::create_directories((world.backup / name).parent_path());
            fs::copy_file(world.trle / name, world.backup / name);
            fs::last_write_time(world.backup / name, fs::last_write_time(world.trle / name));
        }
    }
    MakeFile(world.home / "backup_trle.txt", std::string("#TRLE_FOLDER=C:\\trle\r\n#KIND=") +
                                                 (backup == Backup::Full ? "full" : "compact") + "\r\n");
    // A file of the user's own that no backup knows.
    WriteStamped(world.trle / "own.h", "trle own.h");
    for (const char* name : {"FILES", "BACKUP_SAVEGAMES", "SAVEGAMES", "SCREENSHOTS"})
        fs::create_directories(world.LevelPath(0) / name);
}

void MakeLevel(const World& world, const WorldLevel& level) {
    for (const char* name : {"FILES", "BACKUP_SAVEGAMES", "SAVEGAMES", "SCREENSHOTS"})
        fs::create_directories(world.LevelPath(level.code) / name);
    for (const NamedFile& file : level.files)
        MakeFile(world.FilesPath(level.code) / file.name, file.bytes);
    for (const NamedFile& file : level.stash)
        WriteStamped(world.StashPath(level.code) / file.name, file.bytes);
}

void OpenWorld(const World&, const std::vector<WorldLevel>& levels, Backup backup) {
    core::profile.TrleFolder = "C:\\trle";
    core::profile.FullBackup = backup == Backup::Full;
    core::profile.AutoSave = false;
    core::archive = core::ArchiveState();
    core::archive.Header.MainFolder = "C:\\Levels";
    core::archive.Header.SecondaryFolder = "C:\\Levels";
    core::archive.Table = {RecordOf(0, "- TRLE: Original configuration -")};
    for (const WorldLevel& level : levels)
        core::archive.Table.Append(RecordOf(level.code, level.name));
    ASSERT_TRUE(core::WriteArchive("C:\\Kelvash\\levels.kva"));
    ASSERT_TRUE(program::SaveProfile());
}

std::string ZlibStream(const std::string& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string stream(size, '\0');
    compress(reinterpret_cast<Bytef*>(stream.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
             static_cast<uLong>(bytes.size()));
    stream.resize(size);
    return stream;
}

std::string GreyJpeg() {
    return FromHex(
        "ffd8ffe000104a46494600010100000100010000ffdb0043000302020302020303030304030304050805050404050a070706"
        "080c0a0c"
        "0c0b0a0b0b0d0e12100d0e110e0b0b1016101113141515150c0f171816141812141514ffc0000b080008000801011100ffc4"
        "001f0000"
        "010501010101010100000000000000000102030405060708090a0bffc400b5100002010303020403050504040000017d0102"
        "03000411"
        "05122131410613516107227114328191a1082342b1c11552d1f02433627282090a161718191a25262728292a343536373839"
        "3a434445"
        "464748494a535455565758595a636465666768696a737475767778797a838485868788898a92939495969798999aa2a3a4a5"
        "a6a7a8a9"
        "aab2b3b4b5b6b7b8b9bac2c3c4c5c6c7c8c9cad2d3d4d5d6d7d8d9dae1e2e3e4e5e6e7e8e9eaf1f2f3f4f5f6f7f8f9faffda"
        "00080101"
        "00003f002bffd9");
}

std::string GreyBitmap() {
    return FromHex(
               "424df60000000000000036000000"             // type, 246 bytes, pixels at 54
               "2800000008000000080000000100180000000000" // 8 x 8, 24 bits
               "c0000000") +                              // 192 bytes of pixels
           std::string(16, static_cast<char>(0)) +
           std::string(192, '\x80');
}

} // namespace kelvash::test
