#include "companion/resize_shot.h"

#include <optional>

#include "companion/fragments.h"
#include "companion/shot_files.h"
#include "companion/shot_messages.h"
#include "core/archive.h"
#include "core/change.h"
#include "foundation/drives.h"
#include "foundation/files.h"
#include "foundation/native_text.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"

namespace kelvash::companion {

namespace {

// Where the user wants it, with an extension that says its kind; empty if it is given up. No folder is
// proposed: in its own the name would be that of the large picture. The dialog has
// asked about a file that stands there under the name as it was typed only.
std::string AskTarget(const std::string& path, bool& may_replace) {
    const std::string jpeg = LoadFragment(fragment::kResizeJpeg);
    const std::optional<std::string> chosen = TheUser().SaveFile(
        {LoadMessage(msg::kResizeTitle), LoadMessage(msg::kResizeFilter), {}, BaseNameOf(path) + jpeg});
    may_replace = !chosen || IsShotName(*chosen) || !FileExists(*chosen + jpeg);
    return !chosen || IsShotName(*chosen) ? chosen.value_or(std::string()) : *chosen + jpeg;
}

bool Write(const core::LevelPlace& level, const std::string& path, const std::string& target,
           const std::optional<std::string>& bytes) {
    if (bytes && StoreShot(level, target, *bytes, FileTime(path))) return true;
    TellCritical(EndsWithNoCase(target, LoadFragment(fragment::kResizeJpeg))
                     ? LoadMessage(msg::kResizeFailed)
                     : LoadMessage(msg::kResizeNotSaved) + target);
    return false;
}

} // namespace

std::string ShotSizeText(const ShotSize& size) {
    return LoadMessage(msg::kShotSize, {std::to_string(size.Width), std::to_string(size.Height)});
}

std::array<ShotQuality, 5> ShotQualities() {
    return {{{msg::kQualityHighest, 90},
             {msg::kQualityGood, 70},
             {msg::kQualityMiddle, 60},
             {msg::kQualityPoor, 40},
             {msg::kQualityLeast, 20}}};
}

bool BeginResize(const std::string& path, swap::Picture& picture) {
    if (IsDefaultShot(path)) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kDefaultResize));
        return false;
    }
    std::optional<swap::Picture> read = ReadShotOrTell(path);
    if (read) picture = std::move(*read);
    return read.has_value();
}

bool SaveResized(std::int32_t code, const std::string& path, const swap::Picture& resized, int quality,
                 const CopyText& copy) {
    const core::Change change(msg::kDoingResize, LocksOfShots(code), code);
    if (!change) return false;
    bool may_replace = true;
    const std::string target = AskTarget(path, may_replace);
    if (target.empty()) return false;
    const std::optional<std::string> bytes = EndsWithNoCase(target, LoadFragment(fragment::kResizeJpeg))
                                                 ? swap::JpegFromPicture(resized, quality)
                                                 : swap::BitmapFromPicture(resized);
    const FileFacts facts{target, bytes ? static_cast<std::int64_t>(bytes->size()) : 0,
                          FileTime(path).value_or(0)};
    if (!may_replace && !AskReplaceFile(facts, target)) return false;
    if (!Write(change.Level(), path, target, bytes)) return false;
    const std::string native = TextOfNative(NativePath(target));
    copy(native);
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kResizeDone, {native + kLineBreak}));
    return true;
}

} // namespace kelvash::companion
