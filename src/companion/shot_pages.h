// The pictures of a level as they are paged through: two at a time, one of them selected.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace kelvash::companion {

struct ShotPages {
    std::vector<std::string> ImageNames; // full paths
    std::size_t FirstShownImage = 0;     // index of the left one
    int SelectedSide = 0;                // 0 the left, 1 the right

    std::size_t ImageCount() const { return ImageNames.size(); }
    // The selected picture, the left one where there is no right one; the default one for a level without
    // any.
    std::string SelectedImage() const;

    // Shows the pair that begins with a picture; the last pair for an index behind the end.
    void ShowFrom(std::size_t first);
    bool CanGoBack() const { return FirstShownImage > 0; }
    bool CanGoOn() const { return FirstShownImage + 2 < ImageNames.size(); }
    void First() { ShowFrom(0); }
    void Previous() { ShowFrom(FirstShownImage < 2 ? 0 : FirstShownImage - 2); }
    void Next() { ShowFrom(FirstShownImage + 2); }
    void Last() { ShowFrom(ImageNames.size()); }
    // Shows the pair in which a picture is, and selects it; nothing if it isn't there.
    void Select(const std::string& path);
};

} // namespace kelvash::companion
