#include "foundation/platform/posix_tones.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <numbers>
#include <string>
#include <system_error>

#include "foundation/platform/sdl.h"
#include "foundation/text.h"

namespace kelvash::platform {

namespace fs = std::filesystem;

namespace {

constexpr double kLoudness = 8000; // of 32767
constexpr int kRampSamples = kTonesRate / 200;
constexpr auto kLook = std::chrono::milliseconds(10);
// The device has played what SDL has handed it after that time.
constexpr auto kTail = std::chrono::milliseconds(100);

bool StartSound(const Sdl& sdl) {
    const std::lock_guard subsystems(SdlSubsystems());
    sdl.SetHint(SDL_HINT_NO_SIGNAL_HANDLERS, "1");
    sdl.SetHint(SDL_HINT_AUDIO_DEVICE_APP_NAME, "Kelvash");
    return sdl.InitSubSystem(SDL_INIT_AUDIO) == 0;
}

void EndSound(const Sdl& sdl) {
    const std::lock_guard subsystems(SdlSubsystems());
    sdl.QuitSubSystem(SDL_INIT_AUDIO);
}

bool IsSet(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr && *value != '\0';
}

bool HasPlaybackDevice() {
    std::error_code error;
    for (fs::directory_iterator at("/dev/snd", error), end; !error && at != end; at.increment(error))
        if (at->path().filename().string().starts_with("pcm")) return true;
    return false;
}

} // namespace

std::vector<std::int16_t> ToneSamples(int hertz, int milliseconds) {
    constexpr int kLongest = 10'000; // milliseconds
    if (hertz <= 0 || hertz >= kTonesRate / 2 || milliseconds <= 0) return {};
    const int count = kTonesRate * std::min(milliseconds, kLongest) / 1000;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        const double ramp = std::min({1.0, double(i) / kRampSamples, double(count - 1 - i) / kRampSamples});
        const double angle = 2 * std::numbers::pi * hertz * i / kTonesRate;
        samples[static_cast<std::size_t>(i)] =
            static_cast<std::int16_t>(std::lround(kLoudness * ramp * std::sin(angle)));
    }
    return samples;
}

bool SoundIsThere() {
    if (IsSet("SDL_AUDIODRIVER") || IsSet("PULSE_SERVER") || HasPlaybackDevice()) return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    return runtime != nullptr && (fs::exists(fs::path(runtime) / "pulse" / "native", error) ||
                                  fs::exists(fs::path(runtime) / "pipewire-0", error));
}

Tones::~Tones() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
        waiting_.clear();
    }
    changed_.notify_all();
    if (worker_.joinable()) worker_.join();
}

void Tones::Play(int hertz, int milliseconds) {
    Samples samples = ToneSamples(hertz, milliseconds);
    if (samples.empty() || !SoundIsThere()) return;
    {
        const std::lock_guard lock(mutex_);
        if (waiting_.size() >= kMostWaiting) return;
        waiting_.push_back(std::move(samples));
        if (!worker_.joinable()) worker_ = std::thread([this] { Work(); });
    }
    changed_.notify_all();
}

void Tones::Work() {
    const Sdl* const sdl = LoadSdl();
    if (sdl == nullptr) return;
    std::unique_lock lock(mutex_);
    while (!ends_) {
        changed_.wait(lock, [this] { return ends_ || !waiting_.empty(); });
        if (ends_) return;
        lock.unlock();
        const bool ready = StartSound(*sdl);
        lock.lock();
        if (!ready || !PlayAll(lock)) waiting_.clear();
        if (!ready) continue;
        lock.unlock();
        EndSound(*sdl);
        lock.lock();
    }
}

// Until nothing waits any more. False if the device can't be had.
bool Tones::PlayAll(std::unique_lock<std::mutex>& lock) {
    const Sdl& sdl = *LoadSdl();
    SDL_AudioSpec wanted{};
    wanted.freq = kTonesRate;
    wanted.format = AUDIO_S16SYS;
    wanted.channels = 1;
    wanted.samples = 512;
    lock.unlock();
    const SDL_AudioDeviceID device = sdl.OpenAudioDevice(nullptr, 0, &wanted, nullptr, 0);
    lock.lock();
    if (device == 0) return false;
    sdl.PauseAudioDevice(device, 0);
    while (!ends_ && (!waiting_.empty() || sdl.GetQueuedAudioSize(device) > 0)) {
        for (; !waiting_.empty(); waiting_.pop_front())
            sdl.QueueAudio(device, waiting_.front().data(),
                           static_cast<Uint32>(waiting_.front().size() * sizeof(std::int16_t)));
        changed_.wait_for(lock, kLook);
    }
    changed_.wait_for(lock, kTail, [this] { return ends_; });
    lock.unlock();
    sdl.CloseAudioDevice(device);
    lock.lock();
    return true;
}

} // namespace kelvash::platform
