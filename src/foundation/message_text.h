// A text on its way to the user, with the id of the message that it begins with.
//
// The id stays when something is added behind the text, so that answers, events and tests can name a box in
// any language.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace kelvash {

// Which answers to a question can lose something that the user has, or go on for ever when nobody is there.
// Ok and Retry count as yes; No, Cancel and Abort as no.
enum class Harm { NothingLoses, YesLoses, NoLoses, AnyLoses };

// An entry of the message table. Its number is opaque and never changes.
struct Message {
    std::int32_t id;
    std::string_view name;         // in the code
    std::string_view text;         // as it is without a translation
    std::optional<Harm> harm = {}; // of a message with which a question begins
    bool password = false;         // what is typed is neither shown nor told
};

// Names an entry: msg::kErrorSavingArchive.
class MessageId {
  public:
    constexpr MessageId() = default; // of a text that is no message
    constexpr explicit MessageId(const Message* entry) : number_(entry->id), entry_(entry) {}
    // A number that was read somewhere, whether there is such an entry or not. It names a box and has no
    // text.
    constexpr explicit MessageId(std::int32_t number) : number_(number) {}

    constexpr std::int32_t Number() const { return number_; }
    constexpr const Message* Entry() const { return entry_; }
    friend constexpr bool operator==(MessageId a, MessageId b) { return a.number_ == b.number_; }
    friend constexpr auto operator<=>(MessageId a, MessageId b) { return a.number_ <=> b.number_; }

  private:
    std::int32_t number_ = 0;
    const Message* entry_ = nullptr;
};

inline constexpr MessageId kNoMessage;

struct MessageText {
    MessageText() = default;
    MessageText(MessageId message, std::string shown) : id(message), text(std::move(shown)) {}
    // A text that the program didn't write.
    explicit MessageText(std::string foreign) : text(std::move(foreign)) {}

    operator std::string() const& { return text; }        // NOLINT(google-explicit-constructor)
    operator std::string() && { return std::move(text); } // NOLINT(google-explicit-constructor)
    operator std::string_view() const { return text; }    // NOLINT(google-explicit-constructor)

    MessageText& operator+=(std::string_view more) {
        text += more;
        return *this;
    }
    MessageText& operator+=(char more) {
        text += more;
        return *this;
    }

    MessageId id = kNoMessage;
    std::string text;
};

inline MessageText operator+(MessageText message, std::string_view more) {
    message += more;
    return message;
}
inline MessageText operator+(MessageText message, char more) {
    message += more;
    return message;
}
inline MessageText operator+(MessageText message, const MessageText& more) {
    message += std::string_view(more);
    return message;
}
inline bool operator==(const MessageText& message, std::string_view text) {
    return message.text == text;
}
inline std::string operator+(std::string text, const MessageText& message) {
    return std::move(text) + message.text;
}
inline std::string operator+(const char* text, const MessageText& message) {
    return text + message.text;
}

} // namespace kelvash
