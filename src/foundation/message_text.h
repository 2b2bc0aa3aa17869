// A text on its way to the user, with the id of the message that it begins with.
//
// The id stays when something is added behind the text, so that answers, events and tests can name a box in
// any language.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace kelvash {

enum class MessageId : std::int32_t; // the names stand in messages.h

// The id of a text that is no message.
inline constexpr MessageId kNoMessage{0};

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
