#include "companion/watch_calls.h"

#include <chrono>
#include <optional>
#include <utility>

#include "companion/archive_slots.h"
#include "companion/black_test.h"
#include "companion/compact_slots.h"
#include "companion/restore_slots.h"
#include "companion/shot_capture.h"
#include "foundation/clipboard_picture.h"
#include "foundation/pumping.h"
#include "foundation/state.h"
#include "swap/picture_codec.h"
#include "trle_state/file_stamp.h"

namespace kelvash::companion {

constinit WatchCalls& watch_calls = State<WatchCalls>::Get();

namespace {

using LevelPlace = core::LevelPlace;

double SteadySeconds() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

WorkOutcome EndOf(SlotsOutcome outcome) {
    const auto end = [&] {
        switch (outcome.Result) {
            case SlotsResult::Done:
                return Work::Done;
            case SlotsResult::Nothing:
                return Work::Nothing;
            case SlotsResult::Busy:
                return Work::Refused;
            case SlotsResult::Refused:
                return Work::Failed;
            case SlotsResult::Partly:
                break;
        }
        return Work::Partly;
    };
    return {end(), std::move(outcome.Message), {}, outcome.CompactOwed};
}

Offered ReadOffered(std::string& bytes) {
    ClipboardPicture picture = ReadClipboardPicture();
    bytes = std::move(picture.Bytes);
    switch (picture.Content) {
        case ClipboardContent::None:
            return Offered::None;
        case ClipboardContent::Picture:
            return Offered::Picture;
        case ClipboardContent::Slow:
            return Offered::Slow;
        case ClipboardContent::Failed:
            break;
    }
    return Offered::Failed;
}

// One that can't be read isn't black: that it is lost is told where it is stored.
bool IsBlackPicture(const std::string& bytes) {
    const std::optional<swap::Picture> picture = swap::DecodePicture(bytes);
    return picture && !IsImageNotBlack(*picture);
}

std::string ShownBy(const std::string& bytes) {
    const std::optional<swap::Picture> picture = swap::DecodePicture(bytes);
    if (!picture) return trle_state::HashOfBytes(bytes);
    return std::to_string(picture->Width) + ' ' + trle_state::HashOfBytes(picture->Pixels);
}

WorkOutcome StorePicture(const LevelPlace& level, const std::string& bytes) {
    const std::optional<swap::Picture> picture = swap::DecodePicture(bytes);
    if (!picture) return {Work::Failed, {}};
    CaptureOutcome outcome = CaptureShot(level, *picture);
    if (outcome.End == CaptureEnd::Busy) return {Work::Refused, {}};
    return {outcome.End == CaptureEnd::Saved ? Work::Done : Work::Failed, std::move(outcome.Message),
            std::move(outcome.Path)};
}

} // namespace

WatchCalls::WatchCalls()
    : ArchiveSlots([](const LevelPlace& level, int count) {
          return EndOf(companion::ArchiveSlots(level.Code, count, Asker::Watcher));
      }),
      RestoreLastSlot([](const LevelPlace& level) {
          return EndOf(companion::RestoreLastSlot(level.Code, Asker::Watcher));
      }),
      CompactSlots(
          [](const LevelPlace& level) { return EndOf(companion::CompactSlots(level.Code, Asker::Watcher)); }),
      ClipboardChange(&kelvash::ClipboardChange),
      ReadClipboard(&ReadOffered),
      // Where it can't be put the picture is stored all the same.
      PutClipboard([](const std::string& bitmap) { static_cast<void>(PutClipboardPicture(bitmap)); }),
      EmptyClipboard(&kelvash::EmptyClipboard),
      IsBlack(&IsBlackPicture),
      WhatItShows(&ShownBy),
      SavePicture(&StorePicture),
      Now(&SteadySeconds),
      Wait(&WaitPumping) {}

} // namespace kelvash::companion
