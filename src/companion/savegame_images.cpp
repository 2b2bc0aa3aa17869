#include "companion/savegame_images.h"

#include <cstdlib>

#include "companion/fragments.h"
#include "companion/savegame_messages.h"
#include "companion/screenshots.h"
#include "core/archive.h"
#include "core/change.h"
#include "core/profile.h"
#include "foundation/files.h"
#include "foundation/messages.h"
#include "foundation/path.h"
#include "foundation/place.h"
#include "foundation/text.h"
#include "foundation/user.h"

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
    for (const std::string& path : paths)
        if (const std::optional<std::int64_t> time = FileTime(path)) images.push_back({path, *time});
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
    const std::optional<std::int64_t> time = FileTime(savegame);
    if (!time || !SetFileDate(*chosen, *time)) {
        TellCritical(LoadMessage(msg::kLinkFailed) + *chosen);
        return false;
    }
    StepAside(images, *chosen, *time);
    return true;
}

} // namespace kelvash::companion
