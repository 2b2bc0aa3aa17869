// A game that a test plays: its process is one that sleeps, its windows are those of the fake desktop, and
// the clock stands still unless the test moves it.
#pragma once

#include <gmock/gmock.h>

#include <cmath>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "companion/game.h"
#include "companion/watch_calls.h"
#include "companion/watcher.h"
#include "core/profile.h"
#include "support/swap_home.h"

namespace kelvash::companion {

class WatcherHome : public test::SwapHome {
  protected:
    static constexpr std::int64_t kNobody = 2'000'000'000; // above what the system numbers processes by
    static constexpr std::uintptr_t kGameWindow = 77, kCover = 78;

    WatcherHome() {
        for (const std::filesystem::path& folder : {trle, backup})
            std::filesystem::copy_file("/bin/sleep", folder / "tomb4.exe",
                                       std::filesystem::copy_options::overwrite_existing);
        desktop.when_done = [this] { Did(""); };
        watch_calls.Now = [this] { return now; };
        watch_calls.Wait = [this](double seconds) {
            now += seconds;
            Did("wait " + std::to_string(std::lround(seconds * 1000)));
            if (while_waiting) while_waiting();
        };
        watch_calls.ShowCover = [this] { Did("cover"); };
        watch_calls.CloseCover = [this] { Did("uncover"); };
        watch_calls.CoverWindow = [] { return kCover; };
        watch_calls.ArchiveSlots = [this](const auto& level, int count) {
            Did("archive " + std::to_string(count) + " of " + level.Name);
            if (while_archiving) while_archiving();
            return outcome;
        };
        watch_calls.RestoreLastSlot = [this](const auto& level) {
            Did("restore of " + level.Name);
            return outcome;
        };
        watch_calls.CompactSlots = [this](const auto& level) {
            Did("compact " + level.Name);
            return outcome;
        };
        watch_calls.ClipboardChange = [this] { return clipboard_change; };
        watch_calls.ReadClipboard = [this](std::string& bytes) {
            bytes = clipboard;
            return offered;
        };
        watch_calls.PutClipboard = [this](const std::string& bytes) {
            Did("put " + bytes);
            Offer(bytes);
        };
        watch_calls.EmptyClipboard = [this] {
            Did("clear");
            offered = Offered::None;
            ++clipboard_change;
        };
        watch_calls.IsBlack = [](const std::string& picture) { return picture == "black"; };
        watch_calls.SavePicture = [this](const auto& level, const std::string& picture) {
            Did("save " + picture + " for " + level.Name);
            if (while_saving) while_saving();
            return stored;
        };
        watch_calls.WhatItShows = [](const std::string& picture) {
            return picture.substr(0, picture.find(" as ")); // "window as png"
        };
        watch_calls.ShowPictures = [this](const auto& level, const std::string& path) {
            Did("show pictures of " + level.Name + ", " + path);
        };
        watch_calls.ShowAfterGame = [this] { Did("show lists"); };
        watch_calls.TakeFocus = [this] { Did("focus"); };
        watch_calls.MayChangeFiles = [this] { return may_change; };
        core::profile.EnableJoystick = true;
        core::profile.ArchiveSavegames = false;
    }
    ~WatcherHome() override { KillProcess(game.GameProcess); }

    // A game that runs, seen by the watcher for a while; what happened until then is forgotten.
    void Play() {
        ASSERT_TRUE(StartGame({"1000"}, false));
        game.GameWindow = kGameWindow;
        game.WatcherActive = true;
        desktop.focused = {kGameWindow, "Tomb Raider", game.GameProcess.id};
        TickAfter(2);
        TickAfter(2);
        TakeDone();
    }
    void TickAfter(double seconds) {
        now += seconds;
        Tick();
    }
    void EndGame() {
        KillProcess(game.GameProcess);
        EXPECT_TRUE(WaitForProcess(game.GameProcess, 10));
    }
    void Save(const std::string& name, const std::string& bytes) { test::MakeFile(trle / name, bytes); }
    void Offer(const std::string& picture) {
        clipboard = picture;
        offered = Offered::Picture;
        ++clipboard_change;
    }
    void Tap(int key) {
        desktop.held = {key};
        PollKeys();
        desktop.held.clear();
        PollKeys();
    }
    void Did(const std::string& what) {
        for (; told_beeps < desktop.beeps.size(); ++told_beeps)
            done.push_back("beep " + std::to_string(desktop.beeps[told_beeps].first) + " " +
                           std::to_string(desktop.beeps[told_beeps].second));
        for (; told_keys < desktop.pressed.size(); ++told_keys)
            done.push_back("key " + std::to_string(desktop.pressed[told_keys]));
        if (!what.empty()) done.push_back(what);
    }
    // What has happened since the last time, beeps and presses in their order.
    std::vector<std::string> TakeDone() {
        Did("");
        return std::exchange(done, {});
    }

    double now = 1000;
    std::vector<std::string> done;
    std::size_t told_beeps = 0, told_keys = 0;
    WorkOutcome outcome{Work::Done, {}};
    std::function<void()> while_archiving, while_saving, while_waiting;
    std::uint64_t clipboard_change = 1;
    Offered offered = Offered::None;
    std::string clipboard;
    WorkOutcome stored{Work::Done, {}, "new.jpg"};
    bool may_change = true;
};

} // namespace kelvash::companion
