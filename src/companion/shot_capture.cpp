#include "companion/shot_capture.h"

#include <ctime>
#include <optional>

#include "companion/fragments.h"
#include "companion/held_back_user.h"
#include "companion/shot_files.h"
#include "companion/shot_messages.h"
#include "companion/shot_names.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/path.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::companion {

namespace {

// What stood in the way of a file.
std::string WhyNot(const std::string& path) {
    return LoadMessage(FolderExists(FolderOf(path)) ? msg::kCaptureNotWritten : msg::kCaptureNoFolder);
}

bool Store(const core::LevelPlace& level, const std::string& path, const std::optional<std::string>& jpeg) {
    return jpeg && StoreShot(level, path, *jpeg, std::nullopt);
}

std::optional<std::string> Encoded(const swap::Picture& picture) {
    return swap::JpegFromPicture(picture, swap::kBestQuality);
}

bool MayReplace(const std::string& path, const std::optional<std::string>& jpeg) {
    return !jpeg || !FileExists(path) ||
           AskReplaceFile({path, static_cast<std::int64_t>(jpeg->size()), std::time(nullptr)}, path);
}

// As it is now: an outer job may have listed it elsewhere, or no more. What no Archive lists keeps its
// folder.
core::LevelPlace LevelNow(const core::LevelPlace& found) {
    if (found.Code == core::kNoLevel) return found;
    const core::LevelPlace level = core::PlaceOf(found.Code);
    const bool is_original = found.Code == 0; // it has its folder without an Archive too
    return level.IsListed() || is_original ? level : core::LevelPlace();
}

CaptureOutcome Capture(const core::LevelPlace& found, const swap::Picture& picture) {
    // Not about a level: a change that is tells that it has gone.
    const core::Change change(msg::kDoingCapture, LocksOfShots(found.Code) | core::kUntold);
    if (!change) return {CaptureEnd::Busy, {}, {}};
    const core::LevelPlace level = LevelNow(found);
    if (level.Folder.empty()) return {CaptureEnd::Failed, {}, LoadMessage(msg::kCaptureNoLevel)};
    const std::string path = NextShotPath(level, {});
    if (Store(level, path, Encoded(picture))) return {CaptureEnd::Saved, path, {}};
    return {CaptureEnd::Failed, path,
            LoadMessage(msg::kCaptureLost, {kLineBreak}) + path + kLineBreak + WhyNot(path)};
}

} // namespace

CaptureOutcome CaptureShot(const core::LevelPlace& found, const swap::Picture& picture) {
    HeldBackUser user;
    CaptureOutcome outcome = Capture(found, picture);
    // A lock that others hold is no fault; one that can't be made is, and has been told.
    if (outcome.End == CaptureEnd::Busy && user.HasTold()) outcome.End = CaptureEnd::Failed;
    user.TellAfterGame();
    return outcome;
}

CaptureOutcome CaptureShot(std::int32_t code, const swap::Picture& picture) {
    return CaptureShot(core::PlaceOf(code), picture);
}

SaveCaptureEnd SaveCapture(std::int32_t code, const swap::Picture& picture, std::string& path) {
    const core::Change change(msg::kDoingSaveCapture, LocksOfShots(code), code);
    if (!change) return SaveCaptureEnd::Again;
    const core::LevelPlace& level = change.Level();
    CreateFolder(core::ScreenshotsFolder(level.Folder)); // for the dialog to begin in
    const std::string proposed = NextShotPath(level, {});
    const std::optional<std::string> chosen =
        TheUser().SaveFile({LoadMessage(msg::kCaptureTitle), LoadMessage(msg::kCaptureFilter),
                            core::ScreenshotsFolder(level.Folder), FileNameOf(proposed)});
    if (!chosen) return SaveCaptureEnd::Again;
    path = *chosen;
    const std::optional<std::string> jpeg = Encoded(picture);
    // The dialog has asked about the name as it was typed.
    if (const std::string end = LoadFragment(fragment::kCaptureJpeg); !EndsWithNoCase(path, end)) {
        path += end;
        if (!MayReplace(path, jpeg)) return SaveCaptureEnd::Again;
    }
    if (Store(level, path, jpeg)) return SaveCaptureEnd::Saved;
    TellCritical(LoadMessage(msg::kCaptureError, {kLineBreak + path + kLineBreak}) + WhyNot(path));
    return SaveCaptureEnd::Failed;
}

void SetCaptureAsks(bool asks) {
    core::profile.PromptCapture = asks;
}

} // namespace kelvash::companion
