// audio_bench WORK: what the conversions of waves lose and how long they take, beside sox and ffmpeg. WORK is
// a folder for some 500 MB of files. A program that isn't there has "-" in its place.
//
// audio_bench convert MODE SOURCE TARGET: one conversion, as a process like the others'.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "audio/wav_converter.h"
#include "bench/timing.h"
#include "foundation/drives.h"

namespace {

using namespace kelvash;
using namespace kelvash::bench;
using Samples = std::vector<std::int16_t>;

constexpr int kRate = 44'100;
constexpr std::size_t kHeader = 44;
constexpr int kTimed = 5;

// --- waves ---

void PutWave(const fs::path& path, const Samples& samples, int channels, int rate) {
    const auto number = [](std::uint32_t value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(value >> (8 * i));
        return text;
    };
    const auto data = static_cast<std::uint32_t>(samples.size() * 2);
    std::ofstream file(path, std::ios::binary);
    file << "RIFF" << number(data + 36, 4) << "WAVEfmt " << number(16, 4) << number(1, 2)
         << number(static_cast<std::uint32_t>(channels), 2) << number(static_cast<std::uint32_t>(rate), 4)
         << number(static_cast<std::uint32_t>(rate * channels * 2), 4)
         << number(static_cast<std::uint32_t>(channels * 2), 2) << number(16, 2) << "data" << number(data, 4);
    file.write(reinterpret_cast<const char*>(samples.data()), data);
    if (!file) Die("can't write " + path.string());
}

// Of a wave with the shortest header.
Samples TakeWave(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (bytes.size() < kHeader) Die("no wave: " + path.string());
    Samples samples((bytes.size() - kHeader) / 2);
    std::copy_n(bytes.begin() + kHeader, samples.size() * 2, reinterpret_cast<char*>(samples.data()));
    return samples;
}

std::int16_t Rounded(double value) {
    return static_cast<std::int16_t>(std::lround(std::clamp(value, -32'768.0, 32'767.0)));
}

double Wave(double frequency, double seconds) {
    return std::sin(2 * std::numbers::pi * frequency * seconds);
}

// --- material ---

using Signal = std::function<double(double seconds, int channel)>;

Samples Stereo(double seconds, const Signal& signal) {
    Samples samples;
    for (int i = 0; i < static_cast<int>(seconds * kRate); ++i)
        for (int channel = 0; channel < 2; ++channel)
            samples.push_back(Rounded(signal(static_cast<double>(i) / kRate, channel)));
    return samples;
}

// Two voices with overtones that fade, a beat of noise with each note, and a little hiss.
Signal Music() {
    return [random = std::mt19937(1), hiss = std::normal_distribution<>(0, 1)](double t,
                                                                               int channel) mutable {
        constexpr double kNotes[] = {220, 277.18, 329.63, 440, 554.37, 659.25};
        const int beat = static_cast<int>(t * 2);
        const double since = t * 2 - beat;
        double value = hiss(random) * (20 + 2'500 * std::exp(-30 * since));
        for (int k = 1; k < 9; ++k)
            value += Wave(kNotes[beat * 5 % 6] * k, t + channel * 1e-4) / k * std::exp(-3 * since) * 4'000 +
                     Wave(kNotes[(beat * 3 + 2) % 6] / 2 * k, t) / std::pow(k, 1.3) * 3'000;
        return value;
    };
}

// Noise whose power falls by 3 dB an octave: the sum of sources that change at halved rates.
Signal PinkNoise() {
    return [random = std::mt19937(2), normal = std::normal_distribution<>(0, 900), step = 0U,
            sources = std::array<std::array<double, 12>, 2>()](double, int channel) mutable {
        if (channel == 0) ++step;
        auto& own = sources[static_cast<std::size_t>(channel)];
        double value = normal(random);
        for (std::size_t k = 0; k < own.size(); ++k) {
            if (step % (1U << k) == 0) own[k] = normal(random);
            value += own[k];
        }
        return value;
    };
}

Signal WhiteNoise() {
    return [random = std::mt19937(3), normal = std::normal_distribution<>(0, 6'000)](double, int) mutable {
        return normal(random);
    };
}

Signal Sines() {
    return [](double t, int channel) {
        return 8'000 * Wave(440, t) + 6'000 * Wave(channel == 0 ? 1'000 : 1'300, t);
    };
}

// --- programs ---

bool IsThere(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null").c_str()) == 0;
}

struct Tools {
    std::string self;
    fs::path work;
    bool sox = IsThere("sox"), ffmpeg = IsThere("ffmpeg");

    std::string At(const std::string& name) const { return (work / name).string(); }
    Command Ours(int mode, const std::string& source, const std::string& target) const {
        return {self, "convert", std::to_string(mode), At(source), At(target)};
    }
    Command Sox(const Command& source, const Command& target) const {
        Command command = {"sox"};
        command.insert(command.end(), source.begin(), source.end());
        command.insert(command.end(), target.begin(), target.end());
        return command;
    }
    Command Ffmpeg(const std::string& source, const Command& target) const {
        Command command = {"ffmpeg", "-v", "error", "-nostdin", "-y", "-i", At(source)};
        command.insert(command.end(), target.begin(), target.end());
        return command;
    }
};

int ConvertOnce(char** argv) {
    std::string why;
    const auto mode = static_cast<std::int16_t>(std::atoi(argv[2]));
    if (!SetDrive('Z', "/", DriveType::Fixed)) return 1;
    if (audio::WavConverter(PathFromUser(argv[3]), PathFromUser(argv[4]), mode, why)) return 0;
    std::fprintf(stderr, "%s\n", why.c_str());
    return 1;
}

// --- rows ---

constexpr double kMissing = -1000;

void PrintDecibels(const std::string& what, double ours, double sox, double ffmpeg, double allowed) {
    const auto text = [](double value) {
        char buffer[32] = "-";
        if (value > kMissing) std::snprintf(buffer, sizeof buffer, "%.2f", value);
        return std::string(buffer);
    };
    const bool missed = ours < std::max(sox, ffmpeg) - allowed;
    std::printf("%-44s %10s %10s %10s%s\n", what.c_str(), text(ours).c_str(), text(sox).c_str(),
                text(ffmpeg).c_str(), missed ? "  MISSED" : "");
    std::fflush(stdout);
}

template <class Wanted>
double SignalToNoise(const Wanted& wanted, const Samples& given, std::size_t from, std::size_t to) {
    double signal = 0, noise = 0;
    for (std::size_t i = from; i < std::min(to, given.size()); ++i) {
        const double value = static_cast<double>(wanted[i]), off = value - given[i];
        signal += value * value;
        noise += off * off;
    }
    return 10 * std::log10(signal / noise);
}

// 16 bits to four and back; each program's own track is decoded by this one.
void MeasureFourBits(const Tools& tools, const std::string& what, const Signal& signal) {
    const Samples samples = Stereo(20, signal);
    PutWave(tools.work / "in.wav", samples, 2, kRate);
    const auto back = [&](const Command& encode) {
        Run(encode);
        Run(tools.Ours(audio::kFrom4Bits, "track.wav", "out.wav"));
        return SignalToNoise(samples, TakeWave(tools.work / "out.wav"), 0, samples.size());
    };
    const double ours = back(tools.Ours(audio::kTo4Bits, "in.wav", "track.wav"));
    const double sox = !tools.sox
                           ? kMissing
                           : back(tools.Sox({tools.At("in.wav")}, {"-e", "ms-adpcm", tools.At("track.wav")}));
    const double ffmpeg = !tools.ffmpeg
                              ? kMissing
                              : back(tools.Ffmpeg("in.wav", {"-c:a", "adpcm_ms", "-block_size", "2048",
                                                             "-bitexact", tools.At("track.wav")}));
    PrintDecibels("4 bits and back, " + what, ours, sox, ffmpeg, 0);
}

// Sines of the whole band that both rates hold, against what they are at the new rate.
double Band(double t) {
    double value = 0;
    for (int k = 1; k <= 12; ++k)
        value += 900 * Wave(k * 790.0 + 37, t);
    return value;
}

void MeasureRate(const Tools& tools, const std::string& what, int from, int channels, int mode, int rate,
                 const Command& effects) {
    constexpr int kSeconds = 20;
    Samples samples;
    for (int i = 0; i < kSeconds * from; ++i)
        samples.insert(samples.end(), static_cast<std::size_t>(channels),
                       Rounded(Band(static_cast<double>(i) / from)));
    PutWave(tools.work / "in.wav", samples, channels, from);
    const std::size_t out = mode == audio::kTo22050Mono ? 1 : 2;
    std::vector<double> wanted;
    for (int i = 0; i < kSeconds * rate; ++i)
        wanted.insert(wanted.end(), out, Band(static_cast<double>(i) / rate));
    const auto measured = [&](const Command& command) {
        Run(command);
        return SignalToNoise(wanted, TakeWave(tools.work / "out.wav"), wanted.size() / 10,
                             wanted.size() / 10 * 9);
    };
    Command target = {"-b", "16", "-c", std::to_string(out), tools.At("out.wav")};
    target.insert(target.end(), effects.begin(), effects.end());
    PrintDecibels(what, measured(tools.Ours(mode, "in.wav", "out.wav")),
                  tools.sox ? measured(tools.Sox({tools.At("in.wav")}, target)) : kMissing, kMissing, 0.5);
}

void MeasureTimes(const Tools& tools) {
    const Samples minute = Stereo(60, Music());
    Samples ten;
    for (int i = 0; i < 10; ++i)
        ten.insert(ten.end(), minute.begin(), minute.end());
    PutWave(tools.work / "ten.wav", ten, 2, kRate);
    Pairs encoding, decoding;
    Run(tools.Ours(audio::kTo4Bits, "ten.wav", "ten_track.wav"));
    for (int i = 0; i < kTimed; ++i) {
        Settle(tools.work);
        const double encoded = Run(tools.Ours(audio::kTo4Bits, "ten.wav", "ten_track.wav"));
        Settle(tools.work);
        if (tools.sox)
            encoding.Add(encoded,
                         Run(tools.Sox({tools.At("ten.wav")}, {"-e", "ms-adpcm", tools.At("sox.wav")})));
        Settle(tools.work);
        const double decoded = Run(tools.Ours(audio::kFrom4Bits, "ten_track.wav", "ten_back.wav"));
        Settle(tools.work);
        if (tools.ffmpeg) decoding.Add(decoded, Run(tools.Ffmpeg("ten_track.wav", {tools.At("ffmpeg.wav")})));
    }
    PrintHead();
    if (tools.sox) PrintRatio("ten minutes of stereo to 4 bits : sox", encoding, 0.6);
    if (tools.ffmpeg) PrintRatio("ten minutes of 4 bits decoded : ffmpeg", decoding, 1.2);
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 5 && std::string(argv[1]) == "convert") return ConvertOnce(argv);
    if (argc != 2) Die("usage: audio_bench WORK");
    const Tools tools{fs::canonical("/proc/self/exe").string(), fs::absolute(argv[1])};
    fs::create_directories(tools.work);
    std::printf("%-44s %10s %10s %10s\n", "signal to noise, dB", "Kelvash", "sox", "ffmpeg");
    MeasureFourBits(tools, "music", Music());
    MeasureFourBits(tools, "sines", Sines());
    MeasureFourBits(tools, "pink noise", PinkNoise());
    MeasureFourBits(tools, "white noise", WhiteNoise());
    MeasureRate(tools, "22050 Hz mono to 44100", 22'050, 1, audio::kToStandard, 44'100,
                {"rate", "-v", "44100"});
    MeasureRate(tools, "48000 Hz stereo to 44100", 48'000, 2, audio::kToStandard, 44'100,
                {"rate", "-v", "44100"});
    MeasureRate(tools, "44100 Hz stereo to 22050 mono", 44'100, 2, audio::kTo22050Mono, 22'050,
                {"rate", "-v", "22050"});
    std::printf("\n");
    MeasureTimes(tools);
    return 0;
}
