// What the watcher asks of others: the window it brings back, the savegames, the pictures, the clipboard, the
// clock. A program fills in what it has; tests play all of it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "core/archive.h"
#include "foundation/message_text.h"

namespace kelvash::companion {

// How work on a level's files ended. Refused: another program holds the folders; it is tried again at the
// next tick. Partly: something was done, but not all is as it should be. With Partly and Failed a text says
// why, unless a message has said it.
enum class Work { Done, Nothing, Refused, Partly, Failed };
struct WorkOutcome {
    Work End = Work::Nothing;
    MessageText Why;
    std::string Path{};       // of the picture that was stored
    bool CompactOwed = false; // the slots have gaps, to be closed once the game is still
};

// What the clipboard offers: no picture, one, one that isn't there yet, or one that couldn't be had.
enum class Offered { None, Picture, Slow, Failed };

// An empty function is a call that the program has no use for, unless it says otherwise.
struct WatchCalls {
    using LevelPlace = core::LevelPlace;

    // Over the desktop: the cover is shown and closed; which window it is, 0 when none is shown.
    std::function<void()> ShowCover;
    std::function<void()> CloseCover;
    std::function<std::uintptr_t()> CoverWindow;

    // The events that the level's author has tied to tracks.
    std::function<void()> RunMediaEvents;

    // Never empty. They show no box while the game runs: what they would tell is told after it.
    std::function<WorkOutcome(const LevelPlace& level, int count)> ArchiveSlots;
    std::function<WorkOutcome(const LevelPlace& level)> RestoreLastSlot;
    std::function<WorkOutcome(const LevelPlace& level)> CompactSlots;

    // Never empty. A number that changes whenever the clipboard does; what is on it now, as the bytes of a
    // picture file; putting a bitmap file there; emptying it.
    std::function<std::uint64_t()> ClipboardChange;
    std::function<Offered(std::string& bytes)> ReadClipboard;
    std::function<void(const std::string& bitmap)> PutClipboard;
    std::function<void()> EmptyClipboard;
    // Never empty. Of the bytes of a picture file: whether it is black; what it shows, a text that is the
    // same for the same picture in another encoding; its place among the level's pictures under the next
    // automatic name.
    std::function<bool(const std::string& picture)> IsBlack;
    std::function<std::string(const std::string& picture)> WhatItShows;
    std::function<WorkOutcome(const LevelPlace& level, const std::string& picture)> SavePicture;
    // Asks for the picture's name and stores it; gives its path, none if it was given up. Empty where nobody
    // can be asked: then it is stored at once.
    std::function<std::string(const LevelPlace& level, const std::string& picture)> AskPictureName;

    // A picture has come to a level.
    std::function<void(const LevelPlace& level, const std::string& path)> ShowPictures;
    // The game has ended: lists and pictures as they are now; then the keys to the main window.
    std::function<void()> ShowAfterGame;
    std::function<void()> TakeFocus;
    // False while a job is at work that nothing may change files beside. Empty: there is none.
    std::function<bool()> MayChangeFiles;

    // Never empty. Seconds from any point on; letting seconds pass with the interface at work.
    std::function<double()> Now;
    std::function<void(double seconds)> Wait;

    // The program's own for all that needs no window.
    WatchCalls();
};
// Those in use.
extern WatchCalls& watch_calls;

} // namespace kelvash::companion
