#include "companion/shot_pages.h"

#include <algorithm>

#include "companion/screenshots.h"
#include "foundation/text.h"

namespace kelvash::companion {

std::string ShotPages::SelectedImage() const {
    if (ImageNames.empty()) return DefaultScreenshot();
    const std::size_t index = FirstShownImage + (SelectedSide == 1 ? 1 : 0);
    return ImageNames[std::min(index, ImageNames.size() - 1)];
}

void ShotPages::ShowFrom(std::size_t first) {
    const std::size_t last = ImageNames.empty() ? 0 : (ImageNames.size() - 1) / 2 * 2;
    FirstShownImage = std::min(first, last);
}

void ShotPages::Select(const std::string& path) {
    const auto at = std::find_if(ImageNames.begin(), ImageNames.end(),
                                 [&](const std::string& name) { return EqualNoCase(name, path); });
    if (at == ImageNames.end()) return;
    const auto index = static_cast<std::size_t>(at - ImageNames.begin());
    ShowFrom(index / 2 * 2);
    SelectedSide = static_cast<int>(index % 2);
}

} // namespace kelvash::companion
