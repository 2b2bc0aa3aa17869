// What an operation on a level's savegames came to, for callers that must not show a box: a running game lies
// over everything.
#pragma once

#include <cstdint>

#include "foundation/message_text.h"

namespace kelvash::companion {

// Who asks. The watcher is shown no box at all: what is to be told waits in the outcome until the game ends.
enum class Asker { User, Watcher };

enum class SlotsResult {
    Done,
    Nothing, // there was nothing to do
    Busy,    // another program holds the folders, or a savegame is changing: nothing has changed, try again
    Refused, // it can't be done: nothing has changed
    Partly   // some of it is done; every savegame is somewhere, as the message tells
};

struct SlotsOutcome {
    SlotsResult Result = SlotsResult::Nothing;
    std::int32_t Count = 0;   // savegames that were dealt with
    MessageText Message = {}; // why it isn't Done; empty if that has been told, or for Nothing
    MessageText Aside = {};   // what went to REPEATED, if anything did; nothing where the watcher asked
    // The slots have gaps, because a savegame was being written: the watcher closes them by CompactSlots once
    // the game is still. So does the next archiving or restore.
    bool CompactOwed = false;
};

// Tells the messages of an outcome, if it has any.
void TellOutcome(const SlotsOutcome& outcome);

} // namespace kelvash::companion
