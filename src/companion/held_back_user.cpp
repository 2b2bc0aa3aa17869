#include "companion/held_back_user.h"

#include <utility>

#include "companion/watcher.h"

namespace kelvash::companion {

void HeldBackUser::Message(MessageStyle, const MessageText& text) {
    has_told_ = true;
    told_.push_back(text);
}

Answer HeldBackUser::Ask(Buttons buttons, MessageStyle style, const MessageText& text) {
    Message(style, text);
    return HarmlessAnswer(buttons, text);
}

void HeldBackUser::TellAfterGame() {
    for (const MessageText& text : std::exchange(told_, {}))
        companion::TellAfterGame(text);
}

} // namespace kelvash::companion
