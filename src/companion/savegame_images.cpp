#include "companion/savegame_images.h"

#include <cstdlib>

#include "companion/fragments.h"
#include "companion/savegame_messages.h"
#include "companion/screenshots.h"
#include "companion/slots_work.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/file_times.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"
#include "trle_state/file_stamp.h"

namespace kelvash::companion {

namespace {

bool HasOnlyTheLoadPicture(const std::vector<DatedImage>& images) {
    return images.size() == 1 &&
           EqualNoCase(FileNameOf(images.front().Path), LoadFragment(fragment::kOnlyShot));
}

// Those that have the date of the chosen one make way, so that it is the nearest.
void StepAside(const std::vector<DatedImage>& images, const std::string& chosen, std::int64_t time) {
    constexpr int kStep = 5; // seconds
    for (const DatedImage& image : images)
        if (image.Time == time && !IsSamePlace(image.Path, chosen))
            static_cast<void>(SetFileDate(image.Path, time + kStep)); // one that can't stays beside it
}

} // namespace

std::vector<DatedImage> DatedImages(const std::vector<std::string>& paths) {
    std::vector<DatedImage> images;
    const std::vector<std::optional<std::int64_t>> times = FileTimes(paths);
    for (std::size_t i = 0; i < paths.size(); ++i)
        if (times[i]) images.push_back({paths[i], *times[i]});
    return images;
}

std::string LinkedImage(std::int64_t savegame_time, const std::vector<DatedImage>& images) {
    constexpr int kMinute = 60;
    std::int64_t best = std::int64_t{core::profile.ScreenshotMinutes} * kMinute + 1;
    std::string linked;
    for (const DatedImage& image : images) {
        const std::int64_t apart = std::abs(image.Time - savegame_time);
        if (apart >= best) continue;
        best = apart;
        linked = image.Path;
    }
    return linked;
}

bool ChooseLinkedImage(std::int32_t code, const std::string& savegame) {
    const core::LevelPlace level = core::PlaceOf(code);
    const std::vector<DatedImage> images = DatedImages(Screenshots(level));
    if (images.empty() || HasOnlyTheLoadPicture(images)) {
        ShowMessage(MessageStyle::Exclamation, LoadMessage(msg::kLinkNoImages, {kLineBreak}));
        return false;
    }
    const trle_state::FileStamp seen = StampWithHash(savegame);
    const std::optional<std::string> chosen = TheUser().OpenFile({LoadMessage(msg::kLinkTitle),
                                                                  LoadMessage(msg::kLinkFilter),
                                                                  core::ScreenshotsFolder(level.Folder),
                                                                  {}});
    if (!chosen) return false;
    const core::Change change(msg::kDoingLink, core::kAll, code);
    if (!change) return false;
    if (!LiesIn(*chosen, core::ScreenshotsFolder(level.Folder))) {
        TellCritical(LoadMessage(msg::kLinkElsewhere) + *chosen);
        return false;
    }
    if (!trle_state::IsStill(savegame, seen)) {
        TellCritical(LoadMessage(msg::kLinkAnother) + savegame);
        return false;
    }
    const std::optional<std::int64_t> time = FileTime(savegame);
    if (!time || !SetFileDate(*chosen, *time)) {
        TellCritical(LoadMessage(msg::kLinkFailed) + *chosen);
        return false;
    }
    StepAside(images, *chosen, *time);
    return true;
}

} // namespace kelvash::companion
