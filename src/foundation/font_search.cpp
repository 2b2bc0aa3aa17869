#include "foundation/font_search.h"

#include <clocale>
#include <system_error>

#include "foundation/platform/platform.h"

namespace kelvash {

FontSearch::FontSearch() {
    // The toolkit sets it too, and the other thread must not see it change.
    std::setlocale(LC_ALL, "");
    try {
        thread_ = std::jthread([] { platform::ReadFontConfiguration(); });
    } catch (const std::system_error&) {
        // No thread can be had: the toolkit reads it when it asks for the first font.
    }
}

} // namespace kelvash
