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

// Where the user wants it, with an extension that says its kind; empty if it is given up.
std::string AskTarget(const std::string& path) {
    const std::string jpeg = LoadFragment(fragment::kResizeJpeg);
    const std::optional<std::string> chosen = TheUser().SaveFile(
        {LoadMessage(msg::kResizeTitle), LoadMessage(msg::kResizeFilter), {}, BaseNameOf(path) + jpeg});
    if (!chosen || IsShotName(*chosen)) return chosen.value_or(std::string());
    const std::string target = *chosen + jpeg;
    return FileExists(target) && !AskReplaceFile(path, target) ? std::string() : target;
}

bool Write(const core::LevelPlace& level, const std::string& path, const std::string& target,
           const swap::Picture& resized, int quality) {
    const std::optional<std::int64_t> date = FileTime(path);
    if (!EndsWithNoCase(target, LoadFragment(fragment::kResizeJpeg))) {
        if (StoreShot(level, target, swap::BitmapFromPicture(resized), date)) return true;
        TellCritical(LoadMessage(msg::kResizeNotSaved) + target);
        return false;
    }
    const std::optional<std::string> jpeg = swap::JpegFromPicture(resized, quality);
    if (jpeg && StoreShot(level, target, *jpeg, date)) return true;
    TellCritical(LoadMessage(msg::kResizeFailed));
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
    const core::Change change(msg::kDoingResize, core::kArchiveFolder, code);
    if (!change) return false;
    const std::string target = AskTarget(path);
    if (target.empty() || !Write(change.Level(), path, target, resized, quality)) return false;
    const std::string native = TextOfNative(NativePath(target));
    copy(native);
    ShowMessage(MessageStyle::Plain, LoadMessage(msg::kResizeDone, {native + kLineBreak}));
    return true;
}

} // namespace kelvash::companion
