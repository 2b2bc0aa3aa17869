#include "foundation/platform/posix_clipboard.h"

#include <poll.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <array>
#include <csignal>

namespace kelvash::platform {

namespace {

// In milliseconds, for poll; 0 when the time is over.
int Left(ClipboardClock::time_point until) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(until - ClipboardClock::now());
    return static_cast<int>(std::clamp<std::int64_t>(left.count(), 0, 60'000));
}

} // namespace

std::string ClipboardDisplay() {
    const char* const name = std::getenv("DISPLAY");
    return name == nullptr ? std::string() : name;
}

ClipboardConnection::ClipboardConnection(const std::string& display) {
    // A server that ends is told by the connection; unheeded, the signal of it would end the program.
    if (struct sigaction former{};
        ::sigaction(SIGPIPE, nullptr, &former) == 0 && former.sa_handler == SIG_DFL)
        std::signal(SIGPIPE, SIG_IGN);
    int number = 0;
    connection_ = xcb_connect(display.c_str(), &number);
    if (xcb_connection_has_error(connection_) != 0) return;
    xcb_screen_iterator_t screens = xcb_setup_roots_iterator(xcb_get_setup(connection_));
    for (; number > 0 && screens.rem > 1; --number)
        xcb_screen_next(&screens);
    root_ = screens.data->root;
    window_ = xcb_generate_id(connection_);
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(connection_, 0, window_, root_, -1, -1, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                      XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

ClipboardConnection::~ClipboardConnection() {
    xcb_disconnect(connection_);
}

xcb_atom_t ClipboardConnection::Named(std::string_view name, ClipboardClock::time_point until) const {
    const auto reply = ReplyTo<xcb_intern_atom_reply_t>(
        xcb_intern_atom(connection_, 0, static_cast<std::uint16_t>(name.size()), name.data()), until);
    return reply ? reply->atom : xcb_atom_t{0};
}

void* ClipboardConnection::AwaitReply(unsigned request, ClipboardClock::time_point until) const {
    xcb_flush(connection_);
    for (;;) {
        void* reply = nullptr;
        xcb_generic_error_t* error = nullptr;
        if (xcb_poll_for_reply(connection_, request, &reply, &error) != 0) {
            std::free(error);
            return reply;
        }
        const int left = Left(until);
        if (left == 0 || !IsUp()) {
            xcb_discard_reply(connection_, request);
            return nullptr;
        }
        pollfd waited{Descriptor(), POLLIN, 0};
        ::poll(&waited, 1, left);
    }
}

HeldEvent ClipboardConnection::Wait(ClipboardClock::time_point until, int wake) const {
    xcb_flush(connection_);
    while (IsUp()) {
        if (HeldEvent event(xcb_poll_for_event(connection_)); event) return event;
        const int left = Left(until);
        if (left == 0) return nullptr;
        std::array<pollfd, 2> waited = {{{Descriptor(), POLLIN, 0}, {wake, POLLIN, 0}}};
        if (::poll(waited.data(), waited.size(), left) > 0 && waited[1].revents != 0) return nullptr;
    }
    return nullptr;
}

} // namespace kelvash::platform
