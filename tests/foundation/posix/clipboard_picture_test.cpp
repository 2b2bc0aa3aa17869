// The clipboard's picture on a server of the test's own, with another program as its owner.
#include "foundation/clipboard_picture.h"

#include <gmock/gmock.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <xcb/xcb.h>

#include <chrono>
#include <string>

#include "foundation/platform/posix_clipboard.h"
#include "support/platform.h"
#include "support/x_server.h"

namespace kelvash {
namespace {

// What an owner does when it is asked for the picture.
enum class Manner {
    Gives,
    GivesLate,
    GivesInPieces,
    StopsBetweenPieces,
    OffersText,
    Refuses,
    RefusesTargets,
    IsSilent,
    Vanishes
};

// The owner, in a process of its own.
class Owner {
  public:
    Owner(Manner manner, const std::string& kind, const std::string& bytes)
        : manner_(manner),
          bytes_(bytes),
          xcb_(xcb_connect(nullptr, nullptr)),
          window_(xcb_generate_id(xcb_)),
          selection_(Named("CLIPBOARD")),
          targets_(Named("TARGETS")),
          kind_(Named(kind)) {
        const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data;
        xcb_create_window(xcb_, 0, window_, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
        Own();
        Named("CLIPBOARD"); // the server has done it
    }
    void Own() { xcb_set_selection_owner(xcb_, window_, selection_, XCB_CURRENT_TIME); }
    [[noreturn]] void Serve() {
        xcb_flush(xcb_);
        while (xcb_generic_event_t* const event = xcb_wait_for_event(xcb_)) {
            const int kind = event->response_type & 0x7F;
            if (kind == XCB_SELECTION_REQUEST)
                Answer(*reinterpret_cast<xcb_selection_request_event_t*>(event));
            if (kind == XCB_PROPERTY_NOTIFY) GoOn(*reinterpret_cast<xcb_property_notify_event_t*>(event));
            xcb_flush(xcb_);
        }
        _exit(1);
    }

  private:
    xcb_atom_t Named(const std::string& name) {
        xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(
            xcb_, xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
        const xcb_atom_t atom = reply->atom;
        free(reply);
        return atom;
    }
    void Put(const xcb_selection_request_event_t& request, xcb_atom_t type, std::uint8_t format,
             std::size_t count, const void* values) {
        xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, request.requestor, request.property, type, format,
                            static_cast<std::uint32_t>(count), values);
    }
    void Answer(const xcb_selection_request_event_t& request) {
        xcb_selection_notify_event_t answer{};
        answer.response_type = XCB_SELECTION_NOTIFY;
        answer.requestor = request.requestor;
        answer.selection = request.selection;
        answer.target = request.target;
        answer.property = request.property;
        if (request.target == targets_ && manner_ == Manner::RefusesTargets) {
            answer.property = XCB_NONE;
        } else if (request.target == targets_) {
            const xcb_atom_t offered = manner_ == Manner::OffersText ? Named("UTF8_STRING") : kind_;
            Put(request, XCB_ATOM_ATOM, 32, 1, &offered);
        } else if (manner_ == Manner::Vanishes) {
            _exit(0);
        } else if (manner_ == Manner::IsSilent) {
            return;
        } else if (manner_ == Manner::Refuses) {
            answer.property = XCB_NONE;
        } else if (manner_ == Manner::Gives || manner_ == Manner::GivesLate) {
            if (manner_ == Manner::GivesLate) usleep(500'000);
            Put(request, kind_, 8, bytes_.size(), bytes_.data());
        } else {
            const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
            xcb_change_window_attributes(xcb_, request.requestor, XCB_CW_EVENT_MASK, &events);
            const auto size = static_cast<std::uint32_t>(bytes_.size());
            Put(request, Named("INCR"), 32, 1, &size);
            sent_ = 0;
        }
        xcb_send_event(xcb_, 0, request.requestor, 0, reinterpret_cast<const char*>(&answer));
    }
    // In pieces of three bytes.
    void GoOn(const xcb_property_notify_event_t& told) {
        if (told.state != XCB_PROPERTY_DELETE) return;
        if (manner_ == Manner::StopsBetweenPieces && sent_ > 0) return;
        const std::string piece = bytes_.substr(std::min(sent_, bytes_.size()), 3);
        xcb_change_property(xcb_, XCB_PROP_MODE_REPLACE, told.window, told.atom, kind_, 8,
                            static_cast<std::uint32_t>(piece.size()), piece.data());
        sent_ += 3;
    }

    Manner manner_;
    std::string bytes_;
    xcb_connection_t* xcb_;
    xcb_window_t window_;
    xcb_atom_t selection_, targets_, kind_;
    std::size_t sent_ = 0;
};

class OtherProgram {
  public:
    OtherProgram(Manner manner, const std::string& kind, const std::string& bytes) {
        int ready[2];
        EXPECT_EQ(pipe(ready), 0);
        process_ = fork();
        if (process_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGTERM);
            Owner owner(manner, kind, bytes);
            if (write(ready[1], "1", 1) != 1) _exit(1);
            owner.Serve();
        }
        close(ready[1]);
        char byte = 0;
        EXPECT_EQ(read(ready[0], &byte, 1), 1);
        close(ready[0]);
    }
    ~OtherProgram() { End(); }
    OtherProgram(const OtherProgram&) = delete;
    OtherProgram& operator=(const OtherProgram&) = delete;
    void End() {
        if (process_ <= 0) return;
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
        process_ = 0;
    }

  private:
    pid_t process_ = 0;
};

class ClipboardPictureOf : public testing::Test {
  protected:
    // What is read, and in how many milliseconds.
    static ClipboardPicture Read() {
        const auto start = std::chrono::steady_clock::now();
        ClipboardPicture picture = ReadClipboardPicture();
        const std::chrono::duration<double, std::milli> took = std::chrono::steady_clock::now() - start;
        EXPECT_LT(took.count(), 300);
        return picture;
    }
    static ClipboardContent ContentOf(Manner manner) {
        const OtherProgram other(manner, "image/bmp", "BM12345678");
        return Read().Content;
    }
    // Changes come from the server by themselves.
    static bool ChangesFrom(std::uint64_t before) {
        for (int i = 0; i < 200; ++i) {
            if (ClipboardChange() != before) return true;
            usleep(10'000);
        }
        return false;
    }

    test::XServer server;
};

TEST_F(ClipboardPictureOf, AnotherProgramIsRead) {
    const OtherProgram other(Manner::Gives, "image/bmp", "BM12345678");
    const ClipboardPicture picture = Read();
    EXPECT_EQ(picture.Content, ClipboardContent::Picture);
    EXPECT_EQ(picture.Bytes, "BM12345678");
}

TEST_F(ClipboardPictureOf, AnotherProgramMayComeInPieces) {
    const OtherProgram other(Manner::GivesInPieces, "image/bmp", "BM12345678");
    const ClipboardPicture picture = Read();
    EXPECT_EQ(picture.Content, ClipboardContent::Picture);
    EXPECT_EQ(picture.Bytes, "BM12345678");
}

TEST_F(ClipboardPictureOf, AnotherProgramMayBeOfAnotherKind) {
    const OtherProgram other(Manner::Gives, "image/png", "\x89PNG");
    EXPECT_EQ(Read().Bytes, "\x89PNG");
}

TEST_F(ClipboardPictureOf, NobodyIsNone) {
    EXPECT_EQ(Read().Content, ClipboardContent::None);
}

TEST_F(ClipboardPictureOf, AProgramThatOffersTextIsNone) {
    EXPECT_EQ(ContentOf(Manner::OffersText), ClipboardContent::None);
}

TEST_F(ClipboardPictureOf, AProgramThatDoesNotSayWhatItHasIsNone) {
    EXPECT_EQ(ContentOf(Manner::RefusesTargets), ClipboardContent::None);
}

TEST_F(ClipboardPictureOf, AProgramThatRefusesFails) {
    EXPECT_EQ(ContentOf(Manner::Refuses), ClipboardContent::Failed);
}

TEST_F(ClipboardPictureOf, AProgramThatSaysNothingIsSlowAndFailsInTheEnd) {
    const OtherProgram other(Manner::IsSilent, "image/bmp", "BM12345678");
    EXPECT_EQ(Read().Content, ClipboardContent::Slow);
    usleep(5'100'000);
    EXPECT_EQ(Read().Content, ClipboardContent::Failed);
}

TEST_F(ClipboardPictureOf, AProgramThatIsSlowIsWaitedForTickByTick) {
    const OtherProgram other(Manner::GivesLate, "image/bmp", "BM12345678");
    const std::uint64_t change = ClipboardChange();
    ClipboardPicture picture = Read();
    EXPECT_EQ(picture.Content, ClipboardContent::Slow);
    for (int i = 0; i < 40 && picture.Content == ClipboardContent::Slow; ++i) {
        usleep(50'000);
        EXPECT_EQ(ClipboardChange(), change);
        picture = Read();
    }
    EXPECT_EQ(picture.Content, ClipboardContent::Picture);
    EXPECT_EQ(picture.Bytes, "BM12345678");
}

TEST_F(ClipboardPictureOf, AProgramThatStopsBetweenPiecesFailsInTime) {
    EXPECT_EQ(ContentOf(Manner::StopsBetweenPieces), ClipboardContent::Failed);
}

TEST_F(ClipboardPictureOf, AProgramThatVanishesFails) {
    EXPECT_EQ(ContentOf(Manner::Vanishes), ClipboardContent::Failed);
}

TEST_F(ClipboardPictureOf, AnEmptyOneFails) {
    const OtherProgram other(Manner::Gives, "image/bmp", "");
    EXPECT_EQ(Read().Content, ClipboardContent::Failed);
}

// As the toolkit's windows: another client of this process, of which another window is named.
TEST_F(ClipboardPictureOf, ThisProgramsWindowsIsNone) {
    static std::uintptr_t named;
    xcb_connection_t* const toolkit = xcb_connect(nullptr, nullptr);
    const auto owner = xcb_generate_id(toolkit), window = xcb_generate_id(toolkit);
    const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(toolkit)).data;
    for (const xcb_window_t made : {owner, window})
        xcb_create_window(toolkit, 0, made, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, 0, nullptr);
    const char* const clipboard = "CLIPBOARD";
    xcb_intern_atom_reply_t* const atom =
        xcb_intern_atom_reply(toolkit, xcb_intern_atom(toolkit, 0, 9, clipboard), nullptr);
    xcb_set_selection_owner(toolkit, owner, atom->atom, XCB_CURRENT_TIME);
    free(atom);
    free(xcb_get_input_focus_reply(toolkit, xcb_get_input_focus(toolkit), nullptr)); // all has arrived
    EXPECT_EQ(Read().Content, ClipboardContent::Slow) << "it answers nobody";
    named = window;
    TakeOwnWindow([] { return named; });
    EXPECT_EQ(Read().Content, ClipboardContent::None);
    const OtherProgram other(Manner::Gives, "image/bmp", "BM12345678");
    EXPECT_EQ(Read().Content, ClipboardContent::Picture);
    TakeOwnWindow(nullptr);
    xcb_disconnect(toolkit);
}

TEST_F(ClipboardPictureOf, EachOwnerIsAChange) {
    const std::uint64_t before = ClipboardChange();
    EXPECT_EQ(ClipboardChange(), before);
    {
        const OtherProgram other(Manner::Gives, "image/bmp", "BM1");
        ASSERT_TRUE(ChangesFrom(before));
    }
    const std::uint64_t gone = ClipboardChange();
    const OtherProgram next(Manner::Gives, "image/bmp", "BM2");
    EXPECT_TRUE(ChangesFrom(gone));
    EXPECT_EQ(Read().Bytes, "BM2");
}

TEST_F(ClipboardPictureOf, ReadingIsNoChange) {
    const OtherProgram other(Manner::GivesInPieces, "image/bmp", "BM12345678");
    Read();
    const std::uint64_t before = ClipboardChange();
    Read();
    EXPECT_EQ(ClipboardChange(), before);
}

TEST_F(ClipboardPictureOf, AnotherProgramCanBeTakenAway) {
    const OtherProgram other(Manner::Gives, "image/bmp", "BM12345678");
    EmptyClipboard();
    EXPECT_EQ(Read().Content, ClipboardContent::None);
}

TEST_F(ClipboardPictureOf, ThisProgramIsThereForOthers) {
    ASSERT_TRUE(PutClipboardPicture("BM12345678"));
    EXPECT_EQ(Read().Bytes, "BM12345678");
    ASSERT_TRUE(PutClipboardPicture("BMabc"));
    EXPECT_EQ(Read().Bytes, "BMabc");
}

// Who clears it later looks whether it is still the same.
TEST_F(ClipboardPictureOf, ThisProgramIsCountedOnceItIsThere) {
    ClipboardChange();
    for (int round = 0; round < 200; ++round) {
        ASSERT_TRUE(PutClipboardPicture("BM12345678"));
        const std::uint64_t change = ClipboardChange();
        usleep(2'000);
        ASSERT_EQ(ClipboardChange(), change) << "in round " << round;
    }
}

TEST_F(ClipboardPictureOf, ThisProgramGoesOverInPiecesWhereItIsLarge) {
    std::string large = "BM";
    for (int i = 0; i < 9'000'000; ++i)
        large.push_back(static_cast<char>(i % 251));
    ASSERT_TRUE(PutClipboardPicture(large));
    EXPECT_TRUE(Read().Bytes == large);
}

TEST_F(ClipboardPictureOf, ThisProgramIsThereHoweverLongNobodyAsks) {
    platform::SetReceiverPatience(std::chrono::milliseconds(50));
    ASSERT_TRUE(PutClipboardPicture("BM12345678"));
    usleep(300'000);
    EXPECT_EQ(Read().Bytes, "BM12345678");
    usleep(300'000);
    ASSERT_TRUE(PutClipboardPicture("BMabc"));
    EXPECT_EQ(Read().Bytes, "BMabc");
    platform::SetReceiverPatience(std::chrono::seconds(10));
}

TEST_F(ClipboardPictureOf, ThisProgramIsThereEachTime) {
    for (int i = 0; i < 100; ++i) {
        const std::string picture = "BM" + std::to_string(i);
        ASSERT_TRUE(PutClipboardPicture(picture));
        ASSERT_EQ(Read().Bytes, picture);
    }
}

// A program that asks this one.
class Asker {
  public:
    Asker() {
        const xcb_screen_t* const screen = xcb_setup_roots_iterator(xcb_get_setup(xcb_)).data;
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(xcb_, 0, window_, screen->root, 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                          XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }
    ~Asker() { xcb_disconnect(xcb_); }
    Asker(const Asker&) = delete;
    Asker& operator=(const Asker&) = delete;

    xcb_atom_t Named(std::string_view name) {
        xcb_intern_atom_reply_t* const reply = xcb_intern_atom_reply(
            xcb_, xcb_intern_atom(xcb_, 0, static_cast<std::uint16_t>(name.size()), name.data()), nullptr);
        const xcb_atom_t atom = reply->atom;
        free(reply);
        return atom;
    }
    // False if it is refused.
    bool Ask(const char* target) {
        xcb_convert_selection(xcb_, window_, Named("CLIPBOARD"), Named(target), Named("PLACE"),
                              XCB_CURRENT_TIME);
        xcb_flush(xcb_);
        const platform::HeldEvent answer = Await(XCB_SELECTION_NOTIFY);
        return answer && reinterpret_cast<const xcb_selection_notify_event_t&>(*answer).property != XCB_NONE;
    }
    // What lies in the place, which is taken away.
    std::string Take(xcb_atom_t* type = nullptr) {
        const platform::Held<xcb_get_property_reply_t> reply(xcb_get_property_reply(
            xcb_, xcb_get_property(xcb_, 1, window_, Named("PLACE"), XCB_GET_PROPERTY_TYPE_ANY, 0, 1 << 24),
            nullptr));
        if (type != nullptr) *type = reply->type;
        return {static_cast<const char*>(xcb_get_property_value(reply.get())),
                static_cast<std::size_t>(xcb_get_property_value_length(reply.get()))};
    }
    std::string TakePieces() {
        while (xcb_generic_event_t* const event = xcb_poll_for_event(xcb_))
            free(event); // of what was there before
        Take();
        std::string bytes;
        for (;;) {
            const platform::HeldEvent event = Await(XCB_PROPERTY_NOTIFY);
            if (!event) return "nothing came";
            if (reinterpret_cast<const xcb_property_notify_event_t&>(*event).state != XCB_PROPERTY_NEW_VALUE)
                continue;
            const std::string piece = Take();
            if (piece.empty()) return bytes;
            bytes += piece;
        }
    }

  private:
    platform::HeldEvent Await(int kind) {
        for (int i = 0; i < 500; ++i) {
            platform::HeldEvent event(xcb_poll_for_event(xcb_));
            if (event && platform::KindOf(*event) == kind) return event;
            if (!event) usleep(10'000);
        }
        return nullptr;
    }

    xcb_connection_t* xcb_ = xcb_connect(nullptr, nullptr);
    xcb_window_t window_ = xcb_generate_id(xcb_);
};

TEST_F(ClipboardPictureOf, ThisProgramBeginsAnewForWhoAsksTwice) {
    std::string large = "BM";
    for (int i = 0; i < 9'000'000; ++i)
        large.push_back(static_cast<char>(i % 251));
    ASSERT_TRUE(PutClipboardPicture(large));
    Asker asker;
    ASSERT_TRUE(asker.Ask("image/bmp"));
    ASSERT_TRUE(asker.Ask("image/bmp"));
    EXPECT_TRUE(asker.TakePieces() == large);
}

TEST_F(ClipboardPictureOf, ThisProgramTellsSinceWhenAndRefusesTheRest) {
    ASSERT_TRUE(PutClipboardPicture("BM12345678"));
    Asker asker;
    ASSERT_TRUE(asker.Ask("TIMESTAMP"));
    xcb_atom_t type = 0;
    EXPECT_NE(asker.Take(&type), std::string(4, '\0'));
    EXPECT_EQ(type, XCB_ATOM_INTEGER);
    EXPECT_FALSE(asker.Ask("MULTIPLE"));
    EXPECT_FALSE(asker.Ask("image/png"));
}

TEST_F(ClipboardPictureOf, ThisProgramGivesWayToAnother) {
    ASSERT_TRUE(PutClipboardPicture("BM12345678"));
    const OtherProgram other(Manner::Gives, "image/bmp", "BMother");
    ClipboardPicture picture = Read();
    for (int i = 0; i < 20 && picture.Content == ClipboardContent::Slow; ++i)
        picture = Read();
    EXPECT_EQ(picture.Bytes, "BMother");
    ASSERT_TRUE(PutClipboardPicture("BMagain"));
    EXPECT_EQ(Read().Bytes, "BMagain");
}

TEST_F(ClipboardPictureOf, AServerThatEndsIsNone) {
    ASSERT_TRUE(PutClipboardPicture("BM12345678"));
    EXPECT_NE(ClipboardChange(), 0U);
    server.Kill();
    EXPECT_EQ(Read().Content, ClipboardContent::None);
    EmptyClipboard();
    EXPECT_EQ(ClipboardChange(), 0U);
    EXPECT_FALSE(PutClipboardPicture("BM12345678"));
}

TEST(ClipboardPictureWithoutDisplay, EveryCallIsHarmless) {
    test::SetEnvironment("DISPLAY", "");
    EXPECT_EQ(ClipboardChange(), 0U);
    EXPECT_EQ(ReadClipboardPicture().Content, ClipboardContent::None);
    EmptyClipboard();
    EXPECT_FALSE(PutClipboardPicture("BM12345678"));
}

} // namespace
} // namespace kelvash
