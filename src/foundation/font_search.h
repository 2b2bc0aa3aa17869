// The fonts of the system, looked for beside everything else that a window needs at its start.
#pragma once

#include <thread>

namespace kelvash {

// While it lives the system's configuration of fonts may be read, once, on a thread of its own: it takes a
// quarter of the time in which a window is made, and whoever asks for a font waits for it anyway. To be made
// before the toolkit of the window is; a font that is asked for earlier is found all the same. Where the
// system needs no such search nothing is done.
class FontSearch {
  public:
    FontSearch();

  private:
    std::jthread thread_;
};

} // namespace kelvash
