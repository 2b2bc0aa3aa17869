// Packing and unpacking of level files, file to file, beside plain zlib doing the same. "packed" is the
// result's share of the source in percent.
//
// The level data is made up: smooth 16-bit textures, records with small differences, and noise, as a level
// file mixes them.
#include <benchmark/benchmark.h>
#include <zlib.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <random>
#include <string>

#include "foundation/drives.h"
#include "swap/zl_file.h"

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kBlock = std::size_t{1} << 16;

void AddTexture(std::mt19937& random, std::string& bytes) {
    const unsigned base = random() & 31;
    for (unsigned i = 0; i < 32'768; ++i) {
        const unsigned value = (base + i / 256 % 8 + random() % 3) & 31;
        const unsigned pixel = value << 10 | value << 5 | value | 0x8000;
        bytes.push_back(static_cast<char>(pixel));
        bytes.push_back(static_cast<char>(pixel >> 8));
    }
}

void AddRecords(std::mt19937& random, std::string& bytes) {
    for (unsigned i = 0; i < 4'000; ++i) {
        for (const unsigned value :
             {i, static_cast<unsigned>(random() % 64), 0U, 1024U * static_cast<unsigned>(random() % 20),
              0xFFFFU, 0U, static_cast<unsigned>(random() % 512), 7U}) {
            bytes.push_back(static_cast<char>(value));
            bytes.push_back(static_cast<char>(value >> 8));
        }
    }
}

void AddNoise(std::mt19937& random, std::string& bytes) {
    for (unsigned i = 0; i < 16'384; ++i)
        bytes.push_back(static_cast<char>(random()));
}

std::string LevelData(std::size_t size) {
    std::mt19937 random(1);
    std::string bytes;
    while (bytes.size() < size) {
        const auto kind = random() % 5;
        if (kind < 2) {
            AddTexture(random, bytes);
        } else if (kind < 4) {
            AddRecords(random, bytes);
        } else {
            AddNoise(random, bytes);
        }
    }
    bytes.resize(size);
    return bytes;
}

struct Level {
    std::string plain;
    std::string packed;
};

// Made once for each size. zlib's usual level: its best takes minutes here and unpacks no differently.
const Level& LevelOf(std::size_t size) {
    static std::map<std::size_t, Level> levels;
    Level& level = levels[size];
    if (level.plain.empty()) {
        level.plain = LevelData(size);
        uLongf packed_size = compressBound(size);
        level.packed.resize(packed_size);
        compress2(reinterpret_cast<Bytef*>(level.packed.data()), &packed_size,
                  reinterpret_cast<const Bytef*>(level.plain.data()), size, 6);
        level.packed.resize(packed_size);
    }
    return level;
}

// A folder with the level, plain and packed, as drive C:.
class Workshop {
  public:
    explicit Workshop(std::size_t size) {
        std::string name = (fs::temp_directory_path() / "kelvash-bench-XXXXXX").string();
        if (mkdtemp(name.data()) == nullptr) std::abort();
        folder = name;
        if (!kelvash::SetDrive('C', folder, kelvash::DriveType::Fixed)) std::abort();
        std::ofstream(folder / "level.tr4", std::ios::binary) << LevelOf(size).plain;
        std::ofstream(folder / "level.tr4.zl", std::ios::binary) << LevelOf(size).packed;
    }
    ~Workshop() {
        std::error_code error;
        fs::remove_all(folder, error);
    }
    Workshop(const Workshop&) = delete;
    Workshop& operator=(const Workshop&) = delete;

    fs::path folder;
};

// zlib from file to file in blocks of 64 KB.
bool PumpZlib(const fs::path& source, const fs::path& target, z_stream& stream,
              int (*step)(z_stream* stream, int flush)) {
    std::ifstream in(source, std::ios::binary);
    std::ofstream out(target, std::ios::binary);
    const auto input = std::make_unique<char[]>(kBlock);
    const auto output = std::make_unique<char[]>(kBlock);
    int status = Z_OK;
    while (status != Z_STREAM_END) {
        in.read(input.get(), kBlock);
        stream.next_in = reinterpret_cast<Bytef*>(input.get());
        stream.avail_in = static_cast<uInt>(in.gcount());
        do {
            stream.next_out = reinterpret_cast<Bytef*>(output.get());
            stream.avail_out = static_cast<uInt>(kBlock);
            status = step(&stream, in ? Z_NO_FLUSH : Z_FINISH);
            if (status != Z_OK && status != Z_STREAM_END && status != Z_BUF_ERROR) return false;
            out.write(output.get(), static_cast<std::streamsize>(kBlock - stream.avail_out));
        } while (stream.avail_out == 0);
    }
    return out.good();
}

bool PackByZlib(const fs::path& folder) {
    z_stream stream{};
    if (deflateInit(&stream, 9) != Z_OK) return false;
    const bool packed = PumpZlib(folder / "level.tr4", folder / "out", stream, deflate);
    deflateEnd(&stream);
    return packed;
}

bool UnpackByZlib(const fs::path& folder) {
    z_stream stream{};
    if (inflateInit(&stream) != Z_OK) return false;
    const bool unpacked = PumpZlib(folder / "level.tr4.zl", folder / "out", stream, inflate);
    inflateEnd(&stream);
    return unpacked;
}

bool Pack(const fs::path&) {
    return kelvash::swap::CompressFile("C:\\level.tr4", "C:\\out");
}
bool Unpack(const fs::path&) {
    return kelvash::swap::DecompressFile("C:\\level.tr4.zl", "C:\\out");
}

bool Copy(const fs::path& folder) {
    std::error_code error;
    return fs::copy_file(folder / "level.tr4", folder / "out", fs::copy_options::overwrite_existing, error);
}

// `megabytes` of level data through a procedure that makes "out".
void Measure(benchmark::State& state, bool (*procedure)(const fs::path& folder)) {
    const std::size_t size = static_cast<std::size_t>(state.range(0)) << 20;
    const Workshop workshop(size);
    for ([[maybe_unused]] auto step : state)
        if (!procedure(workshop.folder)) state.SkipWithError("failed");
    const auto out = static_cast<double>(fs::file_size(workshop.folder / "out"));
    state.counters["packed"] = 100.0 * out / static_cast<double>(size);
    state.SetBytesProcessed(static_cast<std::int64_t>(size) * state.iterations());
}

// The first rounds pay for the disk's cache and would be counted to whatever runs first.
void ForUnpacking(benchmark::internal::Benchmark* bench) {
    bench->Arg(20)->Arg(60)->Unit(benchmark::kMillisecond)->UseRealTime()->MinWarmUpTime(0.5);
}

BENCHMARK_CAPTURE(Measure, pack, Pack)->Arg(20)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Measure, pack_by_zlib, PackByZlib)->Arg(20)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(Measure, unpack, Unpack)->Apply(ForUnpacking);
BENCHMARK_CAPTURE(Measure, unpack_by_zlib, UnpackByZlib)->Apply(ForUnpacking);
BENCHMARK_CAPTURE(Measure, copy, Copy)->Apply(ForUnpacking);

} // namespace
