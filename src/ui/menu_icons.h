// The icons of the menus' entries.
#pragma once

#include <optional>

#include "ui/icons.h"
#include "ui/principale_menu.h"

namespace kelvash::ui {

// Nothing for the menus of the bar, which words alone tell.
std::optional<Glyph> GlyphOf(MenuEntry entry);

} // namespace kelvash::ui
