// Reading of the clipboard's picture by X11's selections.
#include <xcb/xfixes.h>

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <vector>

#include "foundation/clipboard_picture.h"
#include "foundation/platform/posix_clipboard.h"

namespace kelvash::platform {

namespace {

using namespace std::chrono_literals;

constexpr auto kPatience = 200ms;
// For who asks again after an owner that hasn't answered: what it says meanwhile is noted.
constexpr auto kLook = 20ms;
constexpr auto kOwnerPatience = 5s;
// Before a display that didn't answer is tried again.
constexpr auto kPause = 1s;
// Of a picture file: 32 bits a pixel of the largest screens.
constexpr std::size_t kMostBytes = std::size_t{160} << 20;
// What is asked for, the best first.
constexpr std::array<std::string_view, 3> kPictureKinds = {"image/bmp", "image/png", "image/jpeg"};

// A window for one reading: what an owner answers too late goes to a window that is no more.
class Receiver {
  public:
    explicit Receiver(const ClipboardConnection& clipboard)
        : clipboard_(clipboard), window_(xcb_generate_id(clipboard.Xcb())) {
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(clipboard.Xcb(), 0, window_, clipboard.Root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }
    ~Receiver() {
        xcb_destroy_window(clipboard_.Xcb(), window_);
        xcb_flush(clipboard_.Xcb());
    }
    Receiver(const Receiver&) = delete;
    Receiver& operator=(const Receiver&) = delete;
    xcb_window_t Window() const { return window_; }

  private:
    const ClipboardConnection& clipboard_;
    xcb_window_t window_;
};

// What an owner has been asked for.
struct Question {
    Question(const ClipboardConnection& clipboard, xcb_atom_t asked, std::uint64_t at)
        : receiver(clipboard), target(asked), change(at), until(ClipboardClock::now() + kOwnerPatience) {}

    Receiver receiver;
    xcb_atom_t target;
    std::uint64_t change;
    ClipboardClock::time_point until;
    std::optional<bool> answer = {};
};

// What an owner has handed over.
struct Piece {
    xcb_atom_t type = 0;
    std::string bytes;
};

class Reader {
  public:
    std::uint64_t Change() { return Connect() ? change_ : 0; }
    void AwaitNews();
    ClipboardPicture Read();
    void Empty();
    OwnWindow own_window = nullptr;

  private:
    bool Connect();
    bool Drain();
    void Subscribe();
    bool Note(const xcb_generic_event_t& event);
    std::optional<Piece> Convert(xcb_atom_t target, ClipboardClock::time_point until);
    bool IsAnswered(ClipboardClock::time_point until);
    // The answer is known: the owner has none of what it was asked for.
    bool Refuses(xcb_atom_t target) const { return refused_ == target && refused_at_ == change_; }
    bool IsAsked() const { return question_ && question_->change == change_; }
    ClipboardPicture NotHad();
    std::optional<Piece> Take(const Receiver& receiver, ClipboardClock::time_point until);
    std::optional<std::string> TakePieces(const Receiver& receiver, ClipboardClock::time_point until);
    xcb_window_t Owner(ClipboardClock::time_point until);
    bool IsOwn(xcb_window_t owner) const;
    xcb_atom_t KindOffered(std::string_view targets);

