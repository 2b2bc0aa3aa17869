// The user port while the game runs: a box would lie over the game, or take its screen. What is told is kept
// for after the game; a question gets the answer that loses nothing.
#pragma once

#include <vector>

#include "foundation/absent_user.h"

namespace kelvash::companion {

// In use as TheUser() as long as it lives; what needs no answer goes on to the port before it.
class HeldBackUser final : public AbsentUser {
  public:
    HeldBackUser() : behind_(TheUser()), former_(SetUser(this)) {}
    ~HeldBackUser() override { SetUser(former_); }

    // Whether anything was told, and hands all of it to the watcher.
    bool HasTold() const { return has_told_; }
    void TellAfterGame();

    void Message(MessageStyle style, const MessageText& text) override;
    Answer Ask(Buttons buttons, MessageStyle style, const MessageText& text) override;
    void LevelListChanged() override { behind_.LevelListChanged(); }
    void PumpEvents() override { behind_.PumpEvents(); }
    void JobBegan() override { behind_.JobBegan(); }
    void JobEnded() override { behind_.JobEnded(); }
    bool JobWaits() override { return behind_.JobWaits(); }

  private:
    User& behind_;
    User* former_; // null for the harmless one
    std::vector<MessageText> told_;
    bool has_told_ = false;
};

} // namespace kelvash::companion
