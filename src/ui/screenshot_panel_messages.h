// The texts of the page of the screenshots.
#pragma once

#include "foundation/messages.h"
#include "ui/screenshot_panel_messages.inc"
