// A private X server without a screen (Xvfb) on a free display, which DISPLAY names while this lives.
#pragma once

#include <sys/types.h>

#include <string>

namespace kelvash::test {

class XServer {
  public:
    XServer();
    ~XServer();
    XServer(const XServer&) = delete;
    XServer& operator=(const XServer&) = delete;

    // Ends the server at once.
    void Kill();

  private:
    pid_t process_ = 0;
    std::string old_display_;
};

} // namespace kelvash::test
