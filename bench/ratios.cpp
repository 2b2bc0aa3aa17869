// ratios WORK BIN CLI: the program's work beside plain tools doing the same, in pairs, and the table of
// ratios. WORK is an empty folder for the files, BIN holds the small programs of this folder, CLI is
// kelvash-cli.
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "bench/timing.h"
#include "bench/world.h"
#include "core/archive.h"
#include "core/profile.h"
#include "foundation/drives.h"

namespace {

using namespace kelvash;
using namespace kelvash::bench;

// --- swaps ---

// rm of the level that is in, cp of what it had overwritten, cp of the next level's files.
std::vector<Command> PlainSwap(const World& world, int code, const std::string& bin) {
    Command remove = {"rm", "-f"};
    std::vector<Command> commands;
    Command restore_audio = {"cp", "-p"}, restore_root = {"cp", "-p"};
    Command inflate = {bin + "/inflate_files", world.Files(code).string(), world.temp.string()};
    Command copy[3] = {{"cp", "-p"}, {"cp", "-p"}, {"cp", "-p"}};
    for (const File& file : LevelFiles()) {
        remove.push_back((world.plain_trle / file.folder / file.name).string());
        const std::string original = (world.home / "backup_trle" / file.folder / file.name).string();
        if (StandsInTrle(file)) (file.folder == "audio" ? restore_audio : restore_root).push_back(original);
        const bool packed = fs::exists(world.Files(code) / (file.name + ".zl"));
        if (packed) inflate.push_back(file.name);
        const fs::path from = packed ? world.temp / file.name : world.Files(code) / file.name;
        copy[file.folder == "data" ? 0 : file.folder == "audio" ? 1 : 2].push_back(from.string());
    }
    restore_audio.push_back((world.plain_trle / "audio").string());
    restore_root.push_back(world.plain_trle.string());
    copy[0].push_back((world.plain_trle / "data").string());
    copy[1].push_back((world.plain_trle / "audio").string());
    copy[2].push_back(world.plain_trle.string());
    commands = {remove, restore_audio, restore_root};
    if (inflate.size() > 3) commands.push_back(inflate);
    commands.insert(commands.end(), std::begin(copy), std::end(copy));
    if (inflate.size() > 3) {
        Command clear = {"rm", "-f"};
        for (std::size_t i = 3; i < inflate.size(); ++i)
            clear.push_back((world.temp / inflate[i]).string());
        commands.push_back(clear);
    }
    return commands;
}

std::uintmax_t BytesIn(const fs::path& folder) {
    std::uintmax_t bytes = 0;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(folder))
        if (entry.is_regular_file() && entry.path().filename() != "Kelvash.txt") bytes += entry.file_size();
    return bytes;
}

Pairs MeasureSwap(const World& world, const std::string& bin, int one, int other) {
    Pairs pairs;
    for (int i = -2; i < kRounds; ++i) {
        const int code = i % 2 == 0 ? one : other;
        Settle(world.work);
        const double ours = Run({bin + "/swap_once", world.home.string(), std::to_string(code)});
        Settle(world.work);
        const double plain = RunAll(PlainSwap(world, code, bin));
        if (i >= 0) pairs.Add(ours, plain); // the first two only fill the page cache
    }
    if (BytesIn(world.trle) != BytesIn(world.plain_trle)) Die("the two TRLE folders differ");
    return pairs;
}

// --- an Archive of 10,000 levels ---

constexpr int kManyLevels = 10'000;

fs::path MakeManyLevels(const World& world) {
    const fs::path home = world.work / "many";
    fs::create_directories(home / "LEVEL_0000");
    std::ofstream(home / "drives.txt")
        << "C=" << (world.work / "c").string() << "\nH=" << home.string() << "\n";
    if (!SetAppFolder(home)) Die("no home");
    core::archive.Table = {};
    for (int code = 0; code < kManyLevels; ++code) {
        core::LevelRecord level;
        level.Code = code;
        level.Name = "Level of number " + std::to_string(code * 7919 % kManyLevels);
        level.Author = "Somebody of some name";
        level.Note = "Choose the second entry of the list";
        core::archive.Table.Append(level);
    }
    if (!core::WriteArchive("H:\\many.kva") || !core::WriteProfile()) Die("no Archive");
    return home;
}

double TimeOf(const std::function<bool()>& work) {
    const auto start = Clock::now();
    if (!work()) Die("the Archive can't be read or written");
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

// The bytes written to a new file and flushed, by the plainest means.
bool WriteAndFlush(const fs::path& path, const std::string& bytes) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666);
    const bool written =
        descriptor >= 0 &&
        write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
        fdatasync(descriptor) == 0;
    close(descriptor);
    return written;
}

void MeasureManyLevels(const World& world, const std::string& bin, const std::string& cli) {
    const fs::path home = MakeManyLevels(world);
    const std::string bytes(static_cast<std::size_t>(fs::file_size(home / "many.kva")), 'x');
    std::vector<double> load, write, plain_write, list;
    for (int i = 0; i < kRounds; ++i) {
        load.push_back(TimeOf([] { return core::LoadArchive("H:\\many.kva"); }));
        Settle(world.work);
        write.push_back(TimeOf([] { return core::WriteArchive("H:\\many.kva"); }));
        Settle(world.work);
        plain_write.push_back(TimeOf([&] { return WriteAndFlush(home / "plain.bin", bytes); }));
        list.push_back(Run({cli, "--home", home.string(), "--json", "levels"}));
    }
    PrintRow("LoadArchive, 10,000 levels", Median(load), 0, Median(load), 30, " ms");
    PrintRow("WriteArchive, 10,000 levels, flushed", Median(write), Median(plain_write), Median(write), 60,
             " ms");
    PrintRow("kelvash-cli --json levels, 10,000 levels", Median(list), 0, Median(list), 150, " ms");
    PrintRow("  its peak memory", 0, 0,
             PeakOf(bin, "'" + cli + "' --home '" + home.string() + "' --json levels"), 64, " MiB");
}

void MeasureStatus(const World& world, const std::string& bin, const std::string& cli) {
    Pairs pairs;
    for (int i = 0; i < kShortRounds; ++i) {
        const double ours = Run({cli, "--home", world.home.string(), "status"});
        pairs.Add(ours, Run({bin + "/empty"}));
    }
    PrintRow("kelvash-cli status, above an empty program", Median(pairs.ours), Median(pairs.plain),
             Median(pairs.differences), 40, " ms");
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4) Die("usage: ratios WORK BIN CLI");
    const World world(fs::absolute(argv[1]));
    const std::string bin = argv[2], cli = argv[3];
    world.Make();
    if (!core::WriteProfile()) Die("no profile");
    PrintHead();
    PrintRatio("swap of a plain level of 60 MB : rm, cp, cp", MeasureSwap(world, bin, 1, 2), 1.15);
    PrintRatio("swap of a packed level : rm, cp, inflate, cp, rm", MeasureSwap(world, bin, 3, 4), 1.10);
    MeasureStatus(world, bin, cli);
    MeasureManyLevels(world, bin, cli);
    return 0;
}
