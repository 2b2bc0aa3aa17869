// The files that are measured: an Archive with two plain levels and two packed ones, 60 MB each, and TRLE.
#pragma once

#include <zlib.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "bench/timing.h"
#include "core/archive.h"
#include "core/profile.h"
#include "foundation/drives.h"

namespace kelvash::bench {

inline std::string Packed(const std::string& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    std::string packed(size, '\0');
    compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
              static_cast<uLong>(bytes.size()), 6);
    packed.resize(size);
    return packed;
}

struct File {
    std::string name;
    std::string folder; // in the TRLE folder
    std::size_t size;
};

// 60 MB of a level, of which the waves, script and picture stand in TRLE already.
inline const std::vector<File>& LevelFiles() {
    static const std::vector<File> files = {
        {"level.tr4", "data", 38 * kMegabyte}, {"level.pak", "data", 12 * kMegabyte},
        {"010.wav", "audio", 5 * kMegabyte},   {"011.wav", "audio", 4 * kMegabyte},
        {"script.dat", ".", 20'000},           {"load.bmp", ".", 786'486}};
    return files;
}

inline bool StandsInTrle(const File& file) {
    return file.folder != "data";
}

// A home with levels 1 and 2, plain, and 3 and 4, packed; and a second TRLE folder for the plain tools.
struct World {
    fs::path work, home, levels, trle, plain_trle, temp;
    explicit World(const fs::path& folder)
        : work(folder),
          home(work / "home"),
          levels(work / "c/Levels"),
          trle(work / "c/trle"),
          plain_trle(work / "plain_trle"),
          temp(work / "plain_temp") {}

    fs::path Files(int code) const { return levels / ("LEVEL_000" + std::to_string(code)) / "FILES"; }

    void MakeTrle(const fs::path& target) const {
        Write(target / "tomb4.exe", "MZ");
        Write(target / "english.dat", "english");
        Write(target / "data" / "title.tr4", LevelBytes(kMegabyte, 1));
        for (const File& file : LevelFiles())
            if (StandsInTrle(file)) Write(target / file.folder / file.name, LevelBytes(file.size, 2));
    }

    void Make() const {
        MakeTrle(trle);
        fs::create_directories(home);
        fs::copy(trle, home / "backup_trle", fs::copy_options::recursive);
        fs::copy(trle, plain_trle, fs::copy_options::recursive);
        fs::create_directories(temp);
        for (const char* name : {"FILES", "BACKUP_SAVEGAMES"})
            fs::create_directories(home / "LEVEL_0000" / name);
        for (int code = 1; code <= 4; ++code) {
            fs::create_directories(Files(code).parent_path() / "BACKUP_SAVEGAMES");
            for (const File& file : LevelFiles()) {
                const std::string bytes = LevelBytes(file.size, static_cast<unsigned>(code));
                const bool pack = code > 2 && (file.name.ends_with(".tr4") || file.name.ends_with(".wav"));
                Write(Files(code) / (file.name + (pack ? ".zl" : "")), pack ? Packed(bytes) : bytes);
            }
        }
        std::ofstream(home / "drives.txt")
            << "C=" << (work / "c").string() << "\nH=" << home.string() << "\n";
        SaveState();
    }

    void SaveState() const {
        if (!SetAppFolder(home)) Die("no home");
        core::profile.TrleFolder = "C:\\trle";
        core::profile.FullBackup = true;
        core::archive.Header.MainFolder = core::archive.Header.SecondaryFolder = "C:\\Levels";
        core::archive.Table = {};
        for (int code = 0; code <= 4; ++code) {
            core::LevelRecord level;
            level.Code = code;
            level.Name = "Level " + std::to_string(code);
            core::archive.Table.Append(level);
        }
        if (!core::WriteArchive("H:\\bench.kva")) Die("no Archive");
    }
};

} // namespace kelvash::bench
