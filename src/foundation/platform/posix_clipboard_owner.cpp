// The program's own picture on the clipboard: a thread hands it to whoever asks.
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <list>
#include <mutex>
#include <thread>

#include "foundation/clipboard_picture.h"
#include "foundation/platform/posix_clipboard.h"

namespace kelvash::platform {

namespace {

using namespace std::chrono_literals;

using SharedBytes = std::shared_ptr<const std::string>;

// More than this goes over in pieces of as much.
constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr std::size_t kRequestHead = 64; // bytes; generous
// For how long a receiver that has asked may fetch nothing.
constexpr auto kReceiverPatience = 10s;

// A picture on its way, piece by piece, into a window's property.
struct Transfer {
    xcb_window_t window;
    xcb_atom_t place;
    SharedBytes bytes;
    std::size_t sent;
    ClipboardClock::time_point until;
};

// Serves one connection; lives on as long as that does.
class Server {
  public:
    explicit Server(const std::string& display);
    ~Server();
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    bool Put(SharedBytes bitmap);

  private:
    void Serve();
    void Heed(const xcb_generic_event_t& event);
    void Answer(const xcb_selection_request_event_t& request);
    bool HandOver(const xcb_selection_request_event_t& request, xcb_atom_t place);
    bool Owns() const;
    void SendNext(const xcb_property_notify_event_t& told);
    std::size_t PieceSize() const;

    ClipboardConnection clipboard_;
    xcb_atom_t selection_, targets_, kind_, incremental_;
    std::list<Transfer> transfers_;
    std::mutex mutex_;
    SharedBytes picture_; // under the mutex
    int wake_;
    std::thread thread_;
};

Server::Server(const std::string& display)
    : clipboard_(display),
      selection_(clipboard_.Named("CLIPBOARD")),
      targets_(clipboard_.Named("TARGETS")),
      kind_(clipboard_.Named("image/bmp")),
      incremental_(clipboard_.Named("INCR")),
      wake_(::eventfd(0, EFD_CLOEXEC)),
      thread_([this] { Serve(); }) {}

Server::~Server() {
    ::eventfd_write(wake_, 1);
    thread_.join();
    ::close(wake_);
}

bool Server::Owns() const {
    xcb_connection_t* const xcb = clipboard_.Xcb();
    const Held<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(xcb, xcb_get_selection_owner(xcb, selection_), nullptr));
    return reply && reply->owner == clipboard_.Window();
}

bool Server::Put(SharedBytes bitmap) {
    if (!clipboard_.IsUp()) return false;
    {
        const std::lock_guard lock(mutex_);
        picture_ = std::move(bitmap);
    }
    xcb_set_selection_owner(clipboard_.Xcb(), clipboard_.Window(), selection_, XCB_CURRENT_TIME);
    return Owns();
}

void Server::Serve() {
    while (clipboard_.IsUp()) {
        const HeldEvent event = clipboard_.Wait(ClipboardClock::now() + kReceiverPatience, wake_);
        if (event) Heed(*event);
        eventfd_t woken = 0;
        if (!event && ::eventfd_read(wake_, &woken) == 0) return;
        const auto now = ClipboardClock::now();
        transfers_.remove_if([now](const Transfer& transfer) { return transfer.until < now; });
    }
}

void Server::Heed(const xcb_generic_event_t& event) {
    switch (KindOf(event)) {
        case XCB_SELECTION_REQUEST:
            Answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
            break;
        case XCB_PROPERTY_NOTIFY:
            SendNext(reinterpret_cast<const xcb_property_notify_event_t&>(event));
            break;
        case XCB_SELECTION_CLEAR: // it may have been put again since
            if (!Owns()) {
                const std::lock_guard lock(mutex_);
                picture_.reset();
            }
            break;
        default:
            break;
    }
}

void Server::Answer(const xcb_selection_request_event_t& request) {
    const xcb_atom_t place = request.property != XCB_NONE ? request.property : request.target;
    xcb_selection_notify_event_t answer{};
    answer.response_type = XCB_SELECTION_NOTIFY;
    answer.time = request.time;
    answer.requestor = request.requestor;
    answer.selection = request.selection;
    answer.target = request.target;
    answer.property = HandOver(request, place) ? place : xcb_atom_t{XCB_NONE};
    xcb_send_event(clipboard_.Xcb(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT,
                   reinterpret_cast<const char*>(&answer));
    xcb_flush(clipboard_.Xcb());
}

// False for what isn't offered.
bool Server::HandOver(const xcb_selection_request_event_t& request, xcb_atom_t place) {
    xcb_connection_t* const xcb = clipboard_.Xcb();
    SharedBytes picture;
    {
        const std::lock_guard lock(mutex_);
        picture = picture_;
    }
    if (request.selection != selection_ || !picture) return false;
    const auto put = [&](xcb_atom_t type, std::uint8_t format, std::size_t count, const void* values) {
        xcb_change_property(xcb, XCB_PROP_MODE_REPLACE, request.requestor, place, type, format,
                            static_cast<std::uint32_t>(count), values);
    };
    if (request.target == targets_) {
        const std::array<xcb_atom_t, 2> offered = {targets_, kind_};
        put(XCB_ATOM_ATOM, 32, offered.size(), offered.data());
        return true;
    }
    if (request.target != kind_) return false;
    if (picture->size() <= PieceSize()) {
        put(kind_, 8, picture->size(), picture->data());
        return true;
    }
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(xcb, request.requestor, XCB_CW_EVENT_MASK, &events);
    const auto size = static_cast<std::uint32_t>(picture->size());
    put(incremental_, 32, 1, &size);
    transfers_.push_back({request.requestor, place, picture, 0, ClipboardClock::now() + kReceiverPatience});
    return true;
}

// The receiver has taken what was there. Behind the last piece goes an empty one.
void Server::SendNext(const xcb_property_notify_event_t& told) {
    if (told.state != XCB_PROPERTY_DELETE) return;
    const auto at = std::find_if(transfers_.begin(), transfers_.end(), [&](const Transfer& transfer) {
        return transfer.window == told.window && transfer.place == told.atom;
    });
    if (at == transfers_.end()) return;
    const std::size_t size = std::min(PieceSize(), at->bytes->size() - at->sent);
    xcb_change_property(clipboard_.Xcb(), XCB_PROP_MODE_REPLACE, at->window, at->place, kind_, 8,
                        static_cast<std::uint32_t>(size), at->bytes->data() + at->sent);
    xcb_flush(clipboard_.Xcb());
    at->sent += size;
    at->until = ClipboardClock::now() + kReceiverPatience;
    if (size == 0) transfers_.erase(at);
}

std::size_t Server::PieceSize() const {
    const std::size_t most = std::size_t{xcb_get_maximum_request_length(clipboard_.Xcb())} * 4;
    return std::min(kPiece, most - std::min(most, kRequestHead));
}

struct OwnPicture {
    std::string display;
    std::unique_ptr<Server> server;
};

OwnPicture& TheOwnPicture() {
    static OwnPicture own;
    return own;
}

} // namespace

} // namespace kelvash::platform

namespace kelvash {

bool PutClipboardPicture(std::string bitmap) {
    const std::string display = platform::ClipboardDisplay();
    if (display.empty() || bitmap.empty()) return false;
    platform::OwnPicture& own = platform::TheOwnPicture();
    const auto picture = std::make_shared<const std::string>(std::move(bitmap));
    if (own.server && own.display == display && own.server->Put(picture)) return true;
    own.server = std::make_unique<platform::Server>(display); // the former one's display may have ended
    own.display = display;
    return own.server->Put(picture);
}

} // namespace kelvash
