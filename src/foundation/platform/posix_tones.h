// Tones through the sound system, by SDL. Without one, or without SDL, all is silent.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

namespace kelvash::platform {

inline constexpr int kTonesRate = 22050; // samples a second

// A sine of 16 bits, one channel, that rises and falls within 5 ms so that it doesn't click. Empty where
// there is nothing to hear.
std::vector<std::int16_t> ToneSamples(int hertz, int milliseconds);

// True if a sound server or a sound device of the kernel can be there: what spares a program without one the
// loading of SDL, and its terminal the complaints of the sound library.
bool SoundIsThere();

// Plays tones one behind the other, beside the program: starting a sound device takes longer than a tone. The
// thread begins with the first tone, and the device is open only as long as there is something to play.
class Tones {
  public:
    Tones() = default;
    Tones(const Tones&) = delete;
    Tones& operator=(const Tones&) = delete;
    // What hasn't been played is dropped.
    ~Tones();

    void Play(int hertz, int milliseconds);

  private:
    // What waits beyond that is dropped: a beep that comes seconds late tells nothing.
    static constexpr std::size_t kMostWaiting = 8;
    using Samples = std::vector<std::int16_t>;

    void Work();
    bool PlayAll(std::unique_lock<std::mutex>& lock);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Samples> waiting_;
    bool ends_ = false;
    std::thread worker_;
};

} // namespace kelvash::platform
