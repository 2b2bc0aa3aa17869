// The program's own picture on the clipboard: a thread hands it to whoever asks. All that goes over the
// connection is that thread's; others leave it a picture and wait for its word.
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "foundation/clipboard_picture.h"
#include "foundation/platform/posix_clipboard.h"

namespace kelvash::platform {

namespace {

using namespace std::chrono_literals;

using SharedBytes = std::shared_ptr<const std::string>;

// More than this goes over in pieces of as much.
constexpr std::size_t kPiece = std::size_t{1} << 20;
constexpr std::size_t kRequestHead = 64; // bytes; generous
// For how long the server may take to make this program the owner.
constexpr auto kServerPatience = 1s;

// For how long a receiver that has asked may fetch nothing.
std::atomic<std::chrono::milliseconds>& ReceiverPatience() {
    static std::atomic<std::chrono::milliseconds> patience{10s};
    return patience;
}

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

    // False if it can't be put, or takes too long.
    bool Put(SharedBytes bitmap);

  private:
    void Serve();
    void TakeWanted();
    bool Own();
    bool Owns() const;
    xcb_timestamp_t ServerTime();
    void Heed(const xcb_generic_event_t& event);
    void Answer(const xcb_selection_request_event_t& request);
    bool HandOver(const xcb_selection_request_event_t& request, xcb_atom_t place);
    void SendFirst(const xcb_selection_request_event_t& request, xcb_atom_t place);
    void SendNext(const xcb_property_notify_event_t& told);
    std::size_t PieceSize() const;

    ClipboardConnection clipboard_;
    xcb_atom_t selection_, targets_, timestamp_, kind_, incremental_, clock_;
    // Of the thread alone.
    std::list<Transfer> transfers_;
    SharedBytes picture_;
    xcb_timestamp_t owned_since_ = XCB_CURRENT_TIME;

    std::mutex mutex_;
    std::condition_variable told_;
    // Under the mutex.
    SharedBytes wanted_;
    std::optional<bool> is_put_;
    bool ends_ = false;
    bool has_ended_ = false;

    int wake_;
    std::thread thread_;
};

Server::Server(const std::string& display)
    : clipboard_(display), wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    const auto until = ClipboardClock::now() + kServerPatience;
    selection_ = clipboard_.Named("CLIPBOARD", until);
    targets_ = clipboard_.Named("TARGETS", until);
    timestamp_ = clipboard_.Named("TIMESTAMP", until);
    kind_ = clipboard_.Named("image/bmp", until);
    incremental_ = clipboard_.Named("INCR", until);
    clock_ = clipboard_.Named("KELVASH_CLOCK", until);
    thread_ = std::thread([this] { Serve(); });
}

Server::~Server() {
    {
        const std::lock_guard lock(mutex_);
        ends_ = true;
    }
    ::eventfd_write(wake_, 1);
    thread_.join();
    ::close(wake_);
}

bool Server::Put(SharedBytes bitmap) {
    std::unique_lock lock(mutex_);
    wanted_ = std::move(bitmap);
    is_put_.reset();
    ::eventfd_write(wake_, 1);
    told_.wait_for(lock, 2 * kServerPatience, [this] { return is_put_ || has_ended_; });
    return is_put_.value_or(false);
}

void Server::Serve() {
    while (clipboard_.IsUp()) {
        const HeldEvent event = clipboard_.Wait(ClipboardClock::now() + ReceiverPatience().load(), wake_);
        if (event) Heed(*event);
        eventfd_t woken = 0;
        ::eventfd_read(wake_, &woken); // nothing is there after a mere pause
        TakeWanted();
        const auto now = ClipboardClock::now();
        transfers_.remove_if([now](const Transfer& transfer) { return transfer.until < now; });
        const std::lock_guard lock(mutex_);
        if (ends_) break;
    }
    const std::lock_guard lock(mutex_);
    has_ended_ = true;
    told_.notify_all();
}

// Puts what has been left here.
void Server::TakeWanted() {
    SharedBytes wanted;
    {
        const std::lock_guard lock(mutex_);
        wanted = std::exchange(wanted_, nullptr);
    }
    if (!wanted) return;
    picture_ = std::move(wanted);
    const bool is_put = Own();
    const std::lock_guard lock(mutex_);
    is_put_ = is_put;
    told_.notify_all();
}