    std::string tried_; // the display that was connected, or couldn't be
    ClipboardClock::time_point next_try_;
    std::unique_ptr<ClipboardConnection> clipboard_;
    std::uint64_t change_ = 0;
    std::uint8_t owner_event_ = 0;
    xcb_atom_t selection_ = 0, targets_ = 0, incremental_ = 0, place_ = 0;
    std::array<xcb_atom_t, kPictureKinds.size()> kinds_{};
    std::unique_ptr<Question> question_; // that isn't answered yet
    xcb_atom_t refused_ = 0;             // what an owner was asked for last and doesn't give
    std::uint64_t refused_at_ = 0;       // the clipboard's number then
};

// Connects at the first use, and again where the display is another one or its server has ended. What has
// been told until now is heeded by that.
bool Reader::Connect() {
    const std::string display = ClipboardDisplay();
    const bool is_same = tried_ == display;
    if (clipboard_ && is_same && Drain()) return true;
    const auto now = ClipboardClock::now();
    if (display.empty() || (!clipboard_ && is_same && now < next_try_)) return false;
    question_.reset();
    clipboard_.reset();
    tried_ = display;
    next_try_ = now + kPause;
    clipboard_ = std::make_unique<ClipboardConnection>(display);
    if (clipboard_->IsUp()) Subscribe();
    if (owner_event_ != 0 && clipboard_->IsUp()) return true;
    clipboard_.reset();
    return false;
}

// Asks to be told of every new owner.
void Reader::Subscribe() {
    owner_event_ = 0;
    xcb_connection_t* const xcb = clipboard_->Xcb();
    const auto until = ClipboardClock::now() + kPatience;
    const xcb_query_extension_reply_t* const fixes = xcb_get_extension_data(xcb, &xcb_xfixes_id);
    if (fixes == nullptr || fixes->present == 0) return;
    const auto version =
        clipboard_->ReplyTo<xcb_xfixes_query_version_reply_t>(xcb_xfixes_query_version(xcb, 1, 0), until);
    selection_ = clipboard_->Named("CLIPBOARD", until);
    targets_ = clipboard_->Named("TARGETS", until);
    incremental_ = clipboard_->Named("INCR", until);
    place_ = clipboard_->Named("KELVASH_PICTURE", until);
    std::transform(kPictureKinds.begin(), kPictureKinds.end(), kinds_.begin(),
                   [&](std::string_view kind) { return clipboard_->Named(kind, until); });
    if (!version || selection_ == 0 || kinds_.back() == 0) return;
    xcb_xfixes_select_selection_input(xcb, clipboard_->Window(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(xcb);
    owner_event_ = fixes->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    ++change_;
}

// True for an event that says that the clipboard has another owner. The owner's word is noted.
bool Reader::Note(const xcb_generic_event_t& event) {
    if (KindOf(event) == XCB_SELECTION_NOTIFY) {
        const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
        if (question_ && answer.requestor == question_->receiver.Window() &&
            answer.target == question_->target)
            question_->answer = answer.property != XCB_NONE;
    }
    if (KindOf(event) != owner_event_) return false;
    ++change_;
    return true;
}

// False if the server is no more.
bool Reader::Drain() {
    while (const HeldEvent event{xcb_poll_for_event(clipboard_->Xcb())})
        Note(*event);
    return clipboard_->IsUp();
}

// 0 for none.
xcb_window_t Reader::Owner(ClipboardClock::time_point until) {
    const auto reply = clipboard_->ReplyTo<xcb_get_selection_owner_reply_t>(
        xcb_get_selection_owner(clipboard_->Xcb(), selection_), until);
    return reply ? reply->owner : xcb_window_t{XCB_NONE};
}

// The numbers of a client's windows differ in these bits alone. What the toolkit believes to own is told to
// it later than to this reader.
bool Reader::IsOwn(xcb_window_t owner) const {
    const std::uintptr_t window = own_window == nullptr ? 0 : own_window();
    const std::uint32_t own_bits = xcb_get_setup(clipboard_->Xcb())->resource_id_mask;
    return window != 0 && ((owner ^ static_cast<xcb_window_t>(window)) & ~own_bits) == 0;
}

// Waits for the owner's word. False if it refuses, says nothing in time, or goes; only one who may still
// answer leaves the question open.
bool Reader::IsAnswered(ClipboardClock::time_point until) {
    while (!question_->answer) {
        const HeldEvent event = clipboard_->Wait(until);
        if (!event) {
            if (!clipboard_->IsUp() || ClipboardClock::now() >= question_->until) question_.reset();
            return false;
        }
        if (!Note(*event)) continue;
        question_.reset();
        return false;
    }
    if (*question_->answer) return true;
    refused_ = question_->target;
    refused_at_ = question_->change;
    question_.reset();
    return false;
}

// What lies in the receiver's property, and takes it away, which tells an owner to go on.
std::optional<Piece> Reader::Take(const Receiver& receiver, ClipboardClock::time_point until) {
    const auto reply = clipboard_->ReplyTo<xcb_get_property_reply_t>(
        xcb_get_property(clipboard_->Xcb(), 1, receiver.Window(), place_, XCB_GET_PROPERTY_TYPE_ANY, 0,
                         static_cast<std::uint32_t>(kMostBytes / 4)),
        until);
    if (!reply || reply->type == XCB_NONE || reply->bytes_after != 0) return std::nullopt;
    const auto* const value = static_cast<const char*>(xcb_get_property_value(reply.get()));
    return Piece{reply->type,
                 std::string(value, static_cast<std::size_t>(xcb_get_property_value_length(reply.get())))};
}

// A picture that comes in pieces; an empty one is its end.
std::optional<std::string> Reader::TakePieces(const Receiver& receiver, ClipboardClock::time_point until) {
    std::string bytes;
    while (const HeldEvent event = clipboard_->Wait(until)) {
        if (Note(*event)) return std::nullopt;
        if (KindOf(*event) != XCB_PROPERTY_NOTIFY) continue;
        const auto& told = *reinterpret_cast<const xcb_property_notify_event_t*>(event.get());
        if (told.window != receiver.Window() || told.atom != place_ || told.state != XCB_PROPERTY_NEW_VALUE)
            continue;
        const std::optional<Piece> piece = Take(receiver, until);
        if (!piece || bytes.size() + piece->bytes.size() > kMostBytes) return std::nullopt;
        if (piece->bytes.empty()) return bytes;
        bytes += piece->bytes;
    }
    return std::nullopt;
}

std::optional<Piece> Reader::Convert(xcb_atom_t target, ClipboardClock::time_point until) {
    auto look = until;
    if (IsAsked() && question_->target == target) {
        look = std::min(until, ClipboardClock::now() + kLook);
    } else {
        question_ = std::make_unique<Question>(*clipboard_, target, change_);
        xcb_convert_selection(clipboard_->Xcb(), question_->receiver.Window(), selection_, target, place_,
                              XCB_CURRENT_TIME);
    }
    if (!IsAnswered(look)) return std::nullopt;
    const std::unique_ptr<Question> answered = std::move(question_);
    std::optional<Piece> piece = Take(answered->receiver, until);
    if (!piece || piece->type != incremental_) return piece;
    std::optional<std::string> bytes = TakePieces(answered->receiver, until);
    if (!bytes) return std::nullopt;
    return Piece{target, std::move(*bytes)};
}

ClipboardPicture Reader::NotHad() {
    return {question_ ? ClipboardContent::Slow : ClipboardContent::Failed, {}};
}

// The best of the offered kinds of pictures; 0 if none of them is one.
xcb_atom_t Reader::KindOffered(std::string_view targets) {
    const std::span offered(reinterpret_cast<const xcb_atom_t*>(targets.data()),
                            targets.size() / sizeof(xcb_atom_t));
    for (const xcb_atom_t kind : kinds_)
        if (kind != 0 && std::find(offered.begin(), offered.end(), kind) != offered.end()) return kind;
    return 0;
}

ClipboardPicture Reader::Read() {
    if (!Connect()) return {};
    const auto until = ClipboardClock::now() + kPatience;
    const xcb_window_t owner = Owner(until);
    if (owner == XCB_NONE || IsOwn(owner)) return {};
    Drain(); // what was told of an owner before this one
    xcb_atom_t kind = IsAsked() ? question_->target : targets_;
    if (kind == targets_) {
        const std::optional<Piece> targets = Convert(targets_, until);
        if (!targets && Refuses(targets_)) return {}; // it has a text, as some old programs do
        if (!targets) return NotHad();
        kind = KindOffered(targets->bytes);
    }
    if (kind == 0) return {};
    std::optional<Piece> picture = Convert(kind, until);
    if (!picture) return NotHad();
    if (picture->bytes.empty()) return {ClipboardContent::Failed, {}};
    return {ClipboardContent::Picture, std::move(picture->bytes)};
}

// The answer to any question comes behind what happened before it.
void Reader::AwaitNews() {
    if (!Connect()) return;
    Owner(ClipboardClock::now() + kPatience);
    Drain();
}

void Reader::Empty() {
    if (!Connect()) return;
    xcb_set_selection_owner(clipboard_->Xcb(), XCB_NONE, selection_, XCB_CURRENT_TIME);
    xcb_flush(clipboard_->Xcb());
}

Reader& TheReader() {
    static Reader reader;
    return reader;
}

} // namespace

void AwaitClipboardNews() {
    TheReader().AwaitNews();
}

} // namespace kelvash::platform

namespace kelvash {

std::uint64_t ClipboardChange() {
    return platform::TheReader().Change();
}

ClipboardPicture ReadClipboardPicture() {
    return platform::TheReader().Read();
}

void EmptyClipboard() {
    platform::TheReader().Empty();
}

void TakeOwnWindow(OwnWindow window) {
    platform::TheReader().own_window = window;
}

} // namespace kelvash
