// What the reader of the clipboard and the program's own clipboard share: a connection to the X server that
// waits no longer than it may, and ends nothing when the server does.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

namespace kelvash::platform {

using ClipboardClock = std::chrono::steady_clock;

struct XFree {
    void operator()(void* reply) const { std::free(reply); }
};
// An answer or an event of the server.
template <class Thing>
using Held = std::unique_ptr<Thing, XFree>;
using HeldEvent = Held<xcb_generic_event_t>;

inline std::uint8_t KindOf(const xcb_generic_event_t& event) {
    return event.response_type & 0x7F;
}

// A connection with a window that nobody sees, by which it takes part in the clipboard.
class ClipboardConnection {
  public:
    explicit ClipboardConnection(const std::string& display);
    ~ClipboardConnection();
    ClipboardConnection(const ClipboardConnection&) = delete;
    ClipboardConnection& operator=(const ClipboardConnection&) = delete;

    bool IsUp() const { return window_ != 0 && xcb_connection_has_error(connection_) == 0; }
    xcb_connection_t* Xcb() const { return connection_; }
    xcb_window_t Window() const { return window_; }
    xcb_window_t Root() const { return root_; }
    // 0 if the server doesn't answer until then.
    xcb_atom_t Named(std::string_view name, ClipboardClock::time_point until) const;
    // The answer to a request; null if it is refused, or doesn't come until then.
    template <class Answer, class Request>
    Held<Answer> ReplyTo(Request request, ClipboardClock::time_point until) const {
        return Held<Answer>(static_cast<Answer*>(AwaitReply(request.sequence, until)));
    }
    int Descriptor() const { return xcb_get_file_descriptor(connection_); }

    // Of one thread at a time: what one reads while another waits for it would be found too late.
    //
    // The next event until then; null if none has come. `wake`, if it isn't negative, is a descriptor that
    // ends the waiting as soon as it can be read.
    HeldEvent Wait(ClipboardClock::time_point until, int wake = -1) const;

  private:
    void* AwaitReply(unsigned request, ClipboardClock::time_point until) const;

    xcb_connection_t* connection_;
    xcb_window_t root_ = 0;
    xcb_window_t window_ = 0;
};

// The display that the program is to use now; empty for none.
std::string ClipboardDisplay();
// ClipboardChange counts from now on what has happened to the clipboard until now: it is told of it later
// than who has done it.
void AwaitClipboardNews();
// For how long a program that fetches this one's picture may pause on its way: 10 s at the start.
void SetReceiverPatience(std::chrono::milliseconds patience);

} // namespace kelvash::platform