bool Server::Own() {
    const xcb_timestamp_t now = ServerTime();
    if (now == XCB_CURRENT_TIME) return false;
    xcb_set_selection_owner(clipboard_.Xcb(), clipboard_.Window(), selection_, now);
    if (!Owns()) return false;
    owned_since_ = now;
    return true;
}

bool Server::Owns() const {
    const auto reply = clipboard_.ReplyTo<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(clipboard_.Xcb(), selection_), ClipboardClock::now() + kServerPatience);
    return reply && reply->owner == clipboard_.Window();
}

// By a change of an own property, whose event tells it. XCB_CURRENT_TIME, which is none, if it doesn't come.
xcb_timestamp_t Server::ServerTime() {
    xcb_change_property(clipboard_.Xcb(), XCB_PROP_MODE_APPEND, clipboard_.Window(), clock_, XCB_ATOM_INTEGER,
                        8, 0, nullptr);
    const auto until = ClipboardClock::now() + kServerPatience;
    while (const HeldEvent event = clipboard_.Wait(until)) {
        const auto& told = *reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
        if (KindOf(*event) == XCB_PROPERTY_NOTIFY && told.window == clipboard_.Window() &&
            told.atom == clock_)
            return told.time;
        Heed(*event);
    }
    return XCB_CURRENT_TIME;
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
            if (reinterpret_cast<const xcb_selection_clear_event_t&>(event).time >= owned_since_ && !Owns())
                picture_.reset();
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

// False for what isn't offered; several kinds at once aren't.
bool Server::HandOver(const xcb_selection_request_event_t& request, xcb_atom_t place) {
    if (request.selection != selection_ || !picture_) return false;
    const auto put = [&](xcb_atom_t type, std::uint8_t format, std::size_t count, const void* values) {
        xcb_change_property(clipboard_.Xcb(), XCB_PROP_MODE_REPLACE, request.requestor, place, type, format,
                            static_cast<std::uint32_t>(count), values);
        return true;
    };
    const std::array<xcb_atom_t, 3> offered = {targets_, timestamp_, kind_};
    if (request.target == targets_) return put(XCB_ATOM_ATOM, 32, offered.size(), offered.data());
    if (request.target == timestamp_) return put(XCB_ATOM_INTEGER, 32, 1, &owned_since_);
    if (request.target != kind_) return false;
    if (picture_->size() <= PieceSize()) return put(kind_, 8, picture_->size(), picture_->data());
    SendFirst(request, place);
    return true;
}

// Tells that it comes in pieces. Who asks for the same place again has given up what was on its way there.
void Server::SendFirst(const xcb_selection_request_event_t& request, xcb_atom_t place) {
    transfers_.remove_if([&](const Transfer& transfer) {
        return transfer.window == request.requestor && transfer.place == place;
    });
    const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(clipboard_.Xcb(), request.requestor, XCB_CW_EVENT_MASK, &events);
    const auto size = static_cast<std::uint32_t>(picture_->size());
    xcb_change_property(clipboard_.Xcb(), XCB_PROP_MODE_REPLACE, request.requestor, place, incremental_, 32,
                        1, &size);
    transfers_.push_back(
        {request.requestor, place, picture_, 0, ClipboardClock::now() + ReceiverPatience().load()});
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
    at->until = ClipboardClock::now() + ReceiverPatience().load();
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

void SetReceiverPatience(std::chrono::milliseconds patience) {
    ReceiverPatience() = patience;
}

} // namespace kelvash::platform

namespace kelvash {

bool PutClipboardPicture(std::string bitmap) {
    const std::string display = platform::ClipboardDisplay();
    if (display.empty() || bitmap.empty()) return false;
    platform::OwnPicture& own = platform::TheOwnPicture();
    const auto picture = std::make_shared<const std::string>(std::move(bitmap));
    bool is_put = own.server && own.display == display && own.server->Put(picture);
    if (!is_put) {
        own.server = std::make_unique<platform::Server>(display); // the former one's display may have ended
        own.display = display;
        is_put = own.server->Put(picture);
    }
    if (is_put) platform::AwaitClipboardNews();
    return is_put;
}

} // namespace kelvash
